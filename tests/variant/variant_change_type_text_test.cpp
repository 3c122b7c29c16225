// From texts to whole numbers and floats.
#include <gtest/gtest.h>

#include <limits>

#include "support/comma_locale.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;
using TextList = std::initializer_list<std::u16string_view>;

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();

void ExpectOverflow(VARTYPE tag, TextList texts) {
  ExpectRefused(DISP_E_OVERFLOW, tag, Texts(texts));
}
// Refused alike by every kind of number.
void ExpectNoNumbers(TextList texts) {
  for (const VARTYPE tag : {VT_I4, VT_INT, VT_UI8, VT_R4, VT_R8})
    ExpectRefused(DISP_E_TYPEMISMATCH, tag, Texts(texts));
}

TEST(VariantChangeTypeText, BecomesAWholeNumber) {
  ExpectAllBecome(UI1(0), Texts({u"0", u"-0"}));
  ExpectAllBecome(UI1(255), Texts({u"255", u"255.4999"}));
  ExpectAllBecome(UI8(kAll),
                  Texts({u"18446744073709551615", u"18446744073709551615.4", u"1.8446744073709551615e19"}));
  ExpectAllBecome(I4(0),
                  Texts({u"0.5", u"5e-1", u"5e-2", u"1e-999999999999999999999", u"0e999999999999999999999"}));
  ExpectAllBecome(I4(2), Texts({u"1.5000", u"2.5000", u"25e-1"}));
  ExpectAllBecome(I4(12),
                  Texts({u"12", u"0.000000000000000000000012e24", u"000000000000000000000000000012"}));
  ExpectAllBecome(I8(kLeast), Texts({u"-9223372036854775808", u"-9223372036854775808.5"}));
  ExpectAllBecome(I8(9223372036854775807), Texts({u"9223372036854775807", u"9223372036854775807.4"}));
  const Reads rows = {{u"-0.5", UI4(0)},
                      {u"65535", UI2(65535)},
                      {u"4294967295", UI4(4294967295)},
                      {u"12", I2(12)},
                      {u"5-", I2(-5)},
                      {u"5+", I2(5)},
                      {u"1e1-", I2(-10)},
                      {u"-3.5", I1(-4)},
                      {u"-128", I1(-128)},
                      {u"32767", I2(32767)},
                      {u"35e-1", I4(4)},
                      {u"1,2,3", I4(123)},
                      {u"1,234e1", I4(12340)},
                      {u"-5000000000", I8(-5000000000)}};
  ExpectRead(rows);
  ExpectRead({{u"4,294,967,295", UInt(4294967295)},
              {u"\t\r\n 7 \v\f", I4(7)},
              {u"0.50000000000000000000001", I4(1)},
              {u"9007199254740993", I8(9007199254740993)},
              {u"9007199254740993.5", I8(9007199254740994)}});
}

TEST(VariantChangeTypeText, BecomesAnInt) {
  ExpectAllBecome(Int(0), Texts({u"0", u".5", u"1e-1"}));
  ExpectAllBecome(Int(2), Texts({u"1.5", u"2.5"}));
  ExpectAllBecome(Int(42), Texts({u"42", u"+42", u"  42  "}));
  ExpectAllBecome(Int(-42), Texts({u"-42", u" -42"}));
  ExpectAllBecome(Int(1000), Texts({u"1e3", u"1E3"}));
  ExpectAllBecome(Int(1234), Texts({u"1,234", u"1,234.5"}));
  ExpectAllBecome(Int(-2147483648), Texts({u"-2147483648", u"-2147483648.5"}));
  const Reads rows = {{u"007", Int(7)},
                      {u"5.", Int(5)},
                      {u"-2.5", Int(-2)},
                      {u"1.25e+2", Int(125)},
                      {u"1,234,567", Int(1234567)},
                      {u"2147483647", Int(2147483647)}};
  ExpectRead(rows);
}

TEST(VariantChangeTypeText, InParenthesesIsNegative) {
  const Reads rows = {{u"(5)", I2(-5)},     {u" (1,234.5) ", R8(-1234.5)},
                      {u"(1e2)", I4(-100)}, {u"(0)", UI1(0)},
                      {u"(0)", R8(-0.0)},   {u"(1)", Bool(true)}};
  ExpectRead(rows);
  ExpectOverflow(VT_UI1, {u"(1)"});
}

TEST(VariantChangeTypeText, MayHaveOneBlankAfterItsSign) {
  ExpectRead({{u"- 5", I2(-5)}, {u"+ 5", I2(5)}, {u"  - 1.5 ", R8(-1.5)}});
}

// The bits as they stand, as scripts write them.
TEST(VariantChangeTypeText, OfAnotherBaseIsItsBits) {
  ExpectAllBecome(I2(-1), Texts({u"&HFFFF", u"&O177777"}));
  const Reads rows = {{u"&H10", I2(16)},      {u"&h1f", UI1(31)},       {u"&O17", I2(15)},
                      {u"&o377", UI1(255)},   {u"&HFF", I1(-1)},        {u"&H8000", I2(-32768)},
                      {u"&HFFFF", I4(65535)}, {u"&HFFFF", R8(65535.0)}, {u"&H0", Bool(false)},
                      {u"&H1", Bool(true)},   {u"&HFFFFFFFF", Int(-1)}};
  ExpectRead(rows);
  ExpectRead({{u" &HaBcDeF ", I4(0xABCDEF)},
              {u"&HFFFFFFFFFFFFFFFF", I8(-1)},
              {u"&O1777777777777777777777", UI8(kAll)},
              {u"&H00000000000000000000000012", UI1(18)},
              {u"&HFFFFFFFFFFFFFFFF", R8(18446744073709551616.0)}});
  ExpectOverflow(VT_I1, {u"&H100"});
  ExpectOverflow(VT_I2, {u"&H10000"});
  ExpectOverflow(VT_I4, {u"&H100000000"});
  ExpectOverflow(VT_I8, {u"&H10000000000000000"});
  ExpectOverflow(VT_UI8, {u"&O2000000000000000000000"});
  ExpectOverflow(VT_R8, {u"&H10000000000000000"});
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_R8, Texts({u"&H10000000000000000G"}));
}

TEST(VariantChangeTypeText, BeyondTheWholeRangeOverflows) {
  ExpectOverflow(VT_I1, {u"128", u"127.5"});
  ExpectOverflow(VT_UI1, {u"256", u"255.5", u"-1"});
  ExpectOverflow(VT_I2, {u"32768"});
  ExpectOverflow(VT_UI2, {u"65536"});
  ExpectOverflow(VT_I4, {u"2147483648"});
  ExpectOverflow(VT_INT, {u"2147483648", u"2147483647.5", u"1e10", u"18446744073709551617"});
  ExpectOverflow(VT_UI4, {u"4294967296"});
  ExpectOverflow(VT_I8,
                 {u"9223372036854775807.5", u"9223372036854775808", u"1e400", u"1e999999999999999999999"});
  ExpectOverflow(VT_UI8, {u"-0.51", u"18446744073709551615.5", u"18446744073709551616",
                          u"99999999999999999999", u"1e20"});
}

TEST(VariantChangeTypeText, BecomesAFloat) {
  ExpectAllBecome(R8(0.0), Texts({u"0", u"1e-400", u"1e-99999999999999999999", u"0e99999999999999999999"}));
  ExpectAllBecome(R8(-0.0), Texts({u"-0", u"-1e-400"}));
  const Reads rows = {{u"1.5", R8(1.5)},    {u" -1.5 ", R8(-1.5)}, {u"+.25", R8(0.25)},
                      {u"5.", R8(5.0)},     {u"2.5-", R8(-2.5)},   {u"0.1", R8(0.1)},
                      {u"1e3", R8(1000.0)}, {u"1E+15", R8(1e15)},  {u"1E-05", R8(0.00001)},
                      {u"1.5", R4(1.5F)},   {u"0.1", R4(0.1F)},    {u"1e-60", R4(0.0F)}};
  ExpectRead(rows);
  ExpectRead({{u"1,234,567.25", R8(1234567.25)},
              {u"123456789012345678901234567890", R8(123456789012345678901234567890.0)},
              {u"1.7976931348623157e308", R8(1.7976931348623157e308)},
              {u"4.9406564584124654e-324", R8(4.9406564584124654e-324)},
              {u"-16777216", R4(-16777216.0F)},
              {u"3.4028234e38", R4(3.4028234e38F)}});
  ExpectOverflow(VT_R8, {u"1e309", u"-1.8e308", u"1e99999999999999999999"});
  ExpectOverflow(VT_R4, {u"1e39", u"-1e39", u"1e400"});
}

TEST(VariantChangeTypeText, ThatIsNoNumberMismatches) {
  ExpectNoNumbers({u"", u"  ", u"   ", u"abc", u"12abc", u"x12", u"1 2", u"1.2.3", u"1.5.5", u"1..2", u"0x10",
                   u"0x1p4", u"10h", u"inf", u"nan", u"1.#INF", u"true", u"True"});
  ExpectNoNumbers({u"-", u"+", u"--5", u"- ", u"5  -", u"+-5", u"-5-", u"+5-", u"5--", u"-  5", u"5 -",
                   u"- -5", u"-\t5"});
  ExpectNoNumbers(
      {u".", u"-.", u",", u",5", u"-,5", u"1.2,3", u"e5", u".e5", u"1e", u"1e+", u"1e-", u"1e5.5", u"1e5e5"});
  ExpectNoNumbers({u"(-5)", u"-(5)", u"(5", u"5)", u"()", u"( 5)", u"((5))", u"(5)-", u"(5)5", u"(&H1)"});
  ExpectNoNumbers({u"&", u"&H", u"&O", u"&HG", u"&O8", u"&H 1", u"-&H1", u"&H1.5", u"&H1-", u"&X1", u"&1",
                   u"& H1", u"&H1,0", u"&&H1", u"&H\u0660"});
  ExpectNoNumbers({u"1d5", u"$5", u"5%", u"5f", u"1_000", u"1'0", u"\uFF11", u"\u0131", u"1\xD800", u"\xDC00",
                   u"1\0"sv, u"\0"sv, u"1\0x"sv, u"\u00A01"});
  for (const VARTYPE tag : {VT_UI1, VT_INT, VT_R8}) ExpectRefused(DISP_E_TYPEMISMATCH, tag, {NullText()});
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_I8, Texts({u"abc"}));
}

TEST(VariantChangeTypeText, IsReadInOneWayUnderEveryLocale) {
  const CommaLocale comma;
  const Reads rows = {{u"3.5", R8(3.5)},     {u"3.5", UI1(4)},         {u"3.5", Int(4)},
                      {u"1,234", Int(1234)}, {u"1,234.5", R8(1234.5)}, {u"3/5/2024 12:00", Date(45356.5)}};
  ExpectRead(rows);
  ExpectWritten({{R8(1234.5), u"1234.5"}, {R4(0.5F), u"0.5"}, {Date(45356.5), u"3/5/2024 12:00:00 PM"}});
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_R8, Texts({u"1.234,5"}));
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_INT, Texts({u"1.234.567"}));
}

}  // namespace
}  // namespace qv
