// Value::As: what converts without loss, and how the rest is refused.
#include <cmath>
#include <limits>

#include "fixtures/scarce_memory.h"
#include "scriptwells/value.h"
#include "tests/face/refusal.h"

namespace scriptwells {
namespace {

using testing::RefusalOf;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::int64_t kTwoTo53 = std::int64_t{1} << 53;
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

template <class T>
bool Fits(const Value& value) {
  return RefusalOf([&] { value.As<T>(); }) == "accepted";
}

// A whole number of every type fits exactly where its range ends.
template <class T>
void ExpectRange() {
  using Limits = std::numeric_limits<T>;
  const std::int64_t least{Limits::min()};
  EXPECT_EQ(Value(least).As<T>(), Limits::min());
  EXPECT_EQ(Value(Limits::max()).template As<T>(), Limits::max());
  if constexpr (sizeof(T) < 8) {
    const auto greatest = static_cast<std::int64_t>(Limits::max());
    EXPECT_EQ(Value(static_cast<double>(greatest)).As<T>(), Limits::max());
    EXPECT_EQ(Value(static_cast<double>(least)).As<T>(), Limits::min());
    for (const std::int64_t outside : {least - 1, greatest + 1, kLeast, kMost}) {
      EXPECT_FALSE(Fits<T>(outside)) << outside;
      EXPECT_FALSE(Fits<T>(static_cast<double>(outside))) << outside;
    }
  }
  EXPECT_FALSE(Fits<T>(0.5));
  EXPECT_FALSE(Fits<T>(std::nan("")));
  EXPECT_FALSE(Fits<T>(kInfinity));
  EXPECT_FALSE(Fits<T>(1e30));
  EXPECT_FALSE(Fits<T>(true));
  EXPECT_FALSE(Fits<T>("1"));
  EXPECT_FALSE(Fits<T>(Value()));
  EXPECT_EQ(Value(7.0F).As<T>(), T{7});
  EXPECT_EQ(Value(-0.0).As<T>(), T{0});
  EXPECT_EQ(Byte(7).As<T>() + Short(7).As<T>() + Int(7).As<T>() + Long(7).As<T>(), 28);
}

TEST(ValueAs, WholeNumbersHaveTheRangeOfTheirType) {
  ExpectRange<signed char>();
  ExpectRange<short>();
  ExpectRange<int>();
  ExpectRange<unsigned char>();
  ExpectRange<unsigned short>();
  ExpectRange<unsigned>();
  ExpectRange<std::int8_t>();
  ExpectRange<std::uint32_t>();
}

TEST(ValueAs, SixtyFourBits) {
  EXPECT_EQ(Value(kMost).As<long>(), kMost);
  EXPECT_EQ(Value(kLeast).As<long long>(), kLeast);
  EXPECT_EQ(Value(kMost).As<std::uint64_t>(), static_cast<std::uint64_t>(kMost));
  EXPECT_FALSE(Fits<std::uint64_t>(-1));
  EXPECT_FALSE(Fits<unsigned long long>(-1.0));
  // Doubles at both ends.
  EXPECT_EQ(Value(-9223372036854775808.0).As<std::int64_t>(), kLeast);
  EXPECT_FALSE(Fits<std::int64_t>(9223372036854775808.0));
  EXPECT_FALSE(Fits<std::int64_t>(-9223372036854777856.0));
  EXPECT_EQ(Value(9223372036854775808.0).As<std::uint64_t>(), std::uint64_t{1} << 63);
  EXPECT_EQ(Value(18446744073709549568.0).As<std::uint64_t>(), 18446744073709549568U);
  EXPECT_FALSE(Fits<std::uint64_t>(18446744073709551616.0));
  EXPECT_FALSE(Fits<std::uint64_t>(kInfinity));
  EXPECT_FALSE(Fits<std::uint64_t>(std::nan("")));
}

TEST(ValueAs, DoublesTakeWhatTheyRepresent) {
  for (const std::int64_t exact : {kTwoTo53, -kTwoTo53, kTwoTo53 + 2, kLeast, std::int64_t{0}})
    EXPECT_EQ(static_cast<std::int64_t>(Value(exact).As<double>()), exact);
  for (const std::int64_t odd : {kTwoTo53 + 1, -kTwoTo53 - 1, kMost, kLeast + 1})
    EXPECT_FALSE(Fits<double>(odd)) << odd;
  EXPECT_EQ(Value(0.1F).As<double>(), static_cast<double>(0.1F));
  EXPECT_TRUE(std::isnan(Value(std::nan("")).As<double>()));
  EXPECT_EQ(Int(5).As<double>(), 5.0);
  EXPECT_EQ(Byte(-5).As<double>(), -5.0);
  EXPECT_FALSE(Fits<double>("1.5"));
  EXPECT_FALSE(Fits<double>(true));
}

TEST(ValueAs, FloatsTakeWhatTheyRepresent) {
  EXPECT_EQ(Value(0.5).As<float>(), 0.5F);
  EXPECT_EQ(Value(0.1F).As<float>(), 0.1F);
  EXPECT_EQ(Value(16777216).As<float>(), 16777216.0F);
  EXPECT_EQ(Value(kLeast).As<float>(), -9223372036854775808.0F);
  EXPECT_EQ(Value(kInfinity).As<float>(), std::numeric_limits<float>::infinity());
  EXPECT_TRUE(std::isnan(Value(std::nan("")).As<float>()));
  EXPECT_FALSE(Fits<float>(0.1));
  EXPECT_FALSE(Fits<float>(16777217));
  EXPECT_FALSE(Fits<float>(1e39));
  EXPECT_FALSE(Fits<float>(kMost));
}

TEST(ValueAs, OtherTypesAreThemselves) {
  EXPECT_TRUE(Value(true).As<bool>());
  EXPECT_FALSE(Value(false).As<bool>());
  EXPECT_EQ(Value("a\0b").As<std::string>(), "a");
  EXPECT_EQ(Value(std::string("a\0b", 3)).As<std::string>(), std::string("a\0b", 3));
  EXPECT_EQ(Value(Time{1, 2, 3, 4}).As<Time>(), (Time{1, 2, 3, 4}));
  EXPECT_EQ(Value(Duration::Parse("P1D")).As<Duration>().days, 1);
  EXPECT_EQ(Value(Link{"http://a/", "b"}).As<Link>(), (Link{"http://a/", "b"}));
  EXPECT_EQ(Value(42).As<Value>(), Value(42));
  EXPECT_TRUE(Value(Table()).AsTable().empty());
}

// A text that is too long to be kept without a block of memory.
TEST(ValueAs, MovesTheTextOfATemporary) {
  const std::string text(100, 'x');
  Value value(text);
  EXPECT_EQ(value.As<std::string>(), text);
  EXPECT_EQ(value.As<std::string>(), text);
  const std::size_t before = qv::HeapBlocks();
  EXPECT_EQ(std::move(value).As<std::string>(), text);
  EXPECT_EQ(qv::HeapBlocks(), before);
}

TEST(ValueAs, DatesAndMidnightsAreEachOther) {
  const Date day{2024, 3, 5};
  EXPECT_EQ(Value(day).As<DateTime>(), (DateTime{day, {}}));
  EXPECT_EQ(Value(DateTime{day, {}}).As<Date>(), day);
  EXPECT_EQ(Value(day).As<Date>(), day);
  EXPECT_EQ(RefusalOf([&] {
              Value(DateTime{day, {0, 0, 0, 1}}).As<Date>();
            }),
            "the datetime 2024-03-05T00:00:00.001 is not a date");
  EXPECT_EQ(RefusalOf([&] { Value(day).As<Time>(); }), "the date 2024-03-05 is not a time");
  EXPECT_EQ(RefusalOf([&] {
              Value(Time{10, 15, 0, 0}).As<DateTime>();
            }),
            "the time 10:15:00 is not a datetime");
}

TEST(ValueAs, OptionalIsEmptyForAnEmptyValue) {
  EXPECT_EQ(Value().As<std::optional<int>>(), std::nullopt);
  EXPECT_EQ(Value(5).As<std::optional<int>>(), 5);
  EXPECT_EQ(Value("x").As<std::optional<std::string>>(), "x");
  EXPECT_FALSE(Fits<std::optional<int>>("x"));
  EXPECT_EQ(Value().ValueOr(7), 7);
  EXPECT_EQ(Value(5).ValueOr(7), 5);
  EXPECT_EQ(Value().ValueOr(std::string("none")), "none");
  EXPECT_FALSE(RefusalOf([] { Value("x").ValueOr(7); }) == "accepted");
}

TEST(ValueAs, RefusalsNameBothTypesAndTheValue) {
  EXPECT_EQ(RefusalOf([] { Value(300).As<std::int8_t>(); }), "the int 300 does not fit an 8-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(40000).As<short>(); }), "the int 40000 does not fit a 16-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(1.5).As<int>(); }), "the double 1.5 does not fit a 32-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(1e19).As<long>(); }), "the double 1e+19 does not fit a 64-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(-1).As<std::uint8_t>(); }),
            "the int -1 does not fit an unsigned 8-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(-1).As<std::uint16_t>(); }),
            "the int -1 does not fit an unsigned 16-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(-1).As<unsigned>(); }),
            "the int -1 does not fit an unsigned 32-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(-1).As<unsigned long>(); }),
            "the int -1 does not fit an unsigned 64-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(kMost).As<double>(); }),
            "the long 9223372036854775807 does not fit a double");
  EXPECT_EQ(RefusalOf([] { Value(0.1).As<float>(); }), "the double 0.1 does not fit a float");
  EXPECT_EQ(RefusalOf([] { Value("abc").As<int>(); }), "the string 'abc' is not a 32-bit integer");
  EXPECT_EQ(RefusalOf([] { Value("abc").As<std::uint8_t>(); }),
            "the string 'abc' is not an unsigned 8-bit integer");
  EXPECT_EQ(RefusalOf([] { Value("1").As<bool>(); }), "the string '1' is not a boolean");
  EXPECT_EQ(RefusalOf([] { Value(1).As<bool>(); }), "the int 1 is not a boolean");
  EXPECT_EQ(RefusalOf([] { Value(true).As<double>(); }), "the boolean true is not a double");
  EXPECT_EQ(RefusalOf([] { Value(5).As<std::string>(); }), "the int 5 is not a string");
  EXPECT_EQ(RefusalOf([] { Value(0.1F).As<Duration>(); }), "the float 0.1 is not a duration");
  EXPECT_EQ(RefusalOf([] { Value(5).As<Link>(); }), "the int 5 is not a link");
  EXPECT_EQ(RefusalOf([] {
              Value(Link{"http://a/", ""}).As<std::string>();
            }),
            "the link 'http://a/' is not a string");
  EXPECT_EQ(RefusalOf([] { Value(Duration::Parse("P1D")).AsTable(); }), "the duration P1D is not a table");
  EXPECT_EQ(RefusalOf([] { Value().As<int>(); }), "an empty value is not a 32-bit integer");
  EXPECT_EQ(RefusalOf([] { Value(Table()).As<float>(); }), "a table is not a float");
  EXPECT_EQ(RefusalOf([] { Value(std::string(50, 'x') + "\n").As<Date>(); }),
            "the string '" + std::string(40, 'x') + "'... is not a date");
  EXPECT_EQ(RefusalOf([] { Value("a\n\x1b[1m").As<Date>(); }), R"(the string 'a\n\x1b[1m' is not a date)");
}

TEST(SerialOf, IsTheNumberBelow) {
  EXPECT_EQ(SerialOf(Date{2024, 3, 5}), 45356.0);
  EXPECT_EQ(SerialOf(Date{1899, 12, 30}), 0.0);
  EXPECT_EQ(SerialOf(Time{6, 0, 0, 0}), 0.25);
  EXPECT_EQ(SerialOf(DateTime{{1899, 12, 28}, {18, 0, 0, 0}}), -1.25);
  EXPECT_EQ(SerialOf(DateTime{{10000, 1, 1}, {12, 0, 0, 0}}), 2958466.5);
  EXPECT_EQ(SerialOf(Date{0, 12, 31}), -693594.0);
  EXPECT_EQ(RefusalOf([] { SerialOf(5); }), "the int 5 is not a datetime");
  EXPECT_EQ(RefusalOf([] {
              SerialOf(Time{24, 0, 0, 0});
            }),
            "'24:00:00' names no time of day (00:00 to 23:59:59.999)");
  EXPECT_EQ(RefusalOf([] { SerialOf(Date{2023, 2, 29}); }), "'2023-02-29T00:00:00' is no point in time");
}

}  // namespace
}  // namespace scriptwells
