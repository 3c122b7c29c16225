#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

// What stands between two texts, "(none)" when one is missing.
std::string Between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t from = text.find(start);
  if (from == std::string::npos) return "(none)";
  const std::size_t to = text.find(end, from + start.size());
  if (to == std::string::npos) return "(none)";
  return text.substr(from + start.size(), to - from - start.size());
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

std::string Envelope(const std::string& content) {
  return "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"><SOAP-ENV:Body>" +
         content + "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

}  // namespace

ServiceOptions TestOptions() {
  ServiceOptions options;
  options.workerCommand = {SCRIPT_WORKER_PATH};
  return options;
}

std::string PostRequest(const std::string& prefix, const std::string& action, const std::string& body) {
  return "POST " + prefix + "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\n" +
         "Host: 127.0.0.1:80\r\nContent-Type: text/xml\r\n" +
         "SOAPAction: http://quorvane.example/dev/ns/ivarnel/scriptwells#" + action + "\r\n" +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string CreateEnvelope(const std::string& connectionString) {
  return Envelope(
      "<CreateUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
      "<ConnectionString xsi:type=\"xsd:string\">" +
      Escape(connectionString) + "</ConnectionString></CreateUserSession>");
}

std::string CloseEnvelope(const std::string& sessionId) {
  return Envelope(
      "<CloseUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
      "<usid xsi:type=\"xsd:string\">" +
      Escape(sessionId) + "</usid></CloseUserSession>");
}

std::string ExecuteEnvelope(const std::string& sessionId, const std::string& script,
                            const std::string& parameters, const std::string& language) {
  const std::string document =
      "<Scriptwell Language=\"" + language +
      "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "xsi:schemaLocation=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0 "
      "http://quorvane.example/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd\" "
      "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>" +
      Escape(script) + "</Code></Scriptwell>";
  return Envelope(
      "<Execute xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
      "<usid xsi:type=\"xsd:string\">" +
      Escape(sessionId) + "</usid><Script xsi:type=\"xsd:string\">" + Escape(document) + "</Script>" +
      parameters + "</Execute>");
}

std::string NilParameters() {
  return "<parameters xsi:nil=\"true\" xsi:type=\"ns1:Parameter\" "
         "xmlns:ns1=\"http://quorvane.example/dev/ns/SOF/2.0\" "
         "xmlns:ns2=\"http://schemas.xmlsoap.org/soap/encoding/\" ns2:arrayType=\"ns1:Parameter[]\"/>";
}

std::string ArrayOf(int count, const std::string& elements) {
  return "<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
         "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" ns1:arrayType=\"ns2:Parameter[" +
         std::to_string(count) + "]\">" + elements + "</parameters>";
}

std::string ParameterElement(const std::string& name, const std::string& type, const std::string& text) {
  return "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\"><Name "
         "xsi:type=\"xsd:string\">" +
         name + "</Name><Value xsi:type=\"" + type + "\">" + text + "</Value></Parameter>";
}

std::string Escape(const std::string& text) {
  std::string result = text;
  ReplaceAll(result, "&", "&amp;");
  ReplaceAll(result, "<", "&lt;");
  ReplaceAll(result, ">", "&gt;");
  ReplaceAll(result, "\"", "&quot;");
  return result;
}

std::string Unescape(const std::string& text) {
  std::string result = text;
  ReplaceAll(result, "&lt;", "<");
  ReplaceAll(result, "&gt;", ">");
  ReplaceAll(result, "&quot;", "\"");
  ReplaceAll(result, "&amp;", "&");
  return result;
}

std::string FaultIn(const std::string& body) {
  if (body.find("<soap:Fault>") == std::string::npos) return "(no fault)";
  const std::string text = Unescape(Between(body, "<faultstring>", "</faultstring>"));
  const std::string object = Between(text, "<ErrorObject>", "</ErrorObject>");
  return Between(object, "<errorCode>", "</errorCode>") + "|" +
         Unescape(Between(object, "<description>", "</description>")) + "|" +
         Between(object, "<source>", "</source>");
}

std::string ValueIn(const std::string& body) {
  const std::string element = Between(body, "<ExecuteResult xsi:type=\"", "</ExecuteResult>");
  const std::size_t quote = element.find("\">");
  if (quote == std::string::npos) return "(no value)";
  return element.substr(0, quote) + "|" + Unescape(element.substr(quote + 2));
}

void ServiceTest::StartWith(const ServiceOptions& options) {
  service_ = std::make_unique<Service>(options);
  service_->Start();
}

RawAnswer ServiceTest::Post(const std::string& prefix, const std::string& action, const std::string& body) {
  RawClient client(service_->Port());
  client.Send(PostRequest(prefix, action, body));
  return client.Receive();
}

RawAnswer ServiceTest::Get(const std::string& path) {
  RawClient client(service_->Port());
  client.Send("GET " + path + " HTTP/1.1\r\nHost: localhost\r\n\r\n");
  return client.Receive();
}

std::string ServiceTest::Login() {
  const std::string body = Post("", "CreateUserSession", CreateEnvelope("Username=joe;Password=x;")).body;
  return Between(body, "<CreateUserSessionResult xsi:type=\"xsd:string\">", "</CreateUserSessionResult>");
}

std::string ServiceTest::Execute(const std::string& script, const std::string& parameters) {
  if (!service_) StartWith(TestOptions());
  if (session_.empty()) session_ = Login();
  return Post("", "Execute", ExecuteEnvelope(session_, script, parameters)).body;
}

std::string ServiceTest::Value(const std::string& script, const std::string& parameters) {
  const std::string body = Execute(script, parameters);
  const std::string value = ValueIn(body);
  EXPECT_NE(value, "(no value)") << body;
  return value;
}

std::string ServiceTest::Fault(const std::string& script, const std::string& parameters) {
  const std::string body = Execute(script, parameters);
  const std::string fault = FaultIn(body);
  EXPECT_NE(fault, "(no fault)") << body;
  return fault;
}

nlohmann::json ServiceTest::Stats() {
  return nlohmann::json::parse(Get("/stats").body);
}

}  // namespace qv::devservice::testing
