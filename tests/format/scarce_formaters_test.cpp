// The factory and the scalar formaters have one code for missing memory, whatever it was wanted for.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "fixtures/scarce_memory.h"
#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "format/probe_formater.h"

namespace qv {
namespace {

const std::set<std::string> kOnlyOutOfMemory{"_com_error 0x8007000E <null>"};

using ScarceFormaters = FactoryFixture;

TEST_F(ScarceFormaters, FactoryThatCannotBeMade) {
  FormaterFactory::Destroy();
  EXPECT_EQ(ThrownWithout(Memory::kBoth,
                          [] {
                            FormaterFactory::Instance();
                            FormaterFactory::Destroy();
                          }),
            kOnlyOutOfMemory);
}

TEST_F(ScarceFormaters, NameThatCannotBeRegistered) {
  ProbeFormaterCreator creator(u"test:scarce");
  const WideString name(u"test:another name");
  EXPECT_EQ(ThrownWithout(Memory::kBoth,
                          [&] {
                            if (Factory()->GetFormater(name) != nullptr) Factory()->Clear();
                            Factory()->Register(name, &creator);
                          }),
            kOnlyOutOfMemory);
  EXPECT_EQ(Get(name), &creator.formater);
}

TEST_F(ScarceFormaters, LongNumber) {
  const XmlText text(u"<v>3.1415926535897932384626433832795028841971</v>");
  for (const char16_t* type : {u"double", u"float"}) {
    FormaterSerializer* const formater = Get(type);
    EXPECT_EQ(ThrownWithout(Memory::kBoth, [&] { formater->ReadValue(text.Root()); }), kOnlyOutOfMemory);
  }
}

TEST_F(ScarceFormaters, Texts) {
  const XmlText text(u"<v>a text that is read</v>");
  FormaterSerializer* const formater = Get(u"string");
  EXPECT_EQ(ThrownWithout(Memory::kBoth, [&] { formater->ReadValue(text.Root()); }), kOnlyOutOfMemory);
  const Variant value = Variant::FromString(u"a < b");
  EXPECT_EQ(ThrownWithout(Memory::kBoth, [&] { formater->WriteValue(value); }), kOnlyOutOfMemory);
  const Variant number = Variant::FromDouble(0.1);
  EXPECT_EQ(ThrownWithout(Memory::kBoth, [&] { Get(u"double")->WriteValue(number); }), kOnlyOutOfMemory);
}

}  // namespace
}  // namespace qv
