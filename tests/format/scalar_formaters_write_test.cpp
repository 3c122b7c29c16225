#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "com/asked_object.h"
#include "format/factory_fixture.h"
#include "format/scalar_formaters.h"
#include "qvscriptwells/com_error.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

Variant Raw(VARTYPE tag, std::int64_t bytes) {
  VariantData data;
  data.llVal = bytes;
  return Variant::FromRaw(tag, data);
}

struct WriteRow {
  const char* name;
  Variant value;
  std::u16string_view text;
};

class ScalarFormatersWrite : public FactoryFixture {
 protected:
  static void ExpectWritten(const char16_t* typeName, const WriteRow& row) {
    EXPECT_EQ(Get(typeName)->WriteValue(row.value).view(), row.text) << row.name;
  }
  static HRESULT CodeOfByte(const Variant& value) {
    try {
      Get(u"byte")->WriteValue(value);
    } catch (const _com_error& error) {
      return error.Error();
    }
    return S_OK;
  }
};

TEST_F(ScalarFormatersWrite, BooleanIsOneOrZero) {
  const WriteRow rows[] = {
      {"true", Variant::FromBool(true), u"1"},
      {"false", Variant::FromBool(false), u"0"},
      {"any other bits", Raw(VT_BOOL, 5), u"1"},
      {"empty", Variant(), u"0"},
      {"beyond sixteen bits", Variant::FromInt(65536), u"0"},
      {"int 1", Variant::FromInt(1), u"1"},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"boolean", row);
}

TEST_F(ScalarFormatersWrite, ByteIsWhatConvertsToAnInt) {
  const WriteRow rows[] = {
      {"byte", Variant::FromByte(5), u"5"},
      {"negative byte", Variant::FromByte(-128), u"-128"},
      {"int as it is", Variant::FromInt(300), u"300"},
      {"big int as it is", Variant::FromInt(-2147483647), u"-2147483647"},
      {"I4", Raw(VT_I4, 70000), u"70000"},
      {"short", Variant::FromShort(-7), u"-7"},
      {"long", Variant::FromLong(2147483647), u"2147483647"},
      {"unsigned byte", Raw(VT_UI1, 255), u"255"},
      {"true", Variant::FromBool(true), u"-1"},
      {"empty", Variant(), u"0"},
      {"half to even", Variant::FromDouble(2.5), u"2"},
      {"half to even, up", Variant::FromFloat(3.5f), u"4"},
      {"text", Variant::FromString(u" 12 "), u"12"},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"byte", row);
}

TEST_F(ScalarFormatersWrite, ByteRaisesTheCodeOfTheConversion) {
  AskedObject object;
  EXPECT_EQ(CodeOfByte(Variant::FromString(u"abc")), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(CodeOfByte(Variant::FromString(WideString())), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(CodeOfByte(Variant::Null()), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(CodeOfByte(Variant::FromObject(&object)), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(CodeOfByte(Variant::FromLong(2147483648)), DISP_E_OVERFLOW);
  EXPECT_EQ(CodeOfByte(Variant::FromDouble(1e300)), DISP_E_OVERFLOW);
}

TEST_F(ScalarFormatersWrite, ByteLeavesTheValue) {
  const Variant value = Variant::FromString(u"12");
  Get(u"byte")->WriteValue(value);
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(value.Text(), u"12");
}

TEST_F(ScalarFormatersWrite, ShortIsItsSixteenBits) {
  const WriteRow rows[] = {
      {"short", Variant::FromShort(5), u"5"},
      {"lowest", Variant::FromShort(-32768), u"-32768"},
      {"int is cut", Variant::FromInt(70000), u"4464"},
      {"true", Variant::FromBool(true), u"-1"},
      {"byte leaves the rest zero", Variant::FromByte(-1), u"255"},
      {"empty", Variant(), u"0"},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"short", row);
}

TEST_F(ScalarFormatersWrite, IntIsItsThirtyTwoBits) {
  const WriteRow rows[] = {
      {"int", Variant::FromInt(5), u"5"},
      {"negative", Variant::FromInt(-5), u"-5"},
      {"seven digits", Variant::FromInt(1234567), u"1234567"},
      {"lowest", Raw(VT_INT, 0x80000000), u"-2147483648"},
      {"highest", Variant::FromInt(2147483647), u"2147483647"},
      {"I4", Raw(VT_I4, 70000), u"70000"},
      {"short leaves the rest zero", Variant::FromShort(-1), u"65535"},
      {"true leaves the rest zero", Variant::FromBool(true), u"65535"},
      {"long is cut", Variant::FromLong(4294967301), u"5"},
      {"empty", Variant(), u"0"},
      {"null", Variant::Null(), u"0"},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"int", row);
}

TEST_F(ScalarFormatersWrite, LongIsItsSixtyFourBits) {
  const WriteRow rows[] = {
      {"long", Variant::FromLong(5000000000), u"5000000000"},
      {"lowest", Variant::FromLong(INT64_MIN), u"-9223372036854775808"},
      {"highest", Variant::FromLong(INT64_MAX), u"9223372036854775807"},
      {"int leaves the rest zero", Variant::FromInt(-1), u"4294967295"},
      {"tag does not matter", Raw(VT_EMPTY, -5), u"-5"},
      {"empty", Variant(), u"0"},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"long", row);
}

TEST_F(ScalarFormatersWrite, DoubleHasSixSignificantDigits) {
  const double infinity = std::numeric_limits<double>::infinity();
  const WriteRow rows[] = {
      {"0", Variant::FromDouble(0.0), u"0"},
      {"0.1", Variant::FromDouble(0.1), u"0.1"},
      {"pi", Variant::FromDouble(3.14159265), u"3.14159"},
      {"123456.789", Variant::FromDouble(123456.789), u"123457"},
      {"1234567", Variant::FromDouble(1234567.0), u"1.23457e+06"},
      {"999999.5", Variant::FromDouble(999999.5), u"1e+06"},
      {"1e-7", Variant::FromDouble(1e-7), u"1e-07"},
      {"-2.5", Variant::FromDouble(-2.5), u"-2.5"},
      {"1e100", Variant::FromDouble(1e100), u"1e+100"},
      {"largest", Variant::FromDouble(DBL_MAX), u"1.79769e+308"},
      {"not a number", Variant::FromDouble(std::nan("")), u"nan"},
      {"infinity", Variant::FromDouble(infinity), u"inf"},
      {"minus infinity", Variant::FromDouble(-infinity), u"-inf"},
      {"date", Variant::FromDate(36526.5), u"36526.5"},
      {"float leaves the rest zero", Variant::FromFloat(1.0f), u"5.26354e-315"},
      {"empty", Variant(), u"0"},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"double", row);
}

TEST_F(ScalarFormatersWrite, FloatHasSixSignificantDigits) {
  const WriteRow rows[] = {
      {"0", Variant::FromFloat(0.0f), u"0"},
      {"0.1", Variant::FromFloat(0.1f), u"0.1"},
      {"16777216", Variant::FromFloat(16777216.0f), u"1.67772e+07"},
      {"1e-7", Variant::FromFloat(1e-7f), u"1e-07"},
      {"largest", Variant::FromFloat(FLT_MAX), u"3.40282e+38"},
      {"infinity", Variant::FromFloat(std::numeric_limits<float>::infinity()), u"inf"},
      {"not a number", Variant::FromFloat(std::nanf("")), u"nan"},
      {"low half of a double", Variant::FromDouble(1.0), u"0"},
      {"empty", Variant(), u"0"},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"float", row);
}

TEST_F(ScalarFormatersWrite, StringIsEscaped) {
  const WriteRow rows[] = {
      {"plain", Variant::FromString(u"abc"), u"abc"},
      {"less-than", Variant::FromString(u"a<b"), u"a&lt;b"},
      {"all five", Variant::FromString(u"\"&'<>"), u"&quot;&amp;&apos;&lt;&gt;"},
      {"beyond ASCII", Variant::FromString(u"\u00E9\U0001F600"), u"&#233;&#55357;&#56832;"},
      {"control", Variant::FromString(u"\x01\n"), u"\x01\n"},
      {"null unit ends it", Variant::FromString(WideString(u"a\0b"sv)), u"a"},
      {"empty", Variant::FromString(u""), u""},
      {"null", Variant::FromString(WideString()), u""},
      {"no text at all", Variant::FromInt(5), u""},
      {"fresh value", Variant(), u""},
  };
  for (const WriteRow& row : rows) ExpectWritten(u"string", row);
}

TEST_F(ScalarFormatersWrite, TextOfNothingIsNotNull) {
  EXPECT_FALSE(Get(u"string")->WriteValue(Variant::FromString(WideString())).IsNull());
}

}  // namespace
}  // namespace qv
