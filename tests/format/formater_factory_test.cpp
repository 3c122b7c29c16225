#include "format/formater_factory.h"

#include <gtest/gtest.h>

#include "format/factory_fixture.h"
#include "format/probe_formater.h"
#include "format/scalar_formaters.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using FormaterFactoryTest = FactoryFixture;

TEST_F(FormaterFactoryTest, IsOnePerProcess) {
  ASSERT_NE(FormaterFactory::Instance(), nullptr);
  EXPECT_EQ(FormaterFactory::Instance(), FormaterFactory::Instance());
}

TEST_F(FormaterFactoryTest, NamesAreFoundInAnyCase) {
  FormaterSerializer* const formater = Get(u"xsd:int");
  ASSERT_NE(formater, nullptr);
  EXPECT_EQ(Get(u"XSD:INT"), formater);
  EXPECT_EQ(Get(u"xsd:Int"), formater);
  EXPECT_EQ(Get(u"XsD:iNt"), formater);
}

TEST_F(FormaterFactoryTest, RegisteredNameIsFoldedToo) {
  ProbeFormaterCreator creator(u"Test:MadeUp");
  EXPECT_EQ(Get(u"test:madeup"), &creator.formater);
  EXPECT_EQ(Get(u"TEST:MADEUP"), &creator.formater);
}

TEST_F(FormaterFactoryTest, OnlyAsciiLettersFold) {
  ProbeFormaterCreator creator(u"test:\u00E9");
  EXPECT_EQ(Get(u"TEST:\u00E9"), &creator.formater);
  EXPECT_EQ(Get(u"test:\u00C9"), nullptr);
}

TEST_F(FormaterFactoryTest, NamesAreMatchedWhole) {
  for (const char16_t* name : {u"in", u"ints", u"xsd:", u"xsd:in", u"xsd:int ", u" int", u"xsd", u"ns:int"})
    EXPECT_EQ(Get(name), nullptr) << testing::PrintToString(WideString(name));
}

TEST_F(FormaterFactoryTest, UnknownNullAndEmptyNamesGiveNull) {
  EXPECT_EQ(Get(u"xsd:decimal"), nullptr);
  EXPECT_EQ(Get(u""), nullptr);
  EXPECT_EQ(Get(WideString()), nullptr);
}

TEST_F(FormaterFactoryTest, NamesInsideIdrefAndLanguageMeanString) {
  FormaterSerializer* const string = Get(u"string");
  ASSERT_NE(string, nullptr);
  const char16_t* const names[] = {u"idref", u"IDREF", u"IdRef", u"ref",      u"id",       u"ID",
                                   u"dre",   u"f",     u"R",     u"language", u"Language", u"lang",
                                   u"LANG",  u"age",   u"angu",  u"guage",    u"l",        u"e"};
  for (const char16_t* name : names) EXPECT_EQ(Get(name), string) << testing::PrintToString(WideString(name));
}

TEST_F(FormaterFactoryTest, NamesThatHoldIdrefOrLanguageDoNot) {
  const char16_t* const names[] = {u"xsd:idref", u"xsd:language", u"idrefs", u"languages", u"idreflanguage",
                                   u"language ", u"irf",          u"ige",    u"z"};
  for (const char16_t* name : names)
    EXPECT_EQ(Get(name), nullptr) << testing::PrintToString(WideString(name));
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
  EXPECT_EQ(Get(u"TEST:TWO"), &creator.formater);
  EXPECT_EQ(Get(u"test:one"), &creator.formater);
}

TEST_F(FormaterFactoryTest, ClearForgetsAllNames) {
  Factory()->Clear();
  EXPECT_EQ(Get(u"int"), nullptr);
  EXPECT_EQ(Get(u"string"), nullptr);
  EXPECT_EQ(Get(u"idref"), nullptr);
}

TEST_F(FormaterFactoryTest, ClearedNameMayBeRegisteredAnew) {
  Factory()->Clear();
  ProbeFormaterCreator creator(u"int");
  EXPECT_EQ(Get(u"Int"), &creator.formater);
}

TEST_F(FormaterFactoryTest, DestroyedFactoryComesBackEmpty) {
  FormaterFactory::Destroy();
  ASSERT_NE(FormaterFactory::Instance(), nullptr);
  EXPECT_EQ(Get(u"int"), nullptr);
  FormaterFactory::Destroy();
  FormaterFactory::Destroy();
  EXPECT_EQ(Get(u"xsd:string"), nullptr);
}

}  // namespace
}  // namespace qv
