#include "transfer_fixture.h"

#include <cstdlib>
#include <filesystem>

namespace qv::devservice::testing {

std::string TicketParameter(const std::string& name, const std::string& ticket) {
  return ParameterElement(name, "FileTicket", "<Id xsi:type=\"string\">" + ticket + "</Id>");
}

std::string PathIn(const std::string& url) {
  const std::size_t host = url.find("://");
  if (host == std::string::npos) return "(none)";
  const std::size_t path = url.find('/', host + 3);
  return path == std::string::npos ? "(none)" : url.substr(path);
}

std::string TicketIn(const std::string& url) {
  return url.substr(url.find('=') + 1);
}

std::string UploadHead(const std::string& path, const std::string& usid, std::size_t length) {
  return "POST " + path + " HTTP/1.1\r\nHost: localhost\r\ncache-control: no-cache\r\nusid: " + usid +
         "\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n";
}

FreshDirectory::FreshDirectory()
    : path_((std::filesystem::temp_directory_path() / "devservice-test-XXXXXX").string()) {
  if (!mkdtemp(path_.data())) throw std::runtime_error("no directory");
}

FreshDirectory::~FreshDirectory() {
  std::filesystem::remove_all(path_);
}

std::size_t FreshDirectory::CountFiles() const {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path_))
    count += entry.is_directory() ? 0 : 1;
  return count;
}

std::string TransferTest::Text(const std::string& script, const std::string& parameters) {
  const std::string value = Value(script, parameters);
  if (value.substr(0, 11) == "xsd:string|") return value.substr(11);
  ADD_FAILURE() << value;
  return "(none)";
}

RawAnswer TransferTest::Upload(const std::string& url, const std::string& content) {
  return Upload(url, content, session_);
}

RawAnswer TransferTest::Upload(const std::string& url, const std::string& content, const std::string& usid) {
  RawClient client(service_->Port());
  client.Send(UploadHead(PathIn(url), usid, content.size()) + content);
  return client.Receive();
}

std::string TransferTest::UploadNew(const std::string& content) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(Upload(url, content)), "200");
  return TicketIn(url);
}

RawAnswer TransferTest::Fetch(const std::string& url, const std::string& method) {
  return FetchAs(session_, url, method);
}

RawAnswer TransferTest::FetchAs(const std::string& usid, const std::string& url, const std::string& method) {
  RawClient client(service_->Port());
  client.Send(method + " " + PathIn(url) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + usid + "\r\n\r\n");
  return client.Receive(std::chrono::milliseconds(method == "HEAD" ? 300 : 60000));
}

std::string StatusOf(const RawAnswer& answer) {
  return answer.head.size() < 12 ? "(none)" : answer.head.substr(9, 3);
}

}  // namespace qv::devservice::testing
