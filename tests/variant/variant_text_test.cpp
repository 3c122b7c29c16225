// The change of a Variant to text.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "variant/variant_rows.h"

namespace qv {
namespace {

TEST(VariantText, WholeNumbersAreDecimal) {
  const Writes rows = {{I1(-128), u"-128"}, {I2(-32768), u"-32768"}, {Int(2147483647), u"2147483647"},
                       {Int(0), u"0"},      {Bool(true), u"-1"},     {Bool(false), u"0"},
                       {UI1(255), u"255"},  {UI2(65535), u"65535"},  {UI4(4294967295), u"4294967295"},
                       {UInt(0), u"0"}};
  ExpectWritten(rows);
  ExpectWritten({{I8(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808"},
                 {UI8(18446744073709551615U), u"18446744073709551615"}});
}

TEST(VariantText, FloatsHaveSevenDigitsAndDoublesFifteen) {
  const Writes rows = {{R4(0.1F), u"0.1"},       {R4(1234567.0F), u"1234567"}, {R4(1e7F), u"1E+07"},
                       {R4(0.00001F), u"1E-05"}, {R4(-0.25F), u"-0.25"},       {R8(0.1), u"0.1"},
                       {R8(1e15), u"1E+15"},     {R8(-2.5), u"-2.5"},          {R8(0.1 + 0.2), u"0.3"},
                       {R8(0.0001), u"0.0001"},  {R8(0.00001), u"1E-05"},      {R8(1.5e-7), u"1.5E-07"}};
  ExpectWritten(rows);
  ExpectWritten({{R4(16777217.0F), u"1.677722E+07"},
                 {R4(3.40282347e38F), u"3.402823E+38"},
                 {R8(1.0 / 3), u"0.333333333333333"},
                 {R8(1e14), u"100000000000000"},
                 {R8(123456789012345.0), u"123456789012345"},
                 {R8(1234567890123456.0), u"1.23456789012346E+15"},
                 {R8(999999999999999.5), u"1E+15"},
                 {R8(1.7976931348623157e308), u"1.79769313486232E+308"},
                 {R8(-4.9406564584124654e-324), u"-4.94065645841247E-324"}});
}

TEST(VariantText, ZeroHasNoSign) {
  ExpectAllBecome(Text(u"0"), {R8(0.0), R8(-0.0), R4(-0.0F)});
}

TEST(VariantText, InfiniteAndUndefinedNumbersHaveTheirText) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ExpectAllBecome(Text(u"1.#INF"), {R8(infinity), R4(std::numeric_limits<float>::infinity())});
  ExpectWritten({{R8(-infinity), u"-1.#INF"},
                 {R8(std::copysign(nan, 1.0)), u"1.#QNAN"},
                 {R8(std::copysign(nan, -1.0)), u"-1.#IND"}});
}

TEST(VariantText, TextStaysAndNothingIsEmpty) {
  ExpectWritten({{Text(u"a"), u"a"}, {Variant(), u""}, {Int(42), u"42"}});
}

TEST(VariantText, WhatHasNoTextIsAMismatch) {
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_BSTR,
                {Variant::Null(), Variant::FromObject(nullptr), Date(1e300),
                 Date(std::numeric_limits<double>::quiet_NaN())});
}

}  // namespace
}  // namespace qv
