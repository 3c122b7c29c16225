// From VT_CY and VT_DECIMAL, which hosts of other languages hand over.
#include <gtest/gtest.h>

#include <utility>

#include "variant/variant_rows.h"

namespace qv {
namespace {

constexpr std::uint64_t kAll64 = ~std::uint64_t{0};

constexpr auto Currency = &Tagged<VT_CY, std::int64_t>;  // ten-thousandths

Variant Decimal(std::uint64_t low, std::uint8_t scale, std::uint8_t sign = 0, std::uint32_t high = 0) {
  DECIMAL value;
  value.scale = scale;
  value.sign = sign;
  value.Hi32 = high;
  value.Lo64 = low;
  return Variant::FromDecimal(value);
}

TEST(VariantChangeTypeScaled, CurrencyIsRead) {
  const Changes rows = {{Currency(0), I4(0)},       {Currency(120000), I2(12)},  {Currency(-125000), I2(-12)},
                        {Currency(135000), I2(14)}, {Currency(125001), I2(13)},  {Currency(15000), R8(1.5)},
                        {Currency(1), R8(0.0001)},  {Currency(15000), R4(1.5F)}, {Currency(0), Bool(false)},
                        {Currency(1), Bool(true)}};
  ExpectChanged(rows);
  ExpectChanged({{Currency(453565000), Date(45356.5)},
                 {Currency(9223372036854775807), I8(922337203685478)},
                 {Currency(INT64_MIN), I8(-922337203685478)}});
}

TEST(VariantChangeTypeScaled, CurrencyHasItsText) {
  const Writes rows = {{Currency(0), u"0"},         {Currency(1), u"0.0001"},
                       {Currency(-1), u"-0.0001"},  {Currency(15000), u"1.5"},
                       {Currency(1000000), u"100"}, {Currency(1000001), u"100.0001"}};
  ExpectWritten(rows);
  ExpectWritten({{Currency(9223372036854775807), u"922337203685477.5807"},
                 {Currency(INT64_MIN), u"-922337203685477.5808"}});
}

TEST(VariantChangeTypeScaled, DecimalIsRead) {
  const Changes rows = {{Decimal(12, 0), I2(12)},  {Decimal(25, 1), I4(2)},     {Decimal(35, 1), I4(4)},
                        {Decimal(15, 1), R8(1.5)}, {Decimal(1, 28), R8(1e-28)}, {Decimal(1, 28), Bool(true)}};
  ExpectChanged(rows);
  const Changes others = {{Decimal(12, 0, DECIMAL_NEG), I2(-12)},
                          {Decimal(0, 0, DECIMAL_NEG), UI1(0)},
                          {Decimal(kAll64, 0), UI8(kAll64)},
                          {Decimal(453565, 1), Date(45356.5)},
                          {Decimal(0, 0, 0, 1), R8(18446744073709551616.0)}};
  ExpectChanged(others);
}

TEST(VariantChangeTypeScaled, DecimalHasItsText) {
  ExpectAllBecome(Text(u"0"), {Decimal(0, 0), Decimal(0, 28), Decimal(0, 5, DECIMAL_NEG)});
  ExpectWritten({{Decimal(1500, 3), u"1.5"},
                 {Decimal(1000, 0), u"1000"},
                 {Decimal(1000, 3), u"1"},
                 {Decimal(5, 1, DECIMAL_NEG), u"-0.5"},
                 {Decimal(kAll64, 0, 0, 0xFFFFFFFF), u"79228162514264337593543950335"},
                 {Decimal(kAll64, 28, DECIMAL_NEG, 0xFFFFFFFF), u"-7.9228162514264337593543950335"},
                 {Decimal(1, 28), u"0.0000000000000000000000000001"}});
}

TEST(VariantChangeTypeScaled, BeyondTheRangeOverflows) {
  ExpectRefused(DISP_E_OVERFLOW, VT_UI1, {Currency(2560000), Currency(-10000)});
  for (const VARTYPE tag : {VT_UI8, VT_DATE}) ExpectRefused(DISP_E_OVERFLOW, tag, {Decimal(0, 0, 0, 1)});
}

TEST(VariantChangeTypeScaled, IsNoTargetAndNoObject) {
  ExpectRefused(DISP_E_BADVARTYPE, VT_CY, {I4(1), Currency(1)});
  ExpectRefused(DISP_E_BADVARTYPE, VT_DECIMAL, {I4(1), Decimal(1, 0)});
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_DISPATCH, {Currency(1)});
  for (const VARTYPE tag : {VT_UNKNOWN, VT_NULL}) ExpectRefused(DISP_E_TYPEMISMATCH, tag, {Decimal(1, 0)});
}

TEST(VariantChangeTypeScaled, DecimalWithWrongScaleOrSignIsRefused) {
  ExpectRefused(E_INVALIDARG, VT_R8, {Decimal(1, 29)});
  ExpectRefused(E_INVALIDARG, VT_BSTR, {Decimal(1, 255)});
  ExpectRefused(E_INVALIDARG, VT_I4, {Decimal(1, 0, 1)});
}

TEST(VariantChangeTypeScaled, DecimalIsCopiedMovedAndCleared) {
  const Variant value = Decimal(7, 2, DECIMAL_NEG, 9);
  Variant copy(value);
  const Variant moved(std::move(copy));
  EXPECT_EQ(moved.Tag(), VT_DECIMAL);
  EXPECT_EQ(moved.Decimal().scale, 2);
  EXPECT_EQ(moved.Decimal().sign, DECIMAL_NEG);
  EXPECT_EQ(moved.Decimal().Hi32, 9U);
  EXPECT_EQ(moved.Decimal().Lo64, 7U);
  EXPECT_EQ(copy.Decimal().Lo64, 0U);  // NOLINT(bugprone-use-after-move): it is empty now
  Variant assigned = Text(u"old");
  assigned = value;
  EXPECT_EQ(assigned.Decimal().Hi32, 9U);
  assigned = Variant::FromDecimal({});
  EXPECT_EQ(assigned.Decimal().scale, 0);
  EXPECT_EQ(assigned.Decimal().Hi32, 0U);
  EXPECT_EQ(Int(5).Decimal().Lo64, 0U);
}

}  // namespace
}  // namespace qv
