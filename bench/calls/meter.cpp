#include "meter.h"

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <ctime>

#include "allocations.h"

namespace qv::bench {
namespace {

long long Nanoseconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

// Counts this thread and those that it starts. -1 where there is no counter, as in most virtual machines.
int OpenInstructionCounter() {
  perf_event_attr wanted{};
  wanted.size = sizeof wanted;
  wanted.type = PERF_TYPE_HARDWARE;
  wanted.config = PERF_COUNT_HW_INSTRUCTIONS;
  wanted.inherit = 1;
  wanted.exclude_kernel = 1;
  wanted.exclude_hv = 1;
  return static_cast<int>(syscall(SYS_perf_event_open, &wanted, 0, -1, -1, PERF_FLAG_FD_CLOEXEC));
}

long long ReadCounter(int counter) {
  std::uint64_t count = 0;
  return counter >= 0 && read(counter, &count, sizeof count) == sizeof count ? static_cast<long long>(count)
                                                                             : -1;
}

}  // namespace

Reading operator-(const Reading& end, const Reading& start) {
  const bool counted = start.instructions >= 0 && end.instructions >= 0;
  return {end.wall - start.wall, end.cpu - start.cpu, counted ? end.instructions - start.instructions : -1,
          end.allocations - start.allocations};
}

Meter::Meter() : counter_(OpenInstructionCounter()) {}

Meter::~Meter() {
  if (counter_ >= 0) close(counter_);
}

Reading Meter::Read() const {
  return {Nanoseconds(CLOCK_MONOTONIC), Nanoseconds(CLOCK_PROCESS_CPUTIME_ID), ReadCounter(counter_),
          Allocations()};
}

}  // namespace qv::bench
