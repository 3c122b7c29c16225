// The names under which formaters are registered.
#include "recordlist/register_formaters.h"

#include <gtest/gtest.h>

#include <set>
#include <typeindex>

#include "format/date_time_formaters.h"
#include "format/factory_fixture.h"
#include "format/object_formaters.h"
#include "format/scalar_formaters.h"
#include "recordlist/formater_record_list.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using RegisterFormatersTest = FactoryFixture;

// The name of a type, the same with a prefix (null if there is none), and its formater.
const struct {
  const char16_t* name;
  const char16_t* prefixed;
  std::type_index formater;
} kRegistrations[] = {
    {u"boolean", u"xsd:boolean", typeid(FormaterBool)},
    {u"byte", u"xsd:byte", typeid(FormaterByte)},
    {u"date", u"xsd:date", typeid(FormaterDate)},
    {u"datetime", u"xsd:datetime", typeid(FormaterDateTime)},
    {u"double", u"xsd:double", typeid(FormaterDouble)},
    {u"float", nullptr, typeid(FormaterFloat)},
    {u"int", u"xsd:int", typeid(FormaterInt)},
    {u"long", u"xsd:long", typeid(FormaterLong)},
    {u"short", u"xsd:short", typeid(FormaterShort)},
    {u"string", u"xsd:string", typeid(FormaterString)},
    {u"time", u"xsd:time", typeid(FormaterTime)},
    {u"recordlist", u"sof:recordlist", typeid(FormaterRecordList)},
    {u"duration", u"xsd:duration", typeid(FormaterDuration)},
    {u"url", u"sof:url", typeid(FormaterUrl)},
};

TEST_F(RegisterFormatersTest, EachNameHasItsOwnFormaterOfItsType) {
  std::set<FormaterSerializer*> formaters;
  for (const auto& row : kRegistrations) {
    for (const char16_t* name : {row.name, row.prefixed}) {
      if (name == nullptr) continue;
      FormaterSerializer* const formater = Get(name);
      ASSERT_NE(formater, nullptr) << ToUtf8(name);
      EXPECT_TRUE(std::type_index(typeid(*formater)) == row.formater) << ToUtf8(name);
      formaters.insert(formater);
    }
  }
  EXPECT_EQ(formaters.size(), 27U);
}

TEST_F(RegisterFormatersTest, OtherNamesHaveNone) {
  for (const char16_t* name :
       {u"xsd:float", u"xsd:url", u"xsd:recordlist", u"xsd:decimal", u"xsd:integer", u"xsd:anyType",
        u"xsd:base64Binary", u"bool", u"xsd:unsignedInt", u"soap:int", u"AttachedFile", u"no type"})
    EXPECT_EQ(Get(name), nullptr) << ToUtf8(name);
}

TEST_F(RegisterFormatersTest, SecondCallRegistersNothing) {
  FormaterSerializer* const before = Get(u"int");
  RegisterFormaters();
  EXPECT_EQ(Get(u"int"), before);
  Factory()->Clear();
  RegisterFormaters();
  for (const auto& row : kRegistrations)
    for (const char16_t* name : {row.name, row.prefixed}) EXPECT_EQ(Get(name), nullptr);
}

}  // namespace
}  // namespace qv
