#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

#include "com/asked_object.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/variant.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

// The value as the member that its tag names.
std::int64_t Value(const Variant& value) {
  switch (value.Tag()) {
    case VT_I1:
      return value.Data().cVal;
    case VT_I2:
      return value.Data().iVal;
    case VT_I4:
      return value.Data().lVal;
    case VT_INT:
      return value.Data().intVal;
    default:
      return value.Data().llVal;
  }
}

struct Converted {
  const char* name;
  Variant source;
  VARTYPE tag;
  std::int64_t result;
};

struct Refused {
  const char* name;
  Variant source;
  VARTYPE tag;
  HRESULT code;
};

void ExpectConverted(const Converted& row) {
  Variant destination = Variant::FromString(WideString(u"old"));
  EXPECT_EQ(VariantChangeType(&destination, row.source, row.tag), S_OK) << row.name;
  EXPECT_EQ(destination.Tag(), row.tag) << row.name;
  EXPECT_EQ(Value(destination), row.result) << row.name;
}

void ExpectRefused(const Refused& row) {
  AskedObject object;
  Variant destination = Variant::FromObject(&object);
  EXPECT_EQ(VariantChangeType(&destination, row.source, row.tag), row.code) << row.name;
  EXPECT_EQ(destination.Tag(), VT_UNKNOWN) << row.name;
  EXPECT_EQ(destination.Object(), &object) << row.name;
  EXPECT_EQ(object.count, 2u) << row.name;
}

TEST(VariantChangeType, WholeNumbersGoFromTagToTag) {
  const Converted rows[] = {
      {"empty to INT", Variant(), VT_INT, 0},
      {"empty to I8", Variant(), VT_I8, 0},
      {"true to INT", Variant::FromBool(true), VT_INT, -1},
      {"false to INT", Variant::FromBool(false), VT_INT, 0},
      {"true to I1", Variant::FromBool(true), VT_I1, -1},
      {"true to I8", Variant::FromBool(true), VT_I8, -1},
      {"byte to INT", Variant::FromByte(-5), VT_INT, -5},
      {"unsigned byte to INT", Raw(VT_UI1, 255), VT_INT, 255},
      {"unsigned byte 127 to I1", Raw(VT_UI1, 127), VT_I1, 127},
      {"short to INT", Variant::FromShort(-32768), VT_INT, -32768},
      {"I4 to INT", Raw(VT_I4, 70000), VT_INT, 70000},
      {"I4 -1 to I8", Raw(VT_I4, 0xFFFFFFFF), VT_I8, -1},
      {"INT to I4", Variant::FromInt(-7), VT_I4, -7},
      {"INT to I2", Variant::FromInt(32767), VT_I2, 32767},
      {"INT to I1", Variant::FromInt(-128), VT_I1, -128},
      {"INT to INT", Variant::FromInt(-2147483647), VT_INT, -2147483647},
      {"I8 to INT, lowest", Variant::FromLong(-2147483648), VT_INT, -2147483648},
      {"I8 to INT, highest", Variant::FromLong(2147483647), VT_INT, 2147483647},
      {"I8 to I8", Variant::FromLong(9223372036854775807), VT_I8, 9223372036854775807},
  };
  for (const Converted& row : rows) ExpectConverted(row);
}

TEST(VariantChangeType, FractionsRoundHalfToEven) {
  const Converted rows[] = {
      {"0.5", Variant::FromDouble(0.5), VT_INT, 0},
      {"1.5", Variant::FromDouble(1.5), VT_INT, 2},
      {"2.5", Variant::FromDouble(2.5), VT_INT, 2},
      {"3.5", Variant::FromDouble(3.5), VT_INT, 4},
      {"-0.5", Variant::FromDouble(-0.5), VT_INT, 0},
      {"-1.5", Variant::FromDouble(-1.5), VT_INT, -2},
      {"-2.5", Variant::FromDouble(-2.5), VT_INT, -2},
      {"2.51", Variant::FromDouble(2.51), VT_INT, 3},
      {"-2.51", Variant::FromDouble(-2.51), VT_INT, -3},
      {"just below a half", Variant::FromDouble(0.49999999999999994), VT_INT, 0},
      {"float 2.5", Variant::FromFloat(2.5f), VT_INT, 2},
      {"float -3.5", Variant::FromFloat(-3.5f), VT_I8, -4},
      {"date 2.5", Variant::FromDate(2.5), VT_INT, 2},
      {"date 36526.75", Variant::FromDate(36526.75), VT_INT, 36527},
      {"126.5 to I1", Variant::FromDouble(126.5), VT_I1, 126},
      {"-128.5 to I1", Variant::FromDouble(-128.5), VT_I1, -128},
      {"127.49 to I1", Variant::FromDouble(127.49), VT_I1, 127},
      {"-32768.5 to I2", Variant::FromDouble(-32768.5), VT_I2, -32768},
      {"-2147483648.5 to INT", Variant::FromDouble(-2147483648.5), VT_INT, -2147483648},
      {"2147483647.25 to INT", Variant::FromDouble(2147483647.25), VT_INT, 2147483647},
      {"-2^63 to I8", Variant::FromDouble(-9223372036854775808.0), VT_I8, INT64_MIN},
      {"2^62 to I8", Variant::FromDouble(4611686018427387904.0), VT_I8, 4611686018427387904},
  };
  for (const Converted& row : rows) ExpectConverted(row);
}

TEST(VariantChangeType, OutOfTheTagsRangeOverflows) {
  const double infinity = std::numeric_limits<double>::infinity();
  const Refused rows[] = {
      {"unsigned byte 128 to I1", Raw(VT_UI1, 128), VT_I1, DISP_E_OVERFLOW},
      {"short 128 to I1", Variant::FromShort(128), VT_I1, DISP_E_OVERFLOW},
      {"short -129 to I1", Variant::FromShort(-129), VT_I1, DISP_E_OVERFLOW},
      {"INT 32768 to I2", Variant::FromInt(32768), VT_I2, DISP_E_OVERFLOW},
      {"INT -32769 to I2", Variant::FromInt(-32769), VT_I2, DISP_E_OVERFLOW},
      {"I8 2^31 to INT", Variant::FromLong(2147483648), VT_INT, DISP_E_OVERFLOW},
      {"I8 2^31 to I4", Variant::FromLong(2147483648), VT_I4, DISP_E_OVERFLOW},
      {"I8 -2^31-1 to INT", Variant::FromLong(-2147483649), VT_INT, DISP_E_OVERFLOW},
      {"I8 2^32 to INT", Variant::FromLong(4294967296), VT_INT, DISP_E_OVERFLOW},
      {"127.5 to I1 rounds over", Variant::FromDouble(127.5), VT_I1, DISP_E_OVERFLOW},
      {"-128.51 to I1 rounds under", Variant::FromDouble(-128.51), VT_I1, DISP_E_OVERFLOW},
      {"32767.5 to I2 rounds over", Variant::FromDouble(32767.5), VT_I2, DISP_E_OVERFLOW},
      {"2147483647.5 to INT rounds over", Variant::FromDouble(2147483647.5), VT_INT, DISP_E_OVERFLOW},
      {"-2147483649 to INT", Variant::FromDouble(-2147483649.0), VT_INT, DISP_E_OVERFLOW},
      {"1e300 to INT", Variant::FromDouble(1e300), VT_INT, DISP_E_OVERFLOW},
      {"-1e300 to I8", Variant::FromDouble(-1e300), VT_I8, DISP_E_OVERFLOW},
      {"2^63 to I8", Variant::FromDouble(9223372036854775808.0), VT_I8, DISP_E_OVERFLOW},
      {"float 2^31 to INT", Variant::FromFloat(2147483648.0f), VT_INT, DISP_E_OVERFLOW},
      {"date 1e10 to INT", Variant::FromDate(1e10), VT_INT, DISP_E_OVERFLOW},
      {"infinity", Variant::FromDouble(infinity), VT_I8, DISP_E_OVERFLOW},
      {"minus infinity", Variant::FromDouble(-infinity), VT_INT, DISP_E_OVERFLOW},
      {"float infinity", Variant::FromFloat(std::numeric_limits<float>::infinity()), VT_INT, DISP_E_OVERFLOW},
      {"not a number", Variant::FromDouble(std::nan("")), VT_INT, DISP_E_OVERFLOW},
      {"not a number to I8", Variant::FromDouble(std::nan("")), VT_I8, DISP_E_OVERFLOW},
      {"text 2147483648 to INT", Text(u"2147483648"), VT_INT, DISP_E_OVERFLOW},
      {"text 2147483647.5 to INT", Text(u"2147483647.5"), VT_INT, DISP_E_OVERFLOW},
      {"text 128 to I1", Text(u"128"), VT_I1, DISP_E_OVERFLOW},
      {"text 127.5 to I1", Text(u"127.5"), VT_I1, DISP_E_OVERFLOW},
      {"text 1e10 to INT", Text(u"1e10"), VT_INT, DISP_E_OVERFLOW},
      {"text 1e400 to I8", Text(u"1e400"), VT_I8, DISP_E_OVERFLOW},
      {"text 9223372036854775808 to I8", Text(u"9223372036854775808"), VT_I8, DISP_E_OVERFLOW},
      {"text of 2^64 + 1 to INT", Text(u"18446744073709551617"), VT_INT, DISP_E_OVERFLOW},
  };
  for (const Refused& row : rows) ExpectRefused(row);
}

TEST(VariantChangeType, TextsThatAreNumbersAreRead) {
  const Converted rows[] = {
      {"0", Text(u"0"), VT_INT, 0},
      {"42", Text(u"42"), VT_INT, 42},
      {"-42", Text(u"-42"), VT_INT, -42},
      {"+42", Text(u"+42"), VT_INT, 42},
      {"blanks around", Text(u"  42  "), VT_INT, 42},
      {"blank before a sign", Text(u" -42"), VT_INT, -42},
      {"007", Text(u"007"), VT_INT, 7},
      {"1.5", Text(u"1.5"), VT_INT, 2},
      {"2.5", Text(u"2.5"), VT_INT, 2},
      {"-2.5", Text(u"-2.5"), VT_INT, -2},
      {".5", Text(u".5"), VT_INT, 0},
      {"5.", Text(u"5."), VT_INT, 5},
      {"1e3", Text(u"1e3"), VT_INT, 1000},
      {"1E3", Text(u"1E3"), VT_INT, 1000},
      {"1.25e+2", Text(u"1.25e+2"), VT_INT, 125},
      {"1e-1", Text(u"1e-1"), VT_INT, 0},
      {"thousands", Text(u"1,234"), VT_INT, 1234},
      {"thousands twice", Text(u"1,234,567"), VT_INT, 1234567},
      {"thousands and fraction", Text(u"1,234.5"), VT_INT, 1234},
      {"lowest", Text(u"-2147483648"), VT_INT, -2147483648},
      {"highest", Text(u"2147483647"), VT_INT, 2147483647},
      {"lowest, rounded", Text(u"-2147483648.5"), VT_INT, -2147483648},
      {"to I1", Text(u"-128"), VT_I1, -128},
      {"to I2", Text(u"32767"), VT_I2, 32767},
      {"to I4", Text(u"12"), VT_I4, 12},
      {"to I8", Text(u"-5000000000"), VT_I8, -5000000000},
      {"highest I8", Text(u"9223372036854775807"), VT_I8, 9223372036854775807},
      {"lowest I8", Text(u"-9223372036854775808"), VT_I8, INT64_MIN},
      {"more digits than a double holds", Text(u"9007199254740993"), VT_I8, 9007199254740993},
  };
  for (const Converted& row : rows) ExpectConverted(row);
}

TEST(VariantChangeType, WhatIsNoNumberMismatches) {
  AskedObject object;
  const Refused rows[] = {
      {"null value", Variant::Null(), VT_INT, DISP_E_TYPEMISMATCH},
      {"object", Variant::FromObject(&object), VT_INT, DISP_E_TYPEMISMATCH},
      {"null object", Variant::FromObject(nullptr), VT_INT, DISP_E_TYPEMISMATCH},
      {"null text", Variant::FromString(WideString()), VT_INT, DISP_E_TYPEMISMATCH},
      {"empty text", Text(u""), VT_INT, DISP_E_TYPEMISMATCH},
      {"blanks only", Text(u"   "), VT_INT, DISP_E_TYPEMISMATCH},
      {"word", Text(u"abc"), VT_INT, DISP_E_TYPEMISMATCH},
      {"trailing junk", Text(u"12abc"), VT_INT, DISP_E_TYPEMISMATCH},
      {"leading junk", Text(u"x12"), VT_INT, DISP_E_TYPEMISMATCH},
      {"junk behind a fraction", Text(u"1.5.5"), VT_INT, DISP_E_TYPEMISMATCH},
      {"two numbers", Text(u"1 2"), VT_INT, DISP_E_TYPEMISMATCH},
      {"hexadecimal", Text(u"0x10"), VT_INT, DISP_E_TYPEMISMATCH},
      {"hexadecimal with exponent", Text(u"0x1p4"), VT_INT, DISP_E_TYPEMISMATCH},
      {"inf", Text(u"inf"), VT_INT, DISP_E_TYPEMISMATCH},
      {"nan", Text(u"nan"), VT_INT, DISP_E_TYPEMISMATCH},
      {"sign alone", Text(u"-"), VT_INT, DISP_E_TYPEMISMATCH},
      {"two signs", Text(u"--5"), VT_INT, DISP_E_TYPEMISMATCH},
      {"point alone", Text(u"."), VT_INT, DISP_E_TYPEMISMATCH},
      {"separator alone", Text(u","), VT_INT, DISP_E_TYPEMISMATCH},
      {"exponent alone", Text(u"e5"), VT_INT, DISP_E_TYPEMISMATCH},
      {"exponent without digits", Text(u"1e"), VT_INT, DISP_E_TYPEMISMATCH},
      {"true as a word", Text(u"true"), VT_INT, DISP_E_TYPEMISMATCH},
      {"wide digit", Text(u"\uFF11"), VT_INT, DISP_E_TYPEMISMATCH},
      {"unit whose low byte is a digit", Text(u"\u0131"), VT_INT, DISP_E_TYPEMISMATCH},
      {"lone surrogate", Text(u"1\xD800"), VT_INT, DISP_E_TYPEMISMATCH},
      {"junk behind a null unit", Text(u"1\0x"sv), VT_INT, DISP_E_TYPEMISMATCH},
      {"word to I8", Text(u"abc"), VT_I8, DISP_E_TYPEMISMATCH},
  };
  for (const Refused& row : rows) ExpectRefused(row);
}

TEST(VariantChangeType, OwnTagIsACopy) {
  Variant destination;
  EXPECT_EQ(VariantChangeType(&destination, Text(u"abc"), VT_BSTR), S_OK);
  EXPECT_EQ(destination.Text(), u"abc");
  EXPECT_EQ(VariantChangeType(&destination, Variant::FromDouble(0.1), VT_R8), S_OK);
  EXPECT_EQ(destination.Tag(), VT_R8);
  EXPECT_EQ(destination.Data().dblVal, 0.1);
  EXPECT_EQ(VariantChangeType(&destination, Variant::Null(), VT_NULL), S_OK);
  EXPECT_EQ(destination.Tag(), VT_NULL);
  AskedObject object;
  {
    Variant held;
    EXPECT_EQ(VariantChangeType(&held, Variant::FromObject(&object), VT_UNKNOWN), S_OK);
    EXPECT_EQ(held.Object(), &object);
    EXPECT_EQ(object.count, 2u);
  }
}

TEST(VariantChangeType, SourceMayBeTheDestination) {
  Variant value = Text(u" 1,234.5 ");
  EXPECT_EQ(VariantChangeType(&value, value, VT_INT), S_OK);
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 1234);
  EXPECT_EQ(VariantChangeType(&value, value, VT_INT), S_OK);
  EXPECT_EQ(value.Data().intVal, 1234);
  EXPECT_EQ(VariantChangeType(&value, value, VT_I1), DISP_E_OVERFLOW);
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 1234);
}

TEST(VariantChangeType, ResultLeavesUnusedBytesZero) {
  Variant value = Variant::FromLong(-1);
  EXPECT_EQ(VariantChangeType(&value, value, VT_I1), S_OK);
  EXPECT_EQ(value.Data().llVal, 0xFF);
}

TEST(VariantChangeType, UnknownSourceTagFailsAndLeavesTheDestination) {
  Variant value = Variant::FromInt(5);
  EXPECT_EQ(VariantChangeType(&value, Raw(77, 5), VT_INT), DISP_E_BADVARTYPE);
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 5);
}

TEST(VariantChangeType, KnowsNoLocale) {
  const CommaLocale comma;
  ExpectConverted({"point", Text(u"3.5"), VT_INT, 4});
  ExpectConverted({"separator", Text(u"1,234"), VT_INT, 1234});
  ExpectRefused({"two points", Text(u"1.234.567"), VT_INT, DISP_E_TYPEMISMATCH});
}

TEST(VariantChangeType, FailureLeavesNoWordsOfAnEarlierOne) {
  ErrorInfo record;
  record.description = u"stale words";
  SetErrorInfo(record);
  Variant value;
  EXPECT_EQ(VariantChangeType(&value, Variant::Null(), VT_I4), DISP_E_TYPEMISMATCH);
  EXPECT_FALSE(GetErrorInfo(&record));
}

}  // namespace
}  // namespace qv
