// One parameter: key, value, and the name of the type on the wire.
#include "values/parameter_impl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

#include "com/asked_object.h"
#include "fixtures/shown_value.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/objects.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

WideString TypeNameOf(const Variant& value) {
  ParameterImpl parameter;
  parameter.SetValues(u"key", value);
  return parameter.get_ParamTypeAsString();
}

void ExpectTypeName(const WideString& name, std::initializer_list<Variant> values) {
  for (const Variant& value : values) EXPECT_EQ(TypeNameOf(value), name) << ShownValue(value);
}
void ExpectTypeNameOfDates(const WideString& name, std::initializer_list<double> dates) {
  for (const double date : dates) ExpectTypeName(name, {Date(date)});
}

TEST(ParameterImpl, KeepsKeyAndValueUntilOthersReplaceThem) {
  ParameterImpl parameter;
  EXPECT_TRUE(parameter.get_ParamKey().IsNull());
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_EMPTY);
  EXPECT_EQ(parameter.get_ParamTypeAsString(), u"no type");
  const std::pair<const char16_t*, Variant> rows[] = {
      {u"key", Int(7)}, {u"first", Text(u"text")}, {nullptr, Variant()}, {u"", UI1(200)}};
  for (const auto& [key, value] : rows) {
    parameter.SetValues(key, value);
    EXPECT_EQ(Shown(parameter.get_ParamKey()), Shown(key));
    EXPECT_EQ(ShownValue(parameter.get_ParamValue()), ShownValue(value));
  }
}

TEST(ParameterImpl, CallersValueIsNotTouched) {
  AskedObject object;
  const Variant mine = UnderDispatch(&object);
  ParameterImpl parameter;
  parameter.SetValues(u"key", mine);
  EXPECT_EQ(mine.Tag(), VT_DISPATCH);
  EXPECT_EQ(mine.Object(), &object);
}

TEST(ParameterImpl, TypeNameFollowsTheTag) {
  ExpectTypeName(u"no type", {Variant(), Variant::Null()});
  ExpectTypeName(u"string", {Text(u"x"), NullText()});
  ExpectTypeName(u"int", {I4(1), Int(1)});
  ExpectTypeName(u"short", {I2(1)});
  ExpectTypeName(u"float", {R4(1)});
  ExpectTypeName(u"double", {R8(1)});
  ExpectTypeName(u"boolean", {Bool(false)});
  ExpectTypeName(u"byte", {I1(1)});
  ExpectTypeName(u"long", {I8(1)});
  for (const Variant& value : {UI1(5), Pointer(VT_I4, nullptr), Pointer(VT_VARIANT, nullptr)})
    EXPECT_TRUE(TypeNameOf(value).IsNull()) << ShownValue(value);
}

TEST(ParameterImpl, TypeNameOfADateFollowsItsParts) {
  ExpectTypeNameOfDates(u"time", {0.0, -0.0, 0.5, 0.25, -0.25, 0.9999999999, -0.9999999999, 4.9e-324});
  ExpectTypeNameOfDates(u"date", {1.0, -1.0, 2.0, 36526.0, -36526.0, 2147483647.0, -2147483648.0});
  ExpectTypeNameOfDates(u"datetime",
                        {1.5, -1.5, 1.0000001, 36526.999, -36526.25, 2147483646.5, -2147483647.5});
}

TEST(ParameterImpl, DateBeyondThirtyTwoBitsIsNeitherATimeNorAFailure) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double date :
       {2147483648.0, -2147483649.0, 4294967296.0, 1e300, -1e300, infinity, -infinity, std::nan("")}) {
    const WideString name = TypeNameOf(Date(date));
    EXPECT_TRUE(name == u"date" || name == u"datetime") << date << " is " << Shown(name);
  }
}

TEST(ParameterImpl, ObjectIsNamedByItsInterface) {
  AskedObject file;
  file.Answer(IID_IAttachedFile, S_OK);
  AskedObject duration;
  duration.Answer(IID_IDuration, S_OK);
  AskedObject both;
  both.Answer(IID_IAttachedFile, S_OK);
  both.Answer(IID_IDuration, S_OK);
  ExpectTypeName(u"AttachedFile", {Variant::FromObject(&file), Variant::FromObject(&both)});
  ExpectTypeName(u"duration", {Variant::FromObject(&duration)});
}

TEST(ParameterImpl, OtherObjectsHaveANullTypeName) {
  AskedObject neither;
  EXPECT_TRUE(TypeNameOf(Variant::FromObject(&neither)).IsNull());
  ASSERT_EQ(neither.asked.size(), 2U);
  EXPECT_TRUE(neither.asked[0] == IID_IAttachedFile);
  EXPECT_TRUE(neither.asked[1] == IID_IDuration);
  EXPECT_TRUE(TypeNameOf(Variant::FromObject(nullptr)).IsNull());
}

TEST(ParameterImpl, FailureOfTheQuestionIsRaisedButForAMissingInterface) {
  const auto codeOf = [](AskedObject* object) {
    return Thrown([object] { TypeNameOf(Variant::FromObject(object)); }).substr(0, 21);
  };
  for (const HRESULT code : {E_FAIL, E_POINTER, E_UNEXPECTED}) {
    AskedObject first;
    first.Answer(IID_IAttachedFile, code);
    first.Answer(IID_IDuration, S_OK);
    AskedObject second;
    second.Answer(IID_IDuration, code);
    for (AskedObject* object : {&first, &second}) EXPECT_EQ(codeOf(object), "_com_error " + ShownCode(code));
  }
  AskedObject missing;
  missing.Answer(IID_IAttachedFile, E_NOINTERFACE);
  missing.Answer(IID_IDuration, E_NOINTERFACE);
  EXPECT_EQ(codeOf(&missing), "nothing");
}

TEST(ParameterImpl, DispatchObjectIsStoredAsUnknown) {
  AskedObject object;
  object.Answer(IID_IDuration, S_OK);
  {
    ParameterImpl parameter;
    parameter.SetValues(u"key", UnderDispatch(&object));
    EXPECT_EQ(object.count, 2U);
    EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_UNKNOWN);
    EXPECT_EQ(parameter.get_ParamValue().Object(), &object);
    EXPECT_EQ(parameter.get_ParamTypeAsString(), u"duration");
  }
  EXPECT_EQ(object.count, 1U);
}

TEST(ParameterImpl, NullDispatchObjectIsStoredAsUnknown) {
  ParameterImpl parameter;
  parameter.SetValues(u"key", Raw(VT_DISPATCH, 0));
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_UNKNOWN);
  EXPECT_EQ(parameter.get_ParamValue().Object(), nullptr);
  EXPECT_TRUE(parameter.get_ParamTypeAsString().IsNull());
}

TEST(ParameterImpl, ObjectIsSharedAndReleased) {
  AskedObject object;
  {
    ParameterImpl parameter;
    parameter.SetValues(u"key", Variant::FromObject(&object));
    EXPECT_EQ(object.count, 2U);
    const Variant read = parameter.get_ParamValue();
    EXPECT_EQ(object.count, 3U);
    parameter.SetValues(u"key", Variant());
    EXPECT_EQ(object.count, 2U);
    EXPECT_EQ(read.Object(), &object);
  }
  EXPECT_EQ(object.count, 1U);
}

TEST(ParameterImpl, ValueThatCannotBeCopiedReplacesTheKeyOnly) {
  ParameterImpl parameter;
  parameter.SetValues(u"old", Int(7));
  EXPECT_EQ(Thrown([&] { parameter.SetValues(u"new", Raw(77, 5)); }), "_com_error 0x80020008 <null>");
  EXPECT_EQ(parameter.get_ParamKey(), u"new");
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_INT);
  EXPECT_EQ(parameter.get_ParamValue().Data().intVal, 7);
}

}  // namespace
}  // namespace qv
