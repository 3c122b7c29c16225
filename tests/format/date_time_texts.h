// What the tests of dates and times share: points in time, the failures, and checks of many texts at once.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>

#include "fixtures/thrown.h"
#include "format/text_conversions.h"
#include "support/print_wide_string.h"

namespace qv {

using namespace std::literals::string_view_literals;

constexpr double kMorning = 36930000.0 / 86400000.0;  // 10:15:30
constexpr double kQuarter = 36900000.0 / 86400000.0;  // 10:15

constexpr char kNoFullDate[] = "EQvException 0x00000000 Expecting a full date value";
constexpr char kWrongAccuracy[] = "EQvException 0x00000000 Unable to convert a value with the given accuracy";
constexpr char kInvalidFormat[] = "EQvException 0x00000000 Invalid time format";
constexpr char kInvalidTime[] = "EQvException 0x00000000 Invalid argument to time encode";
constexpr char kInvalidDate[] = "EQvException 0x00000000 Invalid argument to date encode";
constexpr char kNaN[] = "EQvException 0x00000000 Unable to convert NaN float value";
constexpr char kMinusZero[] = "EQvException 0x00000000 Unable to convert -0 float value";
constexpr char kInf[] = "EQvException 0x00000000 Unable to convert INF float value";
constexpr char kMinusInf[] = "EQvException 0x00000000 Unable to convert -INF float value";

using TextList = std::initializer_list<std::u16string_view>;

// The start of a text, for messages.
inline std::string Printed(std::u16string_view text) {
  return testing::PrintToString(WideString(text.substr(0, 60)));
}

template <typename Value>
using Reader = Value (*)(std::u16string_view text);

template <typename Value>
void ExpectRead(Reader<Value> read, const Value& value, TextList texts) {
  for (const std::u16string_view text : texts) EXPECT_EQ(read(text), value) << Printed(text);
}

template <typename Value>
void ExpectThrown(Reader<Value> read, const char* thrown, TextList texts) {
  for (const std::u16string_view text : texts)
    EXPECT_EQ(Thrown([&] { read(text); }), thrown) << Printed(text);
}

}  // namespace qv
