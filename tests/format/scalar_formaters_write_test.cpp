// What the formaters of numbers, booleans and strings write, in any locale of the host.
#include <cfloat>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "com/asked_object.h"
#include "fixtures/shown_value.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "format/factory_fixture.h"
#include "format/scalar_formaters.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Rows = std::vector<std::pair<Variant, std::u16string_view>>;

class ScalarFormatersWrite : public FactoryFixture {
 protected:
  static void ExpectWritten(const char16_t* typeName, const Rows& rows) {
    for (const auto& [value, text] : rows)
      EXPECT_EQ(Get(typeName)->WriteValue(value).view(), text) << ShownValue(value);
  }
};

TEST_F(ScalarFormatersWrite, BooleanIsOneOrZero) {
  const Rows rows = {{Bool(true), u"1"}, {Bool(false), u"0"}, {Raw(VT_BOOL, 5), u"1"},
                     {Variant(), u"0"},  {Int(65536), u"0"},  {Int(1), u"1"}};
  ExpectWritten(u"boolean", rows);
}

TEST_F(ScalarFormatersWrite, ByteIsWhatConvertsToAnInt) {
  const Rows rows = {{I1(5), u"5"},   {I1(-128), u"-128"}, {Int(300), u"300"},    {I4(70000), u"70000"},
                     {I2(-7), u"-7"}, {UI1(255), u"255"},  {Bool(true), u"-1"},   {Variant(), u"0"},
                     {R8(2.5), u"2"}, {R4(3.5F), u"4"},    {Text(u" 12 "), u"12"}};
  ExpectWritten(u"byte", rows);
  ExpectWritten(u"byte", {{Int(-2147483647), u"-2147483647"}, {I8(2147483647), u"2147483647"}});
}

TEST_F(ScalarFormatersWrite, ByteRaisesTheCodeOfTheConversion) {
  AskedObject object;
  const auto thrown = [](const Variant& value) {
    return Thrown([&] { Get(u"byte")->WriteValue(value); }).substr(0, 21);
  };
  for (const Variant& value : {Text(u"abc"), NullText(), Variant::Null(), Variant::FromObject(&object)})
    EXPECT_EQ(thrown(value), "_com_error 0x80020005") << ShownValue(value);
  for (const Variant& value : {I8(2147483648), R8(1e300)})
    EXPECT_EQ(thrown(value), "_com_error 0x8002000A") << ShownValue(value);
}

TEST_F(ScalarFormatersWrite, ByteLeavesTheValue) {
  const Variant value = Text(u"12");
  Get(u"byte")->WriteValue(value);
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(value.Text(), u"12");
}

TEST_F(ScalarFormatersWrite, ShortIsItsSixteenBits) {
  const Rows rows = {{I2(5), u"5"},       {I2(-32768), u"-32768"}, {Int(70000), u"4464"},
                     {Bool(true), u"-1"}, {I1(-1), u"255"},        {Variant(), u"0"}};
  ExpectWritten(u"short", rows);
}

TEST_F(ScalarFormatersWrite, IntIsItsThirtyTwoBits) {
  const Rows rows = {{Int(5), u"5"},     {Int(-5), u"-5"},       {I4(70000), u"70000"},
                     {I2(-1), u"65535"}, {Bool(true), u"65535"}, {I8(4294967301), u"5"},
                     {Variant(), u"0"},  {Variant::Null(), u"0"}};
  ExpectWritten(u"int", rows);
  ExpectWritten(u"int", {{Int(1234567), u"1234567"},
                         {Raw(VT_INT, 0x80000000), u"-2147483648"},
                         {Int(2147483647), u"2147483647"}});
}

TEST_F(ScalarFormatersWrite, LongIsItsSixtyFourBits) {
  ExpectWritten(u"long", {{I8(5000000000), u"5000000000"},
                          {I8(INT64_MIN), u"-9223372036854775808"},
                          {I8(INT64_MAX), u"9223372036854775807"},
                          {Int(-1), u"4294967295"},
                          {Raw(VT_EMPTY, -5), u"-5"},
                          {Variant(), u"0"}});
}

TEST_F(ScalarFormatersWrite, DoubleHasSixSignificantDigits) {
  const Rows rows = {{R8(0.0), u"0"},
                     {R8(0.1), u"0.1"},
                     {R8(3.14159265), u"3.14159"},
                     {R8(123456.789), u"123457"},
                     {R8(1234567.0), u"1.23457e+06"},
                     {R8(999999.5), u"1e+06"},
                     {R8(1e-7), u"1e-07"},
                     {R8(-2.5), u"-2.5"},
                     {R8(1e100), u"1e+100"},
                     {R8(DBL_MAX), u"1.79769e+308"},
                     {R8(std::nan("")), u"nan"},
                     {R8(kInfinity), u"inf"},
                     {R8(-kInfinity), u"-inf"},
                     {Date(36526.5), u"36526.5"},
                     {R4(1.0F), u"5.26354e-315"},
                     {Variant(), u"0"}};
  ExpectWritten(u"double", rows);
}

TEST_F(ScalarFormatersWrite, FloatHasSixSignificantDigits) {
  const Rows rows = {{R4(0.0F), u"0"},
                     {R4(0.1F), u"0.1"},
                     {R4(1e-7F), u"1e-07"},
                     {R4(FLT_MAX), u"3.40282e+38"},
                     {R4(std::nanf("")), u"nan"},
                     {R8(1.0), u"0"},
                     {Variant(), u"0"}};
  ExpectWritten(u"float", rows);
  ExpectWritten(u"float",
                {{R4(16777216.0F), u"1.67772e+07"}, {R4(std::numeric_limits<float>::infinity()), u"inf"}});
}

TEST_F(ScalarFormatersWrite, StringIsEscapedAndEndsAtANullUnit) {
  const Rows rows = {{Text(u"abc"), u"abc"},  {Text(u"a<b"), u"a&lt;b"}, {Text(u"\x01\n"), u"\x01\n"},
                     {Text(u"a\0b"sv), u"a"}, {Text(u""), u""},          {NullText(), u""},
                     {Int(5), u""},           {Variant(), u""}};
  ExpectWritten(u"string", rows);
  ExpectWritten(u"string", {{Text(u"\"&'<>"), u"&quot;&amp;&apos;&lt;&gt;"},
                            {Text(u"\u00E9\U0001F600"), u"&#233;&#55357;&#56832;"}});
  EXPECT_FALSE(Get(u"string")->WriteValue(NullText()).IsNull());
}

TEST_F(ScalarFormatersWrite, KnowsNoLocale) {
  const CommaLocale comma;
  ExpectWritten(u"int", {{Int(1234567), u"1234567"}});
  ExpectWritten(u"long", {{I8(-1234567890123), u"-1234567890123"}});
  ExpectWritten(u"short", {{I2(12345), u"12345"}});
  ExpectWritten(u"byte", {{Int(1234), u"1234"}, {Text(u"3.5"), u"4"}});
  ExpectWritten(u"string", {{Text(u"\u20AC"), u"&#8364;"}});
  ExpectWritten(u"double", {{R8(1234.5), u"1234.5"}, {R8(1234567.0), u"1.23457e+06"}});
  ExpectWritten(u"float", {{R4(1234.5F), u"1234.5"}});
  EXPECT_EQ(ReadContent(Get(u"double"), u"1.5").Data().dblVal, 1.5);
  EXPECT_EQ(ReadContent(Get(u"float"), u"1.5").Data().fltVal, 1.5F);
  EXPECT_EQ(ReadContent(Get(u"double"), u"1,5").Data().dblVal, 1.0);
  EXPECT_EQ(ReadContent(Get(u"int"), u"1.234").Data().intVal, 1);
}

}  // namespace
}  // namespace qv
