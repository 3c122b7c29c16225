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

struct Registration {
  const char16_t* name;
  std::type_index formater;
};

const Registration kRegistrations[] = {
    {u"boolean", typeid(FormaterBool)},
    {u"xsd:boolean", typeid(FormaterBool)},
    {u"byte", typeid(FormaterByte)},
    {u"xsd:byte", typeid(FormaterByte)},
    {u"date", typeid(FormaterDate)},
    {u"xsd:date", typeid(FormaterDate)},
    {u"datetime", typeid(FormaterDateTime)},
    {u"xsd:datetime", typeid(FormaterDateTime)},
    {u"double", typeid(FormaterDouble)},
    {u"xsd:double", typeid(FormaterDouble)},
    {u"float", typeid(FormaterFloat)},
    {u"int", typeid(FormaterInt)},
    {u"xsd:int", typeid(FormaterInt)},
    {u"long", typeid(FormaterLong)},
    {u"xsd:long", typeid(FormaterLong)},
    {u"short", typeid(FormaterShort)},
    {u"xsd:short", typeid(FormaterShort)},
    {u"string", typeid(FormaterString)},
    {u"xsd:string", typeid(FormaterString)},
    {u"time", typeid(FormaterTime)},
    {u"xsd:time", typeid(FormaterTime)},
    {u"recordlist", typeid(FormaterRecordList)},
    {u"sof:recordlist", typeid(FormaterRecordList)},
    {u"duration", typeid(FormaterDuration)},
    {u"xsd:duration", typeid(FormaterDuration)},
    {u"url", typeid(FormaterUrl)},
    {u"sof:url", typeid(FormaterUrl)},
};

TEST_F(RegisterFormatersTest, EachNameHasTheFormaterOfItsType) {
  for (const Registration& row : kRegistrations) {
    const FormaterSerializer* const formater = Get(row.name);
    ASSERT_NE(formater, nullptr) << ToUtf8(row.name);
    EXPECT_TRUE(std::type_index(typeid(*formater)) == row.formater) << ToUtf8(row.name);
  }
}

TEST_F(RegisterFormatersTest, EachNameHasACreatorOfItsOwn) {
  std::set<FormaterSerializer*> formaters;
  for (const Registration& row : kRegistrations) formaters.insert(Get(row.name));
  EXPECT_EQ(formaters.size(), 27u);
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
  for (const Registration& row : kRegistrations) EXPECT_EQ(Get(row.name), nullptr);
}

}  // namespace
}  // namespace qv
