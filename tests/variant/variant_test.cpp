// Making, copying, moving and clearing values.
#include "qvscriptwells/variant.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "com/asked_object.h"
#include "fixtures/shown_value.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/dispatch.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

constexpr VARTYPE kUnknownTag = 77;
constexpr char kBadVarType[] = "_com_error 0x80020008 <null>";

// The eight data bytes as one number, whatever the tag.
std::uint64_t Bytes(const Variant& value) {
  return static_cast<std::uint64_t>(value.Data().llVal);
}

void ExpectContent(const Variant& value, VARTYPE tag, std::uint64_t bytes) {
  EXPECT_EQ(value.Tag(), tag) << ShownValue(value);
  EXPECT_EQ(Bytes(value), bytes) << ShownValue(value);
}

TEST(Variant, TagsHavePublishedNumbers) {
  const std::pair<int, int> rows[] = {
      {VT_EMPTY, 0},        {VT_NULL, 1},       {VT_I2, 2},         {VT_I4, 3},
      {VT_R4, 4},           {VT_R8, 5},         {VT_DATE, 7},       {VT_BSTR, 8},
      {VT_DISPATCH, 9},     {VT_BOOL, 11},      {VT_VARIANT, 12},   {VT_UNKNOWN, 13},
      {VT_I1, 16},          {VT_UI1, 17},       {VT_UI2, 18},       {VT_UI4, 19},
      {VT_I8, 20},          {VT_UI8, 21},       {VT_INT, 22},       {VT_UINT, 23},
      {VT_BYREF, 0x4000},   {VARIANT_TRUE, -1}, {VARIANT_FALSE, 0}, {sizeof(VariantData), 8},
      {sizeof(Variant), 16}};
  for (const auto& [constant, number] : rows) EXPECT_EQ(constant, number);
}

TEST(Variant, FreshOneIsEmptyWithZeroBytes) {
  const Variant value{};
  ExpectContent(value, VT_EMPTY, 0);
  EXPECT_TRUE(value.Text().IsNull());
  EXPECT_EQ(value.Object(), nullptr);
}

TEST(Variant, MakersSetTagAndLeaveUnusedBytesZero) {
  const struct {
    Variant value;
    VARTYPE tag;
    std::uint64_t bytes;
  } rows[] = {{Variant::Null(), VT_NULL, 0},
              {I1(-1), VT_I1, 0xFF},
              {I1(127), VT_I1, 0x7F},
              {I2(-1), VT_I2, 0xFFFF},
              {I2(-32768), VT_I2, 0x8000},
              {Int(-1), VT_INT, 0xFFFFFFFF},
              {Int(70000), VT_INT, 70000},
              {I8(-1), VT_I8, 0xFFFFFFFFFFFFFFFF},
              {I8(1099511627776), VT_I8, 0x10000000000},
              {Bool(true), VT_BOOL, 0xFFFF},
              {Bool(false), VT_BOOL, 0},
              {R4(1.0F), VT_R4, 0x3F800000},
              {R8(1.0), VT_R8, 0x3FF0000000000000},
              {Date(1.0), VT_DATE, 0x3FF0000000000000},
              {Variant::FromObject(nullptr), VT_UNKNOWN, 0},
              {NullText(), VT_BSTR, 0}};
  for (const auto& row : rows) ExpectContent(row.value, row.tag, row.bytes);
}

TEST(Variant, ChangeOfTagClearsAllBytes) {
  Variant value = I8(0x1122334455667788);
  value = I1(1);
  EXPECT_EQ(Bytes(value), 1U);
  for (const Variant& zero : {Bool(false), Variant::Null()}) {
    value = I8(-1);
    value = zero;
    EXPECT_EQ(Bytes(value), 0U);
  }
  value = Text(u"abc");
  value = Variant();
  EXPECT_EQ(Bytes(value), 0U);
}

TEST(Variant, ClearLeavesEmptyAndZeroBytes) {
  Variant value = I8(-1);
  value.Clear();
  ExpectContent(value, VT_EMPTY, 0);
  value.Clear();
  EXPECT_EQ(value.Tag(), VT_EMPTY);
}

TEST(Variant, RawKeepsTagAndBytesAsTheyAre) {
  ExpectContent(Raw(VT_I1, 300), VT_I1, 300);
  EXPECT_EQ(Raw(kUnknownTag, 5).Tag(), kUnknownTag);
}

TEST(Variant, PlainValuesAreCopiedWithTagAndBytes) {
  for (const Variant& value :
       {Variant(), Variant::Null(), I2(-2), I4(70000), R4(0.5F), R8(-0.25), Date(36526.5), Bool(true),
        Raw(VT_I1, 300), UI1(255), I8(-5000000000), Int(7)}) {
    ExpectContent(Variant(value), value.Tag(), Bytes(value));
    Variant assigned = Text(u"old");
    assigned = value;
    ExpectContent(assigned, value.Tag(), Bytes(value));
  }
}

TEST(Variant, TextIsSharedWithTheStringThatMadeIt) {
  const WideString text(u"a\0b"sv);
  const Variant value = Variant::FromString(text);
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(value.Text().data(), text.data());
  EXPECT_EQ(value.Text().view(), u"a\0b"sv);
}

// NOLINTBEGIN(performance-unnecessary-copy-initialization): copies are what is tested.

TEST(Variant, TextOutlivesStringAndValue) {
  WideString text;
  {
    const Variant value = Text(u"abc");
    const Variant copy(value);
    text = copy.Text();
  }
  EXPECT_EQ(text, u"abc");
}

TEST(Variant, NullAndEmptyTextsStayApart) {
  EXPECT_TRUE(NullText().Text().IsNull());
  const Variant empty = Text(u"");
  EXPECT_FALSE(empty.Text().IsNull());
  EXPECT_FALSE(Variant(empty).Text().IsNull());
}

TEST(Variant, TextAndObjectFollowTheirTagsOnly) {
  for (const VARTYPE tag : {VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R8, VT_BOOL, VT_I1, VT_UI1, VT_I8, VT_INT}) {
    const Variant value = Raw(tag, 0x1122334455667788);
    EXPECT_TRUE(value.Text().IsNull()) << tag;
    EXPECT_EQ(value.Object(), nullptr) << tag;
  }
  AskedObject object;
  EXPECT_TRUE(Variant::FromObject(&object).Text().IsNull());
  EXPECT_EQ(Text(u"abc").Object(), nullptr);
}

TEST(Variant, ObjectIsHeldWhileAValueLives) {
  AskedObject object;
  {
    const Variant value = Variant::FromObject(&object);
    EXPECT_EQ(value.Tag(), VT_UNKNOWN);
    EXPECT_EQ(value.Object(), &object);
    EXPECT_EQ(object.count, 2U);
    const Variant copy(value);
    Variant assigned = Text(u"old");
    assigned = value;
    EXPECT_EQ(copy.Object(), &object);
    EXPECT_EQ(assigned.Object(), &object);
    EXPECT_EQ(object.count, 4U);
    assigned.Clear();
    EXPECT_EQ(object.count, 3U);
  }
  EXPECT_EQ(object.count, 1U);
}

TEST(Variant, ObjectIsBorrowedByItsReader) {
  AskedObject object;
  const Variant value = Variant::FromObject(&object);
  value.Object();
  EXPECT_EQ(object.count, 2U);
}

TEST(Variant, DispatchObjectIsOwnedLikeAnyObject) {
  AskedObject object;
  {
    const Variant value = UnderDispatch(&object);
    EXPECT_EQ(object.count, 2U);
    EXPECT_EQ(value.Object(), &object);
    const Variant copy(value);
    EXPECT_EQ(copy.Tag(), VT_DISPATCH);
    EXPECT_EQ(object.count, 3U);
  }
  EXPECT_EQ(object.count, 1U);
}

TEST(Variant, NullObjectMayBeCopied) {
  const Variant value = Variant::FromObject(nullptr);
  ExpectContent(Variant(value), VT_UNKNOWN, 0);
}

TEST(Variant, MoveTakesTheContentWithoutCounting) {
  AskedObject object;
  {
    Variant value = Variant::FromObject(&object);
    const Variant moved(std::move(value));
    EXPECT_EQ(object.count, 2U);
    EXPECT_EQ(moved.Object(), &object);
    EXPECT_EQ(value.Object(), nullptr);  // NOLINT: the content has one owner
  }
  EXPECT_EQ(object.count, 1U);
  EXPECT_TRUE(std::is_nothrow_move_constructible<Variant>::value);
  EXPECT_TRUE(std::is_nothrow_move_assignable<Variant>::value);
}

TEST(Variant, MoveAssignmentReleasesTheOldContent) {
  AskedObject first;
  AskedObject second;
  Variant value = Variant::FromObject(&first);
  value = Variant::FromObject(&second);
  EXPECT_EQ(first.count, 1U);
  EXPECT_EQ(second.count, 2U);
  EXPECT_EQ(value.Object(), &second);
}

TEST(Variant, AssignedToItselfItStays) {
  AskedObject object;
  Variant value = Variant::FromObject(&object);
  const Variant& same = value;
  value = same;
  EXPECT_EQ(value.Object(), &object);
  EXPECT_EQ(object.count, 2U);
  Variant text = Text(u"abc");
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
    EXPECT_LE(object.count, 2U);
    EXPECT_EQ(value.Object() == &object, object.count == 2U);
  }
  EXPECT_EQ(object.count, 1U);
}

TEST(Variant, UnknownTagIsNotCopiedAndTheOldContentStays) {
  AskedObject object;
  const Variant unknown = Raw(kUnknownTag, 5);
  EXPECT_EQ(Thrown([&] { const Variant copy(unknown); }), kBadVarType);
  Variant value = Variant::FromObject(&object);
  EXPECT_EQ(Thrown([&] { value = unknown; }), kBadVarType);
  EXPECT_EQ(value.Object(), &object);
  EXPECT_EQ(object.count, 2U);
}

TEST(Variant, UnknownTagMayBeMoved) {
  Variant value = Raw(kUnknownTag, 5);
  ExpectContent(Variant(std::move(value)), kUnknownTag, 5);
}

TEST(Variant, ValueByReferenceIsBorrowed) {
  char16_t text[] = u"not a block";
  {
    const Variant value = Pointer(VT_BSTR, text);
    const Variant copy(value);
    EXPECT_EQ(copy.Tag(), VT_BYREF | VT_BSTR);
    EXPECT_EQ(copy.Data().byref, text);
    EXPECT_TRUE(copy.Text().IsNull());
  }
  EXPECT_EQ(text[0], u'n');
  AskedObject object;
  const Variant value = Pointer(VT_UNKNOWN, &object);
  const Variant copy(value);
  EXPECT_EQ(object.count, 1U);
  EXPECT_EQ(copy.Object(), nullptr);
}

// NOLINTEND(performance-unnecessary-copy-initialization)

}  // namespace
}  // namespace qv
