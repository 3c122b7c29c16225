#include "tests/tools/transfer_server.h"

namespace qv::cli::testing {

namespace {

std::string Envelope(const std::string& body) {
  return test::RawAnswerText("<soap:Envelope><soap:Body>" + body + "</soap:Body></soap:Envelope>");
}

}  // namespace

std::string SessionOpened() {
  return Envelope(
      "<CreateUserSessionResponse><CreateUserSessionResult>u1</CreateUserSessionResult>"
      "</CreateUserSessionResponse>");
}

std::string SessionClosed() {
  return Envelope("<CloseUserSessionResponse/>");
}

std::string ScriptAnswered(const std::string& type, const std::string& text) {
  return Envelope("<ExecuteResponse><r xsi:type=\"" + type + "\">" + text + "</r></ExecuteResponse>");
}

std::string FileAnswer(const std::string& name, const std::string& body) {
  return test::RawAnswerText(body, "Content-Disposition: attachment; filename=" + name + "\r\n");
}

std::string StatusAnswer(const std::string& status, const std::string& body) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string FileStart(const std::string& name, std::size_t length, const std::string& start) {
  return "HTTP/1.1 200 OK\r\nContent-Disposition: attachment; filename=" + name +
         "\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" + start;
}

void TransferServer::Answer(const std::vector<std::string>& answers) {
  test::RawScript script;
  for (const std::string& answer : answers) script.ReadRequest().Write(answer);
  server_.Expect(script);
}

void TransferServer::AnswerCalls(const std::vector<std::string>& answers) {
  std::vector<std::string> all{SessionOpened()};
  all.insert(all.end(), answers.begin(), answers.end());
  all.push_back(SessionClosed());
  Answer(all);
}

Tool TransferServer::Joe(const std::string& line, const Words& more) const {
  return Tool(line, more).Add({"--user", "joe", "--server", Origin()}).Set("SCRIPTWELLS_PASSWORD", "x");
}

Tool TransferServer::Adopted(const std::string& options) const {
  return Tool("download " + Url() + " " + folder_.Path() + " --usid abc " + options);
}

}  // namespace qv::cli::testing
