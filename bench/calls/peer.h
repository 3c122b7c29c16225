// A client under measurement, and the loop that measures it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace qv::bench {

// What a peer is asked for: an Execute at `url`, whose answer is a string (0 rows) or a table.
struct Task {
  std::string url;
  std::size_t rows = 0;
};

class Peer {
 public:
  Peer() = default;
  virtual ~Peer() = default;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  // Releases the answer of the call before and makes one call. Returns the size of what it wrote, for a peer
  // that only writes. Throws std::exception when it fails.
  virtual std::size_t Call() = 0;
  // Throws std::runtime_error when the last answer is not the right one, to the last cell. Not measured.
  virtual void Check() {}
};

using MakePeer = std::unique_ptr<Peer> (*)(const Task& task);

std::unique_ptr<Peer> MakeCurl(const Task& task);
std::unique_ptr<Peer> MakeStockTree(const Task& task);
std::unique_ptr<Peer> MakeGsoap(const Task& task);
std::unique_ptr<Peer> MakeGsoapWalk(const Task& task);
std::unique_ptr<Peer> MakeOurs(const Task& task);
std::unique_ptr<Peer> MakeOursWalk(const Task& task);
// Each of their calls walks a table that was read before.
std::unique_ptr<Peer> MakeOursWalkOnly(const Task& task);
std::unique_ptr<Peer> MakeFaceWalk(const Task& task);
std::unique_ptr<Peer> MakeFace(const Task& task);
// Each of their calls is 1,600 calls by one thread, or by eight.
std::unique_ptr<Peer> MakeOneThread(const Task& task);
std::unique_ptr<Peer> MakeEightThreads(const Task& task);
std::unique_ptr<Peer> MakeWriter(const Task& task);

// Prints the figures of the first call, the making of the peer included, and the peak memory of the process
// in kB. Then, for each number that standard input brings, the figures of so many calls. One line each: wall
// and CPU time in ns, instructions (-1 where the kernel does not count them), allocations, bytes written.
// Returns the exit code of the program.
int Measure(MakePeer make, const Task& task);

}  // namespace qv::bench
