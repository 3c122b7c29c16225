// Which values cannot be sent.
#include <cmath>
#include <limits>

#include "face/values/wire_value.h"
#include "qvscriptwells/create_objects.h"
#include "tests/face/refusal.h"

namespace scriptwells {
namespace {

using testing::RefusalOf;

std::string Refusal(const Value& value) {
  return RefusalOf([&] { ToWire(value); });
}

TEST(ToWire, RefusesWhatHasNoForm) {
  EXPECT_EQ(Refusal(Value()), "an empty value cannot be sent");
  EXPECT_EQ(Refusal(Link{"http://a/", ""}), "a URL cannot be sent as a parameter; send its text as a string");
  EXPECT_EQ(Refusal(Table()),
            "a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a string");
  EXPECT_EQ(Refusal("a\xFF"), "the text is not valid UTF-8");
  EXPECT_EQ(Refusal("\xED\xA0\x80"), "the text is not valid UTF-8");
  for (const char* text : {"caf\xC3\xA9", "\xEF\xBF\xBD", ""}) EXPECT_EQ(Refusal(text), "accepted");
}

TEST(ToWire, RefusesNumbersThatAreNotFinite) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Refusal(infinity), "'INF' is not a finite number");
  EXPECT_EQ(Refusal(-infinity), "'-INF' is not a finite number");
  EXPECT_EQ(Refusal(std::nan("")), "'NaN' is not a finite number");
  EXPECT_EQ(Refusal(static_cast<float>(infinity)), "'INF' is not a finite number");
}

TEST(ToWire, RefusesPointsThatDoNotExist) {
  const std::string noDay = " names no day of the calendar of the years 1 to 9999";
  const std::string noTime = " names no time of day (00:00 to 23:59:59.999)";
  EXPECT_EQ(Refusal(Date{2023, 2, 29}), "'2023-02-29'" + noDay);
  EXPECT_EQ(Refusal(Date{0, 12, 31}), "'0000-12-31'" + noDay);
  // Numbers that 16 bits would change to those of a day.
  EXPECT_EQ(Refusal(Date{65536 + 2024, 1, 1}), "'67560-01-01'" + noDay);
  EXPECT_EQ(Refusal(Date{2024, 65537, 1}), "'2024-65537-01'" + noDay);
  EXPECT_EQ(Refusal(Time{24, 0, 0, 0}), "'24:00:00'" + noTime);
  EXPECT_EQ(Refusal(Time{0, -1, 0, 0}), "'00:-1:00'" + noTime);
  EXPECT_EQ(Refusal(DateTime{{10000, 1, 1}, {}}), "'10000-01-01T00:00:00'" + noDay);
  EXPECT_EQ(Refusal(DateTime{{2024, 1, 1}, {0, 0, 0, 1000}}), "'2024-01-01T00:00:00.1000'" + noTime);
}

TEST(ToWire, RefusesPointsThatWouldArriveAsOthers) {
  const std::string reason =
      " would arrive as another one: no time of day travels on 1899-12-29, nor in the last half second of a "
      "day; "
      "send a string";
  for (const char* text : {"1899-12-29T06:00:00", "1899-12-29T00:00:01", "1899-12-28T23:59:59.501",
                           "2024-03-05T23:59:59.501", "2024-03-05T23:59:59.999", "9999-12-31T23:59:59.900"})
    EXPECT_EQ(Refusal(DateTime::Parse(text)), std::string("'") + text + "'" + reason);
  for (const char* text : {"1899-12-29T00:00:00", "2024-03-05T23:59:59.499", "1899-12-28T18:00:00"})
    EXPECT_EQ(Refusal(DateTime::Parse(text)), "accepted") << text;
}

TEST(ToWire, RefusesDurationsWithoutForm) {
  const std::string units = "; write it in other units";
  EXPECT_EQ(Refusal(Duration::Parse("PT1000000S")), "a duration would travel as 'PT1e+06S'" + units);
  EXPECT_EQ(Refusal(Duration::Parse("P1DT999999.7S")), "a duration would travel as 'P1DT1e+06S'" + units);
  EXPECT_EQ(Refusal(Duration::Parse("PT0.00001S")), "a duration would travel as 'PT1e-05S'" + units);
  EXPECT_EQ(Refusal(Duration{false, 0, 0, 0, 0, 0, std::nan("")}),
            "a duration would travel as 'PTnanS'" + units);
  const std::string count = " has a count that is negative or more than 32767";
  EXPECT_EQ(Refusal(Duration{false, 32768, 0, 0, 0, 0, 0}), "the duration P32768Y" + count);
  EXPECT_EQ(Refusal(Duration{false, 0, 0, 65537, 0, 0, 0}), "the duration P65537D" + count);
  EXPECT_EQ(Refusal(Duration{false, 0, 0, 0, -1, 0, 0}), "the duration PT-1H" + count);
  EXPECT_EQ(Refusal(Duration{false, 0, 0, 0, 0, 0, -0.5}), "the duration PT-0.5S" + count);
}

// All parts, and the seconds with all their digits.
TEST(ToWire, DurationsAreObjects) {
  const qv::Variant sent = ToWire(Duration::Parse("-P1Y2M3DT4H5M12345.678S"));
  const qv::IDurationPtr object = qv::As<qv::IDuration>(sent.Object());
  ASSERT_NE(object, nullptr);
  double seconds = 0;
  ASSERT_EQ(object->get_Sec(&seconds), qv::S_OK);
  EXPECT_EQ(seconds, 12345.678);
  qv::WideString text;
  ASSERT_EQ(qv::As<qv::IDurationRaw>(object)->GetText(&text), qv::S_OK);
  EXPECT_EQ(qv::ToUtf8(text), "-P1Y2M3DT4H5M12345.7S");
}

TEST(ToWire, SerialNumbersAreThoseOfTheInterfaces) {
  EXPECT_EQ(ToWire(Date{2024, 3, 5}).Data().date, 45356.0);
  EXPECT_EQ(ToWire(Time{12, 0, 0, 0}).Data().date, 0.5);
  EXPECT_EQ(ToWire(DateTime{{2024, 3, 5}, {10, 15, 30, 7}}).Data().date, 45356 + 36930007 / 86400000.0);
  EXPECT_EQ(ToWire(DateTime{{1850, 1, 1}, {10, 15, 30, 0}}).Data().date, -18260 + 36930000 / 86400000.0);
}

}  // namespace
}  // namespace scriptwells
