#include "devservice/soap/soap_answer.h"

#include "devservice/soap/namespaces.h"
#include "devservice/soap/table_xml.h"
#include "devservice/values/text.h"
#include "devservice/values/text_scanner.h"
#include "devservice/values/value_types.h"

namespace qv::devservice {
namespace {

constexpr char kHtmlPage[] =
    "<!DOCTYPE html>\n<html><head><title>Not found</title></head>\n"
    "<body><h1>404 Not Found</h1><p>There is nothing here.<br></p></body></html>\n";

struct CharsetRow {
  Charset charset;
  const char* name;
};

constexpr CharsetRow kCharsets[] = {
    {Charset::kUtf8, "utf-8"},
    {Charset::kLatin1, "iso-8859-1"},
    {Charset::kUtf16, "utf-16"},
};

const char* CharsetName(Charset charset) {
  for (const CharsetRow& row : kCharsets) {
    if (row.charset == charset) return row.name;
  }
  return "utf-8";
}

std::string Attribute(const char* name, std::string_view value) {
  return std::string(" ") + name + "=\"" + EscapeXml(value) + "\"";
}

std::string Element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string Envelope(const std::string& body, const OddForms& forms) {
  std::string xml = std::string(R"(<?xml version="1.0" encoding=")") + CharsetName(forms.charset) + "\"?>";
  xml += "<soap:Envelope" + Attribute("xmlns:soap", kSoapEnvelope) + Attribute("xmlns:xsi", kSchemaInstance) +
         Attribute("xmlns:xsd", kSchema) + "><soap:Body>";
  xml += (forms.leadingSpace ? "\r\n  " : "") + body;
  // The end tag of the body becomes a start tag that nothing ends.
  xml += forms.spoiled ? "<xsoap:Body>" : "</soap:Body>";
  return xml + "</soap:Envelope>";
}

std::string Encode(const std::string& xml, Charset charset) {
  switch (charset) {
    case Charset::kLatin1:
      return EncodeLatin1(xml);
    case Charset::kUtf16:
      return EncodeUtf16(xml);
    case Charset::kUtf8:
      break;
  }
  return xml;
}

// What all answers have in common. The forms that replace the answer come last.
HttpAnswer Finish(int status, const std::string& body, const OddForms& forms) {
  HttpAnswer answer;
  answer.delivery = forms.delivery;
  answer.delayed = forms.delayed;
  answer.silence = forms.silence;
  answer.status = forms.html ? 404 : status;
  answer.contentType = forms.html ? "text/html; charset=utf-8"
                                  : std::string("text/xml; charset=") + CharsetName(forms.charset);
  answer.body = forms.html ? kHtmlPage : Encode(Envelope(body, forms), forms.charset);
  if (forms.empty) answer.body.clear();
  return answer;
}

const char* AnswerType(const ScriptResult& result, const OddForms& forms) {
  if (forms.value) return forms.value->type;
  if (result.kind == ResultKind::kTable) return forms.table.type;
  const ValueType* type = result.kind == ResultKind::kValue ? FindValueType(result.type) : nullptr;
  return type ? type->answerType : "xsd:string";
}

std::string TypedElement(const std::string& name, const char* type, std::string_view text) {
  return "<" + name + Attribute("xsi:type", type) + ">" + EscapeXml(text) + "</" + name + ">";
}

std::string ValueElement(const std::string& name, const ScriptResult& result, const char* type) {
  if (result.kind == ResultKind::kNothing) return "";
  if (result.kind == ResultKind::kNull) return "<" + name + " xsi:null=\"true\"/>";
  return TypedElement(name, type, result.text);
}

std::string ExecuteResult(const std::string& name, const ScriptResult& result, const char* type,
                          const Namespaces& spaces, const OddForms& forms) {
  if (forms.value) return TypedElement(name, type, forms.value->text);
  if (result.kind == ResultKind::kTable) return WriteTable(name, result.table, spaces, forms.table);
  return ValueElement(name, result, type);
}

}  // namespace

HttpAnswer WriteAnswer(Action action, const ScriptResult& result, const Namespaces& spaces,
                       const OddForms& forms) {
  const std::string method = ActionName(action);
  const std::string element = (forms.prefixedAnswer ? "NS2:" : "") + method + "Response";
  std::string declarations = Attribute(forms.prefixedAnswer ? "xmlns:NS2" : "xmlns", spaces.service);
  std::string content;
  if (action == Action::kExecute) {
    const char* type = AnswerType(result, forms);
    if (StartsWith(type, "sof:")) declarations += Attribute("xmlns:sof", spaces.sof);
    content = ExecuteResult(method + "Result", result, type, spaces, forms);
  } else if (action == Action::kCreateUserSession) {
    content = ValueElement(method + "Result", result, "xsd:string");
  }
  return Finish(200, "<" + element + declarations + ">" + content + "</" + element + ">", forms);
}

HttpAnswer WriteFault(const FaultContent& fault, const OddForms& forms) {
  // Readers look for the error object inside the text of the fault string, so it is escaped twice.
  const std::string object =
      Element("ErrorObject", Element("errorCode", std::to_string(fault.code)) +
                                 Element("description", EscapeXml(MakeCarriable(fault.description))) +
                                 Element("source", EscapeXml(MakeCarriable(fault.source))));
  const std::string text = "The server could not carry out the request. " + object;
  const std::string content = Element("faultcode", fault.clientsFault ? "soap:Client" : "soap:Server") +
                              Element("faultstring", EscapeXml(text));
  return Finish(forms.faultStatus500 ? 500 : 200, Element("soap:Fault", content), forms);
}

}  // namespace qv::devservice
