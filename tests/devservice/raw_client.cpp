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

void RawClient::Send(const std::string& bytes) {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) return;  // The service may close early; what it answered is still to be read.
    sent += static_cast<std::size_t>(count);
  }
}

void RawClient::EndSending() {
  shutdown(socket_, SHUT_WR);
}

DrainedAnswer RawClient::Drain() {
  DrainedAnswer answer;
  std::string piece;
  std::size_t announced = 0;
  char buffer[65536];
  pollfd watched{socket_, POLLIN, 0};
  while (answer.head.empty() || answer.bytes < announced) {
    const ssize_t count = poll(&watched, 1, 60000) > 0 ? recv(socket_, buffer, sizeof buffer, 0) : 0;
    if (count <= 0) break;
    piece.append(buffer, static_cast<std::size_t>(count));
    if (answer.head.empty()) {
      const std::size_t end = piece.find("\r\n\r\n");
      if (end == std::string::npos) continue;
      answer.head = piece.substr(0, end + 4);
      announced = std::strtoul(HeaderOf(answer.head, "Content-Length").c_str(), nullptr, 10);
      piece.erase(0, end + 4);
    }
    for (const char byte : piece) answer.asPattern &= byte == PatternByte(answer.bytes++);
    piece.clear();
  }
  return answer;
}

RawAnswer RawClient::Receive(std::chrono::milliseconds time) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  RawAnswer answer;
  std::string bytes;
  for (;;) {
    const std::size_t end = bytes.find("\r\n\r\n");
    if (end != std::string::npos) {
      answer.head = bytes.substr(0, end + 4);
      answer.body = bytes.substr(end + 4);
      const std::string length = HeaderOf(answer.head, "Content-Length");
      if (length != "(none)" && answer.body.size() >= std::strtoul(length.c_str(), nullptr, 10))
        return answer;
    }
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now())
            .count();
    pollfd watched{socket_, POLLIN, 0};
    if (poll(&watched, 1, static_cast<int>(std::max<long long>(left, 0))) <= 0) {
      answer.timedOut = true;
      return answer;
    }
    char buffer[65536];
    const ssize_t count = recv(socket_, buffer, sizeof buffer, 0);
    answer.closed = count <= 0;
    if (answer.closed) return answer;
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
}

std::string HeaderOf(const std::string& head, const std::string& name) {
  const std::size_t start = head.find("\r\n" + name + ": ");
  if (start == std::string::npos) return "(none)";
  const std::size_t value = start + name.size() + 4;
  return head.substr(value, head.find("\r\n", value) - value);
}

}  // namespace qv::devservice::testing
