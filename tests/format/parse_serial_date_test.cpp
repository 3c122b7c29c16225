// Texts as the serial dates of hosts.
#include "format/date_time_texts.h"
#include "support/comma_locale.h"

namespace qv {
namespace {

void ExpectSerial(double value, TextList texts) {
  ExpectRead(ParseSerialDate, value, texts);
}
void ExpectRefused(const char* thrown, TextList texts) {
  ExpectThrown(ParseSerialDate, thrown, texts);
}

TEST(ParseSerialDate, IsTheDayAndTheLocalTime) {
  ExpectSerial(45356.0, {u"2024-03-05", u"2024-03-05T+24:00", u" 2024-03-05 ", u"2024-03-05junk",
                         u"67560-03-05", u"4294969320-65539-65541"});
  ExpectSerial(45351.0, {u"2024-02-29"});
  ExpectSerial(36585.0, {u"2000-02-29"});
  ExpectSerial(0.0, {u"1899-12-30", u"00:00"});
  ExpectSerial(-1.0, {u"1899-12-29", u"1899-12-29T00:00"});
  ExpectSerial(1.0, {u"1899-12-31", u"1899-12-31T00:00:00Z"});
  ExpectSerial(-693593.0, {u"0001-01-01", u"65537-01-01"});
  ExpectSerial(2958465.0, {u"9999-12-31"});
  ExpectSerial(45356.0 + kMorning, {u"2024-03-05T10:15:30", u"2024-03-05T10:15:30.7Z",
                                    u"2024-03-05T10:15:30+02:00", u"2024-03-05T10:15:30-23:59"});
  ExpectSerial(45356.0 + kMorning - 1.0, {u"2024-03-05T10:15:30+24:00"});
  ExpectSerial(45356.0 + kMorning + 1.0, {u"2024-03-05T10:15:30-24:00"});
  ExpectSerial(45356.5, {u"2024-03-05T12:00"});
  ExpectSerial(-0.5, {u"1899-12-29T12:00"});
  ExpectSerial(0.5, {u"T12:00"});
  ExpectSerial(kMorning, {u"10:15:30", u"10:15:30+02:00", u"10:15:30Z"});
  ExpectSerial(kMorning - 1.0, {u"10:15:30+24:00"});
  ExpectSerial(kMorning + 1.0, {u"10:15:30-24:00:00"});
  ExpectSerial(-1064.0, {u"40000:00"});
}

TEST(ParseSerialDate, RefusesTextsThatAreNeitherAFullDateNorATime) {
  ExpectRefused(kWrongAccuracy,
                {u"", u" ", u"T", u"20", u"10", u"2024", u"2024-03", u"--05--", u"-2024-03-05", u"-12", u"TZ",
                 u"+02:00", u"-1:00", u"2024-03T", u"2024-03T+24:00", u"today", u"20240305"});
  ExpectRefused(kWrongAccuracy, {u"2024\uFF0D03\uFF0D05", u"\0"sv, u"\xD800"sv});
}

TEST(ParseSerialDate, RefusesDaysAndTimesOutsideTheCalendar) {
  ExpectRefused(kInvalidDate, {u"2023-02-29", u"1900-02-29", u"2024-02-30", u"2024-13-01", u"2024-00-01",
                               u"2024-01-00", u"2024-01-32", u"2024-03--05", u"0000-01-01", u"10000-01-01",
                               u"75536-01-01", u"40000-01-01", u"x-y-z", u"2024-03-", u"2023-02-29T10:15"});
  ExpectRefused(kInvalidTime, {u"2023-02-29T25:00", u"2024-03-05T24:00:00"});
  ExpectRefused(kInvalidFormat, {u"2023-02-29T10", u"10:15+5"});
  ExpectRefused(kNoFullDate, {u"2024T10:15:00"});
  ExpectRefused(kNaN, {u"10:15:NaN"});
}

TEST(ParseSerialDate, KnowsNoLocale) {
  const CommaLocale comma;
  ExpectSerial(45356.0 + kMorning, {u"2024-03-05T10:15:3.0e1", u"2024-03-05T10:15:30,9"});
}

}  // namespace
}  // namespace qv
