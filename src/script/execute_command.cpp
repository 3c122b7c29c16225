#include "script/execute_command.h"

#include "format/formater_factory.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "script/file_uploader.h"
#include "soap/named_arguments.h"
#include "support/namespaces.h"
#include "support/numbers.h"
#include "support/string_helpers.h"
#include "text/join_text.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_serializer.h"

namespace qv {
namespace {

constexpr char16_t kStringType[] = u"xsd:string";
constexpr char16_t kAttachedFileType[] = u"AttachedFile";

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
  stream.Append(u"<Value xsi:type=\"FileTicket\"><Id xsi:type=\"string\">");
  stream.AppendEncoded(ticket.view());
  stream.Append(u"</Id></Value>");
}

void AppendValue(WideTextStream& stream, const WideString& typeName, const WideString& text) {
  stream.Append(u"<Value xsi:type=\"xsd:");
  stream.AppendEncoded(typeName.view());
  stream.Append(u"\">");
  stream.Append(text.view());
  stream.Append(u"</Value>");
}

WideString ValueText(const WireParameter& parameter) {
  if (parameter.typeName.IsNull()) RefuseParameter();
  WideString text = CExecuteCommand::FormatValue(parameter.typeName, parameter.value);
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
  stream.Append(u"<SOAP-ENV:Envelope");
  stream.AppendAttribute(u"xmlns:xsd", kXmlSchemaNamespace);
  stream.AppendAttribute(u"xmlns:xsi", kXmlSchemaInstanceNamespace);
  stream.AppendAttribute(u"xmlns:SOAP-ENV", kSoapEnvelopeNamespace);
  stream.Append(u"><SOAP-ENV:Body><Execute");
  stream.AppendAttribute(u"xmlns", kServiceNamespace);
  stream.Append(u"><usid");
  stream.AppendAttribute(u"xsi:type", kStringType);
  stream.Append(u">");
  stream.AppendEncoded(contextHandle.view());
  stream.Append(u"</usid><Script");
  stream.AppendAttribute(u"xsi:type", kStringType);
  stream.Append(u">");
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
  QvDOMErrorHandlers handler(true);
  QvDomParser parser;
  CXMLSerializer serializer;
  parser.setErrorHandler(&handler);
  parser.setIncludeIgnorableWhitespace(true);
  parser.parse(ToUtf8(fileName).c_str(), false);
  stream.AppendEncoded(serializer.Serialize(parser.Document()).view());
}

// The whole document is escaped when it is written, so the script is escaped twice and the language once.
void CExecuteCommand::WriteScriptText(WideTextStream& stream, const NamedArguments& map) {
  const WideString language = map.at(argument::kScriptLanguage).Text();
  stream.AppendEncoded(u"<Scriptwell Language=\"");
  stream.AppendEncoded(language.view());
  // The escape stops at a null unit, and so does the document.
  if (language.view().find(u'\0') == std::u16string_view::npos)
    WriteCode(stream, map.at(argument::kScript).Text());
}

void CExecuteCommand::WriteCode(WideTextStream& stream, const WideString& script) {
  stream.AppendEncoded(u"\" xmlns:xsi=\"");
  stream.AppendEncoded(kXmlSchemaInstanceNamespace);
  stream.AppendEncoded(u"\" xsi:schemaLocation=\"");
  stream.AppendEncoded(kScriptNamespace);
  stream.AppendEncoded(u" ");
  stream.AppendEncoded(kScriptSchemaLocation);
  stream.AppendEncoded(u"\" xmlns=\"");
  stream.AppendEncoded(kScriptNamespace);
  stream.AppendEncoded(u"\"><Code>");
  stream.AppendTwiceEncoded(script.view());
  stream.AppendEncoded(u"</Code></Scriptwell>");
}

void CExecuteCommand::WriteNoParameters(WideTextStream& stream) {
  stream.Append(u"<parameters");
  stream.AppendAttribute(u"xsi:nil", u"true");
  stream.AppendAttribute(u"xsi:type", u"ns1:Parameter");
  stream.AppendAttribute(u"xmlns:ns1", kSofNamespace);
  stream.AppendAttribute(u"xmlns:ns2", kSoapEncodingNamespace);
  stream.AppendAttribute(u"ns2:arrayType", u"ns1:Parameter[]");
  stream.Append(u"/>");
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

// The prefixes are swapped compared with the nil form; deployed servers expect both forms.
void CExecuteCommand::WriteParametersStart(WideTextStream& stream, std::int16_t count) {
  const WideString arrayType = JoinText({u"ns2:Parameter[", DecimalText(count).view(), u"]"});
  stream.Append(u"<parameters");
  stream.AppendAttribute(u"xmlns:ns1", kSoapEncodingNamespace);
  stream.AppendAttribute(u"xmlns:ns2", kSofNamespace);
  stream.AppendAttribute(u"ns1:arrayType", arrayType.view());
  stream.Append(u">");
}

void CExecuteCommand::WriteParameter(WideTextStream& stream, IParameter* parameter,
                                     const WideString& serviceUrl, const NamedArguments& map) {
  const WireParameter wire = ReadParameter(parameter);
  const bool isFile = EqualIgnoreCase(wire.typeName.data(), kAttachedFileType);
  const WideString text = isFile ? UploadAttachedFile(serviceUrl, wire.value, map) : ValueText(wire);
  stream.Append(u"<Parameter");
  stream.AppendAttribute(u"xmlns", kServiceNamespace);
  stream.Append(u"><Name");
  stream.AppendAttribute(u"xsi:type", kStringType);
  stream.Append(u">");
  stream.AppendEncoded(wire.key.view());
  stream.Append(u"</Name>");
  if (isFile) {
    AppendTicket(stream, text);
  } else {
    AppendValue(stream, wire.typeName, text);
  }
  stream.Append(u"</Parameter>");
}

void CExecuteCommand::WriteEnvelopeTail(WideTextStream& stream) {
  stream.Append(u"</Execute></SOAP-ENV:Body></SOAP-ENV:Envelope>");
  stream.AppendNull();
}

}  // namespace qv
