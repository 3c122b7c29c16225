// Children: what they get of this process, and their end.
#include "face/testing/child_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace scriptwells::testing {
namespace {

std::string AllOf(const Descriptor& from) {
  std::string text;
  char bytes[256];
  for (;;) {
    const ssize_t count = read(from.Number(), bytes, sizeof bytes);
    if (count <= 0) return text;
    text.append(bytes, static_cast<std::size_t>(count));
  }
}

// A shell with this line.
class Shell : public ChildProcess {
 public:
  explicit Shell(const std::string& line, const std::string& file = "")
      : ChildProcess({"sh", "-c", line}, file) {}
};

std::string OutputOf(const std::string& line, const std::string& file = "") {
  Shell shell(line, file);
  return AllOf(shell.Output());
}

bool HasChildren() {
  return waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

std::ptrdiff_t OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator());
}

TEST(ChildProcess, HasItsStreamsAndTheFile) {
  Shell shell("echo out; echo err >&2; cat /dev/fd/3", "in the file");
  EXPECT_EQ(AllOf(shell.Output()), "out\nin the file");
  EXPECT_EQ(AllOf(shell.Errors()), "err\n");
  EXPECT_EQ(shell.End(), "exit code 0");
  const std::string large(1'000'000, 'x');
  EXPECT_EQ(OutputOf("cat /dev/fd/3", large), large);
}

TEST(ChildProcess, GetsNoOtherDescriptor) {
  const Descriptor leaking(fcntl(0, F_DUPFD, 100));
  ASSERT_GE(leaking.Number(), 100);
  const std::string path = "/proc/$$/fd/" + std::to_string(leaking.Number());
  EXPECT_EQ(OutputOf("test -e " + path + " && echo leaks; test -e /proc/$$/fd/3 && echo file"), "file\n");
}

TEST(ChildProcess, HasAProcessGroupOfItsOwnAndNoBlockedSignals) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  EXPECT_EQ(OutputOf("read -r _ _ _ _ group _ < /proc/$$/stat; test $group = $$ && echo own"), "own\n");
  EXPECT_EQ(OutputOf("sed -n 's/^SigBlk:\\t//p' /proc/self/status"), "0000000000000000\n");
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(ChildProcess, EndTellsHowItEnded) {
  Shell code("exit 6");
  AllOf(code.Output());
  EXPECT_EQ(code.End(), "exit code 6");
  EXPECT_EQ(code.End(), "");
}

TEST(ChildProcess, InputEndsWithTheObject) {
  Shell reader("trap '' TERM; echo; cat; exit 7");
  char byte = 0;
  ASSERT_EQ(read(reader.Output().Number(), &byte, 1), 1);
  EXPECT_EQ(reader.End(), "exit code 7");
}

TEST(ChildProcess, ThatGoesOnIsEndedByForce) {
  Shell deaf("trap '' TERM; echo; while :; do sleep 0.01; done");
  char byte = 0;
  ASSERT_EQ(read(deaf.Output().Number(), &byte, 1), 1);
  EXPECT_EQ(deaf.End(std::chrono::milliseconds(100)), "signal 9");
  Shell obedient("echo; exec sleep 1000");
  ASSERT_EQ(read(obedient.Output().Number(), &byte, 1), 1);
  EXPECT_EQ(obedient.End(), "signal 15");
}

TEST(ChildProcess, LeavesNothing) {
  const std::ptrdiff_t before = OpenDescriptors();
  for (int i = 0; i < 10; ++i) OutputOf("echo a");
  for (int i = 0; i < 10; ++i) EXPECT_THROW(ChildProcess({"/nonexistent/program"}, ""), std::system_error);
  EXPECT_EQ(OpenDescriptors(), before);
  EXPECT_FALSE(HasChildren());
}

TEST(ChildProcess, MayBeCollectedElsewhere) {
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  Shell shell("sleep 1000");
  EXPECT_EQ(shell.End(), "");
  static_cast<void>(std::signal(SIGCHLD, before));
  EXPECT_FALSE(HasChildren());
}

}  // namespace
}  // namespace scriptwells::testing
