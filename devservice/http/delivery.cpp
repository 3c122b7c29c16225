#include "devservice/http/delivery.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>

namespace qv::devservice {
namespace {

constexpr std::size_t kChunkBytes = 64;
constexpr std::size_t kPieceBytes = 65536;
constexpr std::size_t kDrops = 50;  // of a dripping answer
constexpr std::chrono::milliseconds kDropPause{20};
constexpr int kNoContent = 204;  // Has no body, and no length.
constexpr std::chrono::milliseconds kStreamPause{100};
constexpr int kPausesPerBeat = 50;
constexpr char kSurplus[] = "................";

struct Reason {
  int status;
  const char* phrase;
};

constexpr Reason kReasons[] = {
    {200, "OK"},
    {204, "No Content"},
    {302, "Found"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {408, "Request Timeout"},
    {411, "Length Required"},
    {413, "Payload Too Large"},
    {415, "Unsupported Media Type"},
    {500, "Internal Server Error"},
    {503, "Service Unavailable"},
    {507, "Insufficient Storage"},
};

const char* ReasonPhrase(int status) {
  for (const Reason& reason : kReasons) {
    if (reason.status == status) return reason.phrase;
  }
  return "Unknown";
}

// The bytes of a body, from memory or from a file.
class BodySource {
 public:
  BodySource(const HttpAnswer& answer, std::atomic<std::uint64_t>& fileBytes)
      : answer_(answer), fileBytes_(fileBytes) {
    if (answer.file) descriptor_ = open(answer.file->Path().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  }
  ~BodySource() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  BodySource(const BodySource&) = delete;
  BodySource& operator=(const BodySource&) = delete;

  bool IsReadable() const { return !answer_.file || descriptor_ >= 0; }
  std::uint64_t Size() const { return answer_.file ? answer_.file->Size() : answer_.body.size(); }

  // Sends the head and this many bytes of the body; false when it could not send all of them.
  bool Send(Connection& connection, const std::string& head, std::uint64_t count) const {
    if (!answer_.file) return connection.SendNow(head + answer_.body.substr(0, count));
    return connection.SendNow(head) && SendFile(connection, count);
  }

 private:
  bool SendFile(Connection& connection, std::uint64_t count) const {
    std::array<char, kPieceBytes> piece;
    while (count > 0) {
      const ssize_t got = read(descriptor_, piece.data(), std::min<std::uint64_t>(piece.size(), count));
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) return false;
      const auto bytes = static_cast<std::size_t>(got);
      fileBytes_ += bytes;
      if (!connection.SendNow({piece.data(), bytes})) return false;
      count -= bytes;
    }
    return true;
  }

  const HttpAnswer& answer_;
  std::atomic<std::uint64_t>& fileBytes_;
  int descriptor_ = -1;
};

std::string FramingOf(const HttpAnswer& answer, std::uint64_t size) {
  if (answer.status == kNoContent || answer.delivery == Delivery::kCloseDelimited) return "";
  if (answer.delivery == Delivery::kChunked) return "Transfer-Encoding: chunked\r\n";
  return "Content-Length: " + std::to_string(size) + "\r\n";
}

std::string MakeHead(const HttpAnswer& answer, bool closes, const std::string& framing) {
  return "HTTP/1.1 " + std::to_string(answer.status) + " " + ReasonPhrase(answer.status) +
         "\r\nContent-Type: " + answer.contentType + "\r\n" + answer.headers +
         (closes ? "Connection: close\r\n" : "Connection: Keep-Alive\r\n") + framing + "\r\n";
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

// How many bytes of a body of this size are sent.
std::uint64_t PortionOf(Delivery delivery, std::uint64_t size) {
  if (delivery == Delivery::kCut || delivery == Delivery::kStall) return size / 2;
  if (delivery == Delivery::kShort) return size - std::min<std::uint64_t>(size, 1);
  return size;
}

bool SendInDrops(Connection& connection, std::string_view bytes) {
  const std::size_t size = bytes.size() / kDrops + 1;
  for (; !bytes.empty(); bytes.remove_prefix(std::min(size, bytes.size()))) {
    if (!connection.SendNow(bytes.substr(0, size))) return false;
    connection.HoldStill(kDropPause);
  }
  return true;
}

// Sends events (https://html.spec.whatwg.org/#server-sent-events) until the connection ends. A comment now
// and then finds out whether a client that did not close its connection is still there. Always false: nothing
// may follow.
bool SendStream(Connection& connection, const std::function<std::string()>& next) {
  for (int pauses = 0;;) {
    const std::string piece = next();
    const bool beats = piece.empty() && ++pauses % kPausesPerBeat == 0;
    if (!connection.SendNow(beats ? ":\n\n" : piece)) return false;
    if (!connection.HoldStill(piece.empty() ? kStreamPause : std::chrono::milliseconds(0))) return false;
  }
}

// Sends head and body; false when it could not send all of both.
bool SendAnswer(Connection& connection, const HttpAnswer& answer, const BodySource& source) {
  const std::string framing = FramingOf(answer, source.Size());
  const std::string head = MakeHead(answer, connection.Closes(), framing);
  if (answer.headOnly) return connection.SendNow(head);
  if (answer.delivery == Delivery::kChunked) return connection.SendNow(head + Chunks(answer.body));
  if (answer.stream) return connection.SendNow(head) && SendStream(connection, answer.stream);
  if (answer.delivery == Delivery::kDrip) return SendInDrops(connection, head + answer.body);
  if (!source.Send(connection, head, PortionOf(answer.delivery, source.Size()))) return false;
  return answer.delivery != Delivery::kLong || connection.SendNow(kSurplus);
}

}  // namespace

void Deliver(Connection& connection, const HttpAnswer& answer, std::chrono::milliseconds stallTime,
             std::atomic<std::uint64_t>& fileBytes) {
  if (answer.delivery != Delivery::kPlain && answer.delivery != Delivery::kChunked)
    connection.CloseAfterwards();
  if (answer.delayed) connection.HoldStill(stallTime);
  if (answer.silence.count() > 0) connection.HoldStill(answer.silence);
  if (answer.delivery == Delivery::kDrop) return;
  const BodySource source(answer, fileBytes);
  if (!source.IsReadable() || !SendAnswer(connection, answer, source)) return connection.CloseAfterwards();
  if (answer.delivery == Delivery::kStall) connection.HoldStill(stallTime);
}

}  // namespace qv::devservice
