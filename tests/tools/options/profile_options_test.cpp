// Profiles as the parser applies them: order of origins, what does not apply, and rejected values.
#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

using testing::Holds;

constexpr char kEverything[] =
    "default = \"work\"\n[profile.work]\nserver = \"http://w\"\nproxy = \"p:1\"\nuser = \"joe\"\n"
    "password-command = \"echo x\"\nreplica = \"r\"\nca-file = \"/ca\"\ncert = \"/cert\"\nkey = \"/key\"\n"
    "timeout = \"2m\"\nconnect-timeout = 5\nmax-time = 1.5\nlanguage = \"VBScript\"\noutput = \"csv\"\n"
    "[profile.home]\nserver = \"http://h\"\npassword-file = \"/pw\"\n";

class ProfileOptions : public testing::OptionsTest {
 protected:
  // The message of a profile that cannot be used, without the file's path.
  std::string Problem(const std::string& text, const std::string& line = "run -e 1") {
    const std::string path = WriteProfiles(text);
    std::string message = Parsed(Command::kProfileError, line).text;
    EXPECT_EQ(message.substr(0, path.size()), path) << message;
    return message.substr(std::min(path.size(), message.size()));
  }
  static std::string PasswordOf(const SessionOptions& options) {
    return options.passwordCommand + options.passwordFile;
  }
  static std::vector<std::string> NotesOf(const std::string& line) {
    return Parsed(Command::kRun, line).notes;
  }
};

TEST_F(ProfileOptions, EverySettingIsApplied) {
  WriteProfiles(kEverything);
  for (const char* line :
       {"run -e 1", "run-document a.xml", "run -e 1 --profile work", "--profile work run -e 1"}) {
    const RunOptions run = Run(line);
    EXPECT_EQ(run.server + run.proxy + run.user + run.replica, "http://wp:1joer");
    EXPECT_EQ(run.passwordCommand, "echo x");
    EXPECT_EQ(run.caFile + run.certificateFile + run.keyFile, "/ca/cert/key");
    EXPECT_EQ(run.timeoutSeconds, 120);
    EXPECT_EQ(run.connectTimeoutSeconds, 5);
    EXPECT_EQ(run.maxTimeSeconds, 1.5);
    EXPECT_EQ(run.output, OutputFormat::kCsv);
    EXPECT_FALSE(run.passwordFileIsSaved);
  }
  EXPECT_EQ(Run("run -e 1").language, "VBScript");
  EXPECT_EQ(Run("run -e 1 --json").output, OutputFormat::kJson);
  EXPECT_EQ(Run("run -e 1 --save .").saveDirectory, ".");
  EXPECT_EQ(Download("download u").server, "http://w");
  EXPECT_EQ(Session("session open").server, "http://w");
  EXPECT_EQ(Session("session close --usid x").server, "http://w");
  const RunOptions home = Run("run -e 1 --profile home");
  EXPECT_EQ(home.server, "http://h");
  EXPECT_EQ(home.passwordFile, "/pw");
  EXPECT_TRUE(home.passwordFileIsSaved);
  EXPECT_EQ(home.timeoutSeconds, 60);
  EXPECT_TRUE(Download("download u --profile home").passwordFileIsSaved);
}

TEST_F(ProfileOptions, FlagComesBeforeVariableBeforeProfile) {
  WriteProfiles(kEverything);
  Set("USER", "ann");
  Set("TIMEOUT", "7");
  Set("SERVER", "http://v");
  Set("OUTPUT", "table");
  Set("PROFILE", "work");
  const RunOptions run = Run("run -e 1 --timeout 3");
  EXPECT_EQ(run.timeoutSeconds, 3);
  EXPECT_EQ(run.user, "ann");
  EXPECT_EQ(run.server, "http://v");
  EXPECT_EQ(run.output, OutputFormat::kTable);
  EXPECT_EQ(run.proxy, "p:1");
  EXPECT_EQ(Run("run -e 1 --server http://f").server, "http://f");
  EXPECT_EQ(Run("run -e 1 --output text").output, OutputFormat::kText);
  Set("PROFILE", "home");
  EXPECT_EQ(Run("run -e 1").proxy, "");
  EXPECT_EQ(Run("run -e 1 --profile work").proxy, "p:1");
}

TEST_F(ProfileOptions, PasswordIsThatOfServerAndUser) {
  WriteProfiles(kEverything);
  EXPECT_EQ(PasswordOf(Run("run -e 1 --server http://w --user joe")), "echo x");
  EXPECT_EQ(PasswordOf(Run("run -e 1 --server http://other")), "");
  EXPECT_EQ(NotesOf("run -e 1 --server http://other"),
            testing::Words{
                "the password of the profile work is not used, since the server is not that of the profile"});
  EXPECT_EQ(PasswordOf(Run("run -e 1 --user ann")), "");
  EXPECT_EQ(NotesOf("run -e 1 --user ann"),
            testing::Words{
                "the password of the profile work is not used, since the user is not that of the profile"});
  EXPECT_EQ(PasswordOf(Run("run -e 1 --profile home --user ann")), "/pw");
  EXPECT_EQ(NotesOf("run -e 1"), testing::Words());
  Set("SERVER", "http://other");
  EXPECT_EQ(PasswordOf(Run("run -e 1")), "");
  WriteProfiles("[profile.a]\npassword-command = \"echo x\"\n");
  EXPECT_EQ(PasswordOf(Run("run -e 1 --profile a")), "");
  EXPECT_EQ(PasswordOf(Download("download http://evil/f --profile a")), "");
}

TEST_F(ProfileOptions, GivenPasswordComesBeforeThatOfTheProfile) {
  WriteProfiles(kEverything);
  EXPECT_EQ(PasswordOf(Run("run -e 1 --password-file f")), "f");
  EXPECT_FALSE(Run("run -e 1 --password-file f --profile home").passwordFileIsSaved);
  EXPECT_EQ(PasswordOf(Run("run -e 1 --password-command c --profile home")), "c");
  EXPECT_EQ(PasswordOf(Run("run -e 1 --password-stdin")), "");
  EXPECT_EQ(NotesOf("run -e 1 --password-stdin --server http://other"), testing::Words());
  Set("PASSWORD", "");
  EXPECT_EQ(PasswordOf(Run("run -e 1")), "");
}

TEST_F(ProfileOptions, OpenSessionTakesAProfileWithAPassword) {
  WriteProfiles(kEverything);
  EXPECT_EQ(Run("run -e 1 --usid x").usid, "x");
  EXPECT_EQ(Refusal("run -e 1 --usid x --password-command c"),
            "a session that is open already takes no password (--usid)|scriptwells run --help");
}

TEST_F(ProfileOptions, LocalRunHasNoServer) {
  WriteProfiles(kEverything);
  const RunOptions run = Run("run -e 1 --local --profile work");
  EXPECT_TRUE(run.local);
  EXPECT_EQ(run.server + run.proxy + run.user + run.replica + PasswordOf(run), "");
  EXPECT_EQ(run.caFile + run.certificateFile + run.keyFile, "");
  EXPECT_EQ(run.timeoutSeconds, 120);
  EXPECT_EQ(run.maxTimeSeconds, 1.5);
  EXPECT_EQ(run.language, "VBScript");
  EXPECT_EQ(run.output, OutputFormat::kCsv);
  EXPECT_EQ(NotesOf("run -e 1 --local"), testing::Words());
}

TEST_F(ProfileOptions, PathsBelowTheHomeDirectoryAreExpanded) {
  const EnvironmentVariable home("HOME", "/home/joe");
  WriteProfiles("[profile.a]\nserver = \"http://a\"\nca-file = \"~/ca.pem\"\npassword-file = \"~/pw\"\n");
  const RunOptions run = Run("run -e 1 --profile a");
  EXPECT_EQ(run.caFile, "/home/joe/ca.pem");
  EXPECT_EQ(run.passwordFile, "/home/joe/pw");
}

TEST_F(ProfileOptions, TextsAreTakenAsTheyAre) {
  WriteProfiles("[profile.a]\nserver = \"http://a\"\npassword-command = \"[ a, b ]\"\nuser = \"--x\"\n");
  const RunOptions run = Run("run -e 1 --profile a");
  EXPECT_EQ(run.passwordCommand, "[ a, b ]");
  EXPECT_EQ(run.user, "--x");
}

TEST_F(ProfileOptions, WrongValuesAreReportedWithTheirLine) {
  const std::pair<const char*, const char*> rows[] = {
      {"timeout = \"soon\"", ": line 3: timeout: 'soon' is not a time, such as 90, 1.5s or 2m"},
      {"timeout = \"nan\"", ": line 3: timeout must be between 0 and 86400 seconds"},
      {"max-time = -1", ": line 3: max-time must be between 0 and 86400 seconds"},
      {"connect-timeout = 86401", ": line 3: connect-timeout must be between 0 and 86400 seconds"},
      {"output = \"yaml\"", ": line 3: output: yaml not in {csv,json,table,text}"}};
  for (const auto& [setting, message] : rows)
    EXPECT_EQ(Problem(std::string("default = \"a\"\n[profile.a]\n") + setting), message);
  EXPECT_EQ(Problem("x", "run -e 1 --local"),
            ": line 1, column 2: Error while parsing key-value pair: "
            "encountered end-of-file");
  EXPECT_EQ(Problem("[profile.work]", "run -e 1 --profile wrk"),
            " has no profile 'wrk' (did you mean work?)");
  EXPECT_EQ(Problem("[profile.work]", "session close --usid x --profile zz"), " has no profile 'zz'");
  EXPECT_TRUE(Parsed(Command::kProfileError, "run -e 1 --profile wrk --json").json);
}

TEST_F(ProfileOptions, OnlyCommandsThatCallReadThem) {
  WriteProfiles("damaged");
  Set("PROFILE", "none");
  for (const char* line : {"--version", "help run", "run --help", "version"})
    EXPECT_NE(TextOf(line), "") << line;
  EXPECT_EQ(Parsed(Command::kDescribe, "describe").text, "");
  EXPECT_EQ(Parsed(Command::kRegistry, "registry list").text, "");
  EXPECT_EQ(Parsed(Command::kServe, "serve").text, "");
  EXPECT_EQ(Parsed(Command::kConfig, "config path").text, "");
  EXPECT_EQ(Refusal("run --colour"),
            "The following argument was not expected: --colour|scriptwells run --help");
}

TEST_F(ProfileOptions, ProfileIsGivenOnceAndWhereItCounts) {
  WriteProfiles(kEverything);
  EXPECT_EQ(Refusal("--profile work run -e 1 --profile work"), "give --profile once|scriptwells run --help");
  EXPECT_EQ(Refusal("run -e 1 --profile ''"), "--profile must name a profile|scriptwells run --help");
  for (const char* line : {"serve", "registry list", "describe", "config path", "version", "help"})
    EXPECT_TRUE(Holds(Refusal(std::string("--profile work ") + line),
                      "--profile is for commands that call a server, and for config show, set and unset|"))
        << line;
  EXPECT_EQ(Refusal("serve --profile work"),
            "The following arguments were not expected: work --profile|scriptwells "
            "serve --help");
}

TEST_F(ProfileOptions, ConfigTakesItsArguments) {
  const ConfigOptions set = Config("config set user joe --profile work --json");
  EXPECT_EQ(set.verb, ConfigVerb::kSet);
  EXPECT_EQ(set.key, "user");
  EXPECT_EQ(set.value, "joe");
  EXPECT_EQ(set.profile, "work");
  EXPECT_EQ(set.checked.user, "joe");
  EXPECT_TRUE(set.json);
  EXPECT_EQ(Config("--profile work config set user joe").profile, "work");
  EXPECT_EQ(Config("config set user -- -joe").value, "-joe");
  EXPECT_EQ(Config("config unset user").verb, ConfigVerb::kUnset);
  EXPECT_EQ(Config("config path").verb, ConfigVerb::kPath);
  EXPECT_EQ(Config("config --json profiles").verb, ConfigVerb::kProfiles);
  EXPECT_EQ(Config("config show").verb, ConfigVerb::kShow);
  Set("TIMEOUT", "soon");
  EXPECT_EQ(Config("config set timeout 2m").checked.timeoutSeconds, 120);
}

TEST_F(ProfileOptions, ConfigChecksItsArguments) {
  const std::pair<const char*, const char*> rows[] = {
      {"set usr joe", "there is no setting 'usr' (did you mean user?)"},
      {"unset colour", "there is no setting 'colour'"},
      {"set timeout soon", "--timeout: 'soon' is not a time, such as 90, 1.5s or 2m"},
      {"set timeout 86401", "--timeout must be between 0 and 86400 seconds"},
      {"set output yaml", "--output: yaml not in {csv,json,table,text}"},
      {"set user ''", "user is empty; to remove it: config unset user"},
      {"set user joe --profile 'a b'",
       "the name of a profile has letters, digits, '-' and '_' only, at most 64, and no '-' first"},
      {"set default a --profile b", "the default profile is not a setting of a profile; leave out --profile"},
      {"set user", "VALUE is required"}};
  for (const auto& [line, message] : rows)
    EXPECT_EQ(Refusal(std::string("config ") + line),
              std::string(message) + "|scriptwells config " + (line[0] == 's' ? "set" : "unset") + " --help");
  EXPECT_EQ(Refusal("config"),
            "no config command given (show, set, unset, path or profiles)|scriptwells config --help");
  const std::string password = Refusal("config set password canary77");
  EXPECT_TRUE(Holds(password, "a password is never in this file; password-command")) << password;
  EXPECT_FALSE(Holds(password, "canary77")) << password;
}

}  // namespace
}  // namespace qv::cli
