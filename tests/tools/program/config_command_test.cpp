// `scriptwells config` with the test's own file of profiles.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

constexpr char kName[] = "scriptwells/config.toml";

class ConfigCommand : public ::testing::Test {
 protected:
  Tool Command(const std::string& line, const Words& more = {}) const {
    return Tool("config " + line, more).Set("XDG_CONFIG_HOME", folder_.Path());
  }
  Outcome Config(const std::string& line, const Words& more = {}) const { return Command(line, more).Run(); }
  void Write(const std::string& text) const {
    folder_.Write(kName, text);
    ::chmod(file_.c_str(), 0600);
  }
  std::string Text() const { return folder_.Read(kName); }
  // The row of `config show` for a setting, with single blanks.
  static std::string Row(const std::string& table, const std::string& key) {
    const std::size_t at = table.find("\n" + key + " ");
    if (at == std::string::npos) return "";
    std::string row;
    for (const char c : table.substr(at + 1, table.find('\n', at + 1) - at - 1))
      if (c != ' ' || row.empty() || row.back() != ' ') row += c;
    return row;
  }

  TemporaryDirectory folder_;
  std::string file_ = folder_.Path(kName);
};

TEST_F(ConfigCommand, PathIsBelowTheFolderOfSettings) {
  Config("path").Succeeds(file_ + "\n");
  Config("path --json").Succeeds(R"({"file":")" + file_ + "\"}\n");
  const Tool home = Command("path").Set("XDG_CONFIG_HOME", "relative").Set("HOME", "/home/joe");
  home.Succeeds("/home/joe/.config/scriptwells/config.toml\n");
  Command("path")
      .Set("XDG_CONFIG_HOME", "")
      .Set("HOME", "")
      .Fails(6, "there is no place for profiles: neither XDG_CONFIG_HOME nor HOME is an absolute path");
}

TEST_F(ConfigCommand, SetMakesAPrivateFile) {
  Config("set server http://h --profile work").Succeeds(file_ + "\n");
  Config("set timeout 2m --profile work --json").Succeeds(R"({"file":")" + file_ + "\"}\n");
  Config("set default work").Succeeds(file_ + "\n");
  Config("set user joe").Succeeds(file_ + "\n");
  EXPECT_EQ(Text(),
            "default = \"work\"\n[profile.work]\nserver = \"http://h\"\ntimeout = \"2m\"\nuser = \"joe\"\n");
  struct stat facts = {};
  ASSERT_EQ(::stat(file_.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0600U);
  ASSERT_EQ(::stat(folder_.Path("scriptwells").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0700U);
  EXPECT_EQ(folder_.CountFiles(), 1);
}

TEST_F(ConfigCommand, SetChecksAsTheFlagDoes) {
  const std::pair<Words, const char*> rows[] = {
      {{"server", "h:8080"}, "server 'h:8080' does not begin with http:// or https://"},
      {{"server", "http://joe:canary77@h"}, "server must not hold a user name; set user"},
      {{"server", "joe:canary77@h"}, "server must not hold a user name; set user"},
      {{"proxy", "http://p"}, "proxy 'http://p' is not of the form host or host:port"},
      {{"user", "a;b"}, "the user name holds ';' or '=', which a connection string cannot carry"},
      {{"user", "a\nb"}, "the value of user contains a control character"},
      {{"user", "\xFF"}, "the value of user is not valid UTF-8"},
      {{"key", "/nonexistent"}, "cannot read the key /nonexistent: No such file or directory"},
      {{"default", "work"}, nullptr}};
  for (const auto& [words, message] : rows) {
    const Outcome outcome = Config("set --profile work --", words);
    if (message != nullptr) outcome.Fails(6, message);
  }
  EXPECT_EQ(Config("set ca-file /nonexistent --profile work").exit, 6);
  EXPECT_EQ(Config("set timeout soon --profile work").exit, 2);
  Config("set default work").Fails(6, file_ + " has no profile 'work'");
  Config("set user joe").Fails(2, "no profile given (--profile NAME, or a default: config set default NAME)");
  EXPECT_EQ(folder_.CountFiles(), 0);
}

TEST_F(ConfigCommand, PathsAreAbsolute) {
  const std::string file = folder_.Write("pw", "secret\n");
  Command("set --profile a -- password-file", {"pw"}).Run();
  EXPECT_TRUE(Holds(Text(), "password-file = \"/")) << Text();
  EXPECT_EQ(Config("set password-file ~/pw --profile a").exit, 0);
  EXPECT_TRUE(Holds(Text(), "password-file = \"~/pw\"")) << Text();
}

TEST_F(ConfigCommand, PasswordWithoutAServerGetsANote) {
  Config("set password-command 'pass x' --profile a")
      .Succeeds(file_ + "\n",
                "note: the password is used only with a server of the same profile: config set server URL "
                "--profile a");
  Config("set server http://h --profile a").Succeeds(file_ + "\n");
  Config("set password-command 'pass y' --profile a").Succeeds(file_ + "\n");
}

TEST_F(ConfigCommand, UnsetRemovesASetting) {
  Write("# c\n[profile.a]\nuser = \"u\" # d\nserver = \"http://h\"\n");
  Config("unset user --profile a").Succeeds(file_ + "\n");
  EXPECT_EQ(Text(), "# c\n[profile.a]\nserver = \"http://h\"\n");
  Config("unset user --profile a").Fails(1, "the profile a has no user");
  Config("unset user --profile b").Fails(6, file_ + " has no profile 'b'");
  Config("unset default").Fails(1, file_ + " has no default profile");
}

TEST_F(ConfigCommand, ProfilesAreListed) {
  Config("profiles").Succeeds("");
  Write("default = \"b\"\n[profile.b]\n[profile.a]\n");
  Config("profiles").Succeeds("a\nb\n");
  Config("profiles --json")
      .Succeeds("{\"profile\":\"a\",\"default\":false}\n{\"profile\":\"b\",\"default\":true}\n");
}

TEST_F(ConfigCommand, ShowSaysWhereEachValueComesFrom) {
  Write(
      "default = \"w\"\n[profile.w]\nserver = \"http://h\"\nuser = \"joe\"\npassword-command = \"echo "
      "canary77\"\n"
      "timeout = 90\n");
  const std::string table = Command("show --proxy p:1").Set("SCRIPTWELLS_USER", "joe").Run().out;
  EXPECT_EQ(Row(table, "profile"), "profile w " + file_ + " line 1") << table;
  EXPECT_EQ(Row(table, "server"), "server http://h profile w in " + file_ + " line 3");
  EXPECT_EQ(Row(table, "proxy"), "proxy p:1 flag --proxy");
  EXPECT_EQ(Row(table, "user"), "user joe environment variable SCRIPTWELLS_USER");
  EXPECT_EQ(Row(table, "password-command"),
            "password-command echo canary77 profile w in " + file_ + " line 5");
  EXPECT_EQ(Row(table, "timeout"), "timeout 90 profile w in " + file_ + " line 6");
  EXPECT_EQ(Row(table, "max-time"), "max-time 0 default");
  EXPECT_EQ(Row(table, "language"), "language JavaScript default");
  EXPECT_EQ(Row(table, "output"), "output text default");
  EXPECT_EQ(Row(table, "replica"), "replica default");
  EXPECT_EQ(Row(Command("show").Set("SCRIPTWELLS_PROFILE", "w").Run().out, "profile"),
            "profile w environment variable SCRIPTWELLS_PROFILE");
  EXPECT_EQ(Row(Config("show --profile w").out, "profile"), "profile w flag --profile");
}

TEST_F(ConfigCommand, ShowHasEverySettingAsJson) {
  Write("[profile.w]\nserver = \"http://h\"\n");
  const std::string lines = Config("show --profile w --json").out;
  EXPECT_TRUE(StartsWith(
      lines, R"({"setting":"profile","value":"w","source":"flag","name":"--profile","file":null,"line":null})"
             "\n"
             R"({"setting":"server","value":"http://h","source":"profile","name":"w","file":")" +
                 file_ + R"(","line":2})" + "\n"))
      << lines;
  for (const std::string& key :
       Each("proxy|user|password-command|password-file|replica|ca-file|cert|key|timeout|"
            "connect-timeout|max-time|language|output"))
    EXPECT_TRUE(Holds(lines, "{\"setting\":\"" + key + "\",")) << key;
}

TEST_F(ConfigCommand, ShowWithoutAFileHasDefaults) {
  const Outcome outcome = Config("show");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(Row(outcome.out, "profile"), "profile default");
  EXPECT_EQ(Row(outcome.out, "timeout"), "timeout 60 default");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("scriptwells")));
}

TEST_F(ConfigCommand, ShowHasNoSecret) {
  Write("[profile.w]\nserver = \"http://joe:canary77@h\"\nproxy = \"joe:canary77@p\"\n");
  for (const char* line :
       {"show --profile w", "show --profile w --json", "show --server http://joe:canary77@h"}) {
    const Outcome outcome = Command(line).Set("SCRIPTWELLS_PASSWORD", "canary77").Run();
    EXPECT_TRUE(Holds(outcome.out, "***@h")) << outcome.out;
    EXPECT_TRUE(Holds(outcome.out, "SCRIPTWELLS_PASSWORD")) << outcome.out;
    EXPECT_FALSE(Holds(outcome.out + outcome.err, "canary77")) << outcome.out;
  }
}

// What each command does with a file that cannot be used.
TEST_F(ConfigCommand, UnusableFileIsReported) {
  const std::pair<std::string, std::string> rows[] = {
      {"[profile.a]\nsever = \"x\"\n", ": line 2: there is no setting 'sever' (did you mean server?)"},
      {std::string("a\0b\n", 4), ": line 1, column 2: "},
      {"# \xFF\n", ": line 1, column 2: "},
      {"[profile.a]\npassword = \"canary77\"\n", ": line 2: a password is never in this file; "}};
  for (const auto& [text, message] : rows) {
    Write(text);
    for (const char* line : {"show", "profiles", "set user joe --profile a", "unset user --profile a"}) {
      Config(line).FailsLike(6, file_ + message);
      EXPECT_FALSE(Holds(Config(line).err, "canary77"));
    }
    EXPECT_EQ(Text(), text);
  }
  Config("show --json").FailsLike(6, R"({"error":{"kind":"not run","message":")" + file_ + ": line 2: ");
}

TEST_F(ConfigCommand, OddFilesAreReportedAndNotWaitedFor) {
  const std::string start = "cannot read the profiles " + file_ + ": ";
  folder_.Write(std::string(kName) + "/x", "");
  Config("show").Fails(6, start + "Is a directory");
  std::filesystem::remove_all(file_);
  ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
  Config("show").Fails(6, start + "Not a regular file");
  std::filesystem::remove_all(file_);
  Write(std::string((1U << 20) + 1, '#'));
  Config("show").Fails(6, start + "It is longer than 1 MB");
  Write("");
  ::chmod(file_.c_str(), 0622);
  for (const char* line : {"show", "set user joe --profile a"})
    Config(line).Fails(
        6, start + "Others can write to it, and its commands are run; change that with chmod go-w");
  if (::geteuid() != 0) {
    ::chmod(file_.c_str(), 0200);
    Config("show").Fails(6, start + "Permission denied");
    return;
  }
  ASSERT_EQ(::chown(file_.c_str(), 65534, 65534), 0);
  ::chmod(file_.c_str(), 0600);
  Config("show").Fails(6, start + "It belongs to another user");
}

TEST_F(ConfigCommand, LinkOfTheFileStays) {
  folder_.Write("dotfiles/real.toml", "# mine\n[profile.a]\n");
  std::filesystem::create_directory(folder_.Path("scriptwells"));
  ASSERT_EQ(::symlink("../dotfiles/real.toml", file_.c_str()), 0);
  Config("set user joe --profile a").Succeeds(file_ + "\n");
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_EQ(folder_.Read("dotfiles/real.toml"), "# mine\n[profile.a]\nuser = \"joe\"\n");
}

}  // namespace
}  // namespace qv::cli
