// Which formater the factory has for a type name.
#include "format/formater_factory.h"

#include <gtest/gtest.h>

#include "format/factory_fixture.h"
#include "format/probe_formater.h"
#include "format/scalar_formaters.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

class FormaterFactoryTest : public FactoryFixture {
 protected:
  static void ExpectUnknown(std::initializer_list<const char16_t*> names) {
    for (const char16_t* name : names)
      EXPECT_EQ(Get(name), nullptr) << testing::PrintToString(WideString(name));
  }
};

TEST_F(FormaterFactoryTest, IsOnePerProcess) {
  ASSERT_NE(FormaterFactory::Instance(), nullptr);
  EXPECT_EQ(FormaterFactory::Instance(), FormaterFactory::Instance());
}

// Only ASCII letters fold.
TEST_F(FormaterFactoryTest, NamesAreFoundInAnyCase) {
  FormaterSerializer* const formater = Get(u"xsd:int");
  ASSERT_NE(formater, nullptr);
  for (const char16_t* name : {u"XSD:INT", u"xsd:Int", u"XsD:iNt"}) EXPECT_EQ(Get(name), formater);
  ProbeFormaterCreator creator(u"Test:MadeUp");
  for (const char16_t* name : {u"test:madeup", u"TEST:MADEUP"}) EXPECT_EQ(Get(name), &creator.formater);
  ProbeFormaterCreator accented(u"test:\u00E9");
  EXPECT_EQ(Get(u"TEST:\u00E9"), &accented.formater);
  EXPECT_EQ(Get(u"test:\u00C9"), nullptr);
}

TEST_F(FormaterFactoryTest, NamesAreMatchedWhole) {
  ExpectUnknown({u"in", u"ints", u"xsd:", u"xsd:in", u"xsd:int ", u" int", u"xsd", u"ns:int", u"xsd:decimal",
                 u"", nullptr});
}

TEST_F(FormaterFactoryTest, NamesInsideIdrefAndLanguageMeanString) {
  FormaterSerializer* const string = Get(u"string");
  ASSERT_NE(string, nullptr);
  for (const char16_t* name :
       {u"idref", u"IDREF", u"IdRef", u"ref", u"id", u"ID", u"dre", u"f", u"R", u"language", u"Language",
        u"lang", u"LANG", u"age", u"angu", u"guage", u"l", u"e"})
    EXPECT_EQ(Get(name), string) << testing::PrintToString(WideString(name));
  ExpectUnknown({u"xsd:idref", u"xsd:language", u"idrefs", u"languages", u"idreflanguage", u"language ",
                 u"irf", u"ige", u"z"});
}

TEST_F(FormaterFactoryTest, NameInsideLanguageIsNeverLookedUpItself) {
  const ProbeFormaterCreator creator(u"age");
  EXPECT_EQ(Get(u"age"), Get(u"string"));
}

TEST_F(FormaterFactoryTest, FirstRegistrationOfANameStays) {
  ProbeFormaterCreator first(u"test:twice");
  const ProbeFormaterCreator second(u"test:twice");
  const ProbeFormaterCreator third(u"TEST:Twice");
  EXPECT_EQ(Get(u"test:twice"), &first.formater);
}

TEST_F(FormaterFactoryTest, RegisteredFormatersOfTheLibraryCannotBeReplaced) {
  FormaterSerializer* const before = Get(u"int");
  const ProbeFormaterCreator creator(u"INT");
  EXPECT_EQ(Get(u"int"), before);
}

TEST_F(FormaterFactoryTest, CreatorMayBeRegisteredUnderMoreNames) {
  ProbeFormaterCreator creator(u"test:one");
  Factory()->Register(u"test:two", &creator);
  for (const char16_t* name : {u"TEST:TWO", u"test:one"}) EXPECT_EQ(Get(name), &creator.formater);
}

TEST_F(FormaterFactoryTest, ClearForgetsAllNamesWhichMayBeRegisteredAgain) {
  Factory()->Clear();
  ExpectUnknown({u"int", u"string", u"idref"});
  ProbeFormaterCreator creator(u"int");
  EXPECT_EQ(Get(u"Int"), &creator.formater);
}

TEST_F(FormaterFactoryTest, DestroyedFactoryComesBackEmpty) {
  FormaterFactory::Destroy();
  ASSERT_NE(FormaterFactory::Instance(), nullptr);
  ExpectUnknown({u"int"});
  FormaterFactory::Destroy();
  FormaterFactory::Destroy();
  ExpectUnknown({u"xsd:string"});
}

}  // namespace
}  // namespace qv
