#include "raw_client.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace qv::devservice::testing {
namespace {

// Moves a whole head from the front of `bytes` to `head`; false while it is not whole.
bool TakeHead(std::string& bytes, std::string& head) {
  const std::size_t end = bytes.find("\r\n\r\n");
  if (end == std::string::npos) return false;
  head = bytes.substr(0, end + 4);
  bytes.erase(0, end + 4);
  return true;
}

std::size_t AnnouncedLength(const std::string& head) {
  return std::strtoul(HeaderOf(head, "Content-Length").c_str(), nullptr, 10);
}

}  // namespace

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
    if (count <= 0) return;  // The service may close early; its answer is still to be read.
    sent += static_cast<std::size_t>(count);
  }
}

void RawClient::EndSending() {
  shutdown(socket_, SHUT_WR);
}

bool RawClient::ReadPiece(std::chrono::milliseconds time, std::string& bytes, bool& closed) {
  pollfd watched{socket_, POLLIN, 0};
  if (poll(&watched, 1, static_cast<int>(std::max<long long>(time.count(), 0))) <= 0) return false;
  char buffer[65536];
  const ssize_t count = recv(socket_, buffer, sizeof buffer, 0);
  closed = count <= 0;
  if (!closed) bytes.append(buffer, static_cast<std::size_t>(count));
  return !closed;
}

DrainedAnswer RawClient::Drain() {
  DrainedAnswer answer;
  std::string bytes;
  bool closed = false;
  while (answer.head.empty() || answer.bytes < AnnouncedLength(answer.head)) {
    if (!ReadPiece(std::chrono::minutes(1), bytes, closed)) break;
    if (answer.head.empty() && !TakeHead(bytes, answer.head)) continue;
    for (const char byte : bytes) answer.asPattern &= byte == PatternByte(answer.bytes++);
    bytes.clear();
  }
  return answer;
}

RawAnswer RawClient::Receive(std::chrono::milliseconds time) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  RawAnswer answer;
  std::string bytes;
  for (;;) {
    if (answer.head.empty()) TakeHead(bytes, answer.head);
    if (!answer.head.empty()) {
      answer.body += bytes;
      bytes.clear();
      const bool announced = HeaderOf(answer.head, "Content-Length") != "(none)";
      if (announced && answer.body.size() >= AnnouncedLength(answer.head)) return answer;
    }
    const auto left = deadline - std::chrono::steady_clock::now();
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(left);
    if (ReadPiece(rest, bytes, answer.closed)) continue;
    answer.timedOut = !answer.closed;
    return answer;
  }
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
