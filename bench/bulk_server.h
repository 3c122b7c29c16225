// A server for bodies of any size, on loopback: takes what is posted and gives as many bytes as are asked
// for, as fast as the system lets it. Nothing is kept. One thread for accepting and one per connection.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace qv::bench {

// Zeros with a few other bytes in between, as the text of those and their places: "0=A 500=M 999=Z ".
std::string Marks(std::string_view bytes, std::uint64_t offset);

class BulkServer {
 public:
  // With `looks` the marks of what arrives are noted. Throws std::system_error when no port can be had.
  explicit BulkServer(bool looks);
  ~BulkServer();
  BulkServer(const BulkServer&) = delete;
  BulkServer& operator=(const BulkServer&) = delete;

  std::string Url() const { return "http://127.0.0.1:" + std::to_string(port_); }
  // Where a GET finds the file "bulk.bin": zeros with the marks A, M and Z at its start, middle and end.
  std::string FileUrl(std::uint64_t bytes) const { return Url() + "/" + std::to_string(bytes); }
  // Bodies that have arrived: their bytes in all, and their marks.
  std::uint64_t BytesTaken() const { return taken_; }
  std::string MarksTaken() const;

 private:
  void Accept();
  void Serve(int connection);
  bool WaitFor(int descriptor) const;
  // The head of the next request and what came behind it; false at the end of the connection.
  bool ReadHead(int connection, std::string* head, std::string* behind) const;
  bool TakeBody(int connection, std::uint64_t length, const std::string& behind);
  bool GiveFile(int connection, std::uint64_t length) const;
  void Note(std::string_view bytes, std::uint64_t offset);

  bool looks_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> stop_{false};
  std::atomic<std::uint64_t> taken_{0};
  mutable std::mutex mutex_;
  std::string marks_;
  std::vector<std::thread> connections_;
  std::thread acceptor_;
};

}  // namespace qv::bench
