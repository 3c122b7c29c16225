#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>

#include "meter.h"
#include "peer.h"

namespace qv::bench {
namespace {

// The most memory that this process has had, in kB.
long PeakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmHWM:", 0) == 0) return std::stol(line.substr(6));
  return -1;
}

void Print(const Reading& reading, std::size_t bytes) {
  std::printf("%lld %lld %lld %lld %zu", reading.wall, reading.cpu, reading.instructions, reading.allocations,
              bytes);
}

void EndLine() {
  std::printf("\n");
  static_cast<void>(std::fflush(stdout));
}

std::unique_ptr<Peer> MeasureFirst(MakePeer make, const Task& task, const Meter& meter) {
  const Reading start = meter.Read();
  std::unique_ptr<Peer> peer = make(task);
  const std::size_t bytes = peer->Call();
  Print(meter.Read() - start, bytes);
  std::printf(" %ld", PeakMemory());
  peer->Check();
  EndLine();
  return peer;
}

void MeasureCalls(Peer& peer, long calls, const Meter& meter) {
  std::size_t bytes = 0;
  const Reading start = meter.Read();
  for (long i = 0; i < calls; ++i) bytes += peer.Call();
  const Reading end = meter.Read();
  peer.Check();
  Print(end - start, bytes);
  EndLine();
}

}  // namespace

int Measure(MakePeer make, const Task& task) {
  try {
    const Meter meter;
    const std::unique_ptr<Peer> peer = MeasureFirst(make, task, meter);
    for (long calls = 0; std::cin >> calls;) MeasureCalls(*peer, calls, meter);
    return 0;
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "%s\n", error.what()));
    return 1;
  }
}

}  // namespace qv::bench
