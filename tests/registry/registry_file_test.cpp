// The text of one registry file: what is read from it, its damages, and the text with one value changed.
#include "registry/registry_file.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "fixtures/shown_text.h"
#include "registry/registry_lines.h"
#include "registry/registry_notation.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::string_literals;

// "key=value|" for each entry.
void ExpectEntries(const std::string& entries, std::initializer_list<std::string> files) {
  for (const std::string& file : files) {
    const RegistryContent content = ParseRegistryFile(File(file));
    std::string found;
    for (const RegistryEntry& entry : content.entries)
      found += Shown(entry.key) + "=" + Shown(entry.value) + "|";
    EXPECT_EQ(content.damage, "") << file;
    EXPECT_EQ(found, entries) << file;
  }
}

void ExpectDamage(const std::string& damage, std::initializer_list<std::string> files) {
  for (const std::string& file : files) EXPECT_EQ(ParseRegistryFile(File(file)).damage, damage) << file;
}

void ExpectWith(const std::string& file, const WideString& key, const WideString& value,
                const std::string& changed) {
  EXPECT_EQ(WithRegistryValue(File(file), key, value), File(changed)) << file;
}

void ExpectWithout(const std::string& file, const WideString& key, const std::string& changed) {
  EXPECT_EQ(WithoutRegistryValue(File(file), key), File(changed)) << file;
}

TEST(RegistryText, CommentsHeadingsAndLineEndsAreReadOver) {
  ExpectEntries("", {"", "; a||  ; b| \t|"});
  ExpectEntries("a\\b=x|", {"[M\\a\\b]|@='x'|"});
  ExpectEntries("a=x|", {"[M\\a]|@='x'", "; c\r|[M\\a]\r|@='x'\r|", "\xEF\xBB\xBF[M\\a]|@='x'|",
                         "\xEF\xBB\xBFHeading|[M\\a]|@='x'|", "Some Editor 5.00\r|\r|[M\\a]\r|@='x'\r|",
                         "[hKey_Local_maChine\\a]|@='x'|"});
  ExpectEntries("a= x |", {" \t[M\\a] |\t@ = ' x '\t |"});
}

TEST(RegistryText, TextsAndKeysAreAnyUtf8WithTwoEscapes) {
  ExpectEntries("a=|", {"[M\\a]|@=''|"});
  ExpectEntries(R"(a=c:\d "e" \|)", {R"([M\a]|@='c:\\d \'e\' \\'|)"});
  ExpectEntries(R"(\u00E9=\u20AC\uD83D\uDE00|)", {"[M\\\xC3\xA9]|@='\xE2\x82\xAC\xF0\x9F\x98\x80'|"});
  ExpectEntries("a]b=x|", {"[M\\a]b]|@='x'|"});
}

TEST(RegistryText, OfAKeyInAnyAsciiCaseTheLastValueCounts) {
  ExpectEntries("b=x|", {"[M\\a]|[M\\b]|@='x'|"});
  ExpectEntries("z=1|a=2|", {"[M\\z]|@='1'|[M\\a]|@='2'|"});
  ExpectEntries("a=2|", {"[M\\a]|@='1'|@='2'|"});
  ExpectEntries("Ab=3|c=2|", {R"([M\Ab]|@='1'|[M\c]|@='2'|[M\aB]|@='3'|)"});
  ExpectEntries("\\u00E9=1|\\u00C9=2|", {"[M\\\xC3\xA9]|@='1'|[M\\\xC3\x89]|@='2'|"});
}

TEST(RegistryText, OtherValuesAreReadOver) {
  ExpectEntries("a=x|", {"[M\\a]|'N'='v'|'x \\' y'=dword:00000001|@='x'|",
                         "[M\\a]|'N'=hex:00,\\\r|  01,\\|  02|@=hex(2):00,\\|  00|@='x'|"});
  ExpectEntries("", {"[M\\a]|'N'='c:\\dir' and more|", "[M\\a]|@=dword:00000001|", "[M]|@='x'|[M\\]|@='y'|"});
}

TEST(RegistryText, FirstDamageIsReportedWithItsLine) {
  ExpectDamage("line 1: it is not UTF-8", {"; \xC0\x80|", "\xFF\xFE[\0H\0"s});
  ExpectDamage("line 2: it is not UTF-8", {"; a|; \xC3\x28|"});
  ExpectDamage("line 3: it holds a NUL byte", {"; a||; \0|"s});
  ExpectDamage("line 1: neither a section nor a value nor a comment", {"a=b|"});
  ExpectDamage("line 2: neither a section nor a value nor a comment", {"Heading|stray|", "|Heading|"});
  ExpectDamage("line 4: neither a section nor a value nor a comment", {"[M\\a]|'N'=hex:00,\\|  01|stray|"});
  ExpectDamage("line 1: a value before any section", {"@='x'|"});
  ExpectDamage("line 2: a value before any section", {"; c|'N'='x'|", "Heading|@='x'|"});
  ExpectDamage("line 1: the section is not below HKEY_LOCAL_MACHINE",
               {"[HKEY_CURRENT_USER\\a]|", "[HKEY_LOCAL_MACHINES\\a]|", "[-HKEY_LOCAL_MACHINE\\a]|", "[]|"});
  ExpectDamage("line 1: the section is not closed", {"[M\\a|@='x'|", "[", "[M\\a] ; c|"});
  ExpectDamage("line 2: the quote is not closed",
               {"[M\\a]|@='x|", "[M\\a]|@='x\\'|", "[M\\a]|@='", "[M\\a]|@='\\", "[M\\a]|'N'='x|",
                "[M\\a]|'N|", "[M\\a]|@='x|stray|[|"});
  ExpectDamage("line 2: an unknown escape", {"[M\\a]|@='a\\nb'|"});
  ExpectDamage("line 2: text after the closing quote", {"[M\\a]|@='x' ; c|"});
  ExpectDamage("line 2: a value without \"=\"", {"[M\\a]|@ 'x'|", "[M\\a]|'N'|"});
  ExpectDamage("line 2: nothing after the \"=\"", {"[M\\a]|@=|"});
  ExpectDamage("line 2: the value is not complete", {"[M\\a]|'N'=hex:00,\\|"});
}

TEST(RegistryText, ManyValuesOfALongKeyTakeNoLongTime) {
  std::string bytes = "[HKEY_LOCAL_MACHINE\\" + std::string(500000, 'k') + "]\n";
  for (int i = 0; i < 100000; ++i) bytes += "@=\"\"\n";
  EXPECT_EQ(ParseRegistryFile(bytes).entries.size(), 1U);
}

TEST(RegistryFind, KeyMatchesInAnyAsciiCaseAndAsAWhole) {
  const auto entries = ParseRegistryFile(File(R"([M\Soft\Dir]|@='x'|[M\a]|@=''|)")).entries;
  EXPECT_EQ(FindRegistryValue(entries, u"sOFT\\dIR"), u"x");
  EXPECT_FALSE(FindRegistryValue(entries, u"a").IsNull());
  for (const char16_t* key : {u"Soft", u"Soft\\Dir\\", u"", static_cast<const char16_t*>(nullptr)})
    EXPECT_TRUE(FindRegistryValue(entries, key).IsNull());
}

TEST(RegistryEdit, NewKeyFollowsAtTheEndAfterABlankLine) {
  ExpectWith("", u"a\\b", u"c:\\d \"e\" \u00e9", "[M\\a\\b]|@='c:\\\\d \\'e\\' \xC3\xA9'|");
  ExpectWith("; c|[M\\a]|@='x'|", u"b", u"y", "; c|[M\\a]|@='x'||[M\\b]|@='y'|");
  ExpectWith("; c", u"b", u"y", "; c||[M\\b]|@='y'|");
  ExpectWith("[M\\b]", u"b", u"y", "[M\\b]|@='y'|");
}

TEST(RegistryEdit, OnlyTheValueOfTheKeyChanges) {
  ExpectWith("\xEF\xBB\xBFHeading|; c|[hkey_local_machine\\A]|'N'=dword:1|  @ = 'x'|; d|[M\\b]|@='z'|", u"a",
             u"y", "\xEF\xBB\xBFHeading|; c|[hkey_local_machine\\A]|'N'=dword:1|@='y'|; d|[M\\b]|@='z'|");
  ExpectWith("[M\\a]|; c|'N'='v'|", u"a", u"y", "[M\\a]|@='y'|; c|'N'='v'|");
  ExpectWith("[M\\a]|@=hex(2):00,\\|  00|; c|", u"a", u"y", "[M\\a]|@='y'|; c|");
}

TEST(RegistryEdit, LineEndsOfTheFileAreKept) {
  ExpectWith("; c\r|", u"a", u"y", "; c\r|\r|[M\\a]\r|@='y'\r|");
  ExpectWith("[M\\a]\r|@='x'\r|", u"a", u"y", "[M\\a]\r|@='y'\r|");
}

TEST(RegistryEdit, TheValueThatCountsIsTheOneThatChanges) {
  const std::string changed = "[M\\a]|@='1'|[M\\A]|@='y'|";
  ExpectWith("[M\\a]|@='1'|[M\\A]|@='2'|", u"a", u"y", changed);
  EXPECT_EQ(FindRegistryValue(ParseRegistryFile(File(changed)).entries, u"a"), u"y");
}

// The key's other sections are removed too, those below it are not.
TEST(RegistryEdit, RemovingTakesEveryValueOfTheKeyAndLeavesNoEmptySection) {
  ExpectWithout(R"(; c|[M\a]|@='1'|'N'='v'|[M\b]|@='2'|[M\A]|; d|@='3')", u"a",
                R"(; c|[M\a]|'N'='v'|[M\b]|@='2'|[M\A]|; d|)");
  ExpectWithout("[M\\b]|@='2'||[M\\a]|@='1'|", u"a", "[M\\b]|@='2'|");
  ExpectWithout("[M\\a]\r|\r|@='1'", u"a", "\r|");
  ExpectWithout(R"([M\a]||[M\A]|@='1'||[M\a\c]||[M\b]|)", u"a", R"(|[M\a\c]||[M\b]|)");
}

TEST(RegistryEdit, RemovingAnUnknownKeyOrAnEmptySectionChangesNothing) {
  ExpectWithout("|[M\\a]||[M\\b]|@='1'|", u"a", "|[M\\a]||[M\\b]|@='1'|");
  ExpectWithout("[M\\a]|@='1'", u"b", "[M\\a]|@='1'");
}

TEST(RegistryEdit, SetAndRemovedIsGoneWithoutATrace) {
  for (const std::string before : {"", "; c|", "[M\\b]|@='1'|", "; c\r|[HKEY_CLASSES_ROOT\\b]\r|"})
    EXPECT_EQ(WithoutRegistryValue(WithRegistryValue(File(before), u"a", u"1"), u"a"), File(before));
}

TEST(RegistryEdit, DamagedTextIsRefused) {
  EXPECT_THROW(WithRegistryValue("[\n", u"a", u"y"), RegistryDamage);
  EXPECT_THROW(WithoutRegistryValue("[\n", u"a"), RegistryDamage);
}

}  // namespace
}  // namespace qv
