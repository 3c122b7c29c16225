#include "torture/process_start.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "torture/gate.h"
#include "torture/scene.h"

namespace qv::torture {
namespace {

constexpr unsigned kHangSeconds = 60;
constexpr int kWrongCall = 9;

[[noreturn]] void RunAgain(long at, bool onwards) {
  setenv("QV_REFUSE_MEMORY_AT", std::to_string(at).c_str(), 1);
  if (onwards) setenv("QV_REFUSE_MEMORY_ONWARDS", "1", 1);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDERR_FILENO);
  alarm(kHangSeconds);
  execl("/proc/self/exe", "torture", kStartedOption, nullptr);
  std::_Exit(kWrongCall);
}

// The exit code, or minus the signal; what was printed goes to *said.
int Start(long at, bool onwards, std::string* said) {
  int ends[2] = {};
  if (pipe2(ends, O_CLOEXEC) != 0) return kWrongCall;
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    RunAgain(at, onwards);
  }
  close(ends[1]);
  char piece[64];
  for (ssize_t got = 0; (got = read(ends[0], piece, sizeof piece)) > 0;)
    said->append(piece, static_cast<std::size_t>(got));
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

int TortureMode(bool onwards, long points, long stride) {
  const auto begin = std::chrono::steady_clock::now();
  int starts = 0;
  int failures = 0;
  std::map<int, int> ends;
  for (long at = 1; at <= points; at += stride, ++starts) {
    std::string said;
    const int end = Start(at, onwards, &said);
    ++ends[end];
    if (end >= 0 && end != kWrongCall) continue;
    if (++failures <= 5)
      std::printf("    start %s at %ld: ends with %d\n", onwards ? "from there on" : "once", at, end);
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  std::printf("%-12s %-7s %-20s %-14s %6d of %6ld points  %5d failures %7.1f s", "start", "", "memory",
              onwards ? "from there on" : "once", starts, points, failures, seconds.count());
  for (const auto& [end, count] : ends) std::printf("  %d x %d", count, end);
  std::printf("\n");
  return failures;
}

}  // namespace

int ShowThatItWorks(long passed) {
  std::printf("%ld", passed);
  return Flows().front().prepare()->Call() ? 0 : kWrongCall;
}

int TortureProcessStart(long stride) {
  std::string said;
  if (Start(kNever, false, &said) != 0) {
    std::printf("    start: fails with nothing refused\n");
    return 1;
  }
  const long points = std::strtol(said.c_str(), nullptr, 10);
  return TortureMode(false, points, stride) + TortureMode(true, points, stride);
}

}  // namespace qv::torture
