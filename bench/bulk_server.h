// A server for bodies of any size: takes what is posted and sends as many bytes as are asked for, as fast as
// the system lets it. Nothing is kept.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "fixtures/loopback_server.h"

namespace qv::bench {

// Zeros with a few other bytes in between, as the text of those and their places: "0=A 500=M 999=Z ".
std::string Marks(std::string_view bytes, std::uint64_t offset);

class BulkServer {
 public:
  // With `looks` the marks of what arrives are noted.
  explicit BulkServer(bool looks);

  std::uint16_t Port() const { return server_.Port(); }
  std::string Url() const { return server_.Url(); }
  // Where a GET finds the file "bulk.bin": zeros with the marks A, M and Z at its start, middle and end.
  std::string FileUrl(std::uint64_t bytes) const { return Url() + "/" + std::to_string(bytes); }
  // Bodies that have arrived: their bytes in all, and their marks.
  std::uint64_t BytesTaken() const { return taken_; }
  std::string MarksTaken() const;

 private:
  void Serve(test::LoopbackConnection& connection);
  // `start` is the part of the body that arrived with the head.
  bool TakeBody(test::LoopbackConnection& connection, std::uint64_t length, const std::string& start);
  static bool GiveFile(test::LoopbackConnection& connection, std::uint64_t length);
  void Note(std::string_view bytes, std::uint64_t offset);

  bool looks_;
  std::atomic<std::uint64_t> taken_{0};
  mutable std::mutex mutex_;
  std::string marks_;
  test::LoopbackServer server_;  // last, since its threads use all the others
};

}  // namespace qv::bench
