#include "registry/registry_file.h"

#include <gtest/gtest.h>

#include <string>

#include "fixtures/shown_text.h"
#include "registry/registry_lines.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::string_literals::operator""s;

// "damaged: ..." or one "key=value" per line.
std::string Outline(const RegistryContent& content) {
  if (!content.damage.empty()) return "damaged: " + content.damage;
  std::string text;
  for (const RegistryEntry& entry : content.entries)
    text += Shown(entry.key) + "=" + Shown(entry.value) + "\n";
  return text;
}

struct FileRow {
  const char* name;
  std::string bytes;
  const char* outline;
};

class RegistryText : public testing::TestWithParam<FileRow> {};

TEST_P(RegistryText, ReadsAs) {
  EXPECT_EQ(Outline(ParseRegistryFile(GetParam().bytes)), GetParam().outline);
}

std::string RowName(const testing::TestParamInfo<FileRow>& row) {
  return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Good, RegistryText,
    testing::Values(
        FileRow{"Nothing", "", ""}, FileRow{"OnlyComments", "; a\n\n  ; b\n \t\n", ""},
        FileRow{"OneKey", "[HKEY_LOCAL_MACHINE\\a\\b]\n@=\"x\"\n", "a\\b=x\n"},
        FileRow{"NoLineEndAtTheEnd", "[HKEY_LOCAL_MACHINE\\a]\n@=\"x\"", "a=x\n"},
        FileRow{"CarriageReturns", "; c\r\n[HKEY_LOCAL_MACHINE\\a]\r\n@=\"x\"\r\n", "a=x\n"},
        FileRow{"ByteOrderMark", "\xEF\xBB\xBF[HKEY_LOCAL_MACHINE\\a]\n@=\"x\"\n", "a=x\n"},
        FileRow{"ByteOrderMarkAndHeading", "\xEF\xBB\xBFHeading\n[HKEY_LOCAL_MACHINE\\a]\n@=\"x\"\n",
                "a=x\n"},
        FileRow{"Heading", "Some Editor 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\a]\r\n@=\"x\"\r\n", "a=x\n"},
        FileRow{"RootInAnyCase", "[hKey_Local_maChine\\a]\n@=\"x\"\n", "a=x\n"},
        FileRow{"EmptyText", "[HKEY_LOCAL_MACHINE\\a]\n@=\"\"\n", "a=\n"},
        FileRow{"Escapes", "[HKEY_LOCAL_MACHINE\\a]\n@=\"c:\\\\d \\\"e\\\" \\\\\"\n", "a=c:\\d \"e\" \\\n"},
        FileRow{"NotAscii", "[HKEY_LOCAL_MACHINE\\\xC3\xA9]\n@=\"\xE2\x82\xAC\xF0\x9F\x98\x80\"\n",
                "\\u00E9=\\u20AC\\uD83D\\uDE00\n"},
        FileRow{"BlanksAround", " \t[HKEY_LOCAL_MACHINE\\a] \n\t@ = \" x \"\t \n", "a= x \n"},
        FileRow{"SectionWithoutValue", "[HKEY_LOCAL_MACHINE\\a]\n[HKEY_LOCAL_MACHINE\\b]\n@=\"x\"\n",
                "b=x\n"},
        FileRow{"KeysInTheirOrder", "[HKEY_LOCAL_MACHINE\\z]\n@=\"1\"\n[HKEY_LOCAL_MACHINE\\a]\n@=\"2\"\n",
                "z=1\na=2\n"},
        FileRow{"LastOfOneSection", "[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n@=\"2\"\n", "a=2\n"},
        FileRow{"LastOfTwoSections",
                "[HKEY_LOCAL_MACHINE\\Ab]\n@=\"1\"\n[HKEY_LOCAL_MACHINE\\c]\n@=\"2\"\n"
                "[HKEY_LOCAL_MACHINE\\aB]\n@=\"3\"\n",
                "Ab=3\nc=2\n"},
        FileRow{"OnlyAsciiFolds",
                "[HKEY_LOCAL_MACHINE\\\xC3\xA9]\n@=\"1\"\n[HKEY_LOCAL_MACHINE\\\xC3\x89]\n@=\"2\"\n",
                "\\u00E9=1\n\\u00C9=2\n"},
        FileRow{"NamedValuesAreNotRead",
                "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"v\"\n\"x \\\" y\"=dword:00000001\n@=\"x\"\n", "a=x\n"},
        FileRow{"NamedTextIsNotLookedInto", "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"c:\\dir\" and more\n", ""},
        FileRow{"OtherKindIsNotRead", "[HKEY_LOCAL_MACHINE\\a]\n@=dword:00000001\n", ""},
        FileRow{"BytesRunOverLines",
                "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=hex:00,\\\r\n  01,\\\n  02\n@=hex(2):00,\\\n  00\n@=\"x\"\n",
                "a=x\n"},
        FileRow{"RootItselfHasNoKey", "[HKEY_LOCAL_MACHINE]\n@=\"x\"\n[HKEY_LOCAL_MACHINE\\]\n@=\"y\"\n", ""},
        FileRow{"BracketInKey", "[HKEY_LOCAL_MACHINE\\a]b]\n@=\"x\"\n", "a]b=x\n"}),
    RowName);

INSTANTIATE_TEST_SUITE_P(
    Damaged, RegistryText,
    testing::Values(
        FileRow{"BadUtf8", "; a\n; \xC3\x28\n", "damaged: line 2: it is not UTF-8"},
        FileRow{"OverlongUtf8", "; \xC0\x80\n", "damaged: line 1: it is not UTF-8"},
        FileRow{"Utf16", "\xFF\xFE[\0H\0"s, "damaged: line 1: it is not UTF-8"},
        FileRow{"NulByte", "; a\n\n; \0\n"s, "damaged: line 3: it holds a NUL byte"},
        FileRow{"StrayLine", "Heading\nstray\n",
                "damaged: line 2: neither a section nor a value nor a comment"},
        FileRow{"HeadingBehindBlankLine", "\nHeading\n",
                "damaged: line 2: neither a section nor a value nor a comment"},
        FileRow{"HeadingWithEqualsSign", "a=b\n",
                "damaged: line 1: neither a section nor a value nor a comment"},
        FileRow{"ValueFirst", "@=\"x\"\n", "damaged: line 1: a value before any section"},
        FileRow{"NamedValueFirst", "; c\n\"N\"=\"x\"\n", "damaged: line 2: a value before any section"},
        FileRow{"ValueBehindHeading", "Heading\n@=\"x\"\n", "damaged: line 2: a value before any section"},
        FileRow{"OtherRoot", "[HKEY_CURRENT_USER\\a]\n",
                "damaged: line 1: the section is not below HKEY_LOCAL_MACHINE"},
        FileRow{"LongerRoot", "[HKEY_LOCAL_MACHINES\\a]\n",
                "damaged: line 1: the section is not below HKEY_LOCAL_MACHINE"},
        FileRow{"TakenAwaySection", "[-HKEY_LOCAL_MACHINE\\a]\n",
                "damaged: line 1: the section is not below HKEY_LOCAL_MACHINE"},
        FileRow{"EmptySection", "[]\n", "damaged: line 1: the section is not below HKEY_LOCAL_MACHINE"},
        FileRow{"OpenSection", "[HKEY_LOCAL_MACHINE\\a\n@=\"x\"\n",
                "damaged: line 1: the section is not closed"},
        FileRow{"LoneBracket", "[", "damaged: line 1: the section is not closed"},
        FileRow{"TextBehindSection", "[HKEY_LOCAL_MACHINE\\a] ; c\n",
                "damaged: line 1: the section is not closed"},
        FileRow{"OpenQuote", "[HKEY_LOCAL_MACHINE\\a]\n@=\"x\n", "damaged: line 2: the quote is not closed"},
        FileRow{"EscapedQuoteStaysOpen", "[HKEY_LOCAL_MACHINE\\a]\n@=\"x\\\"\n",
                "damaged: line 2: the quote is not closed"},
        FileRow{"LoneQuote", "[HKEY_LOCAL_MACHINE\\a]\n@=\"", "damaged: line 2: the quote is not closed"},
        FileRow{"EndsInEscape", "[HKEY_LOCAL_MACHINE\\a]\n@=\"\\",
                "damaged: line 2: the quote is not closed"},
        FileRow{"OpenNamedText", "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"x\n",
                "damaged: line 2: the quote is not closed"},
        FileRow{"OpenName", "[HKEY_LOCAL_MACHINE\\a]\n\"N\n", "damaged: line 2: the quote is not closed"},
        FileRow{"UnknownEscape", "[HKEY_LOCAL_MACHINE\\a]\n@=\"a\\nb\"\n",
                "damaged: line 2: an unknown escape"},
        FileRow{"TextBehindQuote", "[HKEY_LOCAL_MACHINE\\a]\n@=\"x\" ; c\n",
                "damaged: line 2: text behind the closing quote"},
        FileRow{"NoEqualsSign", "[HKEY_LOCAL_MACHINE\\a]\n@ \"x\"\n",
                "damaged: line 2: a value without \"=\""},
        FileRow{"NameWithoutEqualsSign", "[HKEY_LOCAL_MACHINE\\a]\n\"N\"\n",
                "damaged: line 2: a value without \"=\""},
        FileRow{"NoValue", "[HKEY_LOCAL_MACHINE\\a]\n@=\n", "damaged: line 2: nothing behind the \"=\""},
        FileRow{"BytesWithoutEnd", "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=hex:00,\\\n",
                "damaged: line 2: the value is not complete"},
        FileRow{"LineBehindBytesIsCounted", "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=hex:00,\\\n  01\nstray\n",
                "damaged: line 4: neither a section nor a value nor a comment"},
        FileRow{"FirstDamageIsTold", "[HKEY_LOCAL_MACHINE\\a]\n@=\"x\nstray\n[\n",
                "damaged: line 2: the quote is not closed"}),
    RowName);

TEST(RegistryText, ManyValuesOfALongKeyTakeNoLongTime) {
  std::string bytes = "[HKEY_LOCAL_MACHINE\\" + std::string(500000, 'k') + "]\n";
  for (int i = 0; i < 100000; ++i) bytes += "@=\"\"\n";
  EXPECT_EQ(ParseRegistryFile(bytes).entries.size(), 1u);
}

TEST(RegistryFind, KeyMatchesInAnyAsciiCaseAndAsAWhole) {
  const auto entries = ParseRegistryFile("[HKEY_LOCAL_MACHINE\\Soft\\Dir]\n@=\"x\"\n").entries;
  EXPECT_EQ(FindRegistryValue(entries, u"sOFT\\dIR"), u"x");
  EXPECT_TRUE(FindRegistryValue(entries, u"Soft").IsNull());
  EXPECT_TRUE(FindRegistryValue(entries, u"Soft\\Dir\\").IsNull());
  EXPECT_TRUE(FindRegistryValue(entries, u"").IsNull());
  EXPECT_TRUE(FindRegistryValue(entries, nullptr).IsNull());
}

TEST(RegistryFind, EmptyTextIsNotNull) {
  const auto entries = ParseRegistryFile("[HKEY_LOCAL_MACHINE\\a]\n@=\"\"\n").entries;
  EXPECT_FALSE(FindRegistryValue(entries, u"a").IsNull());
}

TEST(RegistryEdit, EmptyFileGetsSectionAndValue) {
  EXPECT_EQ(WithRegistryValue("", u"a\\b", u"c:\\d \"e\" \u00e9"),
            "[HKEY_LOCAL_MACHINE\\a\\b]\n@=\"c:\\\\d \\\"e\\\" \xC3\xA9\"\n");
}

TEST(RegistryEdit, NewKeyStandsAtTheEndBehindABlankLine) {
  EXPECT_EQ(WithRegistryValue("; c\n[HKEY_LOCAL_MACHINE\\a]\n@=\"x\"\n", u"b", u"y"),
            "; c\n[HKEY_LOCAL_MACHINE\\a]\n@=\"x\"\n\n[HKEY_LOCAL_MACHINE\\b]\n@=\"y\"\n");
}

TEST(RegistryEdit, LastLineWithoutEndIsEndedFirst) {
  EXPECT_EQ(WithRegistryValue("; c", u"b", u"y"), "; c\n\n[HKEY_LOCAL_MACHINE\\b]\n@=\"y\"\n");
  EXPECT_EQ(WithRegistryValue("[HKEY_LOCAL_MACHINE\\b]", u"b", u"y"), "[HKEY_LOCAL_MACHINE\\b]\n@=\"y\"\n");
}

TEST(RegistryEdit, OnlyTheValueOfTheKeyChanges) {
  EXPECT_EQ(
      WithRegistryValue("\xEF\xBB\xBFHeading\n; c\n[hkey_local_machine\\A]\n\"N\"=dword:1\n  @ = \"x\"\n;"
                        " d\n[HKEY_LOCAL_MACHINE\\b]\n@=\"z\"\n",
                        u"a", u"y"),
      "\xEF\xBB\xBFHeading\n; c\n[hkey_local_machine\\A]\n\"N\"=dword:1\n@=\"y\"\n; d\n"
      "[HKEY_LOCAL_MACHINE\\b]\n@=\"z\"\n");
}

TEST(RegistryEdit, SectionWithoutValueGetsItBehindItsName) {
  EXPECT_EQ(WithRegistryValue("[HKEY_LOCAL_MACHINE\\a]\n; c\n\"N\"=\"v\"\n", u"a", u"y"),
            "[HKEY_LOCAL_MACHINE\\a]\n@=\"y\"\n; c\n\"N\"=\"v\"\n");
}

TEST(RegistryEdit, LineEndsOfTheFileAreKept) {
  EXPECT_EQ(WithRegistryValue("; c\r\n", u"a", u"y"), "; c\r\n\r\n[HKEY_LOCAL_MACHINE\\a]\r\n@=\"y\"\r\n");
  EXPECT_EQ(WithRegistryValue("[HKEY_LOCAL_MACHINE\\a]\r\n@=\"x\"\r\n", u"a", u"y"),
            "[HKEY_LOCAL_MACHINE\\a]\r\n@=\"y\"\r\n");
}

TEST(RegistryEdit, TheValueThatCountsIsTheOneThatChanges) {
  const std::string changed =
      WithRegistryValue("[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n[HKEY_LOCAL_MACHINE\\A]\n@=\"2\"\n", u"a", u"y");
  EXPECT_EQ(changed, "[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n[HKEY_LOCAL_MACHINE\\A]\n@=\"y\"\n");
  EXPECT_EQ(FindRegistryValue(ParseRegistryFile(changed).entries, u"a"), u"y");
}

TEST(RegistryEdit, ValueOfAnotherKindGivesWayWithAllItsLines) {
  EXPECT_EQ(WithRegistryValue("[HKEY_LOCAL_MACHINE\\a]\n@=hex(2):00,\\\n  00\n; c\n", u"a", u"y"),
            "[HKEY_LOCAL_MACHINE\\a]\n@=\"y\"\n; c\n");
}

TEST(RegistryEdit, RemovingTakesEveryValueOfTheKeyAndNothingElse) {
  EXPECT_EQ(WithoutRegistryValue("; c\n[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n\"N\"=\"v\"\n"
                                 "[HKEY_LOCAL_MACHINE\\b]\n@=\"2\"\n[HKEY_LOCAL_MACHINE\\A]\n; d\n@=\"3\"",
                                 u"a"),
            "; c\n[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"v\"\n[HKEY_LOCAL_MACHINE\\b]\n@=\"2\"\n"
            "[HKEY_LOCAL_MACHINE\\A]\n; d\n");
}

TEST(RegistryEdit, RemovingLeavesNoEmptySection) {
  EXPECT_EQ(
      WithoutRegistryValue("[HKEY_LOCAL_MACHINE\\b]\n@=\"2\"\n\n[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n", u"a"),
      "[HKEY_LOCAL_MACHINE\\b]\n@=\"2\"\n");
  EXPECT_EQ(WithoutRegistryValue("[HKEY_LOCAL_MACHINE\\a]\r\n\r\n@=\"1\"", u"a"), "\r\n");
  // The key's other sections, and those below it.
  EXPECT_EQ(WithoutRegistryValue("[HKEY_LOCAL_MACHINE\\a]\n\n[HKEY_LOCAL_MACHINE\\A]\n@=\"1\"\n\n"
                                 "[HKEY_LOCAL_MACHINE\\a\\c]\n\n[HKEY_LOCAL_MACHINE\\b]\n",
                                 u"a"),
            "\n[HKEY_LOCAL_MACHINE\\a\\c]\n\n[HKEY_LOCAL_MACHINE\\b]\n");
}

TEST(RegistryEdit, EmptySectionWithoutATextToRemoveStays) {
  const char* bytes = "\n[HKEY_LOCAL_MACHINE\\a]\n\n[HKEY_LOCAL_MACHINE\\b]\n@=\"1\"\n";
  EXPECT_EQ(WithoutRegistryValue(bytes, u"a"), bytes);
}

TEST(RegistryEdit, SetAndRemovedIsGoneWithoutATrace) {
  for (const std::string before :
       {"", "; c\n", "[HKEY_LOCAL_MACHINE\\b]\n@=\"1\"\n", "; c\r\n[HKEY_CLASSES_ROOT\\b]\r\n"})
    EXPECT_EQ(WithoutRegistryValue(WithRegistryValue(before, u"a", u"1"), u"a"), before);
}

TEST(RegistryEdit, RemovingAnUnknownKeyChangesNothing) {
  const char* bytes = "[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"";
  EXPECT_EQ(WithoutRegistryValue(bytes, u"b"), bytes);
}

TEST(RegistryEdit, DamagedTextIsRefused) {
  EXPECT_THROW(WithRegistryValue("[\n", u"a", u"y"), RegistryDamage);
  EXPECT_THROW(WithoutRegistryValue("[\n", u"a"), RegistryDamage);
}

}  // namespace
}  // namespace qv
