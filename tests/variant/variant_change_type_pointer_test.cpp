// Sources that are pointers, the tags that are none, and who owns what.
#include <gtest/gtest.h>

#include "variant/variant_object.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

// Points at `value` under a tag with VT_BYREF.
Variant Pointer(VARTYPE tag, void* value) {
  VariantData data;
  data.byref = value;
  return Variant::FromRaw(static_cast<VARTYPE>(VT_BYREF | tag), data);
}

void ExpectResult(const Variant& source, VARTYPE tag, const Variant& result) {
  Variant destination;
  EXPECT_EQ(VariantChangeType(&destination, source, tag), S_OK) << ShownValue(source) << " to " << tag;
  EXPECT_TRUE(IsSame(destination, result)) << ShownValue(destination) << " instead of " << ShownValue(result);
}

void ExpectCode(const Variant& source, VARTYPE tag, HRESULT code) {
  Variant destination = Text(u"old");
  EXPECT_EQ(VariantChangeType(&destination, source, tag), code) << ShownValue(source) << " to " << tag;
  EXPECT_TRUE(IsSame(destination, Text(u"old"))) << ShownValue(destination);
}

TEST(VariantChangeTypePointer, ValueIsReadAtItsWidth) {
  std::int8_t i1[] = {-5, 77};
  std::uint8_t ui1[] = {250, 77};
  std::int16_t i2[] = {-300, 77};
  std::uint16_t ui2[] = {65000, 77};
  std::int32_t i4[] = {-70000, 77};
  std::uint32_t ui4[] = {4000000000, 77};
  std::int64_t i8 = -5000000000;
  std::uint64_t ui8 = 18446744073709551615u;
  float r4[] = {1.5f, 77.0f};
  double r8 = -2.5;
  VARIANT_BOOL yes[] = {VARIANT_TRUE, 77};
  ExpectResult(Pointer(VT_I1, i1), VT_I4, I4(-5));
  ExpectResult(Pointer(VT_UI1, ui1), VT_I4, I4(250));
  ExpectResult(Pointer(VT_I2, i2), VT_I4, I4(-300));
  ExpectResult(Pointer(VT_UI2, ui2), VT_I4, I4(65000));
  ExpectResult(Pointer(VT_I4, i4), VT_I8, I8(-70000));
  ExpectResult(Pointer(VT_INT, i4), VT_I8, I8(-70000));
  ExpectResult(Pointer(VT_UI4, ui4), VT_I8, I8(4000000000));
  ExpectResult(Pointer(VT_UINT, ui4), VT_R8, R8(4000000000.0));
  ExpectResult(Pointer(VT_I8, &i8), VT_BSTR, Text(u"-5000000000"));
  ExpectResult(Pointer(VT_UI8, &ui8), VT_BSTR, Text(u"18446744073709551615"));
  ExpectResult(Pointer(VT_R4, r4), VT_R8, R8(1.5));
  ExpectResult(Pointer(VT_R8, &r8), VT_I4, I4(-2));
  ExpectResult(Pointer(VT_DATE, &r8), VT_R8, R8(-2.5));
  ExpectResult(Pointer(VT_BOOL, yes), VT_I4, I4(-1));
  std::int64_t currency = -15000;
  ExpectResult(Pointer(VT_CY, &currency), VT_R8, R8(-1.5));
  DECIMAL decimal;
  decimal.scale = 1;
  decimal.Lo64 = 15;
  ExpectResult(Pointer(VT_DECIMAL, &decimal), VT_R8, R8(1.5));
}

TEST(VariantChangeTypePointer, OwnTagLosesThePointerAndTheForeignBytes) {
  std::int8_t i1[8] = {-5, 1, 2, 3, 4, 5, 6, 7};
  double r8 = 0.1;
  VARIANT_BOOL odd[4] = {1, 2, 3, 4};
  ExpectResult(Pointer(VT_I1, i1), VT_I1, I1(-5));
  ExpectResult(Pointer(VT_R8, &r8), VT_R8, R8(0.1));
  ExpectResult(Pointer(VT_BOOL, odd), VT_BOOL, Raw(VT_BOOL, 1));
}

TEST(VariantChangeTypePointer, ForeignTextIsCopiedSinceItsOwnerMayRewriteIt) {
  WideString source(u"12");
  BStr text = source.Detach();
  Variant copy;
  EXPECT_EQ(VariantChangeType(&copy, Pointer(VT_BSTR, &text), VT_BSTR), S_OK);
  text[0] = u'9';
  EXPECT_EQ(copy.Text(), u"12");
  ExpectResult(Pointer(VT_BSTR, &text), VT_I4, I4(92));
  FreeString(text);
  EXPECT_EQ(copy.Text(), u"12");
}

TEST(VariantChangeTypePointer, NullTextStaysNull) {
  BStr text = nullptr;
  ExpectResult(Pointer(VT_BSTR, &text), VT_BSTR, Variant::FromString(WideString()));
  ExpectResult(Variant::FromString(WideString()), VT_BSTR, Variant::FromString(WideString()));
  ExpectCode(Pointer(VT_BSTR, &text), VT_I4, DISP_E_TYPEMISMATCH);
}

TEST(VariantChangeTypePointer, TextOfAVariantIsShared) {
  const WideString text(u"abc");
  const Variant value = Variant::FromString(text);
  Variant copy;
  EXPECT_EQ(VariantChangeType(&copy, value, VT_BSTR), S_OK);
  EXPECT_EQ(copy.Text().data(), text.data());
  EXPECT_EQ(VariantChangeType(&copy, PointerToVariant(value), VT_BSTR), S_OK);
  EXPECT_EQ(copy.Text().data(), text.data());
}

TEST(VariantChangeTypePointer, VariantIsFollowedWhateverItHolds) {
  const Variant empty;
  const Variant null = Variant::Null();
  const Variant number = Int(5);
  const Variant pointer = PointerTo(number);
  ExpectResult(PointerToVariant(empty), VT_EMPTY, Variant());
  ExpectResult(PointerToVariant(empty), VT_BSTR, Text(u""));
  ExpectResult(PointerToVariant(null), VT_NULL, Variant::Null());
  ExpectResult(PointerToVariant(pointer), VT_BSTR, Text(u"5"));
  ExpectCode(PointerToVariant(null), VT_I4, DISP_E_TYPEMISMATCH);
}

TEST(VariantChangeTypePointer, RowOfEightIsFollowedAndOfNineRefused) {
  Variant row[10];
  row[0] = Int(5);
  for (int i = 1; i < 10; ++i) row[i] = PointerToVariant(row[i - 1]);
  ExpectResult(row[8], VT_I4, I4(5));
  ExpectCode(row[9], VT_I4, E_INVALIDARG);
}

TEST(VariantChangeTypePointer, RingIsRefused) {
  Variant ring[2];
  ring[0] = PointerToVariant(ring[1]);
  ring[1] = PointerToVariant(ring[0]);
  ExpectCode(ring[0], VT_I4, E_INVALIDARG);
  Variant itself;
  itself = PointerToVariant(itself);
  ExpectCode(itself, VT_BSTR, E_INVALIDARG);
  EXPECT_EQ(VariantChangeType(&itself, itself, VT_BSTR), E_INVALIDARG);
}

TEST(VariantChangeTypePointer, NullPointerIsAnInvalidArgument) {
  ExpectCode(Pointer(VT_I4, nullptr), VT_I4, E_INVALIDARG);
  ExpectCode(Pointer(VT_I4, nullptr), VT_BSTR, E_INVALIDARG);
  ExpectCode(Pointer(VT_BSTR, nullptr), VT_BSTR, E_INVALIDARG);
  ExpectCode(Pointer(VT_DISPATCH, nullptr), VT_UNKNOWN, E_INVALIDARG);
  ExpectCode(Pointer(VT_VARIANT, nullptr), VT_I4, E_INVALIDARG);
  const Variant inner = Pointer(VT_VARIANT, nullptr);
  ExpectCode(PointerToVariant(inner), VT_I4, E_INVALIDARG);
  EXPECT_EQ(VariantChangeType(nullptr, Int(5), VT_I4), E_INVALIDARG);
}

TEST(VariantChangeTypePointer, DestinationMayBeWhatTheSourcePointsTo) {
  Variant value = Text(u"12");
  const Variant toText = PointerTo(value);
  EXPECT_EQ(VariantChangeType(&value, toText, VT_BSTR), S_OK);
  EXPECT_EQ(value.Text(), u"12");
  EXPECT_EQ(VariantChangeType(&value, PointerTo(value), VT_I4), S_OK);
  EXPECT_TRUE(IsSame(value, I4(12)));
  AnsweringObject object;
  value = FromDispatch(&object);
  EXPECT_EQ(VariantChangeType(&value, PointerTo(value), VT_UNKNOWN), S_OK);
  EXPECT_EQ(object.count, 2u);
  EXPECT_EQ(VariantChangeType(&value, PointerToVariant(value), VT_UNKNOWN), S_OK);
  EXPECT_EQ(object.count, 2u);
  value.Clear();
}

TEST(VariantChangeTypePointer, PointerThatIsTheDestinationGives) {
  double number = 1.5;
  Variant value = Pointer(VT_R8, &number);
  EXPECT_EQ(VariantChangeType(&value, value, VT_BSTR), S_OK);
  EXPECT_EQ(value.Text(), u"1.5");
}

TEST(VariantChangeTypeTags, NothingAndNullAreOnlyThemselves) {
  ExpectChanged({
      {Variant(), VT_EMPTY, Variant()},
      {Variant::Null(), VT_NULL, Variant::Null()},
      {Variant(), VT_BSTR, Text(u"")},
  });
  ExpectRefused({
      {Variant(), VT_NULL, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_EMPTY, DISP_E_TYPEMISMATCH},
      {Int(0), VT_EMPTY, DISP_E_TYPEMISMATCH},
      {Int(0), VT_NULL, DISP_E_TYPEMISMATCH},
      {Text(u""), VT_EMPTY, DISP_E_TYPEMISMATCH},
      {Text(u""), VT_NULL, DISP_E_TYPEMISMATCH},
      {Date(0.0), VT_EMPTY, DISP_E_TYPEMISMATCH},
      {Bool(false), VT_NULL, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_I2, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_UI8, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_R4, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_R8, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_DATE, DISP_E_TYPEMISMATCH},
      {Variant::Null(), VT_BSTR, DISP_E_TYPEMISMATCH},
  });
}

TEST(VariantChangeTypeTags, OtherTargetsAreBad) {
  const VARTYPE tags[] = {6,
                          10,
                          VT_VARIANT,
                          14,
                          15,
                          24,
                          25,
                          31,
                          36,
                          77,
                          0x2000,
                          0x2003,
                          VT_BYREF,
                          VT_BYREF | VT_I4,
                          VT_BYREF | VT_VARIANT,
                          0x8003,
                          0xFFFF};
  for (const VARTYPE tag : tags) {
    ExpectRefused({
        {Variant(), tag, DISP_E_BADVARTYPE},
        {Variant::Null(), tag, DISP_E_BADVARTYPE},
        {Int(5), tag, DISP_E_BADVARTYPE},
        {Text(u"5"), tag, DISP_E_BADVARTYPE},
    });
  }
  std::int32_t number = 5;
  ExpectCode(Pointer(VT_I4, &number), VT_BYREF | VT_I4, DISP_E_BADVARTYPE);
}

TEST(VariantChangeTypeTags, OtherSourcesAreBad) {
  const VARTYPE tags[] = {10,
                          VT_VARIANT,
                          15,
                          24,
                          31,
                          77,
                          0x2000,
                          0x2003,
                          0x6003,
                          0x8003,
                          VT_BYREF,
                          VT_BYREF | VT_NULL,
                          VT_BYREF | 77,
                          0xFFFF};
  std::int64_t number[2] = {5, 5};
  VariantData data;
  data.byref = number;
  for (const VARTYPE tag : tags) {
    const Variant source = Variant::FromRaw(tag, data);
    ExpectCode(source, VT_I4, DISP_E_BADVARTYPE);
    ExpectCode(source, VT_BSTR, DISP_E_BADVARTYPE);
    ExpectCode(source, VT_NULL, DISP_E_BADVARTYPE);
    ExpectCode(source, tag, DISP_E_BADVARTYPE);
    ExpectCode(PointerToVariant(source), VT_I4, DISP_E_BADVARTYPE);
  }
}

}  // namespace
}  // namespace qv
