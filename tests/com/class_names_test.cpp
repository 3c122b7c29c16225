// The names of classes in the registry.
#include <gtest/gtest.h>

#include <string>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/class_registry.h"

namespace qv {
namespace {

constexpr Guid kClass = ParseGuid("0123abcd-4567-89ef-0123-456789abcdef");
constexpr Guid kOther = ParseGuid("0123abcd-4567-89ef-0123-456789abcdee");
constexpr char16_t kText[] = u"{0123ABCD-4567-89ef-0123-456789abCDEF}";

class ClassNames : public testing::Test {
 protected:
  void Fill(const std::string& bytes) { directory_.Write("classes.reg", bytes); }

  // The message of an unknown name.
  static std::string Unknown() {
    Guid id{};
    EXPECT_EQ(CLSIDFromProgID(u"No.Such", &id), CO_E_CLASSSTRING);
    return TakenWords();
  }

  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", directory_.Path("classes.reg").c_str()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path("none").c_str()};
};

TEST_F(ClassNames, ProgIdLeadsToTheClassInAnyCase) {
  Fill("[HKEY_CLASSES_ROOT\\Some.Class.1\\CLSID]\n@=\"{0123ABCD-4567-89EF-0123-456789ABCDEF}\"\n");
  for (const char16_t* name : {u"Some.Class.1", u"SOME.CLASS.1"}) {
    Guid id = kOther;
    EXPECT_EQ(CLSIDFromProgID(name, &id), S_OK);
    EXPECT_TRUE(id == kClass);
  }
}

TEST_F(ClassNames, UnknownProgIdIsRefused) {
  Fill(
      "[HKEY_CLASSES_ROOT\\Deep\\Some.Class\\CLSID]\n@=\"{0123ABCD-4567-89EF-0123-456789ABCDEF}\"\n"
      "[HKEY_CLASSES_ROOT\\Bad\\CLSID]\n@=\"no id\"\n[HKEY_CLASSES_ROOT\\CLSID]\n"
      "@=\"{0123ABCD-4567-89EF-0123-456789ABCDEF}\"\n");
  for (const char16_t* name : {u"Some.Class", u"Deep\\Some.Class", u"Bad", u"", u"\\", u"Deep\\..",
                               static_cast<const char16_t*>(nullptr)}) {
    Guid id = kOther;
    EXPECT_EQ(CLSIDFromProgID(name, &id), CO_E_CLASSSTRING) << Shown(name);
    EXPECT_TRUE(id == Guid{});
  }
}

// The rest of the message names the installed file, whose place depends on the build.
TEST_F(ClassNames, UnknownProgIdNamesTheFilesAndTheVariable) {
  const std::string start = "The registry knows no class named \"No.Such\"; looked in ";
  const std::string user = ", " + directory_.Path("none/quorvane/registry.reg") + " (not there), /";
  EXPECT_EQ(Unknown().rfind(start + directory_.Path("classes.reg") + " (not there)" + user, 0), 0U);
  Fill("[HKEY_CLASSES_ROOT\\A.B\\CLSID]\n");
  EXPECT_EQ(Unknown().rfind(start + directory_.Path("classes.reg") + user, 0), 0U);
  Fill("[damaged\n");
  EXPECT_EQ(Unknown().rfind(start + directory_.Path("classes.reg") + " (line 1: ", 0), 0U);
  EXPECT_NE(Unknown().find("; the variable QV_REGISTRY names a file that is read first"), std::string::npos);
}

TEST_F(ClassNames, FoundProgIdLeavesNoRecord) {
  Fill("[HKEY_CLASSES_ROOT\\A.B\\CLSID]\n@=\"{0123ABCD-4567-89EF-0123-456789ABCDEF}\"\n");
  LeaveStaleRecord();
  Guid id{};
  EXPECT_EQ(CLSIDFromProgID(u"A.B", &id), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(ClassNames, ClassLeadsToItsProgId) {
  Fill(
      "[HKEY_CLASSES_ROOT\\CLSID\\{0123abcd-4567-89EF-0123-456789ABCDEF}\\ProgID]\n@=\"Some.Class.1\"\n"
      "[HKEY_CLASSES_ROOT\\CLSID\\{0123abcd-4567-89EF-0123-456789ABCDEE}\\ProgID]\n@=\"\"\n");
  WideString name;
  EXPECT_EQ(ProgIDFromCLSID(kClass, &name), S_OK);
  EXPECT_EQ(Shown(name), "Some.Class.1");
  EXPECT_EQ(ProgIDFromCLSID(kOther, &name), REGDB_E_CLASSNOTREG);
  EXPECT_TRUE(name.IsNull());
}

TEST_F(ClassNames, DamagedRegistryKnowsNothing) {
  Fill(
      "[HKEY_CLASSES_ROOT\\CLSID\\{0123ABCD-4567-89EF-0123-456789ABCDEF}\\ProgID]\n@=\"Some.Class."
      "1\"\nstray\n");
  WideString name = u"before";
  EXPECT_EQ(ProgIDFromCLSID(kClass, &name), REGDB_E_CLASSNOTREG);
  EXPECT_TRUE(name.IsNull());
}

TEST_F(ClassNames, NullTargetsAreRefused) {
  EXPECT_EQ(CLSIDFromProgID(u"a", nullptr), E_POINTER);
  EXPECT_EQ(CLSIDFromString(kText, nullptr), E_POINTER);
  EXPECT_EQ(ProgIDFromCLSID(kClass, nullptr), E_POINTER);
}

TEST(ClassIdText, ReadsAnyCase) {
  Guid id{};
  EXPECT_EQ(CLSIDFromString(kText, &id), S_OK);
  EXPECT_TRUE(id == kClass);
}

TEST(ClassIdText, OtherShapesAreRefused) {
  const char16_t* const texts[] = {u"",
                                   nullptr,
                                   u"0123abcd-4567-89ef-0123-456789abcdef",
                                   u"{0123abcd-4567-89ef-0123-456789abcdef",
                                   u"{0123abcd-4567-89ef-0123-456789abcdef} ",
                                   u"{0123abcd-4567-89ef-0123-456789abcdef}}",
                                   u"{0123abcd-4567-89ef-0123-456789abcdeg}",
                                   u"{0123abcd-4567-89ef-0123-456789abcde\u0131}",
                                   u"{0123abcd 4567 89ef 0123 456789abcdef}",
                                   u"(0123abcd-4567-89ef-0123-456789abcdef)",
                                   u"{0123abcd4567-89ef-0123-456789abcdef-}",
                                   u"{-123abcd-4567-89ef-0123-456789abcdef}",
                                   u"{x123abcd-4567-89ef-0123-456789abcdef}"};
  for (const char16_t* text : texts) {
    Guid id = kOther;
    EXPECT_EQ(CLSIDFromString(text, &id), CO_E_CLASSSTRING) << Shown(text);
    EXPECT_TRUE(id == Guid{});
  }
}

TEST(ClassIdText, NullUnitIsNoEnd) {
  Guid id = kOther;
  const std::u16string text = std::u16string(kText) + u'\0';
  EXPECT_EQ(CLSIDFromString(text, &id), CO_E_CLASSSTRING);
}

}  // namespace
}  // namespace qv
