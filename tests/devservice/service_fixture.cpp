#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

constexpr char kServiceSpace[] = "http://quorvane.example/dev/ns/ivarnel/scriptwells";

std::string Envelope(const std::string& method, const std::string& content) {
  return "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"><SOAP-ENV:Body><" +
         method + " xmlns=\"" + kServiceSpace + "\">" + content + "</" + method +
         "></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

std::string TextElement(const std::string& name, const std::string& content) {
  return "<" + name + " xsi:type=\"xsd:string\">" + content + "</" + name + ">";
}

}  // namespace

ServiceOptions TestOptions() {
  ServiceOptions options;
  options.workerCommand = {SCRIPT_WORKER_PATH};
  return options;
}

std::string Request(const std::string& start, const std::string& headers) {
  return start + " HTTP/1.1\r\n" + headers + "\r\n";
}

std::string PostRequest(const std::string& prefix, const std::string& action, const std::string& body,
                        const std::string& headers) {
  return Request("POST " + prefix + kServicePath,
                 headers + "Content-Type: text/xml\r\nSOAPAction: " + kServiceSpace + "#" + action +
                     "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n") +
         body;
}

std::string CreateEnvelope(const std::string& connectionString) {
  return Envelope("CreateUserSession", TextElement("ConnectionString", Escape(connectionString)));
}

std::string CloseEnvelope(const std::string& sessionId) {
  return Envelope("CloseUserSession", TextElement("usid", Escape(sessionId)));
}

std::string DocumentEnvelope(const std::string& sessionId, const std::string& escapedDocument,
                             const std::string& parameters) {
  return Envelope("Execute", TextElement("usid", Escape(sessionId)) + TextElement("Script", escapedDocument) +
                                 parameters);
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
  return DocumentEnvelope(sessionId, Escape(document), parameters);
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
  return std::string("<Parameter xmlns=\"") + kServiceSpace + "\">" + TextElement("Name", name) +
         "<Value xsi:type=\"" + type + "\">" + text + "</Value></Parameter>";
}

std::string OneParameter(const std::string& type, const std::string& text) {
  return type.empty() ? NilParameters() : ArrayOf(1, ParameterElement("p", type, text));
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

std::string Between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t from = text.find(start);
  if (from == std::string::npos) return "(none)";
  const std::size_t to = text.find(end, from + start.size());
  if (to == std::string::npos) return "(none)";
  return text.substr(from + start.size(), to - from - start.size());
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
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

::testing::AssertionResult Contains(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "\"" << part << "\" is missing in:\n" << text.substr(0, 5000);
}

void ServiceTest::StartWith(const ServiceOptions& options) {
  session_.clear();
  service_ = std::make_unique<Service>(options);
  service_->Start();
}

void ServiceTest::StartWith(const std::function<void(ServiceOptions&)>& change) {
  ServiceOptions options = TestOptions();
  change(options);
  StartWith(options);
}

void ServiceTest::StopAtOnce() {
  const auto start = std::chrono::steady_clock::now();
  service_->Stop();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

int ServiceTest::Port() {
  if (!service_) StartWith(TestOptions());
  return service_->Port();
}

const std::string& ServiceTest::Session() {
  if (session_.empty()) session_ = Login();
  return session_;
}

std::string ServiceTest::Login() {
  const std::string body = Post("", "CreateUserSession", CreateEnvelope("Username=joe;Password=x;")).body;
  std::string id =
      Between(body, "<CreateUserSessionResult xsi:type=\"xsd:string\">", "</CreateUserSessionResult>");
  EXPECT_NE(id, "(none)") << body;
  return id;
}

RawAnswer ServiceTest::Ask(const std::string& request) {
  RawClient client(Port());
  client.Send(request);
  return client.Receive();
}

RawAnswer ServiceTest::Post(const std::string& prefix, const std::string& action, const std::string& body) {
  return Ask(PostRequest(prefix, action, body));
}

RawAnswer ServiceTest::Get(const std::string& path) {
  return Ask(Request("GET " + path));
}

RawAnswer ServiceTest::Run(const std::string& prefix, const std::string& script,
                           const std::string& parameters) {
  return Post(prefix, "Execute", ExecuteEnvelope(Session(), script, parameters));
}

std::string ServiceTest::Execute(const std::string& script, const std::string& parameters) {
  return Run("", script, parameters).body;
}

std::string ServiceTest::Value(const std::string& script, const std::string& parameters) {
  const std::string body = Execute(script, parameters);
  std::string value = ValueIn(body);
  EXPECT_NE(value, "(no value)") << body;
  return value;
}

std::string ServiceTest::Fault(const std::string& script, const std::string& parameters) {
  const std::string body = Execute(script, parameters);
  std::string fault = FaultIn(body);
  EXPECT_NE(fault, "(no fault)") << body;
  return fault;
}

std::string ServiceTest::FaultCode(const std::string& script, const std::string& parameters) {
  const std::string fault = Fault(script, parameters);
  return fault.substr(0, fault.find('|'));
}

void ServiceTest::ExpectValues(ScriptRows rows) {
  for (const ScriptRow& row : rows)
    EXPECT_EQ(Value(row.script, OneParameter(row.type, row.text)), row.outcome)
        << row.script << " " << row.text;
}

void ServiceTest::ExpectFaults(ScriptRows rows) {
  for (const ScriptRow& row : rows)
    EXPECT_EQ(Fault(row.script, OneParameter(row.type, row.text)), row.outcome)
        << row.script << " " << row.text;
}

void ServiceTest::ExpectFaultStart(const std::string& start, std::initializer_list<std::string> scripts) {
  for (const std::string& script : scripts) EXPECT_EQ(Fault(script).substr(0, start.size()), start) << script;
}

nlohmann::json ServiceTest::Stats() {
  return nlohmann::json::parse(Get("/stats").body);
}

}  // namespace qv::devservice::testing
