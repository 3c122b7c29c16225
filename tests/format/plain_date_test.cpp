// The usual texts of days and points in time, which have a short way: the same results in every bit, and the
// same refusals, as the general way.
#include "format/plain_date.h"

#include <cstring>
#include <optional>

#include "format/date_time_texts.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/near_plain_texts.h"

namespace qv {
namespace {

struct Outcome {
  std::uint64_t bits = 0;
  WideString refusal;

  friend bool operator==(const Outcome& a, const Outcome& b) {
    return a.bits == b.bits && a.refusal == b.refusal;
  }
};

template <class Read>
Outcome OutcomeOf(const Read& read, std::u16string_view text) {
  Outcome outcome;
  try {
    const double value = read(text);
    std::memcpy(&outcome.bits, &value, sizeof outcome.bits);
  } catch (const EQvException& error) {
    outcome.refusal = error.Description();
  }
  return outcome;
}

double ReadInTheGeneralWay(std::u16string_view text) {
  return DateTimeToSerial(ParseDateTimeText(text));
}

void ExpectSame(std::u16string_view text) {
  const Outcome general = OutcomeOf(ReadInTheGeneralWay, text);
  if (!(OutcomeOf(ParseSerialDate, text) == general)) ADD_FAILURE() << Printed(text);
}

TEST(PlainDate, HasOneShape) {
  for (const std::u16string_view text : {u"2024-03-05", u"0001-01-01", u"9999-12-31", u"1899-12-29T00:00:00"})
    EXPECT_NE(ReadPlainDate(text), std::nullopt) << Printed(text);
  for (const std::u16string_view tail :
       {u"", u"Z", u".0", u".0Z", u".7Z", u".1234567890123", u".9999999999999Z", u"+00:00", u"-00:00",
        u"+01:30", u"-23:59", u".5+02:00"})
    EXPECT_EQ(ReadPlainDate(u"2024-03-05T10:15:30" + std::u16string(tail)), 45356.0 + kMorning)
        << Printed(tail);
}

TEST(PlainDate, LeavesAllElseToTheGeneralWay) {
  for (const std::u16string_view text : {u""sv,
                                         u"2024"sv,
                                         u"2024-3-5"sv,
                                         u"02024-03-05"sv,
                                         u"2024-03-05 "sv,
                                         u" 2024-03-05"sv,
                                         u"-024-03-05"sv,
                                         u"2024-03-0x"sv,
                                         u"2024-03-05T"sv,
                                         u"2024-03-05Z"sv,
                                         u"2024-03-05T10:15"sv,
                                         u"2024-03-05t10:15:30"sv,
                                         u"2024-03-05T24:00:00"sv,
                                         u"2024-03-05T10:60:00"sv,
                                         u"2024-03-05T10:15:60"sv,
                                         u"10:15:30Z"sv,
                                         u"2024-03-05T10-15:30"sv,
                                         u"2024-03-05T10:15:30."sv,
                                         u"2024-03-05T10:15:30.Z"sv,
                                         u"2024-03-05T10:15:30.12345678901234"sv,
                                         u"2024-03-05T10:15:30z"sv,
                                         u"2024-03-05T10:15:30ZZ"sv,
                                         u"2024-03-05T10:15:30+24:00"sv,
                                         u"2024-03-05T10:15:30+02:60"sv,
                                         u"2024-03-05T10:15:30+2:00"sv,
                                         u"2024-03-05T10:15:30+02:00Z"sv,
                                         u"2024-03-05T10:15:30Z+02:00"sv,
                                         u"2024-03-05\0"sv,
                                         u"2024-03-0\u0665"sv})
    EXPECT_EQ(ReadPlainDate(text), std::nullopt) << Printed(text);
}

TEST(PlainDate, ImpossibleDayIsRefusedAfterTheTime) {
  EXPECT_EQ(Thrown([] { ReadPlainDate(u"2023-02-29T10:15:30Z"); }), kInvalidDate);
  EXPECT_EQ(Thrown([] { ParseSerialDate(u"2023-02-29T25:15:30Z"); }), kInvalidTime);
}

TEST(PlainDate, TextsByChanceAreReadAsInTheGeneralWay) {
  static constexpr std::u16string_view kShapes[] = {u"####-b#-d#",
                                                    u"####-0#-c#",
                                                    u"####-0#-c#Tc#:d#:d#",
                                                    u"####-0#-c#T1#:d#:d#Z",
                                                    u"####-0#-c#T1#:d#:d#.0Z",
                                                    u"####-b#-d#Tc#:g#:g#.###Z",
                                                    u"####-0#-c#T0#:d#:d#+c#:g#",
                                                    u"####-0#-c#T0#:d#:d#.#-0#:00",
                                                    u"####-0#-c#T0#:d#:59.9999999999999Z",
                                                    u"####-0#-c#T0#:d#:59.99999999999999",
                                                    u"####-0#-c#T0#:d#:59.9999999999999999",
                                                    u"c#:g#:d#.0Z",
                                                    u"c#:g#:d#+c#:00"};
  NearPlainTexts texts(20240305);
  for (long left = RandomTexts(1'000'000); left > 0; --left)
    ExpectSame(texts.Next(kShapes[texts.Below(std::size(kShapes))]));
}

// Each day of four centuries, and each second of a day.
TEST(PlainDate, EveryDayAndEverySecondAreReadAsInTheGeneralWay) {
  DateTimeValue point;
  point.Accuracy = DateTimeValue::kDate;
  for (point.Year = 1800; point.Year < 2200; ++point.Year)
    for (point.Month = 1; point.Month <= 12; ++point.Month)
      for (point.Day = 1; point.Day <= 32; ++point.Day) ExpectSame(WriteDateTimeValue(point).view());
  point = {DateTimeValue::kDateTime, 2024, 3, 5, 0, 0};
  for (int second = 0; second < 86400; ++second) {
    point.Time = second / 86400.0;
    ExpectSame(WriteDateTimeValue(point).view());
  }
}

}  // namespace
}  // namespace qv
