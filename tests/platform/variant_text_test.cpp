// The change of a Variant to text.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "fixtures/shown_text.h"
#include "qvscriptwells/variant.h"

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
  EXPECT_EQ(TextOf(Variant::FromFloat(16777217.0F)), "1.677722e+07");
  EXPECT_EQ(TextOf(Variant::FromDouble(0.1)), "0.1");
  EXPECT_EQ(TextOf(Variant::FromDouble(1.0 / 3)), "0.333333333333333");
  EXPECT_EQ(TextOf(Variant::FromDouble(1e15)), "1e+15");
  EXPECT_EQ(TextOf(Variant::FromDouble(-2.5)), "-2.5");
}

TEST(VariantText, DatesLeaveOutTheHalfThatIsZero) {
  EXPECT_EQ(TextOf(Variant::FromDate(45356.427430555559)), "03/05/2024 10:15:30");
  EXPECT_EQ(TextOf(Variant::FromDate(45356.0)), "03/05/2024");
  EXPECT_EQ(TextOf(Variant::FromDate(0.5)), "12:00:00");
  EXPECT_EQ(TextOf(Variant::FromDate(0.0)), "00:00:00");
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
