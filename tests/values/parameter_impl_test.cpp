#include "values/parameter_impl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "com/asked_object.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/objects.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr VARTYPE kUnknownTag = 77;

Variant Raw(VARTYPE tag, std::int64_t bytes) {
  VariantData data;
  data.llVal = bytes;
  return Variant::FromRaw(tag, data);
}

Variant Dispatch(AskedObject* object) {
  object->AddRef();
  VariantData data;
  data.punkVal = object;
  return Variant::FromRaw(VT_DISPATCH, data);
}

WideString TypeNameOf(Variant value) {
  ParameterImpl parameter;
  parameter.SetValues(u"key", std::move(value));
  return parameter.get_ParamTypeAsString();
}

WideString TypeNameOfDate(double date) {
  return TypeNameOf(Variant::FromDate(date));
}

HRESULT CodeOfTypeName(AskedObject* object) {
  try {
    TypeNameOf(Variant::FromObject(object));
  } catch (const _com_error& error) {
    return error.Error();
  }
  return S_OK;
}

TEST(ParameterImpl, FreshOneHasNoKeyNoValueAndNoType) {
  ParameterImpl parameter;
  EXPECT_TRUE(parameter.get_ParamKey().IsNull());
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_EMPTY);
  EXPECT_EQ(parameter.get_ParamTypeAsString(), u"no type");
}

TEST(ParameterImpl, KeyAndValueAreKept) {
  ParameterImpl parameter;
  parameter.SetValues(u"key", Variant::FromInt(7));
  EXPECT_EQ(parameter.get_ParamKey(), u"key");
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_INT);
  EXPECT_EQ(parameter.get_ParamValue().Data().intVal, 7);
}

TEST(ParameterImpl, LaterValuesReplaceTheEarlierOnes) {
  ParameterImpl parameter;
  parameter.SetValues(u"first", Variant::FromString(u"text"));
  parameter.SetValues(WideString(), Variant());
  EXPECT_TRUE(parameter.get_ParamKey().IsNull());
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_EMPTY);
  EXPECT_EQ(parameter.get_ParamValue().Data().llVal, 0);
}

TEST(ParameterImpl, NullAndEmptyKeysStayApart) {
  ParameterImpl parameter;
  parameter.SetValues(u"", Variant());
  EXPECT_FALSE(parameter.get_ParamKey().IsNull());
  parameter.SetValues(WideString(), Variant());
  EXPECT_TRUE(parameter.get_ParamKey().IsNull());
}

TEST(ParameterImpl, CallersValueIsNotTouched) {
  AskedObject object;
  const Variant mine = Dispatch(&object);
  ParameterImpl parameter;
  parameter.SetValues(u"key", mine);
  EXPECT_EQ(mine.Tag(), VT_DISPATCH);
  EXPECT_EQ(mine.Object(), &object);
}

struct NamedType {
  const char* name;
  Variant value;
  std::u16string_view typeName;
};

TEST(ParameterImpl, TypeNameFollowsTheTag) {
  const NamedType rows[] = {
      {"empty", Variant(), u"no type"},
      {"null", Variant::Null(), u"no type"},
      {"I2", Variant::FromShort(1), u"short"},
      {"I4", Raw(VT_I4, 1), u"int"},
      {"R4", Variant::FromFloat(1), u"float"},
      {"R8", Variant::FromDouble(1), u"double"},
      {"BSTR", Variant::FromString(u"x"), u"string"},
      {"BSTR, null", Variant::FromString(WideString()), u"string"},
      {"BOOL", Variant::FromBool(false), u"boolean"},
      {"I1", Variant::FromByte(1), u"byte"},
      {"I8", Variant::FromLong(1), u"long"},
      {"INT", Variant::FromInt(1), u"int"},
  };
  for (const NamedType& row : rows) EXPECT_EQ(TypeNameOf(row.value).view(), row.typeName) << row.name;
}

TEST(ParameterImpl, OtherTagsHaveANullTypeName) {
  EXPECT_TRUE(TypeNameOf(Raw(VT_UI1, 5)).IsNull());
  EXPECT_TRUE(TypeNameOf(Raw(static_cast<VARTYPE>(VT_BYREF | VT_I4), 0)).IsNull());
  EXPECT_TRUE(TypeNameOf(Raw(static_cast<VARTYPE>(VT_BYREF | VT_VARIANT), 0)).IsNull());
}

TEST(ParameterImpl, UnsignedByteStaysInTheParameter) {
  ParameterImpl parameter;
  parameter.SetValues(u"key", Raw(VT_UI1, 200));
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_UI1);
  EXPECT_EQ(parameter.get_ParamValue().Data().bVal, 200);
}

TEST(ParameterImpl, DateWithoutWholeDaysIsATime) {
  for (const double date : {0.0, -0.0, 0.5, 0.25, -0.25, 0.9999999999, -0.9999999999, 4.9e-324})
    EXPECT_EQ(TypeNameOfDate(date), u"time") << date;
}

TEST(ParameterImpl, DateOfWholeDaysIsADate) {
  for (const double date : {1.0, -1.0, 2.0, 36526.0, -36526.0, 2147483647.0, -2147483648.0})
    EXPECT_EQ(TypeNameOfDate(date), u"date") << date;
}

TEST(ParameterImpl, DateWithDaysAndTimeIsADatetime) {
  for (const double date : {1.5, -1.5, 1.0000001, 36526.999, -36526.25, 2147483646.5, -2147483647.5})
    EXPECT_EQ(TypeNameOfDate(date), u"datetime") << date;
}

TEST(ParameterImpl, DateBeyondThirtyTwoBitsIsNoTimeAndNoFailure) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double date :
       {2147483648.0, -2147483649.0, 4294967296.0, 1e300, -1e300, infinity, -infinity, std::nan("")}) {
    const WideString name = TypeNameOfDate(date);
    EXPECT_TRUE(name == u"date" || name == u"datetime") << date << " is " << testing::PrintToString(name);
  }
}

TEST(ParameterImpl, AttachedFileIsNamedByItsInterface) {
  AskedObject object;
  object.Answer(IID_IAttachedFile, S_OK);
  EXPECT_EQ(TypeNameOf(Variant::FromObject(&object)), u"AttachedFile");
}

TEST(ParameterImpl, DurationIsNamedByItsInterface) {
  AskedObject object;
  object.Answer(IID_IDuration, S_OK);
  EXPECT_EQ(TypeNameOf(Variant::FromObject(&object)), u"duration");
}

TEST(ParameterImpl, AttachedFileIsAskedForBeforeDuration) {
  AskedObject both;
  both.Answer(IID_IAttachedFile, S_OK);
  both.Answer(IID_IDuration, S_OK);
  EXPECT_EQ(TypeNameOf(Variant::FromObject(&both)), u"AttachedFile");

  AskedObject neither;
  TypeNameOf(Variant::FromObject(&neither));
  ASSERT_EQ(neither.asked.size(), 2u);
  EXPECT_TRUE(neither.asked[0] == IID_IAttachedFile);
  EXPECT_TRUE(neither.asked[1] == IID_IDuration);
}

TEST(ParameterImpl, OtherObjectsHaveANullTypeName) {
  AskedObject object;
  EXPECT_TRUE(TypeNameOf(Variant::FromObject(&object)).IsNull());
  EXPECT_TRUE(TypeNameOf(Variant::FromObject(nullptr)).IsNull());
}

TEST(ParameterImpl, FailureOfTheQuestionIsRaised) {
  for (const HRESULT code : {E_FAIL, E_POINTER, E_UNEXPECTED}) {
    AskedObject first;
    first.Answer(IID_IAttachedFile, code);
    first.Answer(IID_IDuration, S_OK);
    EXPECT_EQ(CodeOfTypeName(&first), code);
    AskedObject second;
    second.Answer(IID_IDuration, code);
    EXPECT_EQ(CodeOfTypeName(&second), code);
  }
}

TEST(ParameterImpl, MissingInterfaceIsNoFailure) {
  AskedObject object;
  object.Answer(IID_IAttachedFile, E_NOINTERFACE);
  object.Answer(IID_IDuration, E_NOINTERFACE);
  EXPECT_EQ(CodeOfTypeName(&object), S_OK);
}

TEST(ParameterImpl, DispatchObjectIsStoredAsUnknown) {
  AskedObject object;
  object.Answer(IID_IDuration, S_OK);
  {
    ParameterImpl parameter;
    parameter.SetValues(u"key", Dispatch(&object));
    EXPECT_EQ(object.count, 2u);
    EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_UNKNOWN);
    EXPECT_EQ(parameter.get_ParamValue().Object(), &object);
    EXPECT_EQ(parameter.get_ParamTypeAsString(), u"duration");
  }
  EXPECT_EQ(object.count, 1u);
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
    EXPECT_EQ(object.count, 2u);
    const Variant read = parameter.get_ParamValue();
    EXPECT_EQ(object.count, 3u);
    parameter.SetValues(u"key", Variant());
    EXPECT_EQ(object.count, 2u);
    EXPECT_EQ(read.Object(), &object);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(ParameterImpl, ValueThatCannotBeCopiedReplacesTheKeyOnly) {
  ParameterImpl parameter;
  parameter.SetValues(u"old", Variant::FromInt(7));
  try {
    parameter.SetValues(u"new", Raw(kUnknownTag, 5));
    FAIL() << "nothing was thrown";
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), DISP_E_BADVARTYPE);
  }
  EXPECT_EQ(parameter.get_ParamKey(), u"new");
  EXPECT_EQ(parameter.get_ParamValue().Tag(), VT_INT);
  EXPECT_EQ(parameter.get_ParamValue().Data().intVal, 7);
}

}  // namespace
}  // namespace qv
