// Sources that are pointers, and who owns what.
#include <gtest/gtest.h>

#include "variant/valued_object.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

void ExpectResult(const Variant& source, const Variant& result) {
  Variant destination;
  EXPECT_EQ(VariantChangeType(&destination, source, result.Tag()), S_OK) << ShownValue(source);
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
  std::uint64_t ui8 = 18446744073709551615U;
  float r4[] = {1.5F, 77.0F};
  double r8 = -2.5;
  VARIANT_BOOL yes[] = {VARIANT_TRUE, 77};
  std::int64_t currency = -15000;
  DECIMAL decimal;
  decimal.scale = 1;
  decimal.Lo64 = 15;
  ExpectResult(Pointer(VT_I1, i1), I4(-5));
  ExpectResult(Pointer(VT_UI1, ui1), I4(250));
  ExpectResult(Pointer(VT_I2, i2), I4(-300));
  ExpectResult(Pointer(VT_UI2, ui2), I4(65000));
  ExpectResult(Pointer(VT_I4, i4), I8(-70000));
  ExpectResult(Pointer(VT_INT, i4), I8(-70000));
  ExpectResult(Pointer(VT_UI4, ui4), I8(4000000000));
  ExpectResult(Pointer(VT_UINT, ui4), R8(4000000000.0));
  ExpectResult(Pointer(VT_I8, &i8), Text(u"-5000000000"));
  ExpectResult(Pointer(VT_UI8, &ui8), Text(u"18446744073709551615"));
  ExpectResult(Pointer(VT_R4, r4), R8(1.5));
  ExpectResult(Pointer(VT_R8, &r8), I4(-2));
  ExpectResult(Pointer(VT_DATE, &r8), R8(-2.5));
  ExpectResult(Pointer(VT_BOOL, yes), I4(-1));
  ExpectResult(Pointer(VT_CY, &currency), R8(-1.5));
  ExpectResult(Pointer(VT_DECIMAL, &decimal), R8(1.5));
}

TEST(VariantChangeTypePointer, OwnTagLosesThePointerAndTheForeignBytes) {
  std::int8_t i1[8] = {-5, 1, 2, 3, 4, 5, 6, 7};
  double r8 = 0.1;
  VARIANT_BOOL odd[4] = {1, 2, 3, 4};
  ExpectResult(Pointer(VT_I1, i1), I1(-5));
  ExpectResult(Pointer(VT_R8, &r8), R8(0.1));
  ExpectResult(Pointer(VT_BOOL, odd), Raw(VT_BOOL, 1));
}

TEST(VariantChangeTypePointer, ForeignTextIsCopiedSinceItsOwnerMayRewriteIt) {
  WideString source(u"12");
  BStr text = source.Detach();
  Variant copy;
  EXPECT_EQ(VariantChangeType(&copy, Pointer(VT_BSTR, &text), VT_BSTR), S_OK);
  text[0] = u'9';
  EXPECT_EQ(copy.Text(), u"12");
  ExpectResult(Pointer(VT_BSTR, &text), I4(92));
  FreeString(text);
  EXPECT_EQ(copy.Text(), u"12");
}

TEST(VariantChangeTypePointer, NullTextStaysNull) {
  BStr text = nullptr;
  ExpectResult(Pointer(VT_BSTR, &text), NullText());
  ExpectResult(NullText(), NullText());
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
  ExpectResult(PointerToVariant(empty), Variant());
  ExpectResult(PointerToVariant(empty), Text(u""));
  ExpectResult(PointerToVariant(null), Variant::Null());
  ExpectResult(PointerToVariant(pointer), Text(u"5"));
  ExpectCode(PointerToVariant(null), VT_I4, DISP_E_TYPEMISMATCH);
}

TEST(VariantChangeTypePointer, RowOfEightIsFollowedAndOfNineRefused) {
  Variant row[10];
  row[0] = Int(5);
  for (int i = 1; i < 10; ++i) row[i] = PointerToVariant(row[i - 1]);
  ExpectResult(row[8], I4(5));
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
  const std::pair<VARTYPE, VARTYPE> rows[] = {
      {VT_I4, VT_I4}, {VT_I4, VT_BSTR}, {VT_BSTR, VT_BSTR}, {VT_DISPATCH, VT_UNKNOWN}, {VT_VARIANT, VT_I4}};
  for (const auto& [tag, target] : rows) ExpectCode(Pointer(tag, nullptr), target, E_INVALIDARG);
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
  ValuedObject object;
  value = FromDispatch(&object);
  EXPECT_EQ(VariantChangeType(&value, PointerTo(value), VT_UNKNOWN), S_OK);
  EXPECT_EQ(object.count, 2U);
  EXPECT_EQ(VariantChangeType(&value, PointerToVariant(value), VT_UNKNOWN), S_OK);
  EXPECT_EQ(object.count, 2U);
  value.Clear();
}

TEST(VariantChangeTypePointer, PointerThatIsTheDestinationGives) {
  double number = 1.5;
  Variant value = Pointer(VT_R8, &number);
  EXPECT_EQ(VariantChangeType(&value, value, VT_BSTR), S_OK);
  EXPECT_EQ(value.Text(), u"1.5");
}

}  // namespace
}  // namespace qv
