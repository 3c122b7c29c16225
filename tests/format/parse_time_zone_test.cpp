// Offsets in texts, in minutes.
#include "format/date_time_texts.h"
#include "support/comma_locale.h"

namespace qv {
namespace {

void ExpectZone(std::int32_t minutes, TextList texts) {
  ExpectRead(ParseTimeZone, minutes, texts);
}
void ExpectRefused(const char* thrown, TextList texts) {
  ExpectThrown(ParseTimeZone, thrown, texts);
}

TEST(ParseTimeZone, IsMinutesWithTheSignOfTheFirstCharacter) {
  ExpectZone(0, {u"", u"Z", u"+00:00", u"-00:00", u"+:", u"+00:00:59"});
  ExpectZone(120, {u"+02:00", u"+02:00:00:00", u"+02:00Z", u"+02:00+03:00"});
  ExpectZone(-120, {u"-02:00", u"-02:00 "});
  ExpectZone(90, {u"+01:30", u"+1:30junk", u"+ 1:30"});
  ExpectZone(-90, {u"-01:30"});
  ExpectZone(30, {u"+:30"});
  ExpectZone(-30, {u"-00:30"});
  ExpectZone(125, {u"+2:5"});
  ExpectZone(1439, {u"+23:59"});
  ExpectZone(-1439, {u"-23:59"});
  ExpectZone(840, {u"+14:00"});
  ExpectZone(-720, {u"-12:00"});
  ExpectZone(-300, {u"-5:"});
  ExpectZone(615, {u"+10:15:30"});
  ExpectZone(-615, {u"-10:15:59.9"});
}

TEST(ParseTimeZone, AnyOtherFirstCharacterIsSkippedAndMeansPlus) {
  ExpectZone(120, {u"02:00", u"z02:00", u"\uFF0D02:00", u"\u221202:00",
                   u"\xD800"
                   u"02:00"sv,
                   u"\0"
                   u"02:00"sv});
  ExpectZone(150, {u"12:30", u":02:30"});
  ExpectZone(720, {u"Z12:00"});
  ExpectZone(90, {u"Z+1:30"});
  ExpectZone(0, {u"1:00", u"Z:"});
  ExpectZone(-89, {u"Z-1:-30"});
  ExpectZone(-119, {u" -02:00"});
}

// A negative time is decoded one millisecond nearer to zero, hence one minute less.
TEST(ParseTimeZone, ASecondSignCountsInTheTime) {
  ExpectZone(-59, {u"+-1:00", u"+-25:00"});
  ExpectZone(59, {u"--1:00"});
  ExpectZone(-29, {u"+-1:30"});
  ExpectZone(29, {u"--1:30"});
  ExpectZone(-30, {u"--0:30", u"-1:-30"});
  ExpectZone(30, {u"+1:-30"});
  ExpectZone(-120, {u"-+2:00"});
  ExpectZone(120, {u"++2:00"});
  ExpectZone(0, {u"+0:-1", u"+-24:00"});
  ExpectZone(-1, {u"+0:-2"});
}

TEST(ParseTimeZone, FieldsAreCutToSixteenBits) {
  ExpectZone(615, {u"+65546:15"});
  ExpectZone(-615, {u"-65546:65551"});
  ExpectZone(120, {u"+4294967298:00"});
  ExpectZone(90, {u"+1\0:30"sv, u"+1:30:65541"});
  ExpectZone(30, {u"+\uFF11:30"});
}

TEST(ParseTimeZone, AWholeDayIsAllowed) {
  ExpectZone(1440, {u"+24:00", u"+24:00:00", u"+24:0", u"Z24:00"});
  ExpectZone(-1440, {u"-24:00", u"-24:00:00", u"-24:0"});
  ExpectZone(240, {u"24:00"});
}

TEST(ParseTimeZone, RefusesOtherTexts) {
  ExpectRefused(kInvalidFormat, {u"+", u"-", u"+5", u"-0530", u"z", u"Z ", u" Z", u"ZZ", u"UTC", u":30", u" ",
                                 u"Z\0"sv, u"\0"sv, u"+02\uFF1A00", u"+02.00"});
  ExpectRefused(kInvalidTime, {u"+25:00", u"-25:00", u"+24:01", u"-24:01", u"+24:00:01", u"+24:60", u"+48:00",
                               u"+12:60", u"+12:30:60", u"+99:99"});
  ExpectRefused(kNaN, {u"+00:00:NaN", u"+24:00:NaN"});
  ExpectRefused(kMinusZero, {u"+00:00:-0"});
  ExpectRefused(kInf, {u"+00:00:INF"});
  ExpectRefused(kMinusInf, {u"-00:00:-INF"});
}

TEST(ParseTimeZone, KnowsNoLocale) {
  const CommaLocale comma;
  ExpectZone(-90, {u"-01:30"});
  ExpectZone(90, {u"+01:30:5.9e1"});
}

}  // namespace
}  // namespace qv
