// Values with names, keys without values, and keys that are removed with all below them.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "fixtures/environment.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/registry.h"
#include "registry/registry_file.h"
#include "registry/registry_notation.h"

namespace qv {
namespace {

// "key/name=value|" for each value with a name.
void ExpectNamed(const std::string& file, const std::string& values) {
  const RegistryContent content = ParseRegistryFile(File(file));
  std::string found = content.damage;
  for (const RegistryValue& value : content.named)
    found += Shown(value.key) + "/" + Shown(value.name) + "=" + Shown(value.value) + "|";
  EXPECT_EQ(found, values) << file;
}

void ExpectWith(const std::string& file, const RegistryValue& value, const std::string& changed) {
  EXPECT_EQ(WithRegistryValue(File(file), value), File(changed)) << file;
}

void ExpectWithoutKey(const std::string& file, const WideString& key, const std::string& changed) {
  EXPECT_EQ(WithoutRegistryKey(File(file), key), File(changed)) << file;
}

TEST(RegistryNamedValue, TextsAreReadAndOtherKindsReadOver) {
  ExpectNamed(R"([M\a]|'N'='v'|@='own'| 'x \'y\\' = '' |[M\b]|'N'='w'|)", "a/N=v|a/x \"y\\=|b/N=w|");
  ExpectNamed(R"([M\a]|'N'=dword:00000001|'N'='c:\dir'|'N'='v' more|'N'=hex:00,\|  01|[M]|'N'='root'|)", "");
}

TEST(RegistryNamedValue, LastOneCountsInAnyCase) {
  const auto named = ParseRegistryFile(File("[M\\Key]|'Name'='1'|'nAME'='2'|[M\\Other]|'Name'='3'|")).named;
  EXPECT_EQ(Shown(FindNamedRegistryValue(named, u"KEY", u"NAME")), "2");
  EXPECT_EQ(Shown(FindNamedRegistryValue(named, u"other", u"name")), "3");
  EXPECT_TRUE(FindNamedRegistryValue(named, u"Key", u"Nam").IsNull());
  EXPECT_TRUE(FindNamedRegistryValue(named, u"Ke", u"Name").IsNull());
}

TEST(RegistryClasses, RootOfClassesIsAPartOfTheMachines) {
  const std::string file =
      "[HKEY_CLASSES_ROOT\\A.B\\CLSID]|@='1'|'N'='2'|[hkey_classes_root]|@='3'|[M\\SOFTWARE\\CLASSES\\a."
      "b\\clsid]|@='4'|";
  const RegistryContent content = ParseRegistryFile(File(file));
  ASSERT_EQ(content.entries.size(), 2U);
  EXPECT_EQ(Shown(content.entries[0].key), "SOFTWARE\\Classes\\A.B\\CLSID");
  EXPECT_EQ(Shown(content.entries[0].value), "4");
  EXPECT_EQ(Shown(content.entries[1].key), "SOFTWARE\\Classes");
  ExpectNamed(file, R"(SOFTWARE\Classes\A.B\CLSID/N=2|)");
  EXPECT_EQ(ParseRegistryFile("[HKEY_CLASSES_ROOTS\\a]\n").damage,
            "line 1: the section is not below HKEY_LOCAL_MACHINE");
}

TEST(RegistryClasses, EditFindsTheSectionUnderEitherName) {
  ExpectWith("[HKEY_CLASSES_ROOT\\a]|@='1'|", {u"software\\classes\\A", nullptr, u"2"},
             "[HKEY_CLASSES_ROOT\\a]|@='2'|");
  ExpectWithoutKey("[HKEY_CLASSES_ROOT\\a]|@='1'|", u"SOFTWARE\\Classes\\a", "");
}

TEST(RegistryNamedEdit, NewNameFollowsTheOtherValuesOfItsKey) {
  ExpectWith("[M\\a]|@='1'|'M'='2'|; c||[M\\b]|", {u"a", u"N\"", u"c:\\x"},
             R"([M\a]|@='1'|'M'='2'|'N\''='c:\\x'|; c||[M\b]|)");
  ExpectWith("", {u"a", u"N", u"1"}, "[M\\a]|'N'='1'|");
}

TEST(RegistryNamedEdit, ValueOfThatNameIsReplacedAndOthersStay) {
  ExpectWith("[M\\a]|'n'=hex:00,\\|  01|@='1'|", {u"a", u"N", u"x"}, "[M\\a]|'N'='x'|@='1'|");
  ExpectWith("[M\\a]|'N'='1'|", {u"a", nullptr, u"own"}, "[M\\a]|@='own'|'N'='1'|");
}

TEST(RegistryNamedEdit, NullMakesTheKeyAloneAndOnlyOnce) {
  ExpectWith("; c|", {u"a", nullptr, nullptr}, "; c||[M\\a]|");
  ExpectWith("[M\\A]|@='1'|", {u"a", nullptr, nullptr}, "[M\\A]|@='1'|");
}

TEST(RegistryKeyRemoval, TakesTheKeyAndAllBelowButNoComments) {
  ExpectWithoutKey(R"([M\a]|@='1'||[M\a\b]|@='2'|'N'=hex:00,\|  01||[M\A\B\c]||[M\a\bc]|@='3'|)", u"a\\b",
                   R"([M\a]|@='1'||[M\a\bc]|@='3'|)");
  ExpectWithoutKey("; top|||[M\\a]|; inside|@='1'||; next|[M\\b]|", u"a", "; top||; inside||; next|[M\\b]|");
}

TEST(RegistryKeyRemoval, AddedKeysAreGoneWithoutATrace) {
  const std::string before = File("; c|[M\\b]|@='1'|");
  std::string bytes = before;
  for (const RegistryValue& value : {RegistryValue{u"a", nullptr, u"1"}, RegistryValue{u"a", u"N", u"2"},
                                     RegistryValue{u"a\\c", nullptr, nullptr}})
    bytes = WithRegistryValue(bytes, value);
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
  EXPECT_EQ(directory_.Read("quorvane/registry.reg"), File("[M\\a]|@='1'|'N'='2'||[M\\a\\b]|"));
  EXPECT_EQ(Shown(ReadRegistryValue(u"A")), "1");
  EXPECT_EQ(Shown(ReadRegistryValue(u"A", u"n")), "2");
  EXPECT_EQ(Shown(ReadRegistryValue(u"A", u"")), "1");
  EXPECT_TRUE(ReadRegistryValue(u"A", u"m").IsNull());
  EXPECT_EQ(RemoveRegistryKeys({u"zzz", u"a\\b", u"a"}), file);
  EXPECT_EQ(directory_.Read("quorvane/registry.reg"), "");
  EXPECT_EQ(RemoveRegistryKeys({u"a"}), "");
}

TEST_F(RegistryValues, FirstFileThatHasTheNameDecides) {
  named_.Set(directory_.Write("named.reg", File("[M\\a]|'M'='x'|")).c_str());
  directory_.Write("quorvane/registry.reg", File("[M\\a]|'N'='user'|'M'='user'|"));
  EXPECT_EQ(Shown(ReadRegistryValue(u"a", u"N")), "user");
  EXPECT_EQ(Shown(ReadRegistryValue(u"a", u"M")), "x");
}

TEST_F(RegistryValues, AllAreWrittenOrNone) {
  const std::pair<RegistryValue, const char*> rows[] = {
      {{u"", nullptr, u"2"}, "The key is empty"},
      {{u"b", u"x\ny", u"2"}, "The name holds a control character"}};
  for (const auto& [bad, message] : rows)
    EXPECT_EQ(Thrown([&, value = bad] {
                WriteRegistryValues({{u"a", nullptr, u"1"}, value});
              }),
              std::string("_com_error 0x80070057 ") + message);
  EXPECT_EQ(Thrown([] { RemoveRegistryKeys({u"a", nullptr}); }), "_com_error 0x80070057 The key is empty");
  EXPECT_EQ(directory_.Count(), 0);
}

}  // namespace
}  // namespace qv
