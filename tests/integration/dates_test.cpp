// Dates, times and points in time on their way to the script and back, with what gets lost on either way.
#include <limits>

#include "value_test.h"

namespace qv {
namespace {

constexpr double kFifthOfMarch2024 = 45356.0;
constexpr char kNoDateToWrite[] = "0x80020009 Invalid argument to date decode";
constexpr char kNoDateToRead[] = "0x80020009 Invalid argument to date encode";
constexpr char kNoTimeToRead[] = "0x80020009 Invalid argument to time encode";
constexpr char kNoFullDate[] = "0x80020009 Unable to convert a value with the given accuracy";

double Serial(double day, int hour, int minute, int second, double milliseconds = 0) {
  return day + (((hour * 60 + minute) * 60 + second) * 1000 + milliseconds) / 86400000.0;
}

class Dates : public ValueTest {
 protected:
  // What the script sees of a parameter: the moment, and the declared type.
  std::string Seen(double serialDate) {
    return Run(u"parameters.x.toISOString() + ' ' + parameterTypes.x",
               {{u"x", Variant::FromDate(serialDate)}});
  }
  static double DateIn(const Variant& value) {
    EXPECT_EQ(value.Tag(), VT_DATE) << ShownValue(value);
    return value.Data().date;
  }
  double DateAnswer(const WideString& script) { return DateIn(Answer(script)); }
  double DateAnswer(const WideString& script, double parameter) {
    return DateIn(Answer(script, {{u"x", Variant::FromDate(parameter)}}));
  }
  double OddDate(const std::string& name) { return DateIn(OddAnswer(name)); }
};

TEST_F(Dates, WholeNumberArrivesAsADate) {
  EXPECT_EQ(Seen(kFifthOfMarch2024), "VT_BSTR 2024-03-05T00:00:00.000Z date");
  EXPECT_EQ(Seen(45351), "VT_BSTR 2024-02-29T00:00:00.000Z date");
  EXPECT_EQ(Seen(36585), "VT_BSTR 2000-02-29T00:00:00.000Z date");
}

TEST_F(Dates, DatesBefore1970And1900Arrive) {
  EXPECT_EQ(Seen(25569), "VT_BSTR 1970-01-01T00:00:00.000Z date");
  EXPECT_EQ(Seen(25568), "VT_BSTR 1969-12-31T00:00:00.000Z date");
  EXPECT_EQ(Seen(60), "VT_BSTR 1900-02-28T00:00:00.000Z date") << "1900 has no leap day";
  EXPECT_EQ(Seen(61), "VT_BSTR 1900-03-01T00:00:00.000Z date");
  EXPECT_EQ(Seen(1), "VT_BSTR 1899-12-31T00:00:00.000Z date");
  EXPECT_EQ(Seen(-1), "VT_BSTR 1899-12-29T00:00:00.000Z date");
  EXPECT_EQ(Seen(-30876), "VT_BSTR 1815-06-18T00:00:00.000Z date");
}

TEST_F(Dates, FirstAndLastDateArrive) {
  EXPECT_EQ(Seen(-693593), "VT_BSTR 0001-01-01T00:00:00.000Z date");
  EXPECT_EQ(Seen(2958465), "VT_BSTR 9999-12-31T00:00:00.000Z date");
}

TEST_F(Dates, NumberWithoutWholePartArrivesAsATime) {
  EXPECT_EQ(Seen(Serial(0, 10, 15, 30)), "VT_BSTR 1970-01-01T10:15:30.000Z time");
  EXPECT_EQ(Seen(0.5), "VT_BSTR 1970-01-01T12:00:00.000Z time");
  EXPECT_EQ(Seen(Serial(0, 23, 59, 59)), "VT_BSTR 1970-01-01T23:59:59.000Z time");
}

TEST_F(Dates, DayWithATimeArrivesAsADateTime) {
  EXPECT_EQ(Seen(Serial(kFifthOfMarch2024, 10, 15, 30)), "VT_BSTR 2024-03-05T10:15:30.000Z datetime");
  EXPECT_EQ(Seen(1.5), "VT_BSTR 1899-12-31T12:00:00.000Z datetime");
  EXPECT_EQ(Seen(Serial(2958465, 23, 59, 59)), "VT_BSTR 9999-12-31T23:59:59.000Z datetime");
}

// The text on the way is ".7", ".70" and ".700".
TEST_F(Dates, MillisecondsArriveThoughTheyAreWrittenUnfilled) {
  EXPECT_EQ(Seen(Serial(0, 10, 15, 30, 7)), "VT_BSTR 1970-01-01T10:15:30.007Z time");
  EXPECT_EQ(Seen(Serial(kFifthOfMarch2024, 10, 15, 30, 7)), "VT_BSTR 2024-03-05T10:15:30.007Z datetime");
  EXPECT_EQ(Seen(Serial(kFifthOfMarch2024, 10, 15, 30, 70)), "VT_BSTR 2024-03-05T10:15:30.070Z datetime");
  EXPECT_EQ(Seen(Serial(kFifthOfMarch2024, 10, 15, 30, 700)), "VT_BSTR 2024-03-05T10:15:30.700Z datetime");
}

TEST_F(Dates, FinerThanMillisecondsIsRounded) {
  EXPECT_EQ(Seen(Serial(0, 10, 15, 30, 7.4)), "VT_BSTR 1970-01-01T10:15:30.007Z time");
  EXPECT_EQ(Seen(Serial(0, 10, 15, 30, 7.6)), "VT_BSTR 1970-01-01T10:15:30.008Z time");
}

// The day is that of the nearest second, the time is the rest to the millisecond.
TEST_F(Dates, LastHalfSecondOfADayArrivesADayLate) {
  EXPECT_EQ(Seen(Serial(kFifthOfMarch2024, 23, 59, 59, 400)), "VT_BSTR 2024-03-05T23:59:59.400Z datetime");
  EXPECT_EQ(Seen(Serial(kFifthOfMarch2024, 23, 59, 59, 600)), "VT_BSTR 2024-03-06T23:59:59.600Z datetime");
}

TEST_F(Dates, DayWithATimeBeforeDayZeroArrives) {
  EXPECT_EQ(Seen(-1.25), "VT_BSTR 1899-12-28T18:00:00.000Z datetime");
  EXPECT_EQ(Seen(-30875.5), "VT_BSTR 1815-06-18T12:00:00.000Z datetime");
}

// Its type is time, and such a time is negative, which no service can read.
TEST_F(Dates, TimeOfADayBeforeDayZeroIsAFaultOfTheService) {
  EXPECT_EQ(Seen(-0.25).substr(0, 11), "0x800403F0 ");
  EXPECT_EQ(ScriptsRun(), 0);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(Dates, DateInAnAnswerIsAWholeNumber) {
  EXPECT_EQ(DateAnswer(u"typed.date('2024-03-05')"), kFifthOfMarch2024);
  EXPECT_EQ(DateAnswer(u"typed.date('2024-02-29')"), 45351.0);
  EXPECT_EQ(DateAnswer(u"typed.date(new Date(Date.UTC(1969, 11, 31, 23)))"), 25568.0);
  EXPECT_EQ(DateAnswer(u"typed.date('1900-02-28')"), 60.0);
  EXPECT_EQ(DateAnswer(u"typed.date('1899-12-29')"), -1.0);
  EXPECT_EQ(DateAnswer(u"typed.date('0001-01-01')"), -693593.0);
  EXPECT_EQ(DateAnswer(u"typed.date('9999-12-31')"), 2958465.0);
}

TEST_F(Dates, TimeInAnAnswerIsAFraction) {
  EXPECT_EQ(DateAnswer(u"typed.time('10:15:30')"), Serial(0, 10, 15, 30));
  EXPECT_EQ(DateAnswer(u"typed.time('00:00:00')"), 0.0);
  EXPECT_EQ(DateAnswer(u"typed.time('23:59:59')"), Serial(0, 23, 59, 59));
}

TEST_F(Dates, DateTimeInAnAnswerIsBoth) {
  EXPECT_EQ(DateAnswer(u"new Date(Date.UTC(2024, 2, 5, 10, 15, 30))"), Serial(kFifthOfMarch2024, 10, 15, 30));
  EXPECT_EQ(DateAnswer(u"typed.datetime('9999-12-31T23:59:59Z')"), Serial(2958465, 23, 59, 59));
  EXPECT_EQ(DateAnswer(u"typed.datetime('1815-06-18T12:00:00Z')"), -30875.5);
}

TEST_F(Dates, FractionOfASecondInAnAnswerIsDropped) {
  EXPECT_EQ(DateAnswer(u"typed.time('10:15:30.999Z')"), Serial(0, 10, 15, 30));
  EXPECT_EQ(DateAnswer(u"new Date(Date.UTC(2024, 2, 5, 10, 15, 30, 999))"),
            Serial(kFifthOfMarch2024, 10, 15, 30));
  EXPECT_EQ(DateAnswer(u"parameters.x", Serial(kFifthOfMarch2024, 10, 15, 30, 999)),
            Serial(kFifthOfMarch2024, 10, 15, 30));
}

TEST_F(Dates, WholeSecondsComeBackAsTheyWent) {
  for (const double serialDate :
       {kFifthOfMarch2024, Serial(kFifthOfMarch2024, 10, 15, 30), Serial(kFifthOfMarch2024, 23, 59, 59),
        Serial(45351, 0, 0, 1), 1.0, 1.5, -1.0, 25568.0, -693593.0, Serial(2958465, 23, 59, 59)})
    EXPECT_EQ(DateAnswer(u"parameters.x", serialDate), serialDate);
  EXPECT_EQ(DateAnswer(u"typed.time(parameters.x)", Serial(0, 10, 15, 30)), Serial(0, 10, 15, 30));
}

TEST_F(Dates, DateTimeAtMidnightTravelsAsADate) {
  const double midnight = DateAnswer(u"typed.datetime('2024-03-05T00:00:00Z')");
  EXPECT_EQ(midnight, kFifthOfMarch2024);
  EXPECT_EQ(Seen(midnight), "VT_BSTR 2024-03-05T00:00:00.000Z date");
}

TEST_F(Dates, DateOfDayZeroTravelsAsATime) {
  const double dayZero = DateAnswer(u"typed.date('1899-12-30')");
  EXPECT_EQ(dayZero, 0.0);
  EXPECT_EQ(Seen(dayZero), "VT_BSTR 1970-01-01T00:00:00.000Z time");
  const double onDayZero = DateAnswer(u"typed.datetime('1899-12-30T10:15:30Z')");
  EXPECT_EQ(onDayZero, Serial(0, 10, 15, 30));
  EXPECT_EQ(Seen(onDayZero), "VT_BSTR 1970-01-01T10:15:30.000Z time");
}

TEST_F(Dates, OffsetUnderADayInAnAnswerIsIgnored) {
  EXPECT_EQ(OddDate("datetime-with-offset"), Serial(kFifthOfMarch2024, 10, 15, 30));
}

TEST_F(Dates, OffsetOfADayInAnAnswerSubtractsThatDay) {
  EXPECT_EQ(OddDate("datetime-with-day-offset"), Serial(45355, 10, 15, 30));
}

TEST_F(Dates, TimeInAnAnswerDeclaredAsDateIsKept) {
  EXPECT_EQ(OddDate("date-with-time"), Serial(kFifthOfMarch2024, 10, 15, 30));
}

TEST_F(Dates, TimeWithoutSecondsInAnAnswerIsRead) {
  EXPECT_EQ(OddDate("short-time"), Serial(0, 10, 15, 0));
}

TEST_F(Dates, AnswerThatCannotBeReadHasTheWordsOfTheConversion) {
  EXPECT_EQ(OddOutcome("bad-date"), kNoDateToRead);
  EXPECT_EQ(OddOutcome("short-date"), kNoFullDate);
  EXPECT_EQ(OddOutcome("empty-date"), kNoFullDate);
  EXPECT_EQ(OddOutcome("bad-time"), kNoTimeToRead);
  EXPECT_EQ(OddOutcome("bad-datetime"), "0x80020009 Expecting a full date value");
}

TEST_F(Dates, ParameterOutsideTheCalendarIsRefusedBeforeAnythingIsSent) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double serialDate : {-693594.0, 2958466.0, -693594.5, 2958466.5, 1e9, -1e9, 1e300, -1e300,
                                  kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()})
    ExpectRefused(Variant::FromDate(serialDate), kNoDateToWrite);
}

// Rounded to the second it is in the year 10000.
TEST_F(Dates, LastHalfSecondOfTheCalendarIsRefused) {
  EXPECT_EQ(Seen(Serial(2958465, 23, 59, 59, 400)), "VT_BSTR 9999-12-31T23:59:59.400Z datetime");
  ExpectRefused(Variant::FromDate(Serial(2958465, 23, 59, 59, 600)), kNoDateToWrite);
}

}  // namespace
}  // namespace qv
