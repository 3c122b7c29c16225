#include "bulk_server.h"

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
#include <system_error>

namespace qv::bench {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;

const std::string& Zeros() {
  static const std::string zeros(kPiece, '\0');
  return zeros;
}

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

bool SendAll(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

// The number behind `name`, 0 without it.
std::uint64_t NumberBehind(const std::string& head, const std::string& name) {
  const std::size_t place = head.find(name);
  return place == std::string::npos ? 0 : std::strtoull(head.c_str() + place + name.size(), nullptr, 10);
}

}  // namespace

std::string Marks(std::string_view bytes, std::uint64_t offset) {
  std::string marks;
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, kPiece);
    if (std::memcmp(piece.data(), Zeros().data(), piece.size()) != 0)
      for (std::size_t i = 0; i < piece.size(); ++i)
        if (piece[i] != '\0') marks += std::to_string(offset + i) + "=" + piece[i] + " ";
    offset += piece.size();
    bytes.remove_prefix(piece.size());
  }
  return marks;
}

BulkServer::BulkServer(bool looks) : looks_(looks) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (listener_ < 0 || bind(listener_, generic, size) != 0 || listen(listener_, 8) != 0) Fail("listening");
  if (getsockname(listener_, generic, &size) != 0) Fail("asking for the port");
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { Accept(); });
}

BulkServer::~BulkServer() {
  stop_ = true;
  acceptor_.join();
  for (std::thread& connection : connections_) connection.join();
  close(listener_);
}

std::string BulkServer::MarksTaken() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return marks_;
}

// False when the server ends.
bool BulkServer::WaitFor(int descriptor) const {
  pollfd entry{descriptor, POLLIN, 0};
  while (!stop_)
    if (poll(&entry, 1, 50) > 0) return true;
  return false;
}

void BulkServer::Accept() {
  while (WaitFor(listener_)) {
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection >= 0) connections_.emplace_back([this, connection] { Serve(connection); });
  }
}

void BulkServer::Serve(int connection) {
  const int on = 1;
  setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  std::string head;
  std::string behind;
  bool open = true;
  while (open && ReadHead(connection, &head, &behind)) {
    const bool isGet = head.compare(0, 5, "GET /") == 0;
    open = isGet ? GiveFile(connection, NumberBehind(head, "GET /"))
                 : TakeBody(connection, NumberBehind(head, "Content-Length: "), behind);
  }
  close(connection);
}

bool BulkServer::ReadHead(int connection, std::string* head, std::string* behind) const {
  head->clear();
  std::size_t end = std::string::npos;
  while (end == std::string::npos) {
    char bytes[4096];
    const ssize_t got = WaitFor(connection) ? recv(connection, bytes, sizeof bytes, 0) : 0;
    if (got <= 0) return false;
    head->append(bytes, static_cast<std::size_t>(got));
    end = head->find("\r\n\r\n");
  }
  *behind = head->substr(end + 4);
  head->resize(end + 4);
  return true;
}

// Bytes that nobody looks at are thrown away by the system, without a copy.
bool BulkServer::TakeBody(int connection, std::uint64_t length, const std::string& behind) {
  std::uint64_t done = behind.size();
  if (looks_) Note(behind, 0);
  std::vector<char> bytes(kPiece);
  while (done < length) {
    const std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(length - done, kPiece));
    const ssize_t got =
        WaitFor(connection) ? recv(connection, bytes.data(), want, looks_ ? 0 : MSG_TRUNC) : 0;
    if (got <= 0) return false;
    if (looks_) Note({bytes.data(), static_cast<std::size_t>(got)}, done);
    done += static_cast<std::uint64_t>(got);
  }
  taken_ += done;
  return SendAll(connection, "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
}

bool BulkServer::GiveFile(int connection, std::uint64_t length) const {
  if (!SendAll(connection,
               "HTTP/1.1 200 OK\r\nContent-Disposition: attachment; filename=bulk.bin\r\nContent-Length: " +
                   std::to_string(length) + "\r\n\r\n"))
    return false;
  const std::uint64_t middle = length / 2;
  std::uint64_t done = 0;
  const auto zerosUpTo = [&](std::uint64_t end) {
    for (; done < end; done += std::min<std::uint64_t>(end - done, kPiece))
      if (!SendAll(connection,
                   std::string_view(Zeros()).substr(0, std::min<std::uint64_t>(end - done, kPiece))))
        return false;
    return true;
  };
  const auto mark = [&](std::uint64_t place, const char* byte) {
    if (done > place || place >= length) return true;
    if (!zerosUpTo(place) || !SendAll(connection, byte)) return false;
    ++done;
    return true;
  };
  return mark(0, "A") && mark(middle, "M") && mark(length - 1, "Z");
}

void BulkServer::Note(std::string_view bytes, std::uint64_t offset) {
  const std::lock_guard<std::mutex> lock(mutex_);
  marks_ += Marks(bytes, offset);
}

}  // namespace qv::bench
