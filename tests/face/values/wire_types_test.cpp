// Every type of the wire: natural C++ type, value, tag, and back.
#include <gtest/gtest.h>

#include "face/values/wire_value.h"

namespace scriptwells {
namespace {

template <class T>
void ExpectTravels(const T& natural, Type type, qv::VARTYPE tag) {
  const Value value(natural);
  EXPECT_EQ(value.type(), type) << value;
  EXPECT_TRUE(value.Is<T>()) << value;
  const qv::Variant sent = ToWire(value);
  EXPECT_EQ(sent.Tag(), tag) << value;
  const Value back = FromWire(sent);
  EXPECT_EQ(back, value);
  EXPECT_EQ(back.As<T>(), natural);
}

TEST(WireTypes, TravelAndComeBack) {
  for (const bool value : {true, false}) ExpectTravels(value, Type::kBoolean, qv::VT_BOOL);
  for (const int value : {INT8_MIN, -1, 0, INT8_MAX})
    ExpectTravels(static_cast<std::int8_t>(value), Type::kByte, qv::VT_I1);
  for (const int value : {INT16_MIN, -1, 0, INT16_MAX})
    ExpectTravels(static_cast<std::int16_t>(value), Type::kShort, qv::VT_I2);
  for (const std::int32_t value : {INT32_MIN, -1, 0, INT32_MAX}) ExpectTravels(value, Type::kInt, qv::VT_INT);
  for (const std::int64_t value : {INT64_MIN, std::int64_t{-1}, INT64_MAX})
    ExpectTravels(value, Type::kLong, qv::VT_I8);
  for (const float value : {0.0F, -0.1F, 3.4e38F}) ExpectTravels(value, Type::kFloat, qv::VT_R4);
  for (const double value : {0.0, -0.1, 1.7e308}) ExpectTravels(value, Type::kDouble, qv::VT_R8);
  for (const std::string& value :
       {std::string(), std::string("caf\xC3\xA9 \xF0\x9F\x98\x80"), std::string("a\0b", 3)})
    ExpectTravels(value, Type::kString, qv::VT_BSTR);
  for (const char* text : {"2024-03-05", "1899-12-29", "1899-12-31", "0001-01-01", "9999-12-31"})
    ExpectTravels(Date::Parse(text), Type::kDate, qv::VT_DATE);
  for (const char* text : {"00:00", "10:15:30", "10:15:30.007", "23:59:59.999", "00:00:00.001"})
    ExpectTravels(Time::Parse(text), Type::kTime, qv::VT_DATE);
  for (const char* text :
       {"2024-03-05T10:15:30", "2024-03-05T00:00:00.001", "1850-01-01T10:15:30.007", "1899-12-28T18:00",
        "1899-12-31T00:00:01", "0001-01-01T00:00:01", "9999-12-31T23:59:59.499", "2024-03-05T23:59:59.499"})
    ExpectTravels(DateTime::Parse(text), Type::kDateTime, qv::VT_DATE);
  for (const char* text : {"P0", "-P0", "P1DT2H", "-P1Y2M3DT4H5M6.5S", "PT12345.678S",
                           "P32767Y32767M32767DT32767H32767M1S", "PT0.0001S"})
    ExpectTravels(Duration::Parse(text), Type::kDuration, qv::VT_UNKNOWN);
}

// Those that LossesOnTheWire names.
TEST(WireTypes, OfPointsFollowTheValue) {
  EXPECT_EQ(FromWire(ToWire(DateTime{{2024, 3, 5}, {}})), Value(Date{2024, 3, 5}));
  EXPECT_EQ(FromWire(ToWire(Date{1899, 12, 30})), Value(Time()));
  EXPECT_EQ(FromWire(ToWire(DateTime{{1899, 12, 30}, {10, 15, 0, 0}})), Value(Time{10, 15, 0, 0}));
}

// Every millisecond of some days, and every day: no rounding changes one.
TEST(WireTypes, PointsComeBackToTheMillisecond) {
  for (const Date& date : {Date{2024, 3, 5}, Date{1899, 12, 28}, Date{1, 1, 1}, Date{9999, 12, 31}})
    for (int count = 1; count < 86'399'500; count += 9973) {
      const DateTime point{date, {count / 3'600'000, count / 60'000 % 60, count / 1000 % 60, count % 1000}};
      const qv::Variant sent = ToWire(point);
      ASSERT_EQ(FromWire(sent), Value(point)) << point;
      ASSERT_EQ(SerialOf(point), sent.Data().date) << point;
    }
}

}  // namespace
}  // namespace scriptwells
