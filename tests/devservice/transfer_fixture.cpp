#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

std::string WithSession(const std::string& start, const std::string& usid, const std::string& headers) {
  return Request(start, "Host: localhost\r\nusid: " + usid + "\r\n" + headers);
}

std::string LengthHeader(std::size_t length) {
  return "cache-control: no-cache\r\nContent-Length: " + std::to_string(length) + "\r\n";
}

}  // namespace

std::string TicketParameter(const std::string& name, const std::string& ticket) {
  return ParameterElement(name, "FileTicket", "<Id xsi:type=\"string\">" + ticket + "</Id>");
}

std::string OneTicket(const std::string& ticket) {
  return ArrayOf(1, TicketParameter("f", ticket));
}

std::string PathIn(const std::string& url) {
  const std::size_t host = url.find("://");
  const std::size_t path = host == std::string::npos ? host : url.find('/', host + 3);
  return path == std::string::npos ? "(none)" : url.substr(path);
}

std::string TicketIn(const std::string& url) {
  return url.substr(url.find('=') + 1);
}

std::string TransferTest::Text(const std::string& script, const std::string& parameters) {
  const std::string value = Value(script, parameters);
  if (value.substr(0, 11) == "xsd:string|") return value.substr(11);
  ADD_FAILURE() << value;
  return "(none)";
}

std::string TransferTest::FileRequest(const std::string& start, const std::string& headers) {
  return WithSession(start, Session(), headers);
}

std::string TransferTest::UploadHead(const std::string& path, std::size_t length) {
  return FileRequest("POST " + path, LengthHeader(length));
}

RawAnswer TransferTest::Upload(const std::string& url, const std::string& content) {
  return UploadAs(Session(), url, content);
}

RawAnswer TransferTest::UploadAs(const std::string& usid, const std::string& url,
                                 const std::string& content) {
  return Ask(WithSession("POST " + PathIn(url), usid, LengthHeader(content.size())) + content);
}

std::string TransferTest::UploadNew(const std::string& content) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(Upload(url, content)), "200");
  return TicketIn(url);
}

RawAnswer TransferTest::Fetch(const std::string& url, const std::string& method) {
  return FetchAs(Session(), url, method);
}

RawAnswer TransferTest::FetchAs(const std::string& usid, const std::string& url, const std::string& method) {
  RawClient client(Port());
  client.Send(WithSession(method + " " + PathIn(url), usid, ""));
  return client.Receive(std::chrono::milliseconds(method == "HEAD" ? 300 : 60000));
}

}  // namespace qv::devservice::testing
