#include "script/execute_command.h"

#include <utility>

#include "format/formater_factory.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "script/file_uploader.h"
#include "soap/envelope_pieces.h"
#include "soap/named_arguments.h"
#include "support/numbers.h"
#include "support/string_helpers.h"
#include "xml/xml_library_start.h"
#include "xml/xml_parts.h"

namespace qv {
namespace {

constexpr char16_t kAttachedFileType[] = u"AttachedFile";
constexpr std::size_t kFrameUnits = 2048;  // of an envelope with a few parameters, without its script

constexpr auto kExecuteStart =
    JoinLiterals(u"<Execute xmlns=\"", kServiceNamespace, u"\"><usid xsi:type=\"xsd:string\">");
constexpr char16_t kScriptStart[] = u"</usid><Script xsi:type=\"xsd:string\">";

// The script document, escaped.
constexpr char16_t kLanguageStart[] = u"&lt;Scriptwell Language=&quot;";
constexpr auto kCodeStart =
    JoinLiterals(u"&quot; xmlns:xsi=&quot;", kXmlSchemaInstanceNamespace, u"&quot; xsi:schemaLocation=&quot;",
                 kScriptNamespace, u" ", kScriptSchemaLocation, u"&quot; xmlns=&quot;", kScriptNamespace,
                 u"&quot;&gt;&lt;Code&gt;");
constexpr char16_t kCodeEnd[] = u"&lt;/Code&gt;&lt;/Scriptwell&gt;";

constexpr auto kNoParameters =
    JoinLiterals(u"<parameters xsi:nil=\"true\" xsi:type=\"ns1:Parameter\" xmlns:ns1=\"", kSofNamespace,
                 u"\" xmlns:ns2=\"", kSoapEncodingNamespace, u"\" ns2:arrayType=\"ns1:Parameter[]\"/>");
// The prefixes are swapped compared with the nil form; deployed servers expect both forms.
constexpr auto kParametersStart =
    JoinLiterals(u"<parameters xmlns:ns1=\"", kSoapEncodingNamespace, u"\" xmlns:ns2=\"", kSofNamespace,
                 u"\" ns1:arrayType=\"ns2:Parameter[");
constexpr auto kParameterStart =
    JoinLiterals(u"<Parameter xmlns=\"", kServiceNamespace, u"\"><Name xsi:type=\"xsd:string\">");

// For `catch (...)` when writing a request fails.
[[noreturn]] void RethrowAsWriteFailure() {
  try {
    throw;
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    throw EQvException(messages::kXmlDocument);
  }
}

// A parameter that has no wire format fails before the request is sent.
[[noreturn]] void RefuseParameter() {
  _com_raise_error(E_INVALIDARG);
}

struct WireParameter {
  WideString key;
  WideString typeName;
  Variant value;
};

WireParameter ReadParameter(IParameter* parameter) {
  WireParameter read;
  ThrowIfFailed(parameter->get_ParamValue(&read.value), parameter, IParameter::kIid);
  ThrowIfFailed(parameter->get_ParamKey(&read.key), parameter, IParameter::kIid);
  ThrowIfFailed(parameter->get_ParamTypeAsString(&read.typeName), parameter, IParameter::kIid);
  return read;
}

// Uploads the file before the request that contains its ticket.
WideString UploadAttachedFile(const WideString& serviceUrl, const Variant& value, const NamedArguments& map) {
  const IAttachedFilePtr file = As<IAttachedFile>(value.Object());
  CFileUploader uploader(serviceUrl, map.at(argument::kUploadFile).Text());
  return uploader.Upload(file.get(), map);
}

void AppendTicket(WideTextStream& stream, const WideString& ticket) {
  stream.Append(u"</Name><Value xsi:type=\"FileTicket\"><Id xsi:type=\"string\">");
  stream.AppendEncoded(ticket.view());
  stream.Append(u"</Id></Value></Parameter>");
}

void AppendValue(WideTextStream& stream, const WideString& typeName, const WideString& text) {
  stream.Append(u"</Name><Value xsi:type=\"xsd:");
  stream.AppendEncoded(typeName.view());
  stream.Append(u"\">");
  stream.Append(text.view());
  stream.Append(u"</Value></Parameter>");
}

WideString ValueText(WireParameter& parameter) {
  if (parameter.typeName.IsNull()) RefuseParameter();
  WideString text = CExecuteCommand::FormatValue(parameter.typeName, std::move(parameter.value));
  if (text.IsNull()) RefuseParameter();
  return text;
}

}  // namespace

CQvCommand* NewExecuteCommand() {
  return new CExecuteCommand;
}

CQvCommand* CExecuteCommand::clone() const {
  return new CExecuteCommand;
}

void CExecuteCommand::Serialize(WideTextStream& stream, const WideString&, const WideString&,
                                const WideString& url, const NamedArguments& map) {
  try {
    Write(stream, url, map);
  } catch (...) {
    RethrowAsWriteFailure();
  }
}

WideString CExecuteCommand::FormatValue(WideString typeName, Variant value) {
  try {
    FormaterSerializer* const formater = FindFormater(typeName);
    return formater == nullptr ? WideString() : formater->WriteValue(value);
  } catch (...) {
    RethrowAsWriteFailure();
  }
}

void CExecuteCommand::Write(WideTextStream& stream, const WideString& serviceUrl, const NamedArguments& map) {
  stream.Reserve(kFrameUnits + TextArgument(map, argument::kScript, u"").size());
  WriteEnvelopeHead(stream, map.at(argument::kContextHandle).Text());
  stream.EndSecret();
  WriteScriptDocument(stream, map);
  if (map.find(argument::kParameters) == map.end()) {
    WriteNoParameters(stream);
  } else {
    WriteParameters(stream, serviceUrl, map);
  }
  WriteEnvelopeTail(stream);
}

void CExecuteCommand::WriteEnvelopeHead(WideTextStream& stream, const WideString& contextHandle) {
  stream.Append(kEnvelopeStart.units);
  stream.Append(kExecuteStart.units);
  stream.AppendEncoded(contextHandle.view());
  stream.Append(kScriptStart);
}

void CExecuteCommand::WriteScriptDocument(WideTextStream& stream, const NamedArguments& map) {
  const auto file = map.find(argument::kScriptFile);
  if (file != map.end()) {
    WriteScriptFile(stream, file->second.Text());
  } else {
    WriteScriptText(stream, map);
  }
  stream.Append(u"</Script>");
}

// The file is a document already, so it is escaped once. It is parsed and serialized again before it is sent.
void CExecuteCommand::WriteScriptFile(WideTextStream& stream, const WideString& fileName) {
  const XmlParts& library = RequireXmlLibrary();
  stream.AppendEncoded(library.renderFile(ToUtf8(fileName).c_str()).view());
}

// The whole document is escaped when it is written, so the script is escaped twice and the language once.
void CExecuteCommand::WriteScriptText(WideTextStream& stream, const NamedArguments& map) {
  const WideString language = map.at(argument::kScriptLanguage).Text();
  stream.Append(kLanguageStart);
  stream.AppendEncoded(language.view());
  // The escape stops at a null unit, and so does the document.
  if (language.view().find(u'\0') == std::u16string_view::npos)
    WriteCode(stream, map.at(argument::kScript).Text());
}

void CExecuteCommand::WriteCode(WideTextStream& stream, const WideString& script) {
  stream.Append(kCodeStart.units);
  stream.AppendTwiceEncoded(script.view());
  stream.Append(kCodeEnd);
}

void CExecuteCommand::WriteNoParameters(WideTextStream& stream) {
  stream.Append(kNoParameters.units);
}

void CExecuteCommand::WriteParameters(WideTextStream& stream, const WideString& serviceUrl,
                                      const NamedArguments& map) {
  IUnknown* const object = map.at(argument::kParameters).Object();
  const IParametersPtr list = As<IParameters>(object);
  if (list == nullptr) _com_raise_error(E_POINTER);
  std::int16_t count = 0;
  ThrowIfFailed(list->Size(&count), list.get(), IParameters::kIid);
  WriteParametersStart(stream, count);
  for (std::int16_t index = 0; index < count; ++index) {
    IParameter* raw = nullptr;
    ThrowIfFailed(list->Find(index, &raw), list.get(), IParameters::kIid);
    const IParameterPtr parameter(raw, false);
    if (parameter == nullptr) _com_raise_error(E_POINTER);
    WriteParameter(stream, parameter.get(), serviceUrl, map);
  }
  stream.Append(u"</parameters>");
}

void CExecuteCommand::WriteParametersStart(WideTextStream& stream, std::int16_t count) {
  stream.Append(kParametersStart.units);
  stream.Append(DecimalText(count).view());
  stream.Append(u"]\">");
}

void CExecuteCommand::WriteParameter(WideTextStream& stream, IParameter* parameter,
                                     const WideString& serviceUrl, const NamedArguments& map) {
  WireParameter wire = ReadParameter(parameter);
  const bool isFile = EqualIgnoreCase(wire.typeName.data(), kAttachedFileType);
  const WideString text = isFile ? UploadAttachedFile(serviceUrl, wire.value, map) : ValueText(wire);
  stream.Append(kParameterStart.units);
  stream.AppendEncoded(wire.key.view());
  if (isFile) {
    AppendTicket(stream, text);
  } else {
    AppendValue(stream, wire.typeName, text);
  }
}

void CExecuteCommand::WriteEnvelopeTail(WideTextStream& stream) {
  stream.Append(u"</Execute>");
  stream.Append(kEnvelopeEnd);
  stream.AppendNull();
}

}  // namespace qv
