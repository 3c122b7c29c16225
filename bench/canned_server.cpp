#include "canned_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <system_error>
#include <vector>

namespace qv::bench {
namespace {

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

// Bytes of the whole request once its head has arrived, 0 before.
std::size_t RequestSize(std::string_view received) {
  const std::size_t end = received.find("\r\n\r\n");
  if (end == std::string_view::npos) return 0;
  const std::size_t length = received.find("Content-Length: ");
  const std::size_t body = length < end ? std::strtoull(received.data() + length + 16, nullptr, 10) : 0;
  return end + 4 + body;
}

}  // namespace

CannedServer::CannedServer(const std::string& body)
    : answer_("HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " +
              std::to_string(body.size()) + "\r\n\r\n" + body) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (listener_ < 0 || bind(listener_, generic, size) != 0 || listen(listener_, 8) != 0) Fail("listening");
  if (getsockname(listener_, generic, &size) != 0) Fail("asking for the port");
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { ServeConnections(); });
}

CannedServer::~CannedServer() {
  stop_ = true;
  thread_.join();
  close(listener_);
}

// All connections are served by one thread: a benchmark has one open request at a time.
void CannedServer::ServeConnections() {
  std::vector<pollfd> sockets{{listener_, POLLIN, 0}};
  while (!stop_) {
    if (poll(sockets.data(), sockets.size(), 50) <= 0) continue;
    for (std::size_t i = 1; i < sockets.size(); ++i) {
      if (sockets[i].revents == 0 || ServeRequest(sockets[i].fd)) continue;
      close(sockets[i].fd);
      sockets[i].fd = -1;
    }
    if (sockets[0].revents != 0) {
      const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      const int on = 1;
      setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
      sockets.push_back({connection, POLLIN, 0});
    }
    sockets.erase(std::remove_if(sockets.begin(), sockets.end(), [](const pollfd& s) { return s.fd < 0; }),
                  sockets.end());
  }
  for (std::size_t i = 1; i < sockets.size(); ++i) close(sockets[i].fd);
}

bool CannedServer::ServeRequest(int connection) {
  static thread_local std::vector<char> buffer(std::size_t{4} << 20);
  std::size_t received = 0;
  std::size_t wanted = 0;
  while (wanted == 0 || received < wanted) {
    const ssize_t got = recv(connection, buffer.data() + received, buffer.size() - received, 0);
    if (got <= 0) return false;
    received += static_cast<std::size_t>(got);
    if (wanted == 0) wanted = RequestSize({buffer.data(), received});
  }
  return send(connection, answer_.data(), answer_.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(answer_.size());
}

}  // namespace qv::bench
