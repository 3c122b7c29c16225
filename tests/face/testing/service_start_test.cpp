// The start of the service program, and of programs that are none.
#include "face/testing/service_start.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "failure_of.h"
#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"

namespace scriptwells::testing {
namespace {

class ServiceStart : public ::testing::Test {
 protected:
  // The message after the start of a shell script in place of the service.
  std::string FailureWith(const std::string& script,
                          std::chrono::milliseconds time = std::chrono::seconds(60)) {
    ServiceOptions options;
    options.program = folder_.Write("program", "#!/bin/sh\n" + script + "\n");
    chmod(options.program.c_str(), 0700);
    const std::string message = FailureOf(Phase::kLocalFile, [&] { StartService(options, time); });
    const std::string start = "the service program " + options.program.string() + " ";
    EXPECT_EQ(message.substr(0, start.size()), start);
    return message.substr(std::min(message.size(), start.size()));
  }

  qv::TemporaryDirectory folder_;
};

TEST_F(ServiceStart, ProgramThatEndsIsQuoted) {
  EXPECT_EQ(FailureWith("echo 'no port' >&2; exit 6"), "ended before it was ready (exit code 6): no port");
  EXPECT_EQ(FailureWith("kill -9 $$"), "ended before it was ready (signal 9)");
  EXPECT_EQ(FailureWith("exit 0"), "ended before it was ready (exit code 0)");
  const std::string lines =
      FailureWith("i=0; while [ $i -lt 5000 ]; do echo 0123456789 >&2; i=$((i + 1)); done");
  EXPECT_EQ(lines.size(), std::string("ended before it was ready (exit code 0): ").size() + 2003);
}

TEST_F(ServiceStart, ProgramThatWritesSomethingElseIsQuoted) {
  EXPECT_EQ(FailureWith("echo hello; exec sleep 1000"), "wrote something else than its address, \"hello\"");
  EXPECT_EQ(FailureWith("echo why >&2; echo '{\"url\":1}'; exec sleep 1000").substr(0, 56),
            "wrote something else than its address, \"{\"url\":1}\": why");
  EXPECT_EQ(FailureWith("echo '{\"url\":\"u\",\"home\":null,\"control\":\"c\"}'").substr(0, 38),
            "wrote something else than its address,");
  EXPECT_EQ(FailureWith("exec tr '\\0' x < /dev/zero").substr(0, 45),
            "wrote something else than its address, \"xxxxx");
}

TEST_F(ServiceStart, SilentProgramIsEnded) {
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(FailureWith("echo busy >&2; exec sleep 1000", std::chrono::milliseconds(500)),
            "was not ready in time: busy");
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5));
}

TEST_F(ServiceStart, GetsItsOptionsAndUsers) {
  ServiceOptions options;
  options.program = folder_.Write("program", "#!/bin/sh\necho \"$@\" >&2; cat /dev/fd/3 >&2\n");
  chmod(options.program.c_str(), 0700);
  options.users = {{"joe", "a:b"}, {"ann", ""}};
  const std::string message = FailureOf(Phase::kLocalFile, [&options] { StartService(options); });
  EXPECT_EQ(message.substr(message.find("): ")),
            "): serve --json --control --until-eof --users-file /dev/fd/3\njoe:a:b\nann:");
}

TEST_F(ServiceStart, UsersThatTheProgramCannotReadAreRefused) {
  for (const Credentials& user : {Credentials{"", "x"}, Credentials{"#joe", "x"}, Credentials{"a:b", "x"},
                                  Credentials{"a\nb", "x"}, Credentials{"joe", "x\r"}}) {
    ServiceOptions options;
    options.users = {user};
    EXPECT_EQ(FailureOf(Phase::kLocalFile, [&options] { StartService(options); }).substr(0, 31),
              "the name of a service's user is");
  }
}

TEST_F(ServiceStart, ProgramIsThatOfTheOptionsTheVariableOrThePath) {
  const auto missing = [] { return FailureOf(Phase::kLocalFile, [] { StartService({}); }); };
  const qv::EnvironmentVariable variable("SCRIPTWELLS_PROGRAM", nullptr);
  const qv::EnvironmentVariable path("PATH", folder_.Path().c_str());
  EXPECT_EQ(missing(),
            "the service program scriptwells is not installed; the variable SCRIPTWELLS_PROGRAM may name "
            "another one");
  variable.Set("");
  EXPECT_EQ(missing().substr(0, 48), "the service program scriptwells is not installed");
  variable.Set("/nonexistent/s");
  EXPECT_EQ(missing().substr(0, 51), "the service program /nonexistent/s is not installed");
  variable.Set(folder_.Path().c_str());
  EXPECT_EQ(missing(), "cannot start the service program " + folder_.Path() + ": Permission denied");
  ServiceOptions options;
  options.program = "/nonexistent/o";
  EXPECT_EQ(FailureOf(Phase::kLocalFile, [&options] { StartService(options); }).substr(0, 51),
            "the service program /nonexistent/o is not installed");
}

TEST_F(ServiceStart, FindsTheServiceInThePath) {
  std::filesystem::create_symlink(SERVICE_PROGRAM, folder_.Path("scriptwells"));
  const qv::EnvironmentVariable variable("SCRIPTWELLS_PROGRAM", nullptr);
  const qv::EnvironmentVariable path("PATH", folder_.Path().c_str());
  const StartedService service = StartService({});
  EXPECT_EQ(service.control.compare(0, service.url.size() + 9, service.url + "/control/"), 0);
}

}  // namespace
}  // namespace scriptwells::testing
