// Objects become each other by QueryInterface and nothing else.
#include <gtest/gtest.h>

#include "variant/variant_object.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

constexpr Guid kDispatchIid = ParseGuid("00020400-0000-0000-c000-000000000046");
constexpr Guid kUnknownIid = ParseGuid("00000000-0000-0000-c000-000000000046");

TEST(VariantChangeTypeObject, UnknownIsAskedForDispatch) {
  AnsweringObject object;
  {
    Variant result;
    EXPECT_EQ(VariantChangeType(&result, Variant::FromObject(&object), VT_DISPATCH), S_OK);
    EXPECT_EQ(object.lastAsked, kDispatchIid);
    EXPECT_EQ(result.Tag(), VT_DISPATCH);
    EXPECT_EQ(DispatchOf(result), &object);
    EXPECT_EQ(object.count, 2u);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(VariantChangeTypeObject, DispatchIsAskedForUnknown) {
  AnsweringObject object;
  {
    Variant result;
    EXPECT_EQ(VariantChangeType(&result, FromDispatch(&object), VT_UNKNOWN), S_OK);
    EXPECT_EQ(object.lastAsked, kUnknownIid);
    EXPECT_EQ(result.Tag(), VT_UNKNOWN);
    EXPECT_EQ(result.Object(), &object);
    EXPECT_EQ(object.count, 2u);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(VariantChangeTypeObject, BecomesItselfInPlace) {
  AnsweringObject object;
  {
    Variant value = Variant::FromObject(&object);
    EXPECT_EQ(VariantChangeType(&value, value, VT_DISPATCH), S_OK);
    EXPECT_EQ(value.Tag(), VT_DISPATCH);
    EXPECT_EQ(object.count, 2u);
    EXPECT_EQ(VariantChangeType(&value, value, VT_UNKNOWN), S_OK);
    EXPECT_EQ(value.Tag(), VT_UNKNOWN);
    EXPECT_EQ(object.count, 2u);
  }
}

TEST(VariantChangeTypeObject, OwnTagIsSharedWithoutAsking) {
  AnsweringObject object(AnsweringObject::Answer::kNothing);
  const Variant unknown = Variant::FromObject(&object);
  const Variant dispatch = FromDispatch(&object);
  {
    Variant results[4];
    EXPECT_EQ(VariantChangeType(&results[0], unknown, VT_UNKNOWN), S_OK);
    EXPECT_EQ(VariantChangeType(&results[1], dispatch, VT_DISPATCH), S_OK);
    EXPECT_EQ(VariantChangeType(&results[2], PointerTo(unknown), VT_UNKNOWN), S_OK);
    EXPECT_EQ(VariantChangeType(&results[3], PointerToVariant(dispatch), VT_DISPATCH), S_OK);
    EXPECT_EQ(object.count, 7u);
    EXPECT_EQ(object.lastAsked, Guid{});
    for (const Variant& result : results) EXPECT_EQ(result.Object(), &object);
  }
  EXPECT_EQ(object.count, 3u);
}

TEST(VariantChangeTypeObject, PointerToAnObjectIsAskedToo) {
  AnsweringObject object;
  IUnknown* held = &object;
  VariantData data;
  data.byref = &held;
  {
    Variant result;
    EXPECT_EQ(VariantChangeType(&result, Variant::FromRaw(VT_BYREF | VT_UNKNOWN, data), VT_DISPATCH), S_OK);
    EXPECT_EQ(DispatchOf(result), &object);
    EXPECT_EQ(object.count, 2u);
  }
}

TEST(VariantChangeTypeObject, NullStaysNull) {
  const Variant noDispatch = FromDispatch(nullptr);
  const Variant noUnknown = Variant::FromObject(nullptr);
  ExpectChanged({
      {noUnknown, VT_DISPATCH, noDispatch},
      {noUnknown, VT_UNKNOWN, noUnknown},
      {noDispatch, VT_UNKNOWN, noUnknown},
      {noDispatch, VT_DISPATCH, noDispatch},
  });
}

TEST(VariantChangeTypeObject, OneThatDoesNotAnswerMismatches) {
  for (const auto answer :
       {AnsweringObject::Answer::kNothing, AnsweringObject::Answer::kNullOnSuccess,
        AnsweringObject::Answer::kPointerOnFailure, AnsweringObject::Answer::kOutOfMemory}) {
    AnsweringObject object(answer);
    ExpectRefused({
        {Variant::FromObject(&object), VT_DISPATCH, DISP_E_TYPEMISMATCH},
        {FromDispatch(&object), VT_UNKNOWN, DISP_E_TYPEMISMATCH},
    });
  }
}

TEST(VariantChangeTypeObject, WithoutADefaultPropertyBecomesNoValue) {
  AnsweringObject object;
  const VARTYPE tags[] = {VT_EMPTY, VT_NULL, VT_I1,   VT_I2, VT_I4, VT_INT,  VT_I8,   VT_UI1, VT_UI2,
                          VT_UI4,   VT_UI8,  VT_UINT, VT_R4, VT_R8, VT_BOOL, VT_DATE, VT_BSTR};
  for (const VARTYPE tag : tags) {
    ExpectRefused({
        {Variant::FromObject(&object), tag, DISP_E_TYPEMISMATCH},
        {FromDispatch(&object), tag, DISP_E_TYPEMISMATCH},
        {Variant::FromObject(nullptr), tag, DISP_E_TYPEMISMATCH},
        {FromDispatch(nullptr), tag, DISP_E_TYPEMISMATCH},
    });
  }
}

TEST(VariantChangeTypeObject, NoValueBecomesOne) {
  const Variant values[] = {Variant(), Variant::Null(), I1(0),      I4(5),     UI8(0),    R4(0.0f),
                            R8(1.5),   Bool(false),     Bool(true), Date(0.0), Text(u""), Text(u"abc")};
  for (const Variant& value : values) {
    ExpectRefused({
        {value, VT_UNKNOWN, DISP_E_TYPEMISMATCH},
        {value, VT_DISPATCH, DISP_E_TYPEMISMATCH},
    });
  }
}

TEST(VariantChangeTypeObject, ReplacedByAnotherValueIsReleased) {
  AnsweringObject object;
  Variant destination = Variant::FromObject(&object);
  EXPECT_EQ(VariantChangeType(&destination, Int(5), VT_BSTR), S_OK);
  EXPECT_EQ(object.count, 1u);
}

}  // namespace
}  // namespace qv
