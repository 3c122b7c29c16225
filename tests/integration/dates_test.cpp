// Dates, times and points in time on their way to the script and back, with what gets lost on either way.
#include <limits>

#include "value_test.h"

namespace qv {
namespace {

constexpr double kFifthOfMarch2024 = 45356;
constexpr double kLastDay = 2958465;

double Serial(double day, int hour, int minute, int second, double milliseconds = 0) {
  return day + (((hour * 60 + minute) * 60 + second) * 1000 + milliseconds) / 86400000.0;
}
double FifthOfMarch(double milliseconds = 0) {
  return Serial(kFifthOfMarch2024, 10, 15, 30, milliseconds);
}

class Dates : public ValueTest {
 protected:
  std::string Seen(double serialDate) {
    return Run(u"parameters.x.toISOString() + ' ' + parameterTypes.x",
               {{u"x", Variant::FromDate(serialDate)}});
  }
  // What the script sees of a parameter: the moment, and the declared type.
  void ExpectSeen(std::initializer_list<std::pair<double, const char*>> rows) {
    for (const auto& [serialDate, seen] : rows)
      EXPECT_EQ(Seen(serialDate), "VT_BSTR " + std::string(seen)) << serialDate;
  }
  static double DateIn(const Variant& value) {
    EXPECT_EQ(value.Tag(), VT_DATE) << ShownValue(value);
    return value.Data().date;
  }
  double Answered(const WideString& script, double parameter = 0) {
    return DateIn(Answer(script, {{u"x", Variant::FromDate(parameter)}}));
  }
  void ExpectAnswers(std::initializer_list<std::pair<const char16_t*, double>> rows) {
    for (const auto& [script, serialDate] : rows) EXPECT_EQ(DateIn(Answer(script)), serialDate);
  }
};

TEST_F(Dates, WholeNumberArrivesAsADate) {
  ExpectSeen({
      {kFifthOfMarch2024, "2024-03-05T00:00:00.000Z date"},
      {45351, "2024-02-29T00:00:00.000Z date"},
      {36585, "2000-02-29T00:00:00.000Z date"},
      {25569, "1970-01-01T00:00:00.000Z date"},
      {25568, "1969-12-31T00:00:00.000Z date"},
      {60, "1900-02-28T00:00:00.000Z date"},  // 1900 has no leap day
      {61, "1900-03-01T00:00:00.000Z date"},
      {1, "1899-12-31T00:00:00.000Z date"},
      {-1, "1899-12-29T00:00:00.000Z date"},
      {-30876, "1815-06-18T00:00:00.000Z date"},
      {-693593, "0001-01-01T00:00:00.000Z date"},
      {kLastDay, "9999-12-31T00:00:00.000Z date"},
  });
}

// Milliseconds are ".7", ".70" and ".700" on the way; what is finer is rounded.
TEST_F(Dates, NumberWithoutWholePartArrivesAsATime) {
  ExpectSeen({
      {Serial(0, 10, 15, 30), "1970-01-01T10:15:30.000Z time"},
      {0.5, "1970-01-01T12:00:00.000Z time"},
      {Serial(0, 23, 59, 59), "1970-01-01T23:59:59.000Z time"},
      {Serial(0, 10, 15, 30, 7), "1970-01-01T10:15:30.007Z time"},
      {Serial(0, 10, 15, 30, 7.4), "1970-01-01T10:15:30.007Z time"},
      {Serial(0, 10, 15, 30, 7.6), "1970-01-01T10:15:30.008Z time"},
  });
}

TEST_F(Dates, DayWithATimeArrivesAsADateTime) {
  ExpectSeen({
      {FifthOfMarch(), "2024-03-05T10:15:30.000Z datetime"},
      {1.5, "1899-12-31T12:00:00.000Z datetime"},
      {Serial(kLastDay, 23, 59, 59), "9999-12-31T23:59:59.000Z datetime"},
      {FifthOfMarch(7), "2024-03-05T10:15:30.007Z datetime"},
      {FifthOfMarch(70), "2024-03-05T10:15:30.070Z datetime"},
      {FifthOfMarch(700), "2024-03-05T10:15:30.700Z datetime"},
      {-1.25, "1899-12-28T18:00:00.000Z datetime"},
      {-30875.5, "1815-06-18T12:00:00.000Z datetime"},
  });
}

// The day is that of the nearest second, the time is the rest to the millisecond.
TEST_F(Dates, LastHalfSecondOfADayArrivesADayLate) {
  ExpectSeen({{Serial(kFifthOfMarch2024, 23, 59, 59, 400), "2024-03-05T23:59:59.400Z datetime"},
              {Serial(kFifthOfMarch2024, 23, 59, 59, 600), "2024-03-06T23:59:59.600Z datetime"}});
}

// Its type is time, and such a time is negative, which no service can read.
TEST_F(Dates, TimeOfADayBeforeDayZeroIsAFaultOfTheService) {
  EXPECT_EQ(Seen(-0.25).substr(0, 11), "0x800403F0 ");
  EXPECT_EQ(ScriptsRun(), 0);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(Dates, AnswersAreSerialDates) {
  ExpectAnswers({
      {u"typed.date('2024-03-05')", kFifthOfMarch2024},
      {u"typed.date('2024-02-29')", 45351},
      {u"typed.date(new Date(Date.UTC(1969, 11, 31, 23)))", 25568},
      {u"typed.date('1900-02-28')", 60},
      {u"typed.date('1899-12-29')", -1},
      {u"typed.date('0001-01-01')", -693593},
      {u"typed.date('9999-12-31')", kLastDay},
      {u"typed.time('10:15:30')", Serial(0, 10, 15, 30)},
      {u"typed.time('00:00:00')", 0},
      {u"typed.time('23:59:59')", Serial(0, 23, 59, 59)},
      {u"new Date(Date.UTC(2024, 2, 5, 10, 15, 30))", FifthOfMarch()},
      {u"typed.datetime('9999-12-31T23:59:59Z')", Serial(kLastDay, 23, 59, 59)},
      {u"typed.datetime('1815-06-18T12:00:00Z')", -30875.5},
      // Fractions of a second are dropped.
      {u"typed.time('10:15:30.999Z')", Serial(0, 10, 15, 30)},
      {u"new Date(Date.UTC(2024, 2, 5, 10, 15, 30, 999))", FifthOfMarch()},
  });
  EXPECT_EQ(Answered(u"parameters.x", FifthOfMarch(999)), FifthOfMarch());
}

TEST_F(Dates, WholeSecondsComeBackAsTheyWent) {
  for (const double serialDate :
       {kFifthOfMarch2024, FifthOfMarch(), Serial(kFifthOfMarch2024, 23, 59, 59), Serial(45351, 0, 0, 1), 1.0,
        1.5, -1.0, 25568.0, -693593.0, Serial(kLastDay, 23, 59, 59)})
    EXPECT_EQ(Answered(u"parameters.x", serialDate), serialDate);
  EXPECT_EQ(Answered(u"typed.time(parameters.x)", Serial(0, 10, 15, 30)), Serial(0, 10, 15, 30));
}

// A point in time at midnight travels as a date, a date of day zero as a time.
TEST_F(Dates, AnswersTravelBackAsTheirNumbersSay) {
  const struct {
    const char16_t* script;
    double answer;
    const char* seen;
  } rows[] = {
      {u"typed.datetime('2024-03-05T00:00:00Z')", kFifthOfMarch2024, "2024-03-05T00:00:00.000Z date"},
      {u"typed.date('1899-12-30')", 0.0, "1970-01-01T00:00:00.000Z time"},
      {u"typed.datetime('1899-12-30T10:15:30Z')", Serial(0, 10, 15, 30), "1970-01-01T10:15:30.000Z time"},
  };
  for (const auto& row : rows) {
    const double answer = Answered(row.script);
    EXPECT_EQ(answer, row.answer);
    ExpectSeen({{answer, row.seen}});
  }
}

TEST_F(Dates, OddFormsInAnswersAreRead) {
  const std::pair<const char*, double> rows[] = {
      {"datetime-with-offset", FifthOfMarch()},                 // under a day: ignored
      {"datetime-with-day-offset", Serial(45355, 10, 15, 30)},  // that day is subtracted
      {"date-with-time", FifthOfMarch()},                       // the time is kept
      {"short-time", Serial(0, 10, 15, 0)}};
  for (const auto& [name, serialDate] : rows) EXPECT_EQ(DateIn(OddAnswer(name)), serialDate) << name;
}

TEST_F(Dates, AnswerThatCannotBeReadHasTheMessageOfTheConversion) {
  ExpectOdd({{"bad-date", "0x80020009 Invalid argument to date encode"},
             {"short-date", "0x80020009 Unable to convert a value with the given accuracy"},
             {"empty-date", "0x80020009 Unable to convert a value with the given accuracy"},
             {"bad-time", "0x80020009 Invalid argument to time encode"},
             {"bad-datetime", "0x80020009 Expecting a full date value"}});
}

// The last half second is in the year 10000 when it is rounded.
TEST_F(Dates, ParameterOutsideTheCalendarIsRefusedBeforeAnythingIsSent) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double serialDate :
       {-693594.0, 2958466.0, -693594.5, 2958466.5, 1e9, -1e9, 1e300, -1e300, kInfinity, -kInfinity,
        std::numeric_limits<double>::quiet_NaN(), Serial(kLastDay, 23, 59, 59, 600)})
    ExpectRefused(Variant::FromDate(serialDate), "0x80020009 Invalid argument to date decode");
  ExpectSeen({{Serial(kLastDay, 23, 59, 59, 400), "9999-12-31T23:59:59.400Z datetime"}});
}

}  // namespace
}  // namespace qv
