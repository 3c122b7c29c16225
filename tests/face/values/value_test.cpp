// Values as text and JSON, compared and visited.
#include "scriptwells/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace scriptwells {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Row {
  Value value;
  const char* type;
  const char* text;
  const char* json;
};

TEST(Value, HasTypeTextAndJson) {
  const Row rows[] = {
      {Value(), "empty", "", "null"},
      {true, "boolean", "true", "true"},
      {false, "boolean", "false", "false"},
      {Byte(-128), "byte", "-128", "-128"},
      {Short(32767), "short", "32767", "32767"},
      {42, "int", "42", "42"},
      {Long(9007199254740991), "long", "9007199254740991", "9007199254740991"},
      {Long(9007199254740993), "long", "9007199254740993", "\"9007199254740993\""},
      {0.1F, "float", "0.1", "0.1"},
      {0.30000000000000004, "double", "0.30000000000000004", "0.30000000000000004"},
      {3.0, "double", "3", "3.0"},
      {kInfinity, "double", "INF", "\"INF\""},
      {std::nan(""), "double", "NaN", "\"NaN\""},
      {"a\"\n", "string", "a\"\n", R"("a\"\n")"},
      {"", "string", "", "\"\""},
      {"\x1b\x7f", "string", "\x1b\x7f", R"("\u001b\u007f")"},
      {Date{2024, 3, 5}, "date", "2024-03-05", "\"2024-03-05\""},
      {Time{6, 0, 0, 7}, "time", "06:00:00.007", "\"06:00:00.007\""},
      {DateTime{{2024, 3, 5}, {}}, "datetime", "2024-03-05T00:00:00", "\"2024-03-05T00:00:00\""},
      {Duration::Parse("-P1DT2H"), "duration", "-P1DT2H", "\"-P1DT2H\""},
      {Link{"http://a/\"", "b"}, "link", "http://a/\"", R"("http://a/\"")"}};
  for (const Row& row : rows) {
    EXPECT_STREQ(ToString(row.value.type()), row.type);
    EXPECT_EQ(row.value.ToString(), row.text) << row.type;
    EXPECT_EQ(row.value.ToJson(), row.json) << row.type;
    std::ostringstream out;
    out << row.value;
    EXPECT_EQ(out.str(), row.text);
  }
  EXPECT_STREQ(ToString(Value(Table()).type()), "table");
  EXPECT_EQ(Value(Table()).ToJson(), Table().ToJson());
  EXPECT_EQ(Value(Table()).ToString(), Table().ToString());
}

TEST(Value, IsEqualWithTypeAndContent) {
  EXPECT_EQ(Value(5), Value(5));
  EXPECT_EQ(Value(5), 5);
  EXPECT_EQ(Value("x"), "x");
  EXPECT_EQ(Value(), Value());
  EXPECT_NE(Value(5), Value(5.0));
  EXPECT_NE(Value(5), Long(5));
  EXPECT_NE(Value(0), Value());
  EXPECT_NE(Value("a"), Value("b"));
  EXPECT_NE(Value(std::nan("")), Value(std::nan("")));
  EXPECT_EQ(Value(Table()), Value(Table()));
}

TEST(Value, TellsItsExactType) {
  EXPECT_TRUE(Value(5).Is<int>());
  EXPECT_FALSE(Value(5).Is<std::int64_t>());
  EXPECT_TRUE(Value("x").Is<std::string>());
  EXPECT_TRUE(Value().Is<std::monostate>());
  EXPECT_TRUE(Value().IsEmpty());
  EXPECT_FALSE(Value(0).IsEmpty());
}

TEST(Value, IsVisited) {
  const auto size = [](const auto& content) { return sizeof content; };
  EXPECT_EQ(Value(Byte(1)).Visit(size), 1U);
  EXPECT_EQ(Value(5).Visit(size), 4U);
  EXPECT_EQ(Value(true).Visit(
                [](const auto& content) { return std::is_same_v<std::decay_t<decltype(content)>, bool>; }),
            true);
}

}  // namespace
}  // namespace scriptwells
