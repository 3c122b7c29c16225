#include "tests/tools/transfer_server.h"

#include <filesystem>
#include <fstream>
#include <iterator>

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

std::string FileStart(const std::string& name, std::size_t length, const std::string& start) {
  return "HTTP/1.1 200 OK\r\nContent-Disposition: attachment; filename=" + name +
         "\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" + start;
}

std::string StatusAnswer(const std::string& status) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: 0\r\n\r\n";
}

void TransferServer::Answer(const std::vector<std::string>& answers) {
  test::RawScript script;
  for (const std::string& answer : answers) script.ReadRequest().Write(answer);
  server_.Expect(script);
}

Words TransferServer::Adopted(const Words& more) const {
  Words words{"download", Url(), folder_.Path(), "--usid", "abc"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

Words TransferServer::AsJoe(const std::string& command, const Words& more) const {
  Words words{command, "--server", Origin(), "--user", "joe"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

std::string TransferServer::Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::ptrdiff_t TransferServer::Count() const {
  return std::distance(std::filesystem::directory_iterator(folder_.Path()),
                       std::filesystem::directory_iterator());
}

}  // namespace qv::cli::testing
