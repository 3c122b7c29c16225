// The change of a Variant to text.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "fixtures/shown_text.h"
#include "qvscriptwells/variant.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

std::string TextOf(const Variant& source) {
  Variant text;
  const HRESULT code = VariantChangeType(&text, source, VT_BSTR);
  if (Failed(code)) return text.Tag() == VT_EMPTY ? "failed " + std::to_string(code & 0xFFFF) : "touched";
  return text.Tag() == VT_BSTR ? Shown(text.Text()) : "no text";
}

TEST(VariantText, WholeNumbersAreDecimal) {
  EXPECT_EQ(TextOf(Variant::FromByte(-128)), "-128");
  EXPECT_EQ(TextOf(Variant::FromShort(-32768)), "-32768");
  EXPECT_EQ(TextOf(Variant::FromInt(2147483647)), "2147483647");
  EXPECT_EQ(TextOf(Variant::FromLong(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
  EXPECT_EQ(TextOf(Variant::FromInt(0)), "0");
}

TEST(VariantText, BooleansAreTheirNumbers) {
  EXPECT_EQ(TextOf(Variant::FromBool(true)), "-1");
  EXPECT_EQ(TextOf(Variant::FromBool(false)), "0");
}

TEST(VariantText, FloatsHaveSevenDigitsAndDoublesFifteen) {
  EXPECT_EQ(TextOf(Variant::FromFloat(0.1F)), "0.1");
  EXPECT_EQ(TextOf(Variant::FromFloat(16777217.0F)), "1.677722E+07");
  EXPECT_EQ(TextOf(Variant::FromDouble(0.1)), "0.1");
  EXPECT_EQ(TextOf(Variant::FromDouble(1.0 / 3)), "0.333333333333333");
  EXPECT_EQ(TextOf(Variant::FromDouble(1e15)), "1E+15");
  EXPECT_EQ(TextOf(Variant::FromDouble(-2.5)), "-2.5");
}

TEST(VariantText, ExponentsHaveASignAndTwoDigits) {
  EXPECT_EQ(TextOf(Variant::FromDouble(0.0001)), "0.0001");
  EXPECT_EQ(TextOf(Variant::FromDouble(0.00001)), "1E-05");
  EXPECT_EQ(TextOf(Variant::FromDouble(1.5e-7)), "1.5E-07");
  EXPECT_EQ(TextOf(Variant::FromDouble(1e14)), "100000000000000");
  EXPECT_EQ(TextOf(Variant::FromDouble(123456789012345.0)), "123456789012345");
  EXPECT_EQ(TextOf(Variant::FromDouble(1234567890123456.0)), "1.23456789012346E+15");
  EXPECT_EQ(TextOf(Variant::FromDouble(999999999999999.5)), "1E+15");
  EXPECT_EQ(TextOf(Variant::FromDouble(1.7976931348623157e308)), "1.79769313486232E+308");
  EXPECT_EQ(TextOf(Variant::FromDouble(-4.9406564584124654e-324)), "-4.94065645841247E-324");
  EXPECT_EQ(TextOf(Variant::FromDouble(0.1 + 0.2)), "0.3");
  EXPECT_EQ(TextOf(Variant::FromFloat(1234567.0F)), "1234567");
  EXPECT_EQ(TextOf(Variant::FromFloat(1e7F)), "1E+07");
  EXPECT_EQ(TextOf(Variant::FromFloat(0.00001F)), "1E-05");
  EXPECT_EQ(TextOf(Variant::FromFloat(3.40282347e38F)), "3.402823E+38");
  EXPECT_EQ(TextOf(Variant::FromFloat(-0.25F)), "-0.25");
}

TEST(VariantText, ZeroHasNoSign) {
  EXPECT_EQ(TextOf(Variant::FromDouble(0.0)), "0");
  EXPECT_EQ(TextOf(Variant::FromDouble(-0.0)), "0");
  EXPECT_EQ(TextOf(Variant::FromFloat(-0.0F)), "0");
}

TEST(VariantText, WhatIsNoNumberHasItsWord) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(TextOf(Variant::FromDouble(infinity)), "1.#INF");
  EXPECT_EQ(TextOf(Variant::FromDouble(-infinity)), "-1.#INF");
  EXPECT_EQ(TextOf(Variant::FromDouble(std::copysign(nan, 1.0))), "1.#QNAN");
  EXPECT_EQ(TextOf(Variant::FromDouble(std::copysign(nan, -1.0))), "-1.#IND");
  EXPECT_EQ(TextOf(Variant::FromFloat(std::numeric_limits<float>::infinity())), "1.#INF");
}

TEST(VariantText, UnsignedNumbersHaveNoSign) {
  EXPECT_EQ(TextOf(UI1(255)), "255");
  EXPECT_EQ(TextOf(UI2(65535)), "65535");
  EXPECT_EQ(TextOf(UI4(4294967295)), "4294967295");
  EXPECT_EQ(TextOf(UInt(0)), "0");
  EXPECT_EQ(TextOf(UI8(18446744073709551615U)), "18446744073709551615");
}

TEST(VariantText, DatesLeaveOutTheHalfThatIsZero) {
  EXPECT_EQ(TextOf(Variant::FromDate(45356.427430555559)), "3/5/2024 10:15:30 AM");
  EXPECT_EQ(TextOf(Variant::FromDate(45356.0)), "3/5/2024");
  EXPECT_EQ(TextOf(Variant::FromDate(0.5)), "12:00:00 PM");
  EXPECT_EQ(TextOf(Variant::FromDate(0.0)), "12:00:00 AM");
}

TEST(VariantText, TextStaysAndNothingIsEmpty) {
  EXPECT_EQ(TextOf(Variant::FromString(u"a")), "a");
  EXPECT_EQ(TextOf(Variant()), "");
}

TEST(VariantText, WhatHasNoTextIsAMismatch) {
  EXPECT_EQ(TextOf(Variant::Null()), "failed 5");
  EXPECT_EQ(TextOf(Variant::FromObject(nullptr)), "failed 5");
  EXPECT_EQ(TextOf(Variant::FromDate(1e300)), "failed 5");
  EXPECT_EQ(TextOf(Variant::FromDate(std::numeric_limits<double>::quiet_NaN())), "failed 5");
}

TEST(VariantText, SourceMayBeTheTarget) {
  Variant value = Variant::FromInt(42);
  EXPECT_EQ(VariantChangeType(&value, value, VT_BSTR), S_OK);
  EXPECT_EQ(value.Text(), WideString(u"42"));
}

}  // namespace
}  // namespace qv
