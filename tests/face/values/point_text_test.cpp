// Dates and times as text.
#include <sstream>

#include "scriptwells/types.h"
#include "tests/face/refusal.h"
#include "tests/tools/words.h"

namespace scriptwells {
namespace {

using qv::cli::testing::Each;
using testing::RefusalOf;

constexpr char kNoDay[] = "names no day of the calendar of the years 1 to 9999";
constexpr char kNoTime[] = "names no time of day (00:00 to 23:59:59.999)";
constexpr char kOffset[] = "has an offset, but values travel without zone; write the time alone";

std::string Quoted(const std::string& text) {
  return "'" + text + "' ";
}

// Each of the texts is rejected with this reason.
template <class T>
void ExpectRefusals(const std::string& texts, const std::string& reason) {
  for (const std::string& text : Each(texts))
    EXPECT_EQ(RefusalOf([&text] { T::Parse(text); }), Quoted(text) + reason);
}

// Each of the texts is read, and printed as it was.
template <class T>
void ExpectPrinted(const std::string& texts) {
  for (const std::string& text : Each(texts)) EXPECT_EQ(T::Parse(text).ToString(), text);
}

TEST(DateText, TakesDaysOfTheCalendar) {
  ExpectPrinted<Date>(
      "1899-12-30|1899-12-29|1900-02-28|1970-01-01|2000-02-29|2024-02-29|2024-12-31|9999-12-31|0001-01-01|"
      "1600-02-29");
  EXPECT_EQ(Date::Parse("2024-03-05"), (Date{2024, 3, 5}));
}

TEST(DateText, RejectsOthers) {
  ExpectRefusals<Date>(
      "|2024|2024-03|2024-3-5|24-03-05|2024-03-5|2024/03/05|20240305|05.03.2024|2024-03-05 | 2024-03-05|"
      "2024-03-05Z|2024-03-05T10:15|+2024-03-05|-2024-03-05|02024-03-05|2024-03-05x|2024-0x-05|"
      "2024--3-05|2024-03-\xD9\xA1|today|2024-W10-2|2024-065|--03-05|2024-03-05-|2024-03-+5|NaN",
      "is not a date (YYYY-MM-DD)");
  ExpectRefusals<Date>(
      "2023-02-29|1900-02-29|2100-02-29|2024-02-30|2024-04-31|2024-00-01|2024-13-01|2024-01-00|2024-01-32|"
      "0000-01-01|2024-99-99",
      kNoDay);
}

TEST(TimeText, TakesTimesOfTheDay) {
  ExpectPrinted<Time>("00:00:00|10:15:30|23:59:59|23:59:59.999|00:00:00.001|10:15:30.070");
  const std::pair<const char*, Time> rows[] = {
      {"06:00", {6, 0, 0, 0}},           {"18:00Z", {18, 0, 0, 0}},
      {"10:15:30Z", {10, 15, 30, 0}},    {"10:15:30.5", {10, 15, 30, 500}},
      {"10:15:30.05", {10, 15, 30, 50}}, {"10:15:30.7Z", {10, 15, 30, 700}},
      {"10:15:30.000", {10, 15, 30, 0}}};
  for (const auto& [text, time] : rows) EXPECT_EQ(Time::Parse(text), time) << text;
}

TEST(TimeText, RejectsOthers) {
  ExpectRefusals<Time>(
      "|10|10:|10:5|1:15|10:15:|10:15:3|10:15:30.|10:15:30.1234|10:15.5|10:15:30,5|10:15:30z|"
      "10:15:30ZZ|Z|10:15 | 10:15|-10:15|10:15:30 Z|10.15|1015|10:15:NaN|10:15:1e1|T10:15|10:15:30.Z|"
      "ten|10:15:30:00|10:-5:00",
      "is not a time (hh:mm or hh:mm:ss, with up to 3 digits after a '.')");
  ExpectRefusals<Time>("24:00|24:00:00|10:60|10:15:60|99:99|23:59:60Z", kNoTime);
  ExpectRefusals<Time>("10:15+02:00|10:15-05:00|10:15:30+00:00|10:15:30.5-01:30|10:15+2", kOffset);
}

TEST(DateTimeText, TakesBoth) {
  ExpectPrinted<DateTime>(
      "2024-03-05T00:00:00|2024-03-05T10:15:30|2024-03-05T10:15:30.007|1899-12-29T06:00:00|"
      "2024-03-05T23:59:59.999|0001-01-01T00:00:01|9999-12-31T23:59:59.999");
  EXPECT_EQ(DateTime::Parse("2024-03-05T12:00Z"), (DateTime{{2024, 3, 5}, {12, 0, 0, 0}}));
}

TEST(DateTimeText, RejectsOthers) {
  ExpectRefusals<DateTime>(
      "|2024-03-05|10:15:30|2024-03-05T|2024-03-05 10:15:30|2024-03-05t10:15:30|2024-03-05T10|"
      "2024-03-05T10:1|2024-03-05T10:15:3|2024-03-05T10:15:30.|2024-03-05T10:15:30.1234|"
      "2024-03-05TT10:15:30|2024-3-5T10:15:30|20240305T101530|T10:15:30|2024-03T10:15:30|"
      "2024T10:15:30|2024-03-05T10:15:30z|2024-03-05T10:15:30ZZ|2024-03-05T10:15:30 |"
      " 2024-03-05T10:15:30|2024-03-05T 10:15:30|2024-03-05T10:15:30T10:15:30|2024-03-05Z10:15:30|"
      "2024-03-05T-1:15:30|now",
      "is not a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)");
  ExpectRefusals<DateTime>("2023-02-29T10:15:30|0000-01-01T10:15:30", kNoDay);
  ExpectRefusals<DateTime>("2024-03-05T24:00:00", kNoTime);
  ExpectRefusals<DateTime>("2024-03-05T10:15:30+02:00", kOffset);
}

// Fields that name no day have a text, too: messages show it.
TEST(PointText, OfAnyFields) {
  EXPECT_EQ((Date{0, 12, 31}.ToString()), "0000-12-31");
  EXPECT_EQ((Date{10000, 1, 1}.ToString()), "10000-01-01");
  EXPECT_EQ((Date{INT32_MIN, INT32_MIN, INT32_MIN}.ToString()), "-2147483648--2147483648--2147483648");
  EXPECT_EQ((Time{INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN}.ToString()),
            "-2147483648:-2147483648:-2147483648.-2147483648");
}

TEST(Points, AreComparedAndPrinted) {
  std::ostringstream out;
  out << Date{2024, 3, 5} << " " << Time{1, 2, 3, 0} << " " << DateTime{{2024, 3, 5}, {1, 2, 3, 4}};
  EXPECT_EQ(out.str(), "2024-03-05 01:02:03 2024-03-05T01:02:03.004");
  EXPECT_LT((Date{2024, 3, 5}), (Date{2024, 3, 6}));
  EXPECT_LT((DateTime{{2024, 3, 5}, {1, 0, 0, 0}}), (DateTime{{2024, 3, 5}, {1, 0, 0, 1}}));
  EXPECT_NE((Time{1, 2, 3, 0}), (Time{1, 2, 3, 1}));
  // Day 0 at midnight.
  EXPECT_EQ(DateTime(), (DateTime{{1899, 12, 30}, {0, 0, 0, 0}}));
}

}  // namespace
}  // namespace scriptwells
