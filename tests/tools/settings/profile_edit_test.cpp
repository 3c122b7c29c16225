// Changes of the file of profiles: everything else stays as it is.
#include "tools/settings/profile_edit.h"

#include <gtest/gtest.h>

#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using testing::Holds;
using testing::RefusalOf;

constexpr char kFile[] =
    "# mine\n\ndefault = \"work\"   # usual\n\n[profile.work]  # w\n  server = 'http://j\xC3\xB6'  # "
    "\xC3\xBC\n# below\n"
    "user = \"joe\"\n\n# other\n[profile.home]\nuser = \"me\"";

std::string Set(const std::string& text, const std::string& profile, const std::string& key,
                const std::string& value) {
  return WithValue("F", text, {profile, key}, value);
}

std::string Unset(const std::string& text, const std::string& profile, const std::string& key) {
  return WithoutValue("F", text, {profile, key});
}

// The file with one part of it replaced.
std::string With(const std::string& part, const std::string& other) {
  std::string text = kFile;
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos);
  return text.replace(at, part.size(), other);
}

TEST(ProfileEdit, ValueIsReplacedInItsPlace) {
  EXPECT_EQ(Set(kFile, "work", "server", "https://x"), With("'http://j\xC3\xB6'", "\"https://x\""));
  EXPECT_EQ(Set(kFile, "home", "user", "you"), With("\"me\"", "\"you\""));
  EXPECT_EQ(Set(kFile, "", "default", "home"), With("\"work\"", "\"home\""));
  EXPECT_EQ(Set("[profile.a]\ntimeout = 90 # s\n", "a", "timeout", "2m"),
            "[profile.a]\ntimeout = \"2m\" # s\n");
  EXPECT_EQ(Set("[profile.a]\nuser = '''\nx'''\nproxy = \"p\"\n", "a", "user", "y"),
            "[profile.a]\nuser = \"y\"\nproxy = \"p\"\n");
}

TEST(ProfileEdit, NewValueIsTheLastOfItsProfile) {
  EXPECT_EQ(Set(kFile, "work", "timeout", "90"), With("\"joe\"\n", "\"joe\"\ntimeout = \"90\"\n"));
  EXPECT_EQ(Set(kFile, "home", "proxy", "p"), std::string(kFile) + "\nproxy = \"p\"\n");
  EXPECT_EQ(Set("[profile.a]\n\n[profile.b]\n", "a", "user", "u"),
            "[profile.a]\nuser = \"u\"\n\n[profile.b]\n");
  EXPECT_EQ(Set("[profile.a]\r\nuser = \"u\"\r\n", "a", "proxy", "p"),
            "[profile.a]\r\nuser = \"u\"\r\nproxy = \"p\"\r\n");
}

TEST(ProfileEdit, NewProfileIsTheLast) {
  EXPECT_EQ(Set("", "a", "user", "u"), "[profile.a]\nuser = \"u\"\n");
  EXPECT_EQ(Set(kFile, "a", "user", "u"), std::string(kFile) + "\n\n[profile.a]\nuser = \"u\"\n");
}

TEST(ProfileEdit, DefaultComesFirst) {
  EXPECT_EQ(Set("[profile.a]\n", "", "default", "a"), "default = \"a\"\n[profile.a]\n");
  EXPECT_EQ(Set("", "", "default", "a"), "default = \"a\"\n");
}

TEST(ProfileEdit, TextsAreReadBack) {
  for (const std::string value : {"a\"b", "a'b", "'\"", "\\", "a\\n", "#", "[x]", "{}", " a ", "\xC3\xBC",
                                  "true", "7", "\xF0\x9F\x98\x80", "it's \"x\" # y"}) {
    const std::string text = Set(kFile, "work", "user", value);
    EXPECT_EQ(ParseProfiles("F", text).Find("work")->Find("user")->text, value) << text;
    EXPECT_EQ(Set(text, "work", "user", "joe"), kFile);
  }
}

TEST(ProfileEdit, RemovedValueTakesItsLine) {
  EXPECT_EQ(Unset(kFile, "work", "server"), With("  server = 'http://j\xC3\xB6'  # \xC3\xBC\n", ""));
  EXPECT_EQ(Unset(kFile, "home", "user"), With("user = \"me\"", ""));
  EXPECT_EQ(Unset(kFile, "", "default"), With("default = \"work\"   # usual\n", ""));
  EXPECT_EQ(Unset("[profile.a]\nuser = '''\nx'''\nproxy = \"p\"\n", "a", "user"),
            "[profile.a]\nproxy = \"p\"\n");
}

TEST(ProfileEdit, FormsThatLinesWouldBreakAreRejected) {
  const char* reason = " is written in a form that only an editor can change";
  for (const char* text : {"profile = {a = {user = \"u\"}}\n", "profile.a = {user = \"u\"}\n"}) {
    EXPECT_TRUE(Holds(RefusalOf([&] { Set(text, "a", "proxy", "p"); }), reason)) << text;
    EXPECT_TRUE(Holds(RefusalOf([&] { Unset(text, "a", "user"); }), reason)) << text;
    EXPECT_NE(Set(text, "a", "user", "v"), text);  // in its place it can
  }
  EXPECT_TRUE(Holds(RefusalOf([&] { Set("profile.a.user = \"u\"\n", "a", "proxy", "p"); }), reason));
  EXPECT_EQ(RefusalOf([&] { Set("[profile.a]\nx = 1\n", "a", "proxy", "p"); }),
            "F: line 2: there is no setting 'x'");
}

}  // namespace
}  // namespace qv::cli
