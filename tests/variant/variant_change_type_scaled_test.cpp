// From VT_CY and VT_DECIMAL, which hosts of other languages hand over.
#include <gtest/gtest.h>

#include <utility>

#include "variant/variant_rows.h"

namespace qv {
namespace {

constexpr std::uint64_t kAll64 = ~std::uint64_t{0};

Variant Currency(std::int64_t tenThousandths) {
  return Raw(VT_CY, tenThousandths);
}

Variant Decimal(std::uint64_t low, std::uint8_t scale, std::uint8_t sign = 0, std::uint32_t high = 0) {
  DECIMAL value;
  value.scale = scale;
  value.sign = sign;
  value.Hi32 = high;
  value.Lo64 = low;
  return Variant::FromDecimal(value);
}

TEST(VariantChangeTypeScaled, CurrencyIsRead) {
  ExpectChanged({
      {Currency(0), VT_I4, I4(0)},
      {Currency(120000), VT_I2, I2(12)},
      {Currency(-125000), VT_I2, I2(-12)},
      {Currency(135000), VT_I2, I2(14)},
      {Currency(125001), VT_I2, I2(13)},
      {Currency(9223372036854775807), VT_I8, I8(922337203685478)},
      {Currency(INT64_MIN), VT_I8, I8(-922337203685478)},
      {Currency(15000), VT_R8, R8(1.5)},
      {Currency(1), VT_R8, R8(0.0001)},
      {Currency(15000), VT_R4, R4(1.5f)},
      {Currency(0), VT_BOOL, Bool(false)},
      {Currency(1), VT_BOOL, Bool(true)},
      {Currency(453565000), VT_DATE, Date(45356.5)},
  });
}

TEST(VariantChangeTypeScaled, CurrencyHasItsText) {
  ExpectChanged({
      {Currency(0), VT_BSTR, Text(u"0")},
      {Currency(1), VT_BSTR, Text(u"0.0001")},
      {Currency(-1), VT_BSTR, Text(u"-0.0001")},
      {Currency(15000), VT_BSTR, Text(u"1.5")},
      {Currency(1000000), VT_BSTR, Text(u"100")},
      {Currency(1000001), VT_BSTR, Text(u"100.0001")},
      {Currency(9223372036854775807), VT_BSTR, Text(u"922337203685477.5807")},
      {Currency(INT64_MIN), VT_BSTR, Text(u"-922337203685477.5808")},
  });
}

TEST(VariantChangeTypeScaled, DecimalIsRead) {
  ExpectChanged({
      {Decimal(12, 0), VT_I2, I2(12)},
      {Decimal(12, 0, DECIMAL_NEG), VT_I2, I2(-12)},
      {Decimal(0, 0, DECIMAL_NEG), VT_UI1, UI1(0)},
      {Decimal(25, 1), VT_I4, I4(2)},
      {Decimal(35, 1), VT_I4, I4(4)},
      {Decimal(kAll64, 0), VT_UI8, UI8(kAll64)},
      {Decimal(15, 1), VT_R8, R8(1.5)},
      {Decimal(0, 0, 0, 1), VT_R8, R8(18446744073709551616.0)},
      {Decimal(1, 28), VT_R8, R8(1e-28)},
      {Decimal(1, 28), VT_BOOL, Bool(true)},
      {Decimal(453565, 1), VT_DATE, Date(45356.5)},
  });
}

TEST(VariantChangeTypeScaled, DecimalHasItsText) {
  ExpectChanged({
      {Decimal(0, 0), VT_BSTR, Text(u"0")},
      {Decimal(0, 28), VT_BSTR, Text(u"0")},
      {Decimal(0, 5, DECIMAL_NEG), VT_BSTR, Text(u"0")},
      {Decimal(1500, 3), VT_BSTR, Text(u"1.5")},
      {Decimal(1000, 0), VT_BSTR, Text(u"1000")},
      {Decimal(1000, 3), VT_BSTR, Text(u"1")},
      {Decimal(5, 1, DECIMAL_NEG), VT_BSTR, Text(u"-0.5")},
      {Decimal(kAll64, 0, 0, 0xFFFFFFFF), VT_BSTR, Text(u"79228162514264337593543950335")},
      {Decimal(kAll64, 28, DECIMAL_NEG, 0xFFFFFFFF), VT_BSTR, Text(u"-7.9228162514264337593543950335")},
      {Decimal(1, 28), VT_BSTR, Text(u"0.0000000000000000000000000001")},
  });
}

TEST(VariantChangeTypeScaled, BeyondTheRangeOverflows) {
  ExpectRefused({
      {Currency(2560000), VT_UI1, DISP_E_OVERFLOW},
      {Currency(-10000), VT_UI1, DISP_E_OVERFLOW},
      {Decimal(0, 0, 0, 1), VT_UI8, DISP_E_OVERFLOW},
      {Decimal(0, 0, 0, 1), VT_DATE, DISP_E_OVERFLOW},
  });
}

TEST(VariantChangeTypeScaled, IsNoTargetAndNoObject) {
  ExpectRefused({
      {I4(1), VT_CY, DISP_E_BADVARTYPE},
      {I4(1), VT_DECIMAL, DISP_E_BADVARTYPE},
      {Currency(1), VT_CY, DISP_E_BADVARTYPE},
      {Decimal(1, 0), VT_DECIMAL, DISP_E_BADVARTYPE},
      {Currency(1), VT_DISPATCH, DISP_E_TYPEMISMATCH},
      {Decimal(1, 0), VT_UNKNOWN, DISP_E_TYPEMISMATCH},
      {Decimal(1, 0), VT_NULL, DISP_E_TYPEMISMATCH},
  });
}

TEST(VariantChangeTypeScaled, DecimalThatIsNoneIsRefused) {
  ExpectRefused({
      {Decimal(1, 29), VT_R8, E_INVALIDARG},
      {Decimal(1, 255), VT_BSTR, E_INVALIDARG},
      {Decimal(1, 0, 1), VT_I4, E_INVALIDARG},
  });
}

TEST(VariantChangeTypeScaled, DecimalIsCopiedMovedAndCleared) {
  const Variant value = Decimal(7, 2, DECIMAL_NEG, 9);
  Variant copy(value);
  const Variant moved(std::move(copy));
  EXPECT_EQ(moved.Tag(), VT_DECIMAL);
  EXPECT_EQ(moved.Decimal().scale, 2);
  EXPECT_EQ(moved.Decimal().sign, DECIMAL_NEG);
  EXPECT_EQ(moved.Decimal().Hi32, 9u);
  EXPECT_EQ(moved.Decimal().Lo64, 7u);
  EXPECT_EQ(copy.Decimal().Lo64, 0u);  // NOLINT(bugprone-use-after-move): it is empty now
  Variant assigned = Variant::FromString(u"old");
  assigned = value;
  EXPECT_EQ(assigned.Decimal().Hi32, 9u);
  assigned = Variant::FromDecimal({});
  EXPECT_EQ(assigned.Decimal().scale, 0);
  EXPECT_EQ(assigned.Decimal().Hi32, 0u);
  EXPECT_EQ(Variant::FromInt(5).Decimal().Lo64, 0u);
}

}  // namespace
}  // namespace qv
