#include "bulk_server.h"

#include <sys/socket.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace qv::bench {
namespace {

using test::LoopbackConnection;

constexpr std::size_t kPiece = std::size_t{1} << 20;

const std::string& Zeros() {
  static const std::string zeros(kPiece, '\0');
  return zeros;
}

// The number after `name`, 0 without it.
std::uint64_t NumberAfter(const std::string& head, const std::string& name) {
  const std::size_t place = head.find(name);
  return place == std::string::npos ? 0 : std::strtoull(head.c_str() + place + name.size(), nullptr, 10);
}

// The head of the next request and what came after it; false at the end of the connection.
bool ReadHead(const LoopbackConnection& connection, std::string* head, std::string* rest) {
  head->clear();
  std::size_t end = std::string::npos;
  while (end == std::string::npos) {
    if (!connection.Read(head)) return false;
    end = head->find("\r\n\r\n");
  }
  *rest = head->substr(end + 4);
  head->resize(end + 4);
  return true;
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

BulkServer::BulkServer(bool looks)
    : looks_(looks), server_([this] { return [this](LoopbackConnection& c) { Serve(c); }; }) {}

std::string BulkServer::MarksTaken() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return marks_;
}

void BulkServer::Serve(LoopbackConnection& connection) {
  std::string head;
  std::string rest;
  bool open = true;
  while (open && ReadHead(connection, &head, &rest)) {
    const bool isGet = head.compare(0, 5, "GET /") == 0;
    open = isGet ? GiveFile(connection, NumberAfter(head, "GET /"))
                 : TakeBody(connection, NumberAfter(head, "Content-Length: "), rest);
  }
}

// Bytes that nobody looks at are thrown away by the system, without a copy.
bool BulkServer::TakeBody(LoopbackConnection& connection, std::uint64_t length, const std::string& start) {
  std::uint64_t done = start.size();
  if (looks_) Note(start, 0);
  std::vector<char> bytes(kPiece);
  while (done < length) {
    if (!connection.WaitReadable()) return false;
    const std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(length - done, kPiece));
    const ssize_t got = recv(connection.Socket(), bytes.data(), want, looks_ ? 0 : MSG_TRUNC);
    if (got <= 0) return false;
    if (looks_) Note({bytes.data(), static_cast<std::size_t>(got)}, done);
    done += static_cast<std::uint64_t>(got);
  }
  taken_ += done;
  return connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
}

bool BulkServer::GiveFile(LoopbackConnection& connection, std::uint64_t length) {
  if (!connection.Write(
          "HTTP/1.1 200 OK\r\nContent-Disposition: attachment; filename=bulk.bin\r\nContent-Length: " +
          std::to_string(length) + "\r\n\r\n"))
    return false;
  const std::uint64_t middle = length / 2;
  std::uint64_t done = 0;
  const auto zerosUpTo = [&](std::uint64_t end) {
    for (std::uint64_t size = 0; done < end; done += size) {
      size = std::min<std::uint64_t>(end - done, kPiece);
      if (!connection.Write(std::string_view(Zeros()).substr(0, size))) return false;
    }
    return true;
  };
  const auto mark = [&](std::uint64_t place, const char* byte) {
    if (done > place || place >= length) return true;
    if (!zerosUpTo(place) || !connection.Write(byte)) return false;
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
