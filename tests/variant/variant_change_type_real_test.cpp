// To floats and to booleans.
#include <gtest/gtest.h>

#include <limits>

#include "variant/variant_rows.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr float kFloatInfinity = std::numeric_limits<float>::infinity();
constexpr float kFloatNan = std::numeric_limits<float>::quiet_NaN();

TEST(VariantChangeTypeReal, NumbersBecomeFloats) {
  ExpectChanged({
      {Variant(), VT_R4, R4(0.0f)},
      {Variant(), VT_R8, R8(0.0)},
      {Bool(true), VT_R4, R4(-1.0f)},
      {Bool(true), VT_R8, R8(-1.0)},
      {Bool(false), VT_R8, R8(0.0)},
      {I1(-128), VT_R4, R4(-128.0f)},
      {I2(-32768), VT_R8, R8(-32768.0)},
      {I4(-2147483648), VT_R8, R8(-2147483648.0)},
      {I4(16777217), VT_R4, R4(16777216.0f)},
      {Int(5), VT_R8, R8(5.0)},
      {Int(0), VT_R8, R8(0.0)},
      {I8(9007199254740993), VT_R8, R8(9007199254740992.0)},
      {I8(std::numeric_limits<std::int64_t>::min()), VT_R8, R8(-9223372036854775808.0)},
      {UI1(255), VT_R8, R8(255.0)},
      {UI2(65535), VT_R4, R4(65535.0f)},
      {UI4(4294967295), VT_R8, R8(4294967295.0)},
      {UInt(4294967295), VT_R4, R4(4294967296.0f)},
      {UI8(18446744073709551615u), VT_R8, R8(18446744073709551616.0)},
      {UI8(18446744073709551615u), VT_R4, R4(18446744073709551616.0f)},
      {R4(0.1f), VT_R8, R8(0.10000000149011612)},
      {R4(-2.5f), VT_R8, R8(-2.5)},
      {R8(0.1), VT_R4, R4(0.1f)},
      {R8(1e-60), VT_R4, R4(0.0f)},
      {R8(3.4028234663852886e38), VT_R4, R4(3.40282347e38f)},
      {R8(3.40282350e38), VT_R4, R4(3.40282347e38f)},
      {Date(45356.5), VT_R8, R8(45356.5)},
      {Date(-1.25), VT_R4, R4(-1.25f)},
      {Date(1e300), VT_R8, R8(1e300)},
  });
}

TEST(VariantChangeTypeReal, WhatIsNoNumberStaysSo) {
  ExpectChanged({
      {R4(kFloatInfinity), VT_R8, R8(kInfinity)},
      {R4(-kFloatInfinity), VT_R8, R8(-kInfinity)},
      {R4(kFloatNan), VT_R8, R8(kNan)},
      {R8(kNan), VT_R4, R4(kFloatNan)},
      {R8(kNan), VT_R8, R8(kNan)},
  });
}

TEST(VariantChangeTypeReal, BeyondTheFloatsOverflows) {
  ExpectRefused({
      {R8(3.4028235677973366e38), VT_R4, DISP_E_OVERFLOW},
      {R8(-3.5e38), VT_R4, DISP_E_OVERFLOW},
      {R8(1e300), VT_R4, DISP_E_OVERFLOW},
      {R8(kInfinity), VT_R4, DISP_E_OVERFLOW},
      {R8(-kInfinity), VT_R4, DISP_E_OVERFLOW},
      {Date(1e300), VT_R4, DISP_E_OVERFLOW},
  });
}

TEST(VariantChangeTypeBool, NumbersAreTrueUnlessZero) {
  ExpectChanged({
      {Variant(), VT_BOOL, Bool(false)},    {I1(0), VT_BOOL, Bool(false)},
      {I1(-1), VT_BOOL, Bool(true)},        {I2(256), VT_BOOL, Bool(true)},
      {I4(0), VT_BOOL, Bool(false)},        {I4(65536), VT_BOOL, Bool(true)},
      {Int(1), VT_BOOL, Bool(true)},        {I8(4294967296), VT_BOOL, Bool(true)},
      {I8(0), VT_BOOL, Bool(false)},        {UI1(2), VT_BOOL, Bool(true)},
      {UI2(0), VT_BOOL, Bool(false)},       {UI4(1), VT_BOOL, Bool(true)},
      {UInt(0), VT_BOOL, Bool(false)},      {UI8(18446744073709551615u), VT_BOOL, Bool(true)},
      {R4(0.25f), VT_BOOL, Bool(true)},     {R4(0.0f), VT_BOOL, Bool(false)},
      {R8(1e-300), VT_BOOL, Bool(true)},    {R8(-0.0), VT_BOOL, Bool(false)},
      {R8(kInfinity), VT_BOOL, Bool(true)}, {R8(kNan), VT_BOOL, Bool(true)},
      {Date(0.0), VT_BOOL, Bool(false)},    {Date(0.25), VT_BOOL, Bool(true)},
  });
}

TEST(VariantChangeTypeBool, TextsAreWordsOrNumbers) {
  ExpectChanged({
      {Text(u"True"), VT_BOOL, Bool(true)},
      {Text(u"False"), VT_BOOL, Bool(false)},
      {Text(u"true"), VT_BOOL, Bool(true)},
      {Text(u"FALSE"), VT_BOOL, Bool(false)},
      {Text(u"tRuE"), VT_BOOL, Bool(true)},
      {Text(u"#TRUE#"), VT_BOOL, Bool(true)},
      {Text(u"#FALSE#"), VT_BOOL, Bool(false)},
      {Text(u"#true#"), VT_BOOL, Bool(true)},
      {Text(u"#False#"), VT_BOOL, Bool(false)},
      {Text(u"0"), VT_BOOL, Bool(false)},
      {Text(u"-1"), VT_BOOL, Bool(true)},
      {Text(u" 1 "), VT_BOOL, Bool(true)},
      {Text(u"0.25"), VT_BOOL, Bool(true)},
      {Text(u"0.00"), VT_BOOL, Bool(false)},
      {Text(u"1e5"), VT_BOOL, Bool(true)},
  });
}

TEST(VariantChangeTypeBool, OtherTextsAreRefused) {
  ExpectRefused({
      {Text(u""), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"yes"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"T"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"Tru"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"Trues"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u" True"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"True "), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"#TRUE"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"TRUE#"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"##"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"True\0"sv), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"\u0422rue"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"\xD800"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"3/5/2024"), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Variant::FromString(WideString()), VT_BOOL, DISP_E_TYPEMISMATCH},
      {Text(u"1e400"), VT_BOOL, DISP_E_OVERFLOW},
  });
}

}  // namespace
}  // namespace qv
