#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <thread>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::Process;
using testing::RunTool;
using testing::ServeProcess;

TEST(Serve, AddressIsPrintedAtOnce) {
  Process process({"serve"});
  const std::string url = process.ReadLine();
  EXPECT_EQ(url.rfind("http://127.0.0.1:", 0), 0u) << url;
  process.Signal(SIGTERM);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err.rfind("scriptwells: note: scripts and downloads work; ", 0), 0u) << outcome.err;
}

TEST(Serve, AddressThatCannotBeWrittenEndsIt) {
  Process process({"serve"}, {}, "/dev/full");
  const Outcome outcome = process.Finish();
  const std::string last = "\nscriptwells: cannot write the address to standard output\n";
  ASSERT_GT(outcome.err.size(), last.size());
  EXPECT_EQ(outcome.err.substr(outcome.err.size() - last.size()), last);
  EXPECT_EQ(outcome.exit, 6);
}

TEST(Serve, SignalsStopItCleanly) {
  for (const int signal : {SIGINT, SIGTERM}) {
    ServeProcess service;
    service.Itself().Signal(signal);
    EXPECT_EQ(service.Itself().Finish().exit, 0);
  }
}

TEST(Serve, RunningScriptDoesNotKeepItFromStopping) {
  ServeProcess service({"--script-timeout", "60"});
  Process client({"run", "--server", service.Url(), "--user", "joe", "-e", "while (true) {}"});
  for (int i = 0; i < 400 && service.Count("Execute") != 1; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  ASSERT_EQ(service.Count("Execute"), 1);
  const auto before = std::chrono::steady_clock::now();
  service.Itself().Signal(SIGTERM);
  EXPECT_EQ(service.Itself().Finish().exit, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4));
}

TEST(Serve, ScriptTimeoutIsTheServices) {
  ServeProcess service({"--script-timeout", "0.2"});
  const Outcome outcome =
      RunTool({"run", "--server", service.Url(), "--user", "joe", "-e", "while (true) {}"});
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(outcome.err.rfind("scriptwells: script fault 0x800403F5 (1013): ", 0), 0u) << outcome.err;
}

TEST(Serve, TakenPortIsToldAndLeaves) {
  ServeProcess first;
  const std::string port = first.Url().substr(first.Url().rfind(':') + 1);
  const Outcome outcome = RunTool({"serve", "--port", port});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err.rfind("scriptwells: cannot start the service: ", 0), 0u) << outcome.err;
  EXPECT_EQ(outcome.exit, 6);
}

TEST(Serve, MissingUsersFileIsToldAndLeaves) {
  const Outcome outcome = RunTool({"serve", "--users-file", "/nonexistent/users"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "scriptwells: cannot read the users file /nonexistent/users: No such file or directory\n");
  EXPECT_EQ(outcome.exit, 6);
}

}  // namespace
}  // namespace qv::cli
