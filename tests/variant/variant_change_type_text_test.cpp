// From texts to whole numbers and floats.
#include <gtest/gtest.h>

#include <limits>

#include "support/comma_locale.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

TEST(VariantChangeTypeText, BecomesAWholeNumber) {
  ExpectChanged({
      {Text(u"0"), VT_UI1, UI1(0)},
      {Text(u"-0"), VT_UI1, UI1(0)},
      {Text(u"-0.5"), VT_UI4, UI4(0)},
      {Text(u"255"), VT_UI1, UI1(255)},
      {Text(u"255.4999"), VT_UI1, UI1(255)},
      {Text(u"65535"), VT_UI2, UI2(65535)},
      {Text(u"4294967295"), VT_UI4, UI4(4294967295)},
      {Text(u"4,294,967,295"), VT_UINT, UInt(4294967295)},
      {Text(u"18446744073709551615"), VT_UI8, UI8(18446744073709551615u)},
      {Text(u"18446744073709551615.4"), VT_UI8, UI8(18446744073709551615u)},
      {Text(u"1.8446744073709551615e19"), VT_UI8, UI8(18446744073709551615u)},
      {Text(u"12"), VT_I2, I2(12)},
      {Text(u"5-"), VT_I2, I2(-5)},
      {Text(u"5+"), VT_I2, I2(5)},
      {Text(u"1e1-"), VT_I2, I2(-10)},
      {Text(u"\t\r\n 7 \v\f"), VT_I4, I4(7)},
      {Text(u"0.5"), VT_I4, I4(0)},
      {Text(u"0.50000000000000000000001"), VT_I4, I4(1)},
      {Text(u"1.5000"), VT_I4, I4(2)},
      {Text(u"2.5000"), VT_I4, I4(2)},
      {Text(u"-3.5"), VT_I1, I1(-4)},
      {Text(u"9007199254740993.5"), VT_I8, I8(9007199254740994)},
      {Text(u"9223372036854775807.4"), VT_I8, I8(9223372036854775807)},
      {Text(u"-9223372036854775808.5"), VT_I8, I8(std::numeric_limits<std::int64_t>::min())},
      {Text(u"25e-1"), VT_I4, I4(2)},
      {Text(u"35e-1"), VT_I4, I4(4)},
      {Text(u"5e-1"), VT_I4, I4(0)},
      {Text(u"5e-2"), VT_I4, I4(0)},
      {Text(u"1e-999999999999999999999"), VT_I4, I4(0)},
      {Text(u"0e999999999999999999999"), VT_I4, I4(0)},
      {Text(u"0.000000000000000000000012e24"), VT_I4, I4(12)},
      {Text(u"000000000000000000000000000012"), VT_I4, I4(12)},
      {Text(u"1,2,3"), VT_I4, I4(123)},
      {Text(u"1,234e1"), VT_I4, I4(12340)},
  });
}

TEST(VariantChangeTypeText, InParenthesesIsNegative) {
  ExpectChanged({
      {Text(u"(5)"), VT_I2, I2(-5)},
      {Text(u" (1,234.5) "), VT_R8, R8(-1234.5)},
      {Text(u"(1e2)"), VT_I4, I4(-100)},
      {Text(u"(0)"), VT_UI1, UI1(0)},
      {Text(u"(0)"), VT_R8, R8(-0.0)},
      {Text(u"(1)"), VT_BOOL, Bool(true)},
  });
  ExpectRefused({{Text(u"(1)"), VT_UI1, DISP_E_OVERFLOW}});
}

TEST(VariantChangeTypeText, MayHaveOneBlankAfterItsSign) {
  ExpectChanged({
      {Text(u"- 5"), VT_I2, I2(-5)},
      {Text(u"+ 5"), VT_I2, I2(5)},
      {Text(u"  - 1.5 "), VT_R8, R8(-1.5)},
  });
}

// The bits as they stand, as scripts write them.
TEST(VariantChangeTypeText, OfAnotherBaseIsItsBits) {
  ExpectChanged({
      {Text(u"&H10"), VT_I2, I2(16)},
      {Text(u"&h1f"), VT_UI1, UI1(31)},
      {Text(u" &HaBcDeF "), VT_I4, I4(0xABCDEF)},
      {Text(u"&O17"), VT_I2, I2(15)},
      {Text(u"&o377"), VT_UI1, UI1(255)},
      {Text(u"&HFF"), VT_I1, I1(-1)},
      {Text(u"&HFFFF"), VT_I2, I2(-1)},
      {Text(u"&H8000"), VT_I2, I2(-32768)},
      {Text(u"&O177777"), VT_I2, I2(-1)},
      {Text(u"&HFFFF"), VT_I4, I4(65535)},
      {Text(u"&HFFFFFFFF"), VT_INT, Int(-1)},
      {Text(u"&HFFFFFFFFFFFFFFFF"), VT_I8, I8(-1)},
      {Text(u"&O1777777777777777777777"), VT_UI8, UI8(18446744073709551615u)},
      {Text(u"&H00000000000000000000000012"), VT_UI1, UI1(18)},
      {Text(u"&HFFFF"), VT_R8, R8(65535.0)},
      {Text(u"&HFFFFFFFFFFFFFFFF"), VT_R8, R8(18446744073709551616.0)},
      {Text(u"&H0"), VT_BOOL, Bool(false)},
      {Text(u"&H1"), VT_BOOL, Bool(true)},
  });
  ExpectRefused({
      {Text(u"&H100"), VT_I1, DISP_E_OVERFLOW},
      {Text(u"&H10000"), VT_I2, DISP_E_OVERFLOW},
      {Text(u"&H100000000"), VT_I4, DISP_E_OVERFLOW},
      {Text(u"&H10000000000000000"), VT_I8, DISP_E_OVERFLOW},
      {Text(u"&O2000000000000000000000"), VT_UI8, DISP_E_OVERFLOW},
      {Text(u"&H10000000000000000"), VT_R8, DISP_E_OVERFLOW},
      {Text(u"&H10000000000000000G"), VT_R8, DISP_E_TYPEMISMATCH},
  });
}

TEST(VariantChangeTypeText, BeyondTheWholeRangeOverflows) {
  ExpectRefused({
      {Text(u"256"), VT_UI1, DISP_E_OVERFLOW},
      {Text(u"255.5"), VT_UI1, DISP_E_OVERFLOW},
      {Text(u"-1"), VT_UI1, DISP_E_OVERFLOW},
      {Text(u"-0.51"), VT_UI8, DISP_E_OVERFLOW},
      {Text(u"65536"), VT_UI2, DISP_E_OVERFLOW},
      {Text(u"32768"), VT_I2, DISP_E_OVERFLOW},
      {Text(u"4294967296"), VT_UI4, DISP_E_OVERFLOW},
      {Text(u"2147483648"), VT_I4, DISP_E_OVERFLOW},
      {Text(u"9223372036854775807.5"), VT_I8, DISP_E_OVERFLOW},
      {Text(u"9223372036854775808"), VT_I8, DISP_E_OVERFLOW},
      {Text(u"18446744073709551615.5"), VT_UI8, DISP_E_OVERFLOW},
      {Text(u"18446744073709551616"), VT_UI8, DISP_E_OVERFLOW},
      {Text(u"99999999999999999999"), VT_UI8, DISP_E_OVERFLOW},
      {Text(u"1e20"), VT_UI8, DISP_E_OVERFLOW},
      {Text(u"1e999999999999999999999"), VT_I8, DISP_E_OVERFLOW},
  });
}

TEST(VariantChangeTypeText, BecomesAFloat) {
  ExpectChanged({
      {Text(u"0"), VT_R8, R8(0.0)},
      {Text(u"-0"), VT_R8, R8(-0.0)},
      {Text(u"1.5"), VT_R8, R8(1.5)},
      {Text(u" -1.5 "), VT_R8, R8(-1.5)},
      {Text(u"+.25"), VT_R8, R8(0.25)},
      {Text(u"5."), VT_R8, R8(5.0)},
      {Text(u"2.5-"), VT_R8, R8(-2.5)},
      {Text(u"0.1"), VT_R8, R8(0.1)},
      {Text(u"1e3"), VT_R8, R8(1000.0)},
      {Text(u"1E+15"), VT_R8, R8(1e15)},
      {Text(u"1E-05"), VT_R8, R8(0.00001)},
      {Text(u"1,234,567.25"), VT_R8, R8(1234567.25)},
      {Text(u"123456789012345678901234567890"), VT_R8, R8(123456789012345678901234567890.0)},
      {Text(u"1.7976931348623157e308"), VT_R8, R8(1.7976931348623157e308)},
      {Text(u"4.9406564584124654e-324"), VT_R8, R8(4.9406564584124654e-324)},
      {Text(u"1e-400"), VT_R8, R8(0.0)},
      {Text(u"-1e-400"), VT_R8, R8(-0.0)},
      {Text(u"1e-99999999999999999999"), VT_R8, R8(0.0)},
      {Text(u"0e99999999999999999999"), VT_R8, R8(0.0)},
      {Text(u"1.5"), VT_R4, R4(1.5f)},
      {Text(u"0.1"), VT_R4, R4(0.1f)},
      {Text(u"-16777216"), VT_R4, R4(-16777216.0f)},
      {Text(u"3.4028234e38"), VT_R4, R4(3.4028234e38f)},
      {Text(u"1e-60"), VT_R4, R4(0.0f)},
  });
}

TEST(VariantChangeTypeText, BeyondTheFloatsOverflows) {
  ExpectRefused({
      {Text(u"1e309"), VT_R8, DISP_E_OVERFLOW},
      {Text(u"-1.8e308"), VT_R8, DISP_E_OVERFLOW},
      {Text(u"1e99999999999999999999"), VT_R8, DISP_E_OVERFLOW},
      {Text(u"1e39"), VT_R4, DISP_E_OVERFLOW},
      {Text(u"-1e39"), VT_R4, DISP_E_OVERFLOW},
      {Text(u"1e400"), VT_R4, DISP_E_OVERFLOW},
  });
}

// Refused alike by every kind of number.
TEST(VariantChangeTypeText, ThatIsNoNumberMismatches) {
  const std::u16string_view texts[] = {
      u"",       u"  ",      u"abc",    u"12abc",  u"x12",   u"1 2",    u"1.2.3",   u"1..2",  u"0x10",
      u"10h",    u"inf",     u"nan",    u"1.#INF", u"-",     u"+",      u"--5",     u"- ",    u"5  -",
      u"+-5",    u"-5-",     u"+5-",    u"5--",    u"-  5",  u"5 -",    u".",       u"-.",    u",",
      u"(-5)",   u"-(5)",    u"(5",     u"5)",     u"()",    u"( 5)",   u"((5))",   u"(5)-",  u"(5)5",
      u"&",      u"&H",      u"&O",     u"&HG",    u"&O8",   u"&H 1",   u"-&H1",    u"&H1.5", u"&H1-",
      u"&X1",    u"&1",      u"(&H1)",  u"& H1",   u"&H1,0", u"&&H1",   u"- -5",    u"-\t5",  u"&H\u0660",
      u",5",     u"-,5",     u"1.2,3",  u"e5",     u".e5",   u"1e",     u"1e+",     u"1e-",   u"1e5.5",
      u"1e5e5",  u"1d5",     u"$5",     u"5%",     u"5f",    u"1_000",  u"1'0",     u"True",  u"\uFF11",
      u"\u0131", u"1\xD800", u"\xDC00", u"1\0"sv,  u"\0"sv,  u"1\0x"sv, u"\u00A01",
  };
  for (const std::u16string_view text : texts) {
    ExpectRefused({
        {Text(text), VT_I4, DISP_E_TYPEMISMATCH},
        {Text(text), VT_UI8, DISP_E_TYPEMISMATCH},
        {Text(text), VT_R4, DISP_E_TYPEMISMATCH},
        {Text(text), VT_R8, DISP_E_TYPEMISMATCH},
    });
  }
  ExpectRefused({
      {Variant::FromString(WideString()), VT_UI1, DISP_E_TYPEMISMATCH},
      {Variant::FromString(WideString()), VT_R8, DISP_E_TYPEMISMATCH},
  });
}

TEST(VariantChangeTypeText, IsReadInOneWayUnderEveryLocale) {
  const CommaLocale comma;
  ExpectChanged({
      {Text(u"3.5"), VT_R8, R8(3.5)},
      {Text(u"1,234.5"), VT_R8, R8(1234.5)},
      {Text(u"3.5"), VT_UI1, UI1(4)},
      {R8(1234.5), VT_BSTR, Text(u"1234.5")},
      {R4(0.5f), VT_BSTR, Text(u"0.5")},
      {Date(45356.5), VT_BSTR, Text(u"3/5/2024 12:00:00 PM")},
      {Text(u"3/5/2024 12:00"), VT_DATE, Date(45356.5)},
  });
  ExpectRefused({{Text(u"1.234,5"), VT_R8, DISP_E_TYPEMISMATCH}});
}

}  // namespace
}  // namespace qv
