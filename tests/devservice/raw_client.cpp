#include "raw_client.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace qv::devservice::testing {

RawClient::RawClient(int port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return;
  close(socket_);
  throw std::runtime_error("no connection");
}

RawClient::~RawClient() {
  close(socket_);
}

void RawClient::Send(const std::string& bytes) const {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) return;  // The service may close early; its answer is still to be read.
    sent += static_cast<std::size_t>(count);
  }
}

void RawClient::EndSending() const {
  shutdown(socket_, SHUT_WR);
}

RawAnswer RawClient::Receive(std::chrono::milliseconds time) {
  std::string body;
  RawAnswer answer = Receive(time, [&body](std::string_view bytes) { body += bytes; });
  answer.body = body;
  return answer;
}

RawAnswer RawClient::Receive(std::chrono::milliseconds time,
                             const std::function<void(std::string_view)>& take) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  RawAnswer answer;
  std::string bytes;
  std::size_t taken = 0;
  std::size_t announced = std::string::npos;
  while (answer.head.empty() || taken < announced) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd watched{socket_, POLLIN, 0};
    answer.timedOut = poll(&watched, 1, static_cast<int>(std::max<long long>(left.count(), 0))) <= 0;
    char buffer[65536];
    const ssize_t count = answer.timedOut ? 0 : recv(socket_, buffer, sizeof buffer, 0);
    answer.closed = !answer.timedOut && count <= 0;
    if (count <= 0) break;
    bytes.append(buffer, static_cast<std::size_t>(count));
    if (answer.head.empty()) {
      const std::size_t end = bytes.find("\r\n\r\n");
      if (end == std::string::npos) continue;
      answer.head = bytes.substr(0, end + 4);
      bytes.erase(0, end + 4);
      const std::string length = HeaderOf(answer.head, "Content-Length");
      if (length != "(none)") announced = std::stoul(length);
    }
    take(bytes);
    taken += bytes.size();
    bytes.clear();
  }
  return answer;
}

std::string HeaderOf(const std::string& head, const std::string& name) {
  const std::size_t start = head.find("\r\n" + name + ": ");
  if (start == std::string::npos) return "(none)";
  const std::size_t value = start + name.size() + 4;
  return head.substr(value, head.find("\r\n", value) - value);
}

std::string StatusOf(const RawAnswer& answer) {
  return answer.head.compare(0, 9, "HTTP/1.1 ") == 0 ? answer.head.substr(9, 3) : "(none)";
}

}  // namespace qv::devservice::testing
