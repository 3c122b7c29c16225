// Feeds the bytes of requests to the development service's connection, and looks at the heads that come of
// them as the service does. Nothing may crash or be undefined, and what goes into addresses is harmless.
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "devservice/files/transfer_urls.h"
#include "devservice/http/access_rule.h"
#include "devservice/http/connection.h"
#include "devservice/http/odd_forms.h"
#include "devservice/http/request_head.h"

namespace {

using namespace qv::devservice;

constexpr char kOwnHost[] = "127.0.0.1:40123";
constexpr std::size_t kLongestInput = 65536;  // the pair of sockets holds that much

void Require(bool holds) {
  if (!holds) std::abort();
}

void LookAtPath(const HttpRequest& head) {
  std::string unknown;
  const OddForms forms = ReadOddForms(head.path, unknown);
  if (IsUploadPath(head.path)) Require(!head.path.empty());
  if (const std::optional<std::string> id = PublishedIdIn(head.path)) Require(id->size() <= head.path.size());
  const TransferUrls urls = MakeTransferUrls(head, "/Quorvane/", forms.transfer);
  const std::string url = ExpandUrl(urls.file, "7");
  Require(url.find("{id}") == std::string::npos || head.path.find("{id}") != std::string::npos);
  Require(url.find_first_of(std::string("\r\n\0", 3)) == std::string::npos);
}

void Look(const httplib::Request& request, const std::string& path) {
  static const AccessRule rule({"scripts.example"});
  const HttpRequest head = MakeRequestHead(request, path, kOwnHost);
  Require(!head.host.empty() && head.host.size() <= 255);
  Require(head.host.find_first_of("/\"<>&? \r\n") == std::string::npos);
  rule.Refusal(head.hostHeader, head.origin);
  LookAtPath(head);
}

// The HTTP library's reading, on a connection as the service has it.
class Reader : public httplib::Server {
 public:
  void Read(Connection& connection) {
    connection.BeginRequest(kLongestInput);
    bool closed = false;
    set_pre_routing_handler([&connection](const httplib::Request& request, httplib::Response& response) {
      Look(request, connection.Path());
      response.status = 204;
      return HandlerResponse::Handled;
    });
    process_request(connection, false, closed, [&connection](httplib::Request& request) {
      connection.SetPath(PathOf(request.path));
      request.path = "/";
      request.ranges.clear();
    });
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Reader reader;
  if (size > kLongestInput) return 0;
  int ends[2] = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) std::abort();
  const ssize_t sent = send(ends[1], data, size, MSG_NOSIGNAL);
  shutdown(ends[1], SHUT_WR);
  if (sent == static_cast<ssize_t>(size)) {
    Connection connection(ends[0], std::chrono::milliseconds(10000));
    reader.Read(connection);
  }
  close(ends[0]);
  close(ends[1]);
  return 0;
}
