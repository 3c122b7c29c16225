#include "devservice/http/connection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace qv::devservice {
namespace {

constexpr std::chrono::milliseconds kReadTime{10000};
constexpr std::chrono::milliseconds kWriteTime{10000};
constexpr std::size_t kReadBytes = 16384;
constexpr std::size_t kFlushBytes = 65536;
// How long the rest of a refused request is read and dropped.
constexpr std::chrono::milliseconds kDrainTime{5000};

bool WaitFor(socket_t socket, short events, std::chrono::milliseconds time) {
  pollfd watched{socket, events, 0};
  const auto end = std::chrono::steady_clock::now() + time;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    const int ready = poll(&watched, 1, static_cast<int>(std::max<long long>(left.count(), 0)));
    if (ready >= 0 || errno != EINTR) return ready > 0;
  }
}

}  // namespace

Connection::Connection(socket_t socket, std::chrono::milliseconds messageTime)
    : socket_(socket), messageTime_(messageTime), reading_(messageTime) {}

bool Connection::WaitForRequest(std::chrono::milliseconds time) {
  if (readAt_ < incoming_.size()) return true;
  budget_ = kReadBytes;
  return WaitFor(socket_, POLLIN, time) && Fill();
}

void Connection::BeginRequest(std::size_t bytes) {
  budget_ = bytes;
  answer_.reset();
  reading_ = MessageTime(messageTime_);
  sending_.reset();
  late_ = false;
}

const HttpAnswer* Connection::BeginDelivery() {
  if (!answer_) return nullptr;
  outgoing_.clear();
  return &*answer_;
}

bool Connection::Finish() {
  return Flush() && !close_ && budget_ > 0;
}

// Closing a socket with unread bytes resets the connection, and the client may lose the answer.
void Connection::DrainRest() const {
  if (!drains_) return;
  shutdown(socket_, SHUT_WR);
  std::array<char, kFlushBytes> dropped;
  const auto end = std::chrono::steady_clock::now() + kDrainTime;
  while (std::chrono::steady_clock::now() < end && WaitFor(socket_, POLLIN, kDrainTime)) {
    if (recv(socket_, dropped.data(), dropped.size(), MSG_DONTWAIT) <= 0) return;
  }
}

// Ends early when the client closes or the server stops, which shuts the socket down.
bool Connection::HoldStill(std::chrono::milliseconds time) {
  const bool ended = WaitFor(socket_, POLLRDHUP, time);
  sending_.reset();
  return !ended;
}

bool Connection::AwaitBytes() {
  const std::chrono::milliseconds left = reading_.Left();
  const bool ready = left.count() > 0 && is_readable();
  late_ = !ready && left < kReadTime;
  return ready;
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
  reading_.Add(incoming_.size());
  return count > 0;
}

bool Connection::is_readable() const {
  return readAt_ < incoming_.size() || WaitFor(socket_, POLLIN, std::min(kReadTime, reading_.Left()));
}
bool Connection::is_writable() const {
  return WaitFor(socket_, POLLOUT, sending_ ? std::min(kWriteTime, sending_->Left()) : kWriteTime);
}

ssize_t Connection::read(char* target, std::size_t size) {
  if (readAt_ == incoming_.size()) {
    // What was written so far is an interim answer, for which the client waits.
    if (!Flush() || !AwaitBytes() || !Fill()) return -1;
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
  return SendNow(bytes);
}

bool Connection::SendNow(std::string_view bytes) {
  if (!sending_) sending_.emplace(messageTime_);
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count =
        send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    const bool full = count < 0 && errno == EAGAIN;
    sending_->Add(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (full ? sending_->Left().count() == 0 || !is_writable() : count < 0 && errno != EINTR) {
      close_ = true;
      return false;
    }
    sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  return true;
}

// The service needs neither address.
void Connection::get_remote_ip_and_port(std::string&, int&) const {}
void Connection::get_local_ip_and_port(std::string&, int&) const {}

}  // namespace qv::devservice
