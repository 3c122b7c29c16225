// Values with names, keys without values, and keys that go with all below them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/environment.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/registry.h"
#include "registry/registry_file.h"

namespace qv {
namespace {

// "key|name=value" per line.
std::string NamedOutline(const std::string& bytes) {
  const RegistryContent content = ParseRegistryFile(bytes);
  std::string text = content.damage.empty() ? "" : "damaged: " + content.damage;
  for (const RegistryValue& value : content.named)
    text += Shown(value.key) + "|" + Shown(value.name) + "=" + Shown(value.value) + "\n";
  return text;
}

TEST(RegistryNamedValue, TextsAreRead) {
  EXPECT_EQ(NamedOutline("[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"v\"\n@=\"own\"\n \"x \\\"y\\\\\" = \"\" \n"
                         "[HKEY_LOCAL_MACHINE\\b]\n\"N\"=\"w\"\n"),
            "a|N=v\na|x \"y\\=\nb|N=w\n");
}

TEST(RegistryNamedValue, WhatIsNoTextIsPassedOver) {
  EXPECT_EQ(
      NamedOutline("[HKEY_LOCAL_MACHINE\\a]\n\"N\"=dword:00000001\n\"N\"=\"c:\\dir\"\n\"N\"=\"v\" more\n"
                   "\"N\"=hex:00,\\\n  01\n[HKEY_LOCAL_MACHINE]\n\"N\"=\"root\"\n"),
      "");
}

TEST(RegistryNamedValue, LastOneCountsInAnyCase) {
  const auto named = ParseRegistryFile(
                         "[HKEY_LOCAL_MACHINE\\Key]\n\"Name\"=\"1\"\n\"nAME\"=\"2\"\n"
                         "[HKEY_LOCAL_MACHINE\\Other]\n\"Name\"=\"3\"\n")
                         .named;
  EXPECT_EQ(Shown(FindNamedRegistryValue(named, u"KEY", u"NAME")), "2");
  EXPECT_EQ(Shown(FindNamedRegistryValue(named, u"other", u"name")), "3");
  EXPECT_TRUE(FindNamedRegistryValue(named, u"Key", u"Nam").IsNull());
  EXPECT_TRUE(FindNamedRegistryValue(named, u"Ke", u"Name").IsNull());
}

TEST(RegistryClasses, RootOfClassesIsAPartOfTheMachines) {
  const RegistryContent content = ParseRegistryFile(
      "[HKEY_CLASSES_ROOT\\A.B\\CLSID]\n@=\"1\"\n\"N\"=\"2\"\n[hkey_classes_root]\n@=\"3\"\n"
      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\CLASSES\\a.b\\clsid]\n@=\"4\"\n");
  ASSERT_EQ(content.entries.size(), 2u);
  EXPECT_EQ(Shown(content.entries[0].key), "SOFTWARE\\Classes\\A.B\\CLSID");
  EXPECT_EQ(Shown(content.entries[0].value), "4");
  EXPECT_EQ(Shown(content.entries[1].key), "SOFTWARE\\Classes");
  ASSERT_EQ(content.named.size(), 1u);
  EXPECT_EQ(Shown(content.named[0].key), "SOFTWARE\\Classes\\A.B\\CLSID");
}

TEST(RegistryClasses, OtherRootsStayDamage) {
  EXPECT_EQ(ParseRegistryFile("[HKEY_CLASSES_ROOTS\\a]\n").damage,
            "line 1: the section is not below HKEY_LOCAL_MACHINE");
}

TEST(RegistryClasses, EditFindsTheSectionUnderEitherName) {
  EXPECT_EQ(WithRegistryValue("[HKEY_CLASSES_ROOT\\a]\n@=\"1\"\n", u"software\\classes\\A", u"2"),
            "[HKEY_CLASSES_ROOT\\a]\n@=\"2\"\n");
  EXPECT_EQ(WithoutRegistryKey("[HKEY_CLASSES_ROOT\\a]\n@=\"1\"\n", u"SOFTWARE\\Classes\\a"), "");
}

TEST(RegistryNamedEdit, NewNameStandsBehindTheOtherValuesOfItsKey) {
  EXPECT_EQ(
      WithRegistryValue("[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n\"M\"=\"2\"\n; c\n\n[HKEY_LOCAL_MACHINE\\b]\n",
                        {u"a", u"N\"", u"c:\\x"}),
      "[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n\"M\"=\"2\"\n\"N\\\"\"=\"c:\\\\x\"\n; "
      "c\n\n[HKEY_LOCAL_MACHINE\\b]\n");
  EXPECT_EQ(WithRegistryValue("", {u"a", u"N", u"1"}), "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"1\"\n");
}

TEST(RegistryNamedEdit, ValueOfThatNameIsReplaced) {
  EXPECT_EQ(
      WithRegistryValue("[HKEY_LOCAL_MACHINE\\a]\n\"n\"=hex:00,\\\n  01\n@=\"1\"\n", {u"a", u"N", u"x"}),
      "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"x\"\n@=\"1\"\n");
}

TEST(RegistryNamedEdit, OwnValueDoesNotDisturbNamedOnes) {
  EXPECT_EQ(WithRegistryValue("[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"1\"\n", u"a", u"own"),
            "[HKEY_LOCAL_MACHINE\\a]\n@=\"own\"\n\"N\"=\"1\"\n");
}

TEST(RegistryNamedEdit, NullMakesTheKeyAloneAndOnlyOnce) {
  EXPECT_EQ(WithRegistryValue("; c\n", {u"a", nullptr, nullptr}), "; c\n\n[HKEY_LOCAL_MACHINE\\a]\n");
  EXPECT_EQ(WithRegistryValue("[HKEY_LOCAL_MACHINE\\A]\n@=\"1\"\n", {u"a", nullptr, nullptr}),
            "[HKEY_LOCAL_MACHINE\\A]\n@=\"1\"\n");
}

TEST(RegistryKeyRemoval, TakesTheKeyAndAllBelow) {
  EXPECT_EQ(WithoutRegistryKey(
                "[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n\n[HKEY_LOCAL_MACHINE\\a\\b]\n@=\"2\"\n\"N\"=hex:00,\\\n"
                "  01\n\n[HKEY_LOCAL_MACHINE\\A\\B\\c]\n\n[HKEY_LOCAL_MACHINE\\a\\bc]\n@=\"3\"\n",
                u"a\\b"),
            "[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n\n[HKEY_LOCAL_MACHINE\\a\\bc]\n@=\"3\"\n");
}

TEST(RegistryKeyRemoval, CommentsAndOtherBlankLinesStay) {
  EXPECT_EQ(WithoutRegistryKey("; top\n\n\n[HKEY_LOCAL_MACHINE\\a]\n; inside\n@=\"1\"\n\n; next\n"
                               "[HKEY_LOCAL_MACHINE\\b]\n",
                               u"a"),
            "; top\n\n; inside\n\n; next\n[HKEY_LOCAL_MACHINE\\b]\n");
}

TEST(RegistryKeyRemoval, WhatWasAddedIsGoneWithoutATrace) {
  const std::string before = "; c\n[HKEY_LOCAL_MACHINE\\b]\n@=\"1\"\n";
  std::string bytes = WithRegistryValue(before, {u"a", nullptr, u"1"});
  bytes = WithRegistryValue(bytes, {u"a", u"N", u"2"});
  bytes = WithRegistryValue(bytes, {u"a\\c", nullptr, nullptr});
  EXPECT_NE(bytes, before);
  EXPECT_EQ(WithoutRegistryKey(bytes, u"a"), before);
}

class RegistryValues : public testing::Test {
 protected:
  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", nullptr};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path().c_str()};
};

TEST_F(RegistryValues, AreWrittenReadAndRemoved) {
  const std::string file = directory_.Path("quorvane/registry.reg");
  EXPECT_EQ(WriteRegistryValues({{u"a", nullptr, u"1"}, {u"a", u"N", u"2"}, {u"a\\b", u"", nullptr}}), file);
  EXPECT_EQ(directory_.Read("quorvane/registry.reg"),
            "[HKEY_LOCAL_MACHINE\\a]\n@=\"1\"\n\"N\"=\"2\"\n\n[HKEY_LOCAL_MACHINE\\a\\b]\n");
  EXPECT_EQ(Shown(ReadRegistryValue(u"A")), "1");
  EXPECT_EQ(Shown(ReadRegistryValue(u"A", u"n")), "2");
  EXPECT_EQ(Shown(ReadRegistryValue(u"A", u"")), "1");
  EXPECT_TRUE(ReadRegistryValue(u"A", u"m").IsNull());
  EXPECT_EQ(RemoveRegistryKeys({u"zzz", u"a\\b", u"a"}), file);
  EXPECT_EQ(directory_.Read("quorvane/registry.reg"), "");
  EXPECT_EQ(RemoveRegistryKeys({u"a"}), "");
}

TEST_F(RegistryValues, FirstFileThatHasTheNameDecides) {
  named_.Set(directory_.Write("named.reg", "[HKEY_LOCAL_MACHINE\\a]\n\"M\"=\"x\"\n").c_str());
  directory_.Write("quorvane/registry.reg", "[HKEY_LOCAL_MACHINE\\a]\n\"N\"=\"user\"\n\"M\"=\"user\"\n");
  EXPECT_EQ(Shown(ReadRegistryValue(u"a", u"N")), "user");
  EXPECT_EQ(Shown(ReadRegistryValue(u"a", u"M")), "x");
}

TEST_F(RegistryValues, AllAreWrittenOrNone) {
  EXPECT_EQ(Thrown([] {
              WriteRegistryValues({{u"a", nullptr, u"1"}, {u"", nullptr, u"2"}});
            }),
            "_com_error 0x80070057 The key is empty");
  EXPECT_EQ(Thrown([] {
              WriteRegistryValues({{u"a", nullptr, u"1"}, {u"b", u"x\ny", u"2"}});
            }),
            "_com_error 0x80070057 The name holds a control character");
  EXPECT_EQ(Thrown([] { RemoveRegistryKeys({u"a", nullptr}); }), "_com_error 0x80070057 The key is empty");
  EXPECT_EQ(directory_.Count(), 0);
}

}  // namespace
}  // namespace qv
