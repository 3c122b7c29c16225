// Durations on their way to the script and back.
#include <cstdio>

#include "fixtures/shown_text.h"
#include "value_test.h"

namespace qv {
namespace {

constexpr char kNotRead[] = "0x80020009 Cannot deserialize the response.";

IDurationPtr DurationIn(const Variant& value) {
  EXPECT_EQ(value.Tag(), VT_UNKNOWN) << ShownValue(value);
  return As<IDuration>(value.Object());
}

std::string TextOf(const Variant& value) {
  const IDurationRawPtr raw = As<IDurationRaw>(value.Object());
  if (raw == nullptr) return "no duration";
  WideString text;
  EXPECT_EQ(raw->GetText(&text), S_OK);
  return Shown(text);
}

// "year month day hour minute second sign", the seconds with all their digits.
std::string FieldsOf(const Variant& value) {
  const IDurationPtr duration = DurationIn(value);
  if (duration == nullptr) return "no duration";
  std::int16_t year, month, day, hour, minute;
  double second;
  VARIANT_BOOL negative;
  const bool read = duration->get_Year(&year) == S_OK && duration->get_Month(&month) == S_OK &&
                    duration->get_Day(&day) == S_OK && duration->get_Hour(&hour) == S_OK &&
                    duration->get_Min(&minute) == S_OK && duration->get_Sec(&second) == S_OK &&
                    duration->get_Negative(&negative) == S_OK;
  if (!read) return "not read";
  char text[128];
  std::snprintf(text, sizeof text, "%d %d %d %d %d %.17g %s", year, month, day, hour, minute, second,
                negative == VARIANT_FALSE ? "+" : "-");
  return text;
}

class Durations : public ValueTest {
 protected:
  // What the script sees of a parameter, and the declared type.
  std::string Seen(IDuration* duration) {
    return Run(u"String(parameters.x) + ' ' + parameterTypes.x", {{u"x", Variant::FromObject(duration)}});
  }
  std::string Seen(const char16_t* text) { return Seen(CreateDuration(text).get()); }
  std::string SeenSeconds(double seconds) {
    const IDurationPtr duration = CreateDuration();
    EXPECT_EQ(duration->put_Sec(seconds), S_OK);
    return Seen(duration.get());
  }
};

TEST_F(Durations, ParameterArrivesWithItsCounts) {
  EXPECT_EQ(Seen(u"P1Y2M3DT4H5M6.5S"), "VT_BSTR P1Y2M3DT4H5M6.5S duration");
  EXPECT_EQ(Run(u"var d = parameters.x; [d.negative, d.years, d.months, d.days, d.hours, d.minutes,"
                u" d.seconds].join(' ')",
                {{u"x", Variant::FromObject(CreateDuration(u"-P1Y2M3DT4H5M6.5S").get())}}),
            "VT_BSTR true 1 2 3 4 5 6.5");
}

TEST_F(Durations, NothingCarriesOver) {
  EXPECT_EQ(Seen(u"PT90S"), "VT_BSTR PT90S duration");
  EXPECT_EQ(Seen(u"P400DT30H70M"), "VT_BSTR P400DT30H70M duration");
  EXPECT_EQ(Seen(u"P32767Y"), "VT_BSTR P32767Y duration");
}

TEST_F(Durations, NegativeAndNothingArrive) {
  EXPECT_EQ(Seen(u"-P1D"), "VT_BSTR -P1D duration");
  EXPECT_EQ(Seen(CreateDuration().get()), "VT_BSTR P0 duration");
  EXPECT_EQ(Seen(u"-P0"), "VT_BSTR -P0 duration");
}

TEST_F(Durations, SecondsArriveWithSixDigits) {
  EXPECT_EQ(SeenSeconds(1234.5678), "VT_BSTR PT1234.57S duration");
  EXPECT_EQ(SeenSeconds(0.123456789), "VT_BSTR PT0.123457S duration");
}

// They travel as "PT1.23457e+07S" and "PT1e-07S".
TEST_F(Durations, ManyAndFewSecondsTravelWithAnExponent) {
  EXPECT_EQ(SeenSeconds(12345678.9), "VT_BSTR PT12345700S duration");
  EXPECT_EQ(SeenSeconds(1e-7), "VT_BSTR PT0.0000001S duration");
}

TEST_F(Durations, AnswerIsAnObjectWithItsCounts) {
  const Variant answer = Answer(u"typed.duration('P1Y2M3DT4H5M6.5S')");
  EXPECT_EQ(FieldsOf(answer), "1 2 3 4 5 6.5 +");
  EXPECT_EQ(TextOf(answer), "P1Y2M3DT4H5M6.5S");
}

TEST_F(Durations, AnswerOfSingleCounts) {
  EXPECT_EQ(FieldsOf(Answer(u"typed.duration({months: 5})")), "0 5 0 0 0 0 +");
  EXPECT_EQ(FieldsOf(Answer(u"typed.duration({minutes: 5, negative: true})")), "0 0 0 0 5 0 -");
  EXPECT_EQ(FieldsOf(Answer(u"typed.duration({seconds: 90})")), "0 0 0 0 0 90 +");
  EXPECT_EQ(FieldsOf(Answer(u"typed.duration({days: 0})")), "0 0 0 0 0 0 +");
  EXPECT_EQ(TextOf(Answer(u"typed.duration({days: 0})")), "P0");
}

TEST_F(Durations, SecondsInAnAnswerKeepAllDigits) {
  const Variant answer = Answer(u"typed.duration({seconds: 12345678.9})");
  EXPECT_EQ(FieldsOf(answer), "0 0 0 0 0 12345678.9 +");
  EXPECT_EQ(TextOf(answer), "PT1.23457e+07S") << "but its text has six";
}

TEST_F(Durations, CountInAnAnswerBeyondSixteenBitsWrapsAround) {
  EXPECT_EQ(FieldsOf(Answer(u"typed.duration({days: 32768})")), "0 0 -32768 0 0 0 +");
  EXPECT_EQ(FieldsOf(Answer(u"typed.duration({hours: 65537})")), "0 0 0 1 0 0 +");
}

TEST_F(Durations, AnswerOutOfOrderIsReadInTheFixedOrder) {
  const Variant answer = OddAnswer("loose-duration");
  EXPECT_EQ(FieldsOf(answer), "3 0 0 0 0 0 +");
  EXPECT_EQ(TextOf(answer), "P3Y");
}

TEST_F(Durations, AnswerThatIsNoDurationCannotBeRead) {
  EXPECT_EQ(OddOutcome("bad-duration"), kNotRead);
}

// An exponent is written, but its "e" is no capital letter.
TEST_F(Durations, AnswerWithAnExponentCannotBeRead) {
  EXPECT_EQ(OddOutcome("exponent-duration"), kNotRead);
}

TEST_F(Durations, AnswerIsGoodAsAParameter) {
  const Variant answer = Answer(u"typed.duration('-P1DT2H')");
  EXPECT_EQ(Run(u"String(parameters.x)", {{u"x", answer}}), "VT_BSTR -P1DT2H");
  const IDurationPtr duration = DurationIn(answer);
  ASSERT_EQ(duration->put_Hour(3), S_OK);
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
  model_.reset();
  CloseKeptConnections();
  service_->Stop();
  EXPECT_EQ(TextOf(answer), "P1DT2H");
  ASSERT_EQ(DurationIn(answer)->put_Day(7), S_OK);
  EXPECT_EQ(TextOf(answer), "P7DT2H");
}

TEST_F(Durations, AnswerHoldsTheOnlyReference) {
  const Variant answer = Answer(u"typed.duration('P1D')");
  ASSERT_EQ(answer.Tag(), VT_UNKNOWN);
  EXPECT_EQ(answer.Object()->AddRef(), 2u);
  EXPECT_EQ(answer.Object()->Release(), 1u);
}

TEST_F(Durations, EveryAnswerIsAnObjectOfItsOwn) {
  const Variant first = Answer(u"typed.duration('P1D')");
  const Variant second = Answer(u"typed.duration('P2D')");
  EXPECT_NE(first.Object(), second.Object());
  EXPECT_EQ(TextOf(first), "P1D");
  EXPECT_EQ(TextOf(second), "P2D");
}

}  // namespace
}  // namespace qv
