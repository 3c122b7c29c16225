// Values on their way to the script and back: what arrives, and the losses that the wire form has.
#include <limits>

#include "value_test.h"

namespace qv {
namespace {

constexpr char kNotValid[] = "0x80020009 The respone that arrived is not valid";
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

class Values : public ValueTest {
 protected:
  // What the script sees of a value: JavaScript's kind, its text, and the declared type.
  void ExpectArrives(std::initializer_list<std::pair<Variant, const char*>> rows) {
    for (const auto& [value, seen] : rows)
      EXPECT_EQ(
          Run(u"typeof parameters.x + ' ' + String(parameters.x) + ' ' + parameterTypes.x", {{u"x", value}}),
          seen);
  }
  // The units of a text parameter as the script sees them, in hexadecimal.
  void ExpectUnits(std::initializer_list<std::pair<WideString, const char*>> rows) {
    for (const auto& [text, units] : rows)
      EXPECT_EQ(Run(u"var s = ''; for (var i = 0; i < parameters.x.length; ++i)"
                    u" s += (i ? ' ' : '') + parameters.x.charCodeAt(i).toString(16); s",
                    {{u"x", Variant::FromString(text)}}),
                "VT_BSTR " + std::string(units));
  }
};

TEST_F(Values, ParametersArriveAsNativeValuesWithTheirTypes) {
  VariantData minusSeven;
  minusSeven.lVal = -7;
  ExpectArrives({
      {Variant::FromByte(-128), "VT_BSTR number -128 byte"},
      {Variant::FromShort(-32768), "VT_BSTR number -32768 short"},
      {Variant::FromInt(2147483647), "VT_BSTR number 2147483647 int"},
      {Variant::FromRaw(VT_I4, minusSeven), "VT_BSTR number -7 int"},
      {Variant::FromBool(true), "VT_BSTR boolean true boolean"},
      {Variant::FromBool(false), "VT_BSTR boolean false boolean"},
      {Variant::FromLong(-9007199254740991), "VT_BSTR number -9007199254740991 long"},
      {Variant::FromLong(9223372036854775807), "VT_BSTR bigint 9223372036854775807 long"},
      {Variant::FromString(u"text"), "VT_BSTR string text string"},
      {Variant::FromString(u""), "VT_BSTR string  string"},
  });
}

TEST_F(Values, FloatingParametersArriveWithSixDigits) {
  ExpectArrives({
      {Variant::FromFloat(1.5F), "VT_BSTR number 1.5 float"},
      {Variant::FromDouble(-0.25), "VT_BSTR number -0.25 double"},
      {Variant::FromDouble(3.14159265), "VT_BSTR number 3.14159 double"},
      {Variant::FromDouble(1234567.0), "VT_BSTR number 1234570 double"},
      {Variant::FromDouble(1e-7), "VT_BSTR number 1e-7 double"},
      {Variant::FromFloat(16777216.0F), "VT_BSTR number 16777200 float"},
      {Variant::FromDouble(kInfinity), "VT_BSTR number Infinity double"},
      {Variant::FromDouble(-kInfinity), "VT_BSTR number -Infinity double"},
      {Variant::FromDouble(kNotANumber), "VT_BSTR number NaN double"},
  });
}

TEST_F(Values, ParameterWithoutWireFormIsRefusedBeforeAnythingIsSent) {
  constexpr char kRefused[] = "0x80020009 Cannot create the xml document.";
  ExpectArrives(
      {{Variant(), kRefused}, {Variant::Null(), kRefused}, {Variant::FromRaw(VT_UI1, {}), kRefused}});
  EXPECT_EQ(Stats()["actions"]["Execute"], 0);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(Values, AnswersHaveTheirTags) {
  ExpectRuns({
      {u"typed.int(-2147483648)", "VT_INT -2147483648"},
      {u"typed.short(-32768)", "VT_I2 -32768"},
      {u"typed.boolean(true)", "VT_BOOL -1"},
      {u"typed.boolean(false)", "VT_BOOL 0"},
      {u"typed.float(0.1)", "VT_R4 0.1"},
      {u"typed.double(0.1)", "VT_R8 0.1"},
      {u"typed.string('x')", "VT_BSTR x"},
      // Without a chosen type they have that of their kind.
      {u"6 * 7", "VT_INT 42"},
      {u"1 < 2", "VT_BOOL -1"},
      {u"1 > 2", "VT_BOOL 0"},
      {u"'a' + 'b'", "VT_BSTR ab"},
      {u"2147483648", "VT_R8 2147483648"},
      // A double keeps all digits.
      {u"Math.PI", "VT_R8 3.141592653589793"},
      {u"typed.double(5e-324)", "VT_R8 5e-324"},
      {u"1.7976931348623157e308", "VT_R8 1.7976931348623157e+308"},
  });
}

// The losses of the wire form, which programs of this kind rely on.
TEST_F(Values, BytesReadAsZeroAndLongAndUnknownTypesAsEmpty) {
  ExpectRuns(
      {{u"typed.byte(5)", "VT_I1 0"}, {u"typed.long(5)", "VT_EMPTY"}, {u"9007199254740993n", "VT_EMPTY"}});
  Use("/odd/unknown-type");
  EXPECT_EQ(Run(u"'replaced'"), "VT_EMPTY");
}

TEST_F(Values, NoValueIsAnInvalidAnswer) {
  ExpectRuns({{u"null", kNotValid}, {u"undefined", kNotValid}, {u"", kNotValid}});
  EXPECT_EQ(ScriptsRun(), 3);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(Values, TextsArriveUnitByUnit) {
  ExpectUnits({
      {u"<>&'\"", "3c 3e 26 27 22"},
      {u"&amp;]]>", "26 61 6d 70 3b 5d 5d 3e"},
      {u"\u00E9\uFFFD\u007F", "e9 fffd 7f"},
      {u"\U0001F600", "d83d de00"},
      {u" \t a ", "20 9 20 61 20"},
      {u"", ""},
      {WideString(), ""},
      // Reading XML makes a line feed of each line end.
      {u"a\nb", "61 a 62"},
      {u"a\r\nb", "61 a 62"},
      {u"a\rb", "61 a 62"},
      // Half a pair has no form in XML, so that the service reads the replacement for it.
      {WideString(std::u16string(1, char16_t{0xD83D})), "fffd"},
      // A text ends at its first null unit.
      {WideString(std::u16string_view(u"a\0b", 3)), "61"},
  });
}

TEST_F(Values, TextsInAnswersArriveUnitByUnit) {
  ExpectRuns({
      {u"'<>&\\'\"]]>'", "VT_BSTR <>&'\"]]>"},
      {u"'a\\r\\nb\\rc\\td'", R"(VT_BSTR a\u000D\u000Ab\u000Dc\u0009d)"},
      {u"'\\u00e9\\ufffd'", "VT_BSTR \\u00E9\\uFFFD"},
      {u"'\\ud83d\\ude00'", "VT_BSTR \\uD83D\\uDE00"},
      {u"''", "VT_BSTR "},
      {u"'  '", "VT_BSTR   "},
  });
}

TEST_F(Values, EveryTextComesBackAsItWent) {
  const WideString text = u"<a b=\"c\">&amp; ' \u00E9 \U0001F600 \uFFFD \u20AC</a>";
  EXPECT_EQ(Run(u"parameters.x", {{u"x", Variant::FromString(text)}}),
            "VT_BSTR <a b=\"c\">&amp; ' \\u00E9 \\uD83D\\uDE00 \\uFFFD \\u20AC</a>");
}

TEST_F(Values, DuplicateKeysAreBothSentInOrder) {
  EXPECT_EQ(
      Run(u"parameters.k + ' ' + parameterList.map(function(p) {"
          u" return p.name + '=' + p.value + ':' + p.type; }).join(',')",
          {{u"k", Variant::FromInt(1)}, {u"K", Variant::FromInt(2)}, {u"k", Variant::FromString(u"3")}}),
      "VT_BSTR 3 k=1:int,K=2:int,k=3:string");
}

TEST_F(Values, KeysMayHoldAnyText) {
  EXPECT_EQ(Run(u"parameterList.map(function(p) { return '[' + p.name + ']'; }).join('')",
                {{u"<a&b>", Variant::FromInt(1)},
                 {u"\u00E9 \"'", Variant::FromInt(2)},
                 {u"", Variant::FromInt(3)},
                 {nullptr, Variant::FromInt(4)},
                 {u"__proto__", Variant::FromInt(5)}}),
            "VT_BSTR [<a&b>][\\u00E9 \"'][][][__proto__]");
}

TEST_F(Values, NoListAndEmptyListBothGiveNoParameters) {
  EXPECT_EQ(Run(u"parameterList.length"), "VT_INT 0");
  EXPECT_EQ(Run(u"parameterList.length", NamedValues{}), "VT_INT 0");
}

TEST_F(Values, ThousandParametersArrive) {
  const IParametersPtr list = CreateParameters();
  for (int i = 1; i <= 1000; ++i) {
    const WideString key = FromUtf8("p" + std::to_string(i));
    ASSERT_EQ(list->Add(key, Variant::FromInt(i), nullptr), S_OK);
  }
  EXPECT_EQ(Run(u"parameterList.length + ' ' + parameters.p1000 + ' ' +"
                u" parameterList.reduce(function(sum, p) { return sum + p.value; }, 0)",
                list.get()),
            "VT_BSTR 1000 1000 500500");
}

}  // namespace
}  // namespace qv
