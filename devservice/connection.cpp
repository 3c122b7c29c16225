#include "devservice/connection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qv::devservice {
namespace {

constexpr std::chrono::milliseconds kReadTime{10000};
constexpr std::chrono::milliseconds kWriteTime{10000};
constexpr std::size_t kReadBytes = 16384;
constexpr std::size_t kFlushBytes = 65536;
constexpr std::size_t kChunkBytes = 64;

bool WaitFor(socket_t socket, short events, std::chrono::milliseconds time) {
  pollfd watched{socket, events, 0};
  const auto end = std::chrono::steady_clock::now() + time;
  for (;;) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    const int ready = poll(&watched, 1, static_cast<int>(std::max<long long>(left.count(), 0)));
    if (ready >= 0 || errno != EINTR) return ready > 0;
  }
}

struct Reason {
  int status;
  const char* phrase;
};

constexpr Reason kReasons[] = {
    {200, "OK"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {413, "Payload Too Large"},
    {415, "Unsupported Media Type"},
    {500, "Internal Server Error"},
};

const char* ReasonPhrase(int status) {
  for (const Reason& reason : kReasons) {
    if (reason.status == status) return reason.phrase;
  }
  return "Unknown";
}

std::string MakeHead(const HttpAnswer& answer, const std::string& framing) {
  return "HTTP/1.1 " + std::to_string(answer.status) + " " + ReasonPhrase(answer.status) +
         "\r\nContent-Type: " + answer.contentType + "\r\n" + framing + "\r\n";
}

std::string LengthLine(const HttpAnswer& answer) {
  return "Content-Length: " + std::to_string(answer.body.size()) + "\r\n";
}

std::string Chunks(const std::string& body) {
  std::string out;
  for (std::size_t at = 0; at < body.size(); at += kChunkBytes) {
    const std::string piece = body.substr(at, kChunkBytes);
    char length[16];
    const int digits = std::snprintf(length, sizeof length, "%zx", piece.size());
    out.append(length, static_cast<std::size_t>(digits)).append("\r\n").append(piece).append("\r\n");
  }
  return out + "0\r\n\r\n";
}

}  // namespace

Connection::Connection(socket_t socket) : socket_(socket) {}

bool Connection::WaitForRequest(std::chrono::milliseconds time) {
  if (readAt_ < incoming_.size()) return true;
  budget_ = kReadBytes;
  return WaitFor(socket_, POLLIN, time) && Fill();
}

void Connection::BeginRequest(std::size_t bytes) {
  budget_ = bytes;
  answer_.reset();
}

bool Connection::Finish(std::chrono::milliseconds stallTime) {
  if (answer_) {
    outgoing_.clear();
    Deliver(*answer_, stallTime);
  }
  return Flush() && !close_ && budget_ > 0;
}

void Connection::Deliver(const HttpAnswer& answer, std::chrono::milliseconds stallTime) {
  const std::string half = answer.body.substr(0, answer.body.size() / 2);
  close_ = close_ || (answer.delivery != Delivery::kPlain && answer.delivery != Delivery::kChunked);
  const std::string keep = close_ ? "Connection: close\r\n" : "Connection: Keep-Alive\r\n";
  if (answer.delayed) HoldStill(stallTime);
  switch (answer.delivery) {
    case Delivery::kPlain:
      Send(MakeHead(answer, keep + LengthLine(answer)) + answer.body);
      break;
    case Delivery::kCloseDelimited:
      Send(MakeHead(answer, keep) + answer.body);
      break;
    case Delivery::kChunked:
      Send(MakeHead(answer, keep + "Transfer-Encoding: chunked\r\n") + Chunks(answer.body));
      break;
    case Delivery::kCut:
      Send(MakeHead(answer, keep + LengthLine(answer)) + half);
      break;
    case Delivery::kStall:
      Send(MakeHead(answer, keep + LengthLine(answer)) + half);
      HoldStill(stallTime);
      break;
    case Delivery::kDrop:
      break;
  }
}

// Ends early when the client closes or the server stops, which shuts the socket down.
void Connection::HoldStill(std::chrono::milliseconds time) const {
  WaitFor(socket_, POLLRDHUP, time);
}

bool Connection::Fill() {
  if (budget_ == 0) return false;
  incoming_.resize(std::min(kReadBytes, budget_));
  readAt_ = 0;
  ssize_t count = -1;
  do {
    count = recv(socket_, incoming_.data(), incoming_.size(), 0);
  } while (count < 0 && errno == EINTR);
  incoming_.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  return count > 0;
}

bool Connection::is_readable() const {
  return readAt_ < incoming_.size() || WaitFor(socket_, POLLIN, kReadTime);
}
bool Connection::is_writable() const {
  return WaitFor(socket_, POLLOUT, kWriteTime);
}

ssize_t Connection::read(char* target, std::size_t size) {
  if (readAt_ == incoming_.size()) {
    // What was written so far is an interim answer that the client waits for.
    if (!Flush() || !is_readable() || !Fill()) return -1;
  }
  const std::size_t count = std::min({size, incoming_.size() - readAt_, budget_});
  std::memcpy(target, incoming_.data() + readAt_, count);
  readAt_ += count;
  budget_ -= count;
  return count > 0 ? static_cast<ssize_t>(count) : -1;
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
  if (answer_) return static_cast<ssize_t>(size);
  outgoing_.append(bytes, size);
  if (outgoing_.size() >= kFlushBytes && !Flush()) return -1;
  return static_cast<ssize_t>(size);
}

bool Connection::Flush() {
  std::string bytes;
  bytes.swap(outgoing_);
  return Send(bytes);
}

bool Connection::Send(const std::string& bytes) {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count =
        send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    const bool full = count < 0 && errno == EAGAIN;
    if (full ? !is_writable() : count < 0 && errno != EINTR) {
      close_ = true;
      return false;
    }
    sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  return true;
}

// Neither address is of use to the service.
void Connection::get_remote_ip_and_port(std::string&, int&) const {}
void Connection::get_local_ip_and_port(std::string&, int&) const {}

}  // namespace qv::devservice
