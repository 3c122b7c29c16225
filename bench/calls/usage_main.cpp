// qv_bench_usage PROGRAM [ARGUMENT...]: runs a program with its output dropped. Prints the CPU time in µs of
// it and of all processes that it has started, and the peak memory in kB of the largest of them. Returns the
// program's exit code. This program is small, since a process starts with the peak of the one that forks it.
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace {

long long Microseconds(const timeval& time) {
  return time.tv_sec * 1'000'000LL + time.tv_usec;
}

[[noreturn]] void Become(char** command) {
  const int nothing = open("/dev/null", O_RDWR);
  if (nothing < 0 || dup2(nothing, STDIN_FILENO) < 0 || dup2(nothing, STDOUT_FILENO) < 0) _exit(127);
  execv(command[0], command);
  _exit(127);
}

}  // namespace

int main(int argc, char** argv) {
  // Processes that outlive their parents become children of this one, and are counted too.
  if (argc < 2 || prctl(PR_SET_CHILD_SUBREAPER, 1) != 0) return 127;
  const pid_t program = fork();
  if (program == 0) Become(argv + 1);
  int code = 127;
  int status = 0;
  for (pid_t ended = wait(&status); ended > 0; ended = wait(&status))
    if (ended == program && WIFEXITED(status)) code = WEXITSTATUS(status);
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  std::printf("%lld %ld\n", Microseconds(usage.ru_utime) + Microseconds(usage.ru_stime), usage.ru_maxrss);
  return code;
}
