// The factory and the scalar formaters have one code for missing memory, whatever it was wanted for.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "fixtures/scarce_memory.h"
#include "format/factory_fixture.h"
#include "format/probe_formater.h"

namespace qv {
namespace {

void ExpectOnlyOutOfMemory(const std::function<void()>& action) {
  EXPECT_EQ(ThrownWithout(Memory::kBoth, action), std::set<std::string>{"_com_error 0x8007000E <null>"});
}

using ScarceFormaters = FactoryFixture;

TEST_F(ScarceFormaters, FactoryThatCannotBeMade) {
  FormaterFactory::Destroy();
  ExpectOnlyOutOfMemory([] {
    FormaterFactory::Instance();
    FormaterFactory::Destroy();
  });
}

TEST_F(ScarceFormaters, NameThatCannotBeRegistered) {
  ProbeFormaterCreator creator(u"test:scarce");
  const WideString name(u"test:another name");
  ExpectOnlyOutOfMemory([&] {
    if (Factory()->GetFormater(name) != nullptr) Factory()->Clear();
    Factory()->Register(name, &creator);
  });
  EXPECT_EQ(Get(name), &creator.formater);
}

TEST_F(ScarceFormaters, NumbersAndTexts) {
  const XmlText number(u"<v>3.1415926535897932384626433832795028841971</v>");
  for (FormaterSerializer* formater : {Get(u"double"), Get(u"float")})
    ExpectOnlyOutOfMemory([&] { formater->ReadValue(number.Root()); });
  const XmlText text(u"<v>a text that is read</v>");
  FormaterSerializer* const string = Get(u"string");
  ExpectOnlyOutOfMemory([&] { string->ReadValue(text.Root()); });
  const Variant less = Variant::FromString(u"a < b");
  ExpectOnlyOutOfMemory([&] { string->WriteValue(less); });
  const Variant tenth = Variant::FromDouble(0.1);
  ExpectOnlyOutOfMemory([&] { Get(u"double")->WriteValue(tenth); });
}

}  // namespace
}  // namespace qv
