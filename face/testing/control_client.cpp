#include "face/testing/control_client.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <charconv>
#include <string_view>
#include <system_error>

#include "face/testing/descriptor.h"
#include "scriptwells/error.h"

namespace scriptwells::testing {
namespace {

constexpr std::string_view kStart = "http://127.0.0.1:";
constexpr std::string_view kLengthHeader = "\r\nContent-Length: ";
constexpr timeval kSilence{30, 0};

[[noreturn]] void ThrowBroken(Phase phase, int error) {
  const std::string what = std::system_category().message(error);
  ErrorDetails details;
  details.transport = what;
  const std::string message = "the development service does not answer: " + what;
  if (error == EAGAIN) throw TimeoutError(phase, message, details);
  throw ConnectionError(phase, message, details);
}

[[noreturn]] void ThrowCut() {
  throw ConnectionError(Phase::kReceive, "the answer of the development service broke off");
}

Descriptor Connect(std::uint16_t port) {
  Descriptor connection(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!connection.IsOpen()) ThrowBroken(Phase::kConnect, errno);
  for (const int direction : {SO_RCVTIMEO, SO_SNDTIMEO})
    setsockopt(connection.Number(), SOL_SOCKET, direction, &kSilence, sizeof kSilence);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(connection.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    ThrowBroken(Phase::kConnect, errno);
  return connection;
}

void Send(const Descriptor& connection, const std::string& bytes) {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = send(connection.Number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno != EINTR) ThrowBroken(Phase::kSend, errno);
    if (count > 0) sent += static_cast<std::size_t>(count);
  }
}

// Up to the end of the connection.
std::string Receive(const Descriptor& connection) {
  std::string answer;
  for (;;) {
    char bytes[16384];
    const ssize_t count = recv(connection.Number(), bytes, sizeof bytes, 0);
    if (count == 0) return answer;
    if (count < 0 && errno != EINTR) ThrowBroken(answer.empty() ? Phase::kWait : Phase::kReceive, errno);
    if (count > 0) answer.append(bytes, static_cast<std::size_t>(count));
  }
}

// The number at the start of the text; -1 without one.
template <typename Number>
Number NumberAt(std::string_view text, std::size_t place) {
  Number number = -1;
  if (place < text.size()) std::from_chars(text.data() + place, text.data() + text.size(), number);
  return number;
}

// The body of a successful answer.
std::string BodyOf(const std::string& answer) {
  const std::size_t end = answer.find("\r\n\r\n");
  if (end == std::string::npos) ThrowCut();
  const std::string_view head = std::string_view(answer).substr(0, end);
  std::string body = answer.substr(end + 4);
  const std::size_t length = head.find(kLengthHeader);
  if (length == std::string_view::npos ||
      NumberAt<std::int64_t>(head, length + kLengthHeader.size()) != static_cast<std::int64_t>(body.size()))
    ThrowCut();
  ErrorDetails details;
  details.status = NumberAt<int>(head, std::string_view("HTTP/1.1 ").size());
  if (details.status == 200) return body;
  while (!body.empty() && (body.back() == '\n' || body.back() == '.')) body.pop_back();
  throw Error(Phase::kAnswer, "the development service refused the request: " + body, details);
}

}  // namespace

ControlClient::ControlClient(const std::string& url) {
  const std::size_t path = url.find('/', kStart.size());
  const int port = NumberAt<int>(url, kStart.size());
  if (url.compare(0, kStart.size(), kStart) != 0 || path == std::string::npos || port < 1 || port > 65535)
    throw Error(Phase::kAddress, "not an address of a control interface: " + url);
  port_ = static_cast<std::uint16_t>(port);
  path_ = url.substr(path);
}

std::string ControlClient::Ask(const std::string& method, const std::string& page,
                               const std::string& body) const {
  const Descriptor connection = Connect(port_);
  Send(connection, method + " " + path_ + page + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port_) +
                       "\r\nConnection: close\r\nContent-Type: application/json\r\nContent-Length: " +
                       std::to_string(body.size()) + "\r\n\r\n" + body);
  return BodyOf(Receive(connection));
}

}  // namespace scriptwells::testing
