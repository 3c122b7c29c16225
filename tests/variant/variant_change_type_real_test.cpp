// To floats and to booleans.
#include <gtest/gtest.h>

#include <limits>

#include "variant/variant_rows.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr float kFloatInfinity = std::numeric_limits<float>::infinity();
constexpr float kFloatNan = std::numeric_limits<float>::quiet_NaN();
constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();

TEST(VariantChangeTypeReal, NumbersBecomeFloats) {
  ExpectAllBecome(R8(0.0), {Variant(), Bool(false), Int(0)});
  ExpectAllBecome(R4(0.0F), {Variant(), R8(1e-60)});
  const Changes rows = {{Bool(true), R4(-1.0F)},      {Bool(true), R8(-1.0)},    {I1(-128), R4(-128.0F)},
                        {I2(-32768), R8(-32768.0)},   {Int(5), R8(5.0)},         {UI1(255), R8(255.0)},
                        {UI2(65535), R4(65535.0F)},   {R4(-2.5F), R8(-2.5)},     {R8(0.1), R4(0.1F)},
                        {Date(45356.5), R8(45356.5)}, {Date(-1.25), R4(-1.25F)}, {Date(1e300), R8(1e300)}};
  ExpectChanged(rows);
  ExpectChanged({{I4(-2147483648), R8(-2147483648.0)},
                 {I4(16777217), R4(16777216.0F)},
                 {I8(9007199254740993), R8(9007199254740992.0)},
                 {I8(std::numeric_limits<std::int64_t>::min()), R8(-9223372036854775808.0)},
                 {UI4(4294967295), R8(4294967295.0)},
                 {UInt(4294967295), R4(4294967296.0F)},
                 {UI8(kAll), R8(18446744073709551616.0)},
                 {UI8(kAll), R4(18446744073709551616.0F)},
                 {R4(0.1F), R8(0.10000000149011612)}});
  ExpectAllBecome(R4(3.40282347e38F), {R8(3.4028234663852886e38), R8(3.40282350e38)});
}

TEST(VariantChangeTypeReal, InfiniteAndUndefinedNumbersStay) {
  ExpectAllBecome(R8(kInfinity), {R4(kFloatInfinity)});
  ExpectAllBecome(R8(-kInfinity), {R4(-kFloatInfinity)});
  ExpectAllBecome(R8(kNan), {R4(kFloatNan), R8(kNan)});
  ExpectAllBecome(R4(kFloatNan), {R8(kNan)});
}

TEST(VariantChangeTypeReal, BeyondTheFloatsOverflows) {
  ExpectRefused(
      DISP_E_OVERFLOW, VT_R4,
      {R8(3.4028235677973366e38), R8(-3.5e38), R8(1e300), R8(kInfinity), R8(-kInfinity), Date(1e300)});
}

TEST(VariantChangeTypeBool, NumbersAreTrueUnlessZero) {
  ExpectAllBecome(Bool(false),
                  {Variant(), I1(0), I4(0), I8(0), UI2(0), UInt(0), R4(0.0F), R8(-0.0), Date(0.0)});
  ExpectAllBecome(Bool(true), {I1(-1), I2(256), I4(65536), Int(1), I8(4294967296), UI1(2), UI4(1), UI8(kAll),
                               R4(0.25F), R8(1e-300), R8(kInfinity), R8(kNan), Date(0.25)});
}

TEST(VariantChangeTypeBool, TextsAreWordsOrNumbers) {
  ExpectAllBecome(Bool(true),
                  Texts({u"True", u"true", u"tRuE", u"#TRUE#", u"#true#", u"-1", u" 1 ", u"0.25", u"1e5"}));
  ExpectAllBecome(Bool(false), Texts({u"False", u"FALSE", u"#FALSE#", u"#False#", u"0", u"0.00"}));
}

TEST(VariantChangeTypeBool, OtherTextsAreRefused) {
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_BOOL,
                Texts({u"", u"yes", u"T", u"Tru", u"Trues", u" True", u"True ", u"#TRUE", u"TRUE#", u"##",
                       u"True\0"sv, u"\u0422rue", u"\xD800", u"3/5/2024"}));
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_BOOL, {NullText()});
  ExpectRefused(DISP_E_OVERFLOW, VT_BOOL, Texts({u"1e400"}));
}

}  // namespace
}  // namespace qv
