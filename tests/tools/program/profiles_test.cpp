// Profiles of commands that call: against a service that knows two users.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

constexpr char kSecret[] = "canary77";

class ProfiledRun : public ::testing::Test {
 protected:
  Tool Command(const std::string& line, const Words& more = {}) const {
    return Tool(line, more).Set("XDG_CONFIG_HOME", folder_.Path());
  }
  // The profile "work" with these lines, and the user joe of the service.
  void WriteProfile(const std::string& lines) const {
    folder_.Write("scriptwells/config.toml",
                  "[profile.work]\nserver = \"" + service_.Url() + "\"\nuser = \"joe\"\n" + lines);
  }
  std::string PasswordFile(mode_t mode) const {
    std::string path = folder_.Write("pw", std::string(kSecret) + "\nmore\n");
    ::chmod(path.c_str(), mode);
    return path;
  }
  static void ExpectNoSecret(const Outcome& outcome) {
    EXPECT_FALSE(Holds(outcome.out + outcome.err, kSecret)) << outcome.command << outcome.out << outcome.err;
  }

  TemporaryDirectory folder_;
  ServeProcess service_{"--users-file " + folder_.Write("users", std::string("joe:") + kSecret + "\nann:\n")};
};

TEST_F(ProfiledRun, PasswordComesFromACommandOrAFile) {
  WriteProfile("password-command = \"echo canary77; echo more\"\noutput = \"json\"\n");
  Command("run -e '\"in\"' --profile work").Succeeds("{\"type\":\"string\",\"value\":\"in\",\"tag\":8}\n");
  WriteProfile("password-file = \"" + PasswordFile(0600) + "\"\n");
  Command("--profile work run -e '\"in\"'").Succeeds("in\n");
  Command("run -e '\"in\"'").Set("SCRIPTWELLS_PROFILE", "work").Succeeds("in\n");
  Command("run -e '\"in\"' --server " + service_.Url() + " --user joe --password-command",
          {"printf canary77"})
      .Succeeds("in\n");
}

TEST_F(ProfiledRun, EveryCommandThatCallsTakesAProfile) {
  WriteProfile("password-command = \"echo canary77\"\n");
  const Outcome open = Command("session open --profile work").Run();
  EXPECT_EQ(open.exit, 0) << open.err;
  const std::string usid = open.out.substr(0, open.out.size() - 1);
  const Outcome url = Command(R"(run -e 'publish("a.txt", "text")' --profile work --usid )" + usid).Run();
  EXPECT_EQ(url.exit, 0) << url.err;
  Command("download --profile work --usid " + usid, {url.out.substr(0, url.out.size() - 1), folder_.Path()})
      .Succeeds(folder_.Path("a.txt\n"));
  Command("session close --profile work --usid " + usid).Succeeds("");
}

TEST_F(ProfiledRun, SharedPasswordFileIsRefused) {
  for (const mode_t mode : {0640U, 0604U, 0660U}) {
    const std::string path = PasswordFile(mode);
    WriteProfile("password-file = \"" + path + "\"\n");
    Command("run -e 1 --profile work")
        .Fails(6, "the password file " + path + " can be used by others; change that with chmod 600");
  }
  Command("run -e 1 --user joe --server " + service_.Url() + " --password-file " + PasswordFile(0644))
      .Succeeds("1\n");
}

TEST_F(ProfiledRun, PasswordIsInNoOutput) {
  folder_.Write("fails.sh", "echo canary77\nexit 3\n");
  const std::string lines[] = {"password-command = \"cat " + PasswordFile(0600) + "\"\n",
                               "password-file = \"" + PasswordFile(0600) + "\"\n",
                               "password-command = \"sh " + folder_.Path("fails.sh") + "\"\n"};
  for (const std::string& line : lines) {
    WriteProfile(line);
    for (const char* command :
         {"run -e 1 --profile work --trace -", "run -e 1 --profile work --json", "config show --profile work",
          "config show --profile work --json", "config profiles", "run -e 'throw 1' --profile work",
          "run -e 1 --profile work --timeout 0.001", "config set timeout 3 --profile work",
          "config unset timeout --profile work"})
      ExpectNoSecret(Command(command).Run());
  }
  EXPECT_FALSE(Holds(folder_.Read("scriptwells/config.toml"), kSecret));
}

TEST_F(ProfiledRun, FailingCommandIsReportedAndNothingIsSent) {
  WriteProfile("password-command = \"echo canary77; exit 3\"\n");
  Command("run -e 1 --profile work").Fails(6, "the password command failed with exit status 3");
  Command("run -e 1 --profile work --json")
      .Fails(
          6,
          R"({"error":{"kind":"not run","message":"the password command failed with exit status 3","exit":6}})");
  EXPECT_EQ(service_.Count("CreateUserSession"), 0);
}

TEST_F(ProfiledRun, CommandLeavesTheScriptAlone) {
  WriteProfile("password-command = \"cat >/dev/null; echo canary77\"\n");
  Command("run - --profile work").Run("6 * 7").Succeeds("42\n");
}

TEST_F(ProfiledRun, InterruptEndsTheCommand) {
  WriteProfile("password-command = \"echo $$ >" + folder_.Path("pid") + "; exec sleep 100\"\n");
  Process process(Command("run -e 1 --profile work"));
  for (int i = 0; i < 400 && folder_.Read("pid").empty(); ++i) ::usleep(25000);
  process.Signal(SIGTERM);
  process.Finish().Fails(130, "interrupted");
  EXPECT_FALSE(std::filesystem::exists("/proc/" + std::to_string(std::stoi(folder_.Read("pid")))));
}

TEST_F(ProfiledRun, PasswordIsNotSentToAnotherServer) {
  WriteProfile("password-command = \"touch " + folder_.Path("ran") + "; echo canary77\"\n");
  const ServeProcess other("--users-file " + folder_.Write("others", "joe:canary77\n"));
  const Outcome outcome = Command("run -e 1 --profile work --server " + other.Url()).Run();
  EXPECT_EQ(outcome.exit, 5) << outcome.err;
  EXPECT_TRUE(
      StartsWith(outcome.err,
                 "scriptwells: note: the password of the profile work is not used, since the server is "
                 "not that of the profile\n"))
      << outcome.err;
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("ran")));
}

TEST_F(ProfiledRun, CommandThatNeedsNoPasswordIsNotRun) {
  WriteProfile("password-command = \"touch " + folder_.Path("ran") + "; echo canary77\"\n");
  Command("config show --profile work").Run();
  Command("run -e 1 --local --profile work").Succeeds("1\n");
  Command("run -e 1 -p a=int:x --profile work").Run();
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("ran")));
}

TEST(Profiles, UnusableOneIsALocalFailure) {
  const TemporaryDirectory folder;
  const std::string file = folder.Path("scriptwells/config.toml");
  const Tool run = Tool("run -e 1 --local").Set("XDG_CONFIG_HOME", folder.Path());
  run.Succeeds("1\n");
  Tool(run).Add({"--profile", "work"}).Fails(6, file + " has no profile 'work'");
  folder.Write("scriptwells/config.toml", "[profile.work\n");
  run.FailsLike(6, file + ": line 1, column 14: ");
  EXPECT_EQ(Tool("version").Set("XDG_CONFIG_HOME", folder.Path()).Run().err, "");
}

}  // namespace
}  // namespace qv::cli
