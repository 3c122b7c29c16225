// What the shell keeps of what is typed, and in which file.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fixtures/environment.h"
#include "fixtures/secret_forms.h"
#include "fixtures/temporary_directory.h"
#include "tools/prompt/kept_history.h"
#include "tools/shell/history_text.h"

namespace qv::cli {
namespace {

TEST(HistoryText, EntryIsOneLine) {
  for (const char* entry : {"1", "a\nb", "'\\n'", "\\", "\\\\n\n", ""})
    EXPECT_EQ(EntryOf(HistoryLine(entry)), entry) << entry;
  EXPECT_EQ(HistoryLine("a\n'\\n'"), "a\\n'\\\\n'");
}

scriptwells::Masking Secrets(const std::vector<std::string>& secrets) {
  scriptwells::Masking masking;
  for (const std::string& secret : secrets) masking.Add(secret);
  return masking;
}

TEST(HistoryText, SecretsAreNotKeptInAnyForm) {
  const std::vector<std::string> canaries = {"pa ss<\"'\\1", "id&/+canary",
                                             "s3<&\">' %+/\\\xC3\xA9t\xC3\xA9"};
  const scriptwells::Masking secrets = Secrets(canaries);
  for (const std::string& canary : canaries)
    for (const test::SecretForm& form : test::FormsOf(canary))
      EXPECT_FALSE(MayBeKept("x = \"" + form.text + "\"", secrets)) << form.name;
  for (const char* entry :
       {"f('pa ss<\"'\\1')", R"(login("pa ss<\"'\\1"))", R"(login('pa ss<"\'\\1'))",
        R"(login(`pa ss<"'\x5c1`))", R"(x = "pa ss&lt;&quot;'\1")", "'pa%20ss%3C%22%27%5C1'",
        "a\nid&/+canary", "'id%26%2F%2Bcanary'", "'aWQmLytjYW5hcnk='"})
    EXPECT_FALSE(MayBeKept(entry, secrets)) << entry;
  EXPECT_TRUE(MayBeKept("pa ss", secrets));
  EXPECT_TRUE(MayBeKept("1", Secrets({""})));
  EXPECT_TRUE(MayBeKept("1", {}));
}

TEST(HistoryText, WhatStandsWhereASecretDoesIsNotKept) {
  for (const char* entry :
       {"get('http://a/files/7?ticket=4711')", "'http%3A%2F%2Fa%2F7%3Fticket%3D4711'",
        R"(s = {"usid": "4711"})", "'DbReplicationId=;Username=joe;Password=4711;'",
        "'<soap:usid>4711</soap:usid>'", "USID = '4711'", ":param password=string:4711", "a\n'usid: 4711'"})
    EXPECT_FALSE(MayBeKept(entry, {})) << entry;
  for (const char* entry : {"parameters.ticket", "'Password=;'", "ticket(5)", "usids.length",
                            "'<usid></usid>'", "'the ticket'", "x.ticket="})
    EXPECT_TRUE(MayBeKept(entry, {})) << entry;
}

TEST(HistoryText, TicketsOfAddresses) {
  using Tickets = std::vector<std::string>;
  EXPECT_EQ(TicketsInAddresses("http://a/up?ticket=4711"), (Tickets{"4711"}));
  EXPECT_EQ(TicketsInAddresses("see <https://a/?a=1&ticket=abcd&b=2#c>, 'x://y?ticket=efgh'\nz"),
            (Tickets{"abcd", "efgh"}));
  for (const char* text :
       {"", "ticket=4711", "http://a/up?ticket=471", "http://a/ ticket=4711", "://ticket="})
    EXPECT_EQ(TicketsInAddresses(text), Tickets()) << text;
}

TEST(HistoryText, BlankAndLengthMatter) {
  EXPECT_FALSE(MayBeKept(" 1", {}));
  EXPECT_FALSE(MayBeKept("", {}));
  EXPECT_TRUE(MayBeKept(std::string(65536, 'a'), {}));
  EXPECT_FALSE(MayBeKept(std::string(65537, 'a'), {}));
}

class HistoryFileTest : public ::testing::Test {
 protected:
  mode_t Mode(const std::string& name) const {
    struct stat facts = {};
    EXPECT_EQ(::stat(folder_.Path(name).c_str(), &facts), 0);
    return facts.st_mode & 0777;
  }

  TemporaryDirectory folder_;
  HistoryFile file_{folder_.Path("state/scriptwells/history")};
};

TEST_F(HistoryFileTest, BelongsToItsOwnerOnly) {
  EXPECT_TRUE(file_.Load().empty());
  file_.Add("a\nb");
  file_.Add("c");
  EXPECT_EQ(file_.Load(), (std::vector<std::string>{"a\nb", "c"}));
  EXPECT_EQ(Mode("state/scriptwells/history"), 0600U);
  EXPECT_EQ(Mode("state/scriptwells"), 0700U);
  ::chmod(folder_.Path("state/scriptwells/history").c_str(), 0644);
  file_.Add("d");
  EXPECT_EQ(Mode("state/scriptwells/history"), 0600U);
}

TEST_F(HistoryFileTest, StaysShort) {
  std::string lines = "\xFF not text\n";
  for (int i = 0; i < 2001; ++i) lines += std::to_string(i) + "\n";
  folder_.Write("state/scriptwells/history", lines);
  const std::vector<std::string> entries = file_.Load();
  ASSERT_EQ(entries.size(), 1000U);
  EXPECT_EQ(entries.front(), "1001");
  EXPECT_EQ(entries.back(), "2000");
  EXPECT_EQ(folder_.Read("state/scriptwells/history").substr(0, 10), "1001\n1002\n");
  EXPECT_EQ(Mode("state/scriptwells/history"), 0600U);
  EXPECT_EQ(folder_.CountFiles(), 1);
}

// What was typed before anybody knew that it holds a secret.
TEST_F(HistoryFileTest, EntriesWithNewSecretsLeaveIt) {
  file_.Add("older = 'id&/+canary'");
  file_.Add("b");
  KeptHistory history(file_);
  history.Learn({"id&/+canary", "b", ""});
  history.Add("x = 'T-4711'");
  history.Add("x = 'id&amp;/+canary'");
  history.Add("y");
  EXPECT_EQ(history.Load(), (std::vector<std::string>{"b", "x = 'T-4711'", "y"}));
  history.Learn({"id&/+canary", "b", "T-4711"});
  EXPECT_EQ(folder_.Read("state/scriptwells/history"), "b\ny\n");
  EXPECT_EQ(Mode("state/scriptwells/history"), 0600U);
  history.Add("'VC00NzEx'");
  EXPECT_EQ(folder_.Read("state/scriptwells/history"), "b\ny\n");
  // What nobody asks to remove stays as it is, byte for byte.
  folder_.Write("state/scriptwells/history", "\xFF\ny\n");
  history.Learn({"T-4712"});
  EXPECT_EQ(folder_.Read("state/scriptwells/history"), "\xFF\ny\n");
}

TEST_F(HistoryFileTest, LinkIsNotFollowed) {
  folder_.Write("state/scriptwells/other", "kept\n");
  ASSERT_EQ(::symlink("other", folder_.Path("state/scriptwells/history").c_str()), 0);
  file_.Add("a");
  EXPECT_EQ(folder_.Read("state/scriptwells/other"), "kept\n");
}

TEST_F(HistoryFileTest, WithoutAFileNothingHappens) {
  HistoryFile("").Add("a");
  EXPECT_TRUE(HistoryFile("").Load().empty());
  HistoryFile("/proc/nowhere/history").Add("a");
  EXPECT_TRUE(HistoryFile("/proc/nowhere/history").Load().empty());
}

TEST_F(HistoryFileTest, IsWhereTheSystemKeepsState) {
  const EnvironmentVariable home("HOME", "/home/joe");
  {
    const EnvironmentVariable state("XDG_STATE_HOME", "/state");
    EXPECT_EQ(UsualHistoryFile(), "/state/scriptwells/history");
  }
  const EnvironmentVariable state("XDG_STATE_HOME", "relative");
  EXPECT_EQ(UsualHistoryFile(), "/home/joe/.local/state/scriptwells/history");
}

}  // namespace
}  // namespace qv::cli
