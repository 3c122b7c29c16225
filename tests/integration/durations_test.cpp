// Durations on their way to the script and back.
#include "fixtures/shown_text.h"
#include "value_test.h"

namespace qv {
namespace {

std::string TextOf(const Variant& value) {
  const IDurationRawPtr raw = As<IDurationRaw>(value.Object());
  if (raw == nullptr) return "no duration";
  WideString text;
  EXPECT_EQ(raw->GetText(&text), S_OK);
  return Shown(text);
}

class Durations : public ValueTest {
 protected:
  // "year month day hour minute second sign", the seconds with all their digits.
  static std::string FieldsOf(const Variant& value) {
    const IDurationPtr duration = ObjectIn<IDuration>(value);
    if (duration == nullptr) return "no duration";
    std::string fields;
    for (const auto get : {&IDuration::get_Year, &IDuration::get_Month, &IDuration::get_Day,
                           &IDuration::get_Hour, &IDuration::get_Min}) {
      std::int16_t count = -1;
      EXPECT_EQ((duration.get()->*get)(&count), S_OK);
      fields += std::to_string(count) + " ";
    }
    double second = -1;
    EXPECT_EQ(duration->get_Sec(&second), S_OK);
    VARIANT_BOOL negative = VARIANT_FALSE;
    EXPECT_EQ(duration->get_Negative(&negative), S_OK);
    return fields + ShownReal(second) + (negative == VARIANT_FALSE ? " +" : " -");
  }
  // What the script sees of a parameter, and the declared type.
  std::string Seen(IDuration* duration) {
    return Run(u"String(parameters.x) + ' ' + parameterTypes.x", {{u"x", Variant::FromObject(duration)}});
  }
  void ExpectSeenSeconds(double seconds, const std::string& seen) {
    const IDurationPtr duration = CreateDuration();
    EXPECT_EQ(duration->put_Sec(seconds), S_OK);
    EXPECT_EQ(Seen(duration.get()), "VT_BSTR " + seen + " duration");
  }
};

TEST_F(Durations, ParameterArrivesAsItIsAndNothingCarriesOver) {
  for (const char16_t* text : {u"P1Y2M3DT4H5M6.5S", u"PT90S", u"P400DT30H70M", u"P32767Y", u"-P1D", u"-P0"})
    EXPECT_EQ(Seen(CreateDuration(text).get()), "VT_BSTR " + Shown(text) + " duration");
  EXPECT_EQ(Seen(CreateDuration().get()), "VT_BSTR P0 duration");
  EXPECT_EQ(Run(u"var d = parameters.x; [d.negative, d.years, d.months, d.days, d.hours, d.minutes,"
                u" d.seconds].join(' ')",
                {{u"x", Variant::FromObject(CreateDuration(u"-P1Y2M3DT4H5M6.5S").get())}}),
            "VT_BSTR true 1 2 3 4 5 6.5");
}

// Many and few seconds travel as "PT1.23457e+07S" and "PT1e-07S".
TEST_F(Durations, SecondsArriveWithSixDigits) {
  ExpectSeenSeconds(1234.5678, "PT1234.57S");
  ExpectSeenSeconds(0.123456789, "PT0.123457S");
  ExpectSeenSeconds(12345678.9, "PT12345700S");
  ExpectSeenSeconds(1e-7, "PT0.0000001S");
}

TEST_F(Durations, AnswerIsAnObjectWithItsCounts) {
  const struct {
    const char16_t* script;
    const char* fields;
    const char* text;
  } rows[] = {
      {u"typed.duration('P1Y2M3DT4H5M6.5S')", "1 2 3 4 5 6.5 +", "P1Y2M3DT4H5M6.5S"},
      {u"typed.duration({months: 5})", "0 5 0 0 0 0 +", "P5M"},
      {u"typed.duration({minutes: 5, negative: true})", "0 0 0 0 5 0 -", "-PT5M"},
      {u"typed.duration({seconds: 90})", "0 0 0 0 0 90 +", "PT90S"},
      {u"typed.duration({days: 0})", "0 0 0 0 0 0 +", "P0"},
      // All digits arrive, but the text has six.
      {u"typed.duration({seconds: 12345678.9})", "0 0 0 0 0 12345678.9 +", "PT1.23457e+07S"},
      // Beyond sixteen bits a count wraps around.
      {u"typed.duration({days: 32768})", "0 0 -32768 0 0 0 +", "P-32768D"},
      {u"typed.duration({hours: 65537})", "0 0 0 1 0 0 +", "PT1H"},
  };
  for (const auto& row : rows) {
    const Variant answer = Answer(row.script);
    EXPECT_EQ(FieldsOf(answer), row.fields);
    EXPECT_EQ(TextOf(answer), row.text);
  }
}

TEST_F(Durations, AnswerOutOfOrderIsReadInTheFixedOrder) {
  const Variant answer = OddAnswer("loose-duration");
  EXPECT_EQ(FieldsOf(answer), "3 0 0 0 0 0 +");
  EXPECT_EQ(TextOf(answer), "P3Y");
}

// An exponent is written, but its "e" is no capital letter.
TEST_F(Durations, AnswerThatIsNoDurationOrHasAnExponentCannotBeRead) {
  ExpectOdd({{"bad-duration", "0x80020009 Cannot deserialize the response."},
             {"exponent-duration", "0x80020009 Cannot deserialize the response."}});
}

TEST_F(Durations, AnswerIsGoodAsAParameter) {
  const Variant answer = Answer(u"typed.duration('-P1DT2H')");
  EXPECT_EQ(Run(u"String(parameters.x)", {{u"x", answer}}), "VT_BSTR -P1DT2H");
  ASSERT_EQ(ObjectIn<IDuration>(answer)->put_Hour(3), S_OK);
  EXPECT_EQ(Run(u"String(parameters.x)", {{u"x", answer}}), "VT_BSTR -P1DT3H");
}

TEST_F(Durations, ComesBackAsItWent) {
  for (const char16_t* text : {u"P1Y2M3DT4H5M6.5S", u"-P1D", u"PT90S", u"P0", u"-P0", u"PT0.5S"}) {
    const Variant sent = Variant::FromObject(CreateDuration(text).get());
    const Variant answer = Answer(u"parameters.x", {{u"x", sent}});
    EXPECT_EQ(TextOf(answer), Shown(text));
    EXPECT_NE(answer.Object(), sent.Object());
  }
}

TEST_F(Durations, ObjectOutlivesTheModelThatAnsweredIt) {
  const Variant answer = Answer(u"typed.duration('P1DT2H')");
  EndEverything();
  EXPECT_EQ(TextOf(answer), "P1DT2H");
  ASSERT_EQ(ObjectIn<IDuration>(answer)->put_Day(7), S_OK);
  EXPECT_EQ(TextOf(answer), "P7DT2H");
}

TEST_F(Durations, EveryAnswerIsAnObjectWithOneReference) {
  const Variant first = Answer(u"typed.duration('P1D')");
  const Variant second = Answer(u"typed.duration('P2D')");
  EXPECT_NE(first.Object(), second.Object());
  EXPECT_EQ(TextOf(first), "P1D");
  EXPECT_EQ(TextOf(second), "P2D");
  ExpectOnlyReference(first);
}

}  // namespace
}  // namespace qv
