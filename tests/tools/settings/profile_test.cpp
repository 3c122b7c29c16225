// The file of profiles as text: what is read, and what is rejected with which line.
#include "tools/settings/profile.h"

#include <gtest/gtest.h>

#include "fixtures/environment.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using testing::Holds;
using testing::RefusalOf;

std::string Refusal(const std::string& text) {
  return RefusalOf([&] { ParseProfiles("F", text); });
}

// Below a profile, whose line is the first.
std::string RefusedLine(const std::string& line) {
  return Refusal("[profile.work]\n" + line + "\n");
}

TEST(Profiles, HaveTheirSettingsWithLines) {
  const ProfileFile file =
      ParseProfiles("F",
                    "# mine\ndefault = \"work\"\n\n[profile.work]\nserver = \"http://h\" # c\n"
                    "timeout = 90\nmax-time = \"2m\"\n\n[profile.J-7_x]\nuser = 'j\xC3\xB6'\n");
  EXPECT_EQ(file.path, "F");
  EXPECT_EQ(file.usual, "work");
  EXPECT_EQ(file.usualLine, 2U);
  ASSERT_EQ(file.profiles.size(), 2U);
  const Profile* work = file.Find("work");
  ASSERT_NE(work, nullptr);
  EXPECT_EQ(work->values.size(), 3U);
  EXPECT_EQ(work->Find("server")->text, "http://h");
  EXPECT_EQ(work->Find("server")->line, 5U);
  EXPECT_EQ(work->Find("timeout")->text, "90");
  EXPECT_EQ(work->Find("max-time")->text, "2m");
  EXPECT_EQ(work->Find("user"), nullptr);
  EXPECT_EQ(file.Find("J-7_x")->Find("user")->text, "j\xC3\xB6");
  EXPECT_EQ(file.Find("other"), nullptr);
}

TEST(Profiles, EveryFormOfTomlIsRead) {
  for (const char* text :
       {"profile.a.user = \"u\"", "profile = {a = {user = 'u'}}", "[profile]\na.user=\"\\u0075\"",
        "\xEF\xBB\xBF[profile.a]\r\nuser = \"u\"\r\n", "[profile.a]\n\"user\" = '''u'''"})
    EXPECT_EQ(ParseProfiles("F", text).Find("a")->Find("user")->text, "u") << text;
  EXPECT_TRUE(ParseProfiles("F", "").profiles.empty());
  EXPECT_TRUE(ParseProfiles("F", "[profile.a]").Find("a")->values.empty());
}

TEST(Profiles, WrongTextsAreRejectedWithTheirLine) {
  const std::pair<const char*, const char*> rows[] = {
      {"user = joe",
       "F: line 2, column 8: Error while parsing value: could not determine value type; a text is "
       "written in quotes"},
      {"user = \"joe",
       "F: line 2, column 12: Error while parsing string: unescaped control characters other than "
       "TAB (U+0009) are explicitly prohibited"},
      {"user = \"\xFF\"", "F: line 2, column 8: Encountered invalid utf-8 sequence"},
      {"user = \"a\"\nuser = \"b\"",
       "F: line 3, column 8: Error while parsing key-value pair: cannot redefine existing string 'user'"},
      {"sever = \"a\"", "F: line 2: there is no setting 'sever' (did you mean server?)"},
      {"colour = \"a\"", "F: line 2: there is no setting 'colour'"},
      {"user = 5", "F: line 2: user is not a text in quotes"},
      {"user = [\"a\"]", "F: line 2: user is not a text in quotes"},
      {"[profile.work.user]", "F: line 2: user is not a text in quotes"},
      {"timeout = true", "F: line 2: timeout is not a text in quotes"},
      {"user = \"\"", "F: line 2: user is empty"},
      {R"(user = "a\nb")", "F: line 2: user contains a control character"},
      {"ca-file = \"ca.pem\"", "F: line 2: ca-file is not an absolute path, nor one below ~/"},
      {"[server]", "F: line 2: server belongs into a profile, below a line [profile.NAME]"},
      {R"(["profile"."a b"])",
       "F: line 2: the name of a profile has letters, digits, '-' and '_' only, at most 64, and no '-' "
       "first"},
      {"password-file = \"/f\"\npassword-command = \"c\"",
       "F: line 1: the profile work has a password-command and a password-file; one of them is needed"}};
  for (const auto& [line, message] : rows) EXPECT_EQ(RefusedLine(line), message) << line;
  EXPECT_EQ(Refusal("default = 1"), "F: line 1: default is not the name of a profile, in quotes");
  EXPECT_EQ(Refusal("profile = 1"), "F: line 1: profile is not a table, such as [profile.work]");
  EXPECT_EQ(Refusal("[profile]\nuser = \"u\""),
            "F: line 2: a profile begins with a line such as [profile.work]");
}

TEST(Profiles, OtherLettersAreInQuotesAndCommentsOnly) {
  const std::string reason = ": a letter that is not ASCII, outside of quotes";
  EXPECT_EQ(Refusal("er\xCE\x89 = 1"), "F: line 1, column 3" + reason);
  EXPECT_EQ(Refusal("# \xC3\xBC\ndefault = 'a' \xC3\xBC"), "F: line 2, column 15" + reason);
  EXPECT_EQ(Refusal("default = \"\"\"\xC3\xBC\n\"\"\"\"\n\xC2\xA0"), "F: line 3, column 1" + reason);
  for (const char* quotes : {"'", "\"", "'''", R"(""")"}) {
    const std::string text = std::string(quotes) + "\xC3\xBC" + quotes;
    const ProfileFile file = ParseProfiles("F", "[profile.a]  # \xC3\xBC\nuser = " + text + " # \xC3\xBC'\n");
    EXPECT_EQ(file.Find("a")->Find("user")->text, "\xC3\xBC") << text;
  }
  const ProfileFile escaped = ParseProfiles("F", "[profile.a]\nuser = \"\\\"\xC3\xBC\"");
  EXPECT_EQ(escaped.Find("a")->Find("user")->text, "\"\xC3\xBC");
}

TEST(Profiles, NullCharactersAreRejected) {
  for (const std::string& text :
       {std::string("\0", 1), std::string("[profile.a]\nuser = \"a\0b\"", 24), std::string("# a\0b\n", 6)})
    EXPECT_NE(Refusal(text), "accepted");
}

TEST(Profiles, PasswordIsRejectedAndNotRepeated) {
  const char* remedy =
      "a password is never in this file; password-command names a command that prints it, password-file a "
      "file "
      "that contains it";
  for (const char* line : {"password = \"canary77\"", "Password = 'canary77'"})
    EXPECT_EQ(RefusedLine(line), std::string("F: line 2: ") + remedy);
  for (const char* line :
       {"password = canary77", "password = 77canary", "password = \"canary77", "password = 'canary77",
        "password = 777777777777777777777777777777", "password = 0x77777777777777777777",
        "password = canary77 x", R"(password = "\qcanary77")", "password = true77", "password: canary77"}) {
    const std::string message = RefusedLine(line);
    EXPECT_TRUE(Holds(message, "F: line ")) << message;
    EXPECT_FALSE(Holds(message, "77")) << message;
  }
}

TEST(Profiles, NestingIsLimited) {
  EXPECT_NE(RefusedLine("user = " + std::string(100000, '[')), "accepted");
}

TEST(ProfileNames, AreShortWords) {
  for (const char* name : {"a", "Work-7", "_x", "7"}) EXPECT_TRUE(IsProfileName(name)) << name;
  EXPECT_TRUE(IsProfileName(std::string(64, 'a')));
  EXPECT_FALSE(IsProfileName(std::string(65, 'a')));
  for (const char* name : {"", "-a", "a b", "a.b", "a\n", "\xC3\xB6", "a]"})
    EXPECT_FALSE(IsProfileName(name)) << name;
}

TEST(ChosenProfiles, FlagComesBeforeVariableBeforeFile) {
  const ProfileFile file = ParseProfiles("F", "default = \"one\"\n[profile.one]\n[profile.two]\n");
  EnvironmentVariable variable("SCRIPTWELLS_PROFILE", nullptr);
  EXPECT_EQ(ChooseProfile(file, "").name, "one");
  EXPECT_EQ(ChooseProfile(ParseProfiles("F", ""), "").origin, ProfileOrigin::kNone);
  variable.Set("two");
  EXPECT_EQ(ChooseProfile(file, "").name, "two");
  EXPECT_EQ(ChooseProfile(file, "").origin, ProfileOrigin::kVariable);
  EXPECT_EQ(ChooseProfile(file, "x").name, "x");
  variable.Set("");
  EXPECT_EQ(ChooseProfile(file, "").name, "one");
}

TEST(ChosenProfiles, MissingOneIsReportedWithTheClosest) {
  const ProfileFile file = ParseProfiles("F", "\ndefault = \"wrk\"\n[profile.work]\n");
  const auto refusal = [&](ProfileOrigin origin, const std::string& name) {
    return RefusalOf([&] { RequireProfile(file, {origin, name}); });
  };
  EXPECT_EQ(refusal(ProfileOrigin::kFlag, "wrok"), "F has no profile 'wrok' (did you mean work?)");
  EXPECT_EQ(refusal(ProfileOrigin::kVariable, "zzzzzz"),
            "F has no profile 'zzzzzz', which the variable SCRIPTWELLS_PROFILE names");
  EXPECT_EQ(refusal(ProfileOrigin::kFile, "wrk"),
            "F has no profile 'wrk', which line 2 names (did you mean work?)");
}

TEST(Settings, ShowNoPasswordOfAnAddress) {
  const std::pair<const char*, const char*> rows[] = {{"http://joe:s3@h/x", "http://***@h/x"},
                                                      {"http://joe:s/3@h", "http://***@h"},
                                                      {"joe:s3@h", "***@h"},
                                                      {"http://h/x", "http://h/x"}};
  for (const auto& [value, shown] : rows) {
    EXPECT_EQ(ShownValue(*FindSetting("server"), value), shown);
    EXPECT_EQ(ShownValue(*FindSetting("proxy"), value), shown);
    EXPECT_EQ(ShownValue(*FindSetting("user"), value), value);
  }
}

}  // namespace
}  // namespace qv::cli
