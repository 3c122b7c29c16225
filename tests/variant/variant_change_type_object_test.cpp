// Objects become each other by QueryInterface and nothing else.
#include <gtest/gtest.h>

#include "variant/valued_object.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

using Answer = ValuedObject::Answer;

constexpr Guid kDispatchIid = ParseGuid("00020400-0000-0000-c000-000000000046");
constexpr Guid kUnknownIid = ParseGuid("00000000-0000-0000-c000-000000000046");

TEST(VariantChangeTypeObject, IsAskedForTheOtherInterface) {
  ValuedObject object;
  const struct {
    Variant source;
    VARTYPE tag;
    Guid iid;
  } rows[] = {{Variant::FromObject(&object), VT_DISPATCH, kDispatchIid},
              {FromDispatch(&object), VT_UNKNOWN, kUnknownIid}};
  for (const auto& row : rows) {
    {
      Variant result;
      EXPECT_EQ(VariantChangeType(&result, row.source, row.tag), S_OK);
      EXPECT_EQ(object.lastIid, row.iid);
      EXPECT_EQ(result.Tag(), row.tag);
      EXPECT_EQ(result.Object(), &object);
      EXPECT_EQ(object.count, 4U);
    }
    EXPECT_EQ(object.count, 3U);
  }
}

TEST(VariantChangeTypeObject, BecomesItselfInPlace) {
  ValuedObject object;
  {
    Variant value = Variant::FromObject(&object);
    EXPECT_EQ(VariantChangeType(&value, value, VT_DISPATCH), S_OK);
    EXPECT_EQ(value.Tag(), VT_DISPATCH);
    EXPECT_EQ(object.count, 2U);
    EXPECT_EQ(VariantChangeType(&value, value, VT_UNKNOWN), S_OK);
    EXPECT_EQ(value.Tag(), VT_UNKNOWN);
    EXPECT_EQ(object.count, 2U);
  }
}

TEST(VariantChangeTypeObject, OwnTagIsSharedWithoutAsking) {
  ValuedObject object(Answer::kNothing);
  const Variant unknown = Variant::FromObject(&object);
  const Variant dispatch = FromDispatch(&object);
  {
    Variant results[4];
    EXPECT_EQ(VariantChangeType(&results[0], unknown, VT_UNKNOWN), S_OK);
    EXPECT_EQ(VariantChangeType(&results[1], dispatch, VT_DISPATCH), S_OK);
    EXPECT_EQ(VariantChangeType(&results[2], PointerTo(unknown), VT_UNKNOWN), S_OK);
    EXPECT_EQ(VariantChangeType(&results[3], PointerToVariant(dispatch), VT_DISPATCH), S_OK);
    EXPECT_EQ(object.count, 7U);
    EXPECT_EQ(object.lastIid, Guid{});
    for (const Variant& result : results) EXPECT_EQ(result.Object(), &object);
  }
  EXPECT_EQ(object.count, 3U);
}

TEST(VariantChangeTypeObject, PointerToAnObjectIsAskedToo) {
  ValuedObject object;
  IUnknown* held = &object;
  {
    Variant result;
    EXPECT_EQ(VariantChangeType(&result, Pointer(VT_UNKNOWN, &held), VT_DISPATCH), S_OK);
    EXPECT_EQ(DispatchOf(result), &object);
    EXPECT_EQ(object.count, 2U);
  }
}

TEST(VariantChangeTypeObject, NullStaysNull) {
  const Variant noDispatch = FromDispatch(nullptr);
  const Variant noUnknown = Variant::FromObject(nullptr);
  for (const Variant& result : {noDispatch, noUnknown}) ExpectAllBecome(result, {noDispatch, noUnknown});
}

TEST(VariantChangeTypeObject, WithoutTheInterfaceMismatches) {
  for (const Answer answer :
       {Answer::kNothing, Answer::kNullOnSuccess, Answer::kPointerOnFailure, Answer::kOutOfMemory}) {
    ValuedObject object(answer);
    ExpectRefused(DISP_E_TYPEMISMATCH, VT_DISPATCH, {Variant::FromObject(&object)});
    ExpectRefused(DISP_E_TYPEMISMATCH, VT_UNKNOWN, {FromDispatch(&object)});
  }
}

TEST(VariantChangeTypeObject, WithoutADefaultPropertyBecomesNoValue) {
  ValuedObject object;
  for (const VARTYPE tag : {VT_EMPTY, VT_NULL, VT_I1, VT_I2, VT_I4, VT_INT, VT_I8, VT_UI1, VT_UI2, VT_UI4,
                            VT_UI8, VT_UINT, VT_R4, VT_R8, VT_BOOL, VT_DATE, VT_BSTR})
    ExpectRefused(DISP_E_TYPEMISMATCH, tag,
                  {Variant::FromObject(&object), FromDispatch(&object), Variant::FromObject(nullptr),
                   FromDispatch(nullptr)});
}

TEST(VariantChangeTypeObject, NoValueBecomesOne) {
  for (const VARTYPE tag : {VT_UNKNOWN, VT_DISPATCH})
    ExpectRefused(DISP_E_TYPEMISMATCH, tag,
                  {Variant(), Variant::Null(), I1(0), I4(5), UI8(0), R4(0.0F), R8(1.5), Bool(false),
                   Bool(true), Date(0.0), Text(u""), Text(u"abc")});
}

TEST(VariantChangeTypeObject, ReplacedByAnotherValueIsReleased) {
  ValuedObject object;
  Variant destination = Variant::FromObject(&object);
  EXPECT_EQ(VariantChangeType(&destination, Int(5), VT_BSTR), S_OK);
  EXPECT_EQ(object.count, 1U);
}

}  // namespace
}  // namespace qv
