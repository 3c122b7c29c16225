// Values on their way to the script and back: what arrives, and the losses that the wire form has.
#include <limits>

#include "client_fixture.h"

namespace qv {
namespace {

constexpr char kNotValid[] = "0x80020009 The respone that arrived is not valid";

class Values : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    ASSERT_EQ(Open(), "ok");
  }
  // What the script sees of `value`: JavaScript's kind, its text, and the declared type.
  std::string Arrives(const Variant& value) {
    return Run(u"typeof parameters.x + ' ' + String(parameters.x) + ' ' + parameterTypes.x", {{u"x", value}});
  }
  // The units of a text parameter as the script sees them, in hexadecimal.
  std::string UnitsOf(const WideString& text) {
    return Run(
        u"var s = ''; for (var i = 0; i < parameters.x.length; ++i)"
        u" s += (i ? ' ' : '') + parameters.x.charCodeAt(i).toString(16); s",
        {{u"x", Variant::FromString(text)}});
  }
};

TEST_F(Values, ParametersArriveAsNativeValuesWithTheirTypes) {
  EXPECT_EQ(Arrives(Variant::FromByte(-128)), "VT_BSTR number -128 byte");
  EXPECT_EQ(Arrives(Variant::FromShort(-32768)), "VT_BSTR number -32768 short");
  EXPECT_EQ(Arrives(Variant::FromInt(2147483647)), "VT_BSTR number 2147483647 int");
  EXPECT_EQ(Arrives(Variant::FromBool(true)), "VT_BSTR boolean true boolean");
  EXPECT_EQ(Arrives(Variant::FromBool(false)), "VT_BSTR boolean false boolean");
  EXPECT_EQ(Arrives(Variant::FromFloat(1.5f)), "VT_BSTR number 1.5 float");
  EXPECT_EQ(Arrives(Variant::FromDouble(-0.25)), "VT_BSTR number -0.25 double");
  EXPECT_EQ(Arrives(Variant::FromString(u"text")), "VT_BSTR string text string");
}

TEST_F(Values, LongParametersArriveWhole) {
  EXPECT_EQ(Arrives(Variant::FromLong(-9007199254740991)), "VT_BSTR number -9007199254740991 long");
  EXPECT_EQ(Arrives(Variant::FromLong(9223372036854775807)), "VT_BSTR bigint 9223372036854775807 long");
}

TEST_F(Values, FloatingParametersArriveWithSixDigits) {
  EXPECT_EQ(Arrives(Variant::FromDouble(3.14159265)), "VT_BSTR number 3.14159 double");
  EXPECT_EQ(Arrives(Variant::FromDouble(1234567.0)), "VT_BSTR number 1234570 double");
  EXPECT_EQ(Arrives(Variant::FromDouble(1e-7)), "VT_BSTR number 1e-7 double");
  EXPECT_EQ(Arrives(Variant::FromFloat(16777216.0f)), "VT_BSTR number 16777200 float");
}

TEST_F(Values, FloatingParametersWithoutDigitsArrive) {
  EXPECT_EQ(Arrives(Variant::FromDouble(std::numeric_limits<double>::infinity())),
            "VT_BSTR number Infinity double");
  EXPECT_EQ(Arrives(Variant::FromDouble(-std::numeric_limits<double>::infinity())),
            "VT_BSTR number -Infinity double");
  EXPECT_EQ(Arrives(Variant::FromDouble(std::numeric_limits<double>::quiet_NaN())),
            "VT_BSTR number NaN double");
}

TEST_F(Values, WholeNumberUnderItsOtherTagArrivesAsInt) {
  VariantData data;
  data.lVal = -7;
  EXPECT_EQ(Arrives(Variant::FromRaw(VT_I4, data)), "VT_BSTR number -7 int");
}

TEST_F(Values, ParameterWithoutWireFormIsRefusedBeforeAnythingIsSent) {
  EXPECT_EQ(Arrives(Variant()), "0x80020009 Cannot create the xml document.");
  EXPECT_EQ(Arrives(Variant::Null()), "0x80020009 Cannot create the xml document.");
  EXPECT_EQ(Arrives(Variant::FromRaw(VT_UI1, {})), "0x80020009 Cannot create the xml document.");
  EXPECT_EQ(Stats()["actions"]["Execute"], 0);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(Values, AnswersHaveTheirTags) {
  EXPECT_EQ(Run(u"typed.int(-2147483648)"), "VT_INT -2147483648");
  EXPECT_EQ(Run(u"typed.short(-32768)"), "VT_I2 -32768");
  EXPECT_EQ(Run(u"typed.boolean(true)"), "VT_BOOL -1");
  EXPECT_EQ(Run(u"typed.boolean(false)"), "VT_BOOL 0");
  EXPECT_EQ(Run(u"typed.float(0.1)"), "VT_R4 0.1");
  EXPECT_EQ(Run(u"typed.double(0.1)"), "VT_R8 0.1");
  EXPECT_EQ(Run(u"typed.string('x')"), "VT_BSTR x");
}

TEST_F(Values, AnswersWithoutChosenTypeHaveThoseOfTheirKind) {
  EXPECT_EQ(Run(u"6 * 7"), "VT_INT 42");
  EXPECT_EQ(Run(u"1 < 2"), "VT_BOOL -1");
  EXPECT_EQ(Run(u"1 > 2"), "VT_BOOL 0");
  EXPECT_EQ(Run(u"'a' + 'b'"), "VT_BSTR ab");
  EXPECT_EQ(Run(u"2147483648"), "VT_R8 2147483648");
}

TEST_F(Values, DoubleInAnAnswerKeepsAllDigits) {
  EXPECT_EQ(Run(u"Math.PI"), "VT_R8 3.141592653589793");
  EXPECT_EQ(Run(u"typed.double(5e-324)"), "VT_R8 5e-324");
  EXPECT_EQ(Run(u"1.7976931348623157e308"), "VT_R8 1.7976931348623157e+308");
}

// The losses of the wire form, which programs of this kind rely on.
TEST_F(Values, ByteInAnAnswerReadsAsZero) {
  EXPECT_EQ(Run(u"typed.byte(5)"), "VT_I1 0");
}

TEST_F(Values, LongInAnAnswerReadsAsEmpty) {
  EXPECT_EQ(Run(u"typed.long(5)"), "VT_EMPTY");
  EXPECT_EQ(Run(u"9007199254740993n"), "VT_EMPTY");
}

TEST_F(Values, UnknownTypeInAnAnswerReadsAsEmpty) {
  Use("/odd/unknown-type");
  EXPECT_EQ(Run(u"'replaced'"), "VT_EMPTY");
}

TEST_F(Values, NoValueIsAnInvalidAnswer) {
  EXPECT_EQ(Run(u"null"), kNotValid);
  EXPECT_EQ(Run(u"undefined"), kNotValid);
  EXPECT_EQ(Run(u""), kNotValid);
  EXPECT_EQ(ScriptsRun(), 3);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(Values, TextsArriveUnitByUnit) {
  EXPECT_EQ(UnitsOf(u"<>&'\""), "VT_BSTR 3c 3e 26 27 22");
  EXPECT_EQ(UnitsOf(u"&amp;]]>"), "VT_BSTR 26 61 6d 70 3b 5d 5d 3e");
  EXPECT_EQ(UnitsOf(u"\u00E9\uFFFD\u007F"), "VT_BSTR e9 fffd 7f");
  EXPECT_EQ(UnitsOf(u"\U0001F600"), "VT_BSTR d83d de00");
  EXPECT_EQ(UnitsOf(u" \t a "), "VT_BSTR 20 9 20 61 20");
}

TEST_F(Values, EmptyAndNullTextArriveEmpty) {
  EXPECT_EQ(UnitsOf(u""), "VT_BSTR ");
  EXPECT_EQ(UnitsOf(WideString()), "VT_BSTR ");
  EXPECT_EQ(Arrives(Variant::FromString(u"")), "VT_BSTR string  string");
}

// Line ends go out as they stand, and reading XML makes a line feed of each.
TEST_F(Values, LineEndsArriveAsLineFeeds) {
  EXPECT_EQ(UnitsOf(u"a\nb"), "VT_BSTR 61 a 62");
  EXPECT_EQ(UnitsOf(u"a\r\nb"), "VT_BSTR 61 a 62");
  EXPECT_EQ(UnitsOf(u"a\rb"), "VT_BSTR 61 a 62");
}

TEST_F(Values, TextsInAnswersArriveUnitByUnit) {
  EXPECT_EQ(Run(u"'<>&\\'\"]]>'"), "VT_BSTR <>&'\"]]>");
  EXPECT_EQ(Run(u"'a\\r\\nb\\rc\\td'"), "VT_BSTR a\\u000D\\u000Ab\\u000Dc\\u0009d");
  EXPECT_EQ(Run(u"'\\u00e9\\ufffd'"), "VT_BSTR \\u00E9\\uFFFD");
  EXPECT_EQ(Run(u"'\\ud83d\\ude00'"), "VT_BSTR \\uD83D\\uDE00");
  EXPECT_EQ(Run(u"''"), "VT_BSTR ");
  EXPECT_EQ(Run(u"'  '"), "VT_BSTR   ");
}

TEST_F(Values, EveryTextComesBackAsItWent) {
  const WideString text = u"<a b=\"c\">&amp; ' \u00E9 \U0001F600 \uFFFD \u20AC</a>";
  EXPECT_EQ(Run(u"parameters.x", {{u"x", Variant::FromString(text)}}),
            "VT_BSTR <a b=\"c\">&amp; ' \\u00E9 \\uD83D\\uDE00 \\uFFFD \\u20AC</a>");
}

// Half a pair has no form in XML, so that the service reads the replacement for it.
TEST_F(Values, LoneSurrogateArrivesAsReplacement) {
  EXPECT_EQ(UnitsOf(WideString(std::u16string(1, char16_t{0xD83D}))), "VT_BSTR fffd");
}

TEST_F(Values, TextParameterEndsAtItsFirstNullUnit) {
  EXPECT_EQ(UnitsOf(WideString(std::u16string_view(u"a\0b", 3))), "VT_BSTR 61");
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
