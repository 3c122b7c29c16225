#include "qvscriptwells/variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>
#include <utility>

#include "com/asked_object.h"
#include "qvscriptwells/com_error.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

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

// The eight data bytes as one number, whatever the tag.
std::uint64_t Bytes(const Variant& value) {
  return static_cast<std::uint64_t>(value.Data().llVal);
}

TEST(Variant, TagsHavePublishedNumbers) {
  EXPECT_EQ(VT_EMPTY, 0);
  EXPECT_EQ(VT_NULL, 1);
  EXPECT_EQ(VT_I2, 2);
  EXPECT_EQ(VT_I4, 3);
  EXPECT_EQ(VT_R4, 4);
  EXPECT_EQ(VT_R8, 5);
  EXPECT_EQ(VT_DATE, 7);
  EXPECT_EQ(VT_BSTR, 8);
  EXPECT_EQ(VT_DISPATCH, 9);
  EXPECT_EQ(VT_BOOL, 11);
  EXPECT_EQ(VT_VARIANT, 12);
  EXPECT_EQ(VT_UNKNOWN, 13);
  EXPECT_EQ(VT_I1, 16);
  EXPECT_EQ(VT_UI1, 17);
  EXPECT_EQ(VT_UI2, 18);
  EXPECT_EQ(VT_UI4, 19);
  EXPECT_EQ(VT_I8, 20);
  EXPECT_EQ(VT_UI8, 21);
  EXPECT_EQ(VT_INT, 22);
  EXPECT_EQ(VT_UINT, 23);
  EXPECT_EQ(VT_BYREF, 0x4000);
  EXPECT_EQ(VARIANT_TRUE, -1);
  EXPECT_EQ(VARIANT_FALSE, 0);
  EXPECT_EQ(sizeof(VariantData), 8u);
  EXPECT_EQ(sizeof(Variant), 16u);
}

TEST(Variant, FreshOneIsEmptyWithZeroBytes) {
  const Variant value{};
  EXPECT_EQ(value.Tag(), VT_EMPTY);
  EXPECT_EQ(Bytes(value), 0u);
  EXPECT_TRUE(value.Text().IsNull());
  EXPECT_EQ(value.Object(), nullptr);
}

struct MadeValue {
  const char* name;
  Variant value;
  VARTYPE tag;
  std::uint64_t bytes;
};

TEST(Variant, MakersSetTagAndLeaveUnusedBytesZero) {
  const MadeValue rows[] = {
      {"Null", Variant::Null(), VT_NULL, 0},
      {"FromByte(-1)", Variant::FromByte(-1), VT_I1, 0xFF},
      {"FromByte(127)", Variant::FromByte(127), VT_I1, 0x7F},
      {"FromShort(-1)", Variant::FromShort(-1), VT_I2, 0xFFFF},
      {"FromShort(-32768)", Variant::FromShort(-32768), VT_I2, 0x8000},
      {"FromInt(-1)", Variant::FromInt(-1), VT_INT, 0xFFFFFFFF},
      {"FromInt(70000)", Variant::FromInt(70000), VT_INT, 70000},
      {"FromLong(-1)", Variant::FromLong(-1), VT_I8, 0xFFFFFFFFFFFFFFFF},
      {"FromLong(2^40)", Variant::FromLong(1099511627776), VT_I8, 0x10000000000},
      {"FromBool(true)", Variant::FromBool(true), VT_BOOL, 0xFFFF},
      {"FromBool(false)", Variant::FromBool(false), VT_BOOL, 0},
      {"FromFloat(1)", Variant::FromFloat(1.0f), VT_R4, 0x3F800000},
      {"FromDouble(1)", Variant::FromDouble(1.0), VT_R8, 0x3FF0000000000000},
      {"FromDate(1)", Variant::FromDate(1.0), VT_DATE, 0x3FF0000000000000},
      {"FromObject(null)", Variant::FromObject(nullptr), VT_UNKNOWN, 0},
      {"FromString(null)", Variant::FromString(WideString()), VT_BSTR, 0},
  };
  for (const MadeValue& row : rows) {
    EXPECT_EQ(row.value.Tag(), row.tag) << row.name;
    EXPECT_EQ(Bytes(row.value), row.bytes) << row.name;
  }
}

TEST(Variant, ChangeOfTagClearsAllBytes) {
  Variant value = Variant::FromLong(0x1122334455667788);
  value = Variant::FromByte(1);
  EXPECT_EQ(Bytes(value), 1u);
  value = Variant::FromLong(-1);
  value = Variant::FromBool(false);
  EXPECT_EQ(Bytes(value), 0u);
  value = Variant::FromLong(-1);
  value = Variant::Null();
  EXPECT_EQ(Bytes(value), 0u);
  value = Variant::FromString(u"abc");
  value = Variant();
  EXPECT_EQ(Bytes(value), 0u);
}

TEST(Variant, ClearLeavesEmptyAndZeroBytes) {
  Variant value = Variant::FromLong(-1);
  value.Clear();
  EXPECT_EQ(value.Tag(), VT_EMPTY);
  EXPECT_EQ(Bytes(value), 0u);
  value.Clear();
  EXPECT_EQ(value.Tag(), VT_EMPTY);
}

TEST(Variant, RawKeepsTagAndBytesAsTheyAre) {
  const Variant value = Raw(VT_I1, 300);
  EXPECT_EQ(value.Tag(), VT_I1);
  EXPECT_EQ(value.Data().lVal, 300);
  EXPECT_EQ(Raw(kUnknownTag, 5).Tag(), kUnknownTag);
}

TEST(Variant, PlainValuesAreCopiedWithTagAndBytes) {
  const Variant values[] = {Variant(),
                            Variant::Null(),
                            Variant::FromShort(-2),
                            Raw(VT_I4, 70000),
                            Variant::FromFloat(0.5f),
                            Variant::FromDouble(-0.25),
                            Variant::FromDate(36526.5),
                            Variant::FromBool(true),
                            Raw(VT_I1, 300),
                            Raw(VT_UI1, 255),
                            Variant::FromLong(-5000000000),
                            Variant::FromInt(7)};
  for (const Variant& value : values) {
    const Variant copy(value);
    EXPECT_EQ(copy.Tag(), value.Tag());
    EXPECT_EQ(Bytes(copy), Bytes(value));
    Variant assigned = Variant::FromString(u"old");
    assigned = value;
    EXPECT_EQ(assigned.Tag(), value.Tag());
    EXPECT_EQ(Bytes(assigned), Bytes(value));
  }
}

TEST(Variant, TextIsSharedWithTheStringThatMadeIt) {
  const WideString text(u"a\0b"sv);
  const Variant value = Variant::FromString(text);
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(value.Text().data(), text.data());
  EXPECT_EQ(value.Text().view(), u"a\0b"sv);
}

TEST(Variant, TextOutlivesStringAndValue) {
  WideString text;
  {
    const Variant value = Variant::FromString(WideString(u"abc"));
    const Variant copy(value);
    text = copy.Text();
  }
  EXPECT_EQ(text, u"abc");
}

TEST(Variant, NullAndEmptyTextsStayApart) {
  EXPECT_TRUE(Variant::FromString(WideString()).Text().IsNull());
  EXPECT_FALSE(Variant::FromString(u"").Text().IsNull());
  const Variant empty = Variant::FromString(u"");
  EXPECT_FALSE(Variant(empty).Text().IsNull());
}

TEST(Variant, TextAndObjectFollowTheirTagsOnly) {
  const VARTYPE tags[] = {VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R8, VT_BOOL, VT_I1, VT_UI1, VT_I8, VT_INT};
  for (const VARTYPE tag : tags) {
    const Variant value = Raw(tag, 0x1122334455667788);
    EXPECT_TRUE(value.Text().IsNull()) << tag;
    EXPECT_EQ(value.Object(), nullptr) << tag;
  }
  AskedObject object;
  EXPECT_TRUE(Variant::FromObject(&object).Text().IsNull());
  EXPECT_EQ(Variant::FromString(u"abc").Object(), nullptr);
}

TEST(Variant, ObjectIsHeldWhileTheValueLives) {
  AskedObject object;
  {
    const Variant value = Variant::FromObject(&object);
    EXPECT_EQ(value.Tag(), VT_UNKNOWN);
    EXPECT_EQ(value.Object(), &object);
    EXPECT_EQ(object.count, 2u);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(Variant, ObjectIsBorrowedByItsReader) {
  AskedObject object;
  const Variant value = Variant::FromObject(&object);
  value.Object();
  EXPECT_EQ(object.count, 2u);
}

TEST(Variant, CopiesOfAnObjectShareIt) {
  AskedObject object;
  {
    const Variant value = Variant::FromObject(&object);
    const Variant copy(value);
    Variant assigned = Variant::FromString(u"old");
    assigned = value;
    EXPECT_EQ(copy.Object(), &object);
    EXPECT_EQ(assigned.Object(), &object);
    EXPECT_EQ(object.count, 4u);
    assigned.Clear();
    EXPECT_EQ(object.count, 3u);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(Variant, DispatchObjectIsOwnedLikeAnyObject) {
  AskedObject object;
  {
    const Variant value = Dispatch(&object);
    EXPECT_EQ(object.count, 2u);
    EXPECT_EQ(value.Object(), &object);
    const Variant copy(value);
    EXPECT_EQ(copy.Tag(), VT_DISPATCH);
    EXPECT_EQ(object.count, 3u);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(Variant, NullObjectMayBeCopied) {
  const Variant value = Variant::FromObject(nullptr);
  const Variant copy(value);
  EXPECT_EQ(copy.Tag(), VT_UNKNOWN);
  EXPECT_EQ(copy.Object(), nullptr);
}

TEST(Variant, MoveTakesTheContentWithoutCounting) {
  AskedObject object;
  {
    Variant value = Variant::FromObject(&object);
    const Variant moved(std::move(value));
    EXPECT_EQ(object.count, 2u);
    EXPECT_EQ(moved.Object(), &object);
    EXPECT_EQ(value.Object(), nullptr);  // NOLINT: the content has one owner
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(Variant, MoveAssignmentReleasesTheOldContent) {
  AskedObject first;
  AskedObject second;
  Variant value = Variant::FromObject(&first);
  value = Variant::FromObject(&second);
  EXPECT_EQ(first.count, 1u);
  EXPECT_EQ(second.count, 2u);
  EXPECT_EQ(value.Object(), &second);
}

TEST(Variant, MovesDoNotThrow) {
  EXPECT_TRUE(std::is_nothrow_move_constructible<Variant>::value);
  EXPECT_TRUE(std::is_nothrow_move_assignable<Variant>::value);
}

TEST(Variant, AssignedToItselfItStays) {
  AskedObject object;
  Variant value = Variant::FromObject(&object);
  const Variant& same = value;
  value = same;
  EXPECT_EQ(value.Object(), &object);
  EXPECT_EQ(object.count, 2u);
  Variant text = Variant::FromString(WideString(u"abc"));
  const Variant& sameText = text;
  text = sameText;
  EXPECT_EQ(text.Text(), u"abc");
}

TEST(Variant, MovedOntoItselfItNeitherLeaksNorReleasesTwice) {
  AskedObject object;
  {
    Variant value = Variant::FromObject(&object);
    Variant& same = value;
    value = std::move(same);
    EXPECT_LE(object.count, 2u);
    EXPECT_EQ(value.Object() == &object, object.count == 2u);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(Variant, CopyOfAnUnknownTagRaisesBadVariantType) {
  const Variant value = Raw(kUnknownTag, 5);
  try {
    const Variant copy(value);
    FAIL() << "nothing was thrown";
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), DISP_E_BADVARTYPE);
  }
}

TEST(Variant, AssignmentOfAnUnknownTagRaisesAndKeepsTheOldContent) {
  AskedObject object;
  const Variant unknown = Raw(kUnknownTag, 5);
  Variant value = Variant::FromObject(&object);
  try {
    value = unknown;
    FAIL() << "nothing was thrown";
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), DISP_E_BADVARTYPE);
  }
  EXPECT_EQ(value.Object(), &object);
  EXPECT_EQ(object.count, 2u);
}

TEST(Variant, UnknownTagMayBeMoved) {
  Variant value = Raw(kUnknownTag, 5);
  const Variant moved(std::move(value));
  EXPECT_EQ(moved.Tag(), kUnknownTag);
  EXPECT_EQ(Bytes(moved), 5u);
}

TEST(Variant, ByReferenceValueIsBorrowed) {
  char16_t text[] = u"not a block";
  VariantData data;
  data.byref = text;
  {
    const Variant value = Variant::FromRaw(static_cast<VARTYPE>(VT_BYREF | VT_BSTR), data);
    const Variant copy(value);
    EXPECT_EQ(copy.Tag(), VT_BYREF | VT_BSTR);
    EXPECT_EQ(copy.Data().byref, text);
    EXPECT_TRUE(copy.Text().IsNull());
  }
  EXPECT_EQ(text[0], u'n');
}

TEST(Variant, ByReferenceObjectIsNotCounted) {
  AskedObject object;
  VariantData data;
  data.byref = &object;
  const Variant value = Variant::FromRaw(static_cast<VARTYPE>(VT_BYREF | VT_UNKNOWN), data);
  const Variant copy(value);
  EXPECT_EQ(object.count, 1u);
  EXPECT_EQ(copy.Object(), nullptr);
}

}  // namespace
}  // namespace qv
