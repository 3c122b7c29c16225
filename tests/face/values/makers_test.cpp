// Values of natural C++ types, and of chosen ones.
#include <cfloat>
#include <cmath>
#include <limits>

#include "scriptwells/value.h"
#include "tests/face/refusal.h"

namespace scriptwells {
namespace {

using testing::RefusalOf;

TEST(NaturalTypes, DecideOnTheType) {
  EXPECT_EQ(Value().type(), Type::kEmpty);
  EXPECT_EQ(Value(true).type(), Type::kBoolean);
  EXPECT_EQ(Value(static_cast<signed char>(1)).type(), Type::kByte);
  EXPECT_EQ(Value(static_cast<unsigned char>(1)).type(), Type::kInt);
  EXPECT_EQ(Value(static_cast<short>(1)).type(), Type::kShort);
  EXPECT_EQ(Value(static_cast<unsigned short>(1)).type(), Type::kInt);
  EXPECT_EQ(Value(1).type(), Type::kInt);
  EXPECT_EQ(Value(1U).type(), Type::kLong);
  EXPECT_EQ(Value(1L).type(), Type::kLong);
  EXPECT_EQ(Value(1LL).type(), Type::kLong);
  EXPECT_EQ(Value(1UL).type(), Type::kLong);
  EXPECT_EQ(Value(1ULL).type(), Type::kLong);
  EXPECT_EQ(Value(1.0F).type(), Type::kFloat);
  EXPECT_EQ(Value(1.0).type(), Type::kDouble);
  EXPECT_EQ(Value("x").type(), Type::kString);
  EXPECT_EQ(Value(std::string_view("x")).type(), Type::kString);
  EXPECT_EQ(Value(std::string("x")).type(), Type::kString);
  EXPECT_EQ(Value(Date()).type(), Type::kDate);
  EXPECT_EQ(Value(Time()).type(), Type::kTime);
  EXPECT_EQ(Value(DateTime()).type(), Type::kDateTime);
  EXPECT_EQ(Value(Duration()).type(), Type::kDuration);
  EXPECT_EQ(Value(Link()).type(), Type::kLink);
  EXPECT_EQ(Value(Table()).type(), Type::kTable);
  EXPECT_EQ(Value(std::chrono::system_clock::now()).type(), Type::kDateTime);
  // Characters and pointers are no values.
  static_assert(!std::is_constructible_v<Value, char>);
  static_assert(!std::is_constructible_v<Value, char32_t>);
  static_assert(!std::is_constructible_v<Value, long double>);
  static_assert(!std::is_constructible_v<Value, std::nullptr_t>);
  static_assert(!std::is_constructible_v<Value, const int*>);
}

TEST(NaturalTypes, KeepTheirNumber) {
  EXPECT_EQ(Value(std::numeric_limits<unsigned>::max()), Long(4294967295));
  EXPECT_EQ(Value(static_cast<unsigned char>(255)), Int(255));
  EXPECT_EQ(Value(static_cast<unsigned short>(65535)), Int(65535));
  EXPECT_EQ(Value(std::uint64_t{INT64_MAX}), Long(INT64_MAX));
  EXPECT_EQ(RefusalOf([] { Value value(std::uint64_t{1} << 63); }),
            "9223372036854775808 is out of range for long (-9223372036854775808 to 9223372036854775807)");
}

TEST(Makers, ChooseTheType) {
  EXPECT_EQ(Byte(-128).type(), Type::kByte);
  EXPECT_EQ(Short(1).type(), Type::kShort);
  EXPECT_EQ(Int(1).type(), Type::kInt);
  EXPECT_EQ(Long(1).type(), Type::kLong);
  EXPECT_EQ(Float(1).type(), Type::kFloat);
  EXPECT_EQ(Double(1).type(), Type::kDouble);
  EXPECT_EQ(Byte(-128).As<int>(), -128);
  EXPECT_EQ(Short(32767).As<int>(), 32767);
  EXPECT_EQ(Int(INT32_MIN).As<int>(), INT32_MIN);
  EXPECT_EQ(Long(INT64_MIN).As<long>(), INT64_MIN);
}

TEST(Makers, RefuseWhatDoesNotFit) {
  EXPECT_EQ(RefusalOf([] { Byte(128); }), "128 is out of range for byte (-128 to 127)");
  EXPECT_EQ(RefusalOf([] { Byte(-129); }), "-129 is out of range for byte (-128 to 127)");
  EXPECT_EQ(RefusalOf([] { Short(32768); }), "32768 is out of range for short (-32768 to 32767)");
  EXPECT_EQ(RefusalOf([] { Short(-32769); }), "-32769 is out of range for short (-32768 to 32767)");
  EXPECT_EQ(RefusalOf([] { Int(2147483648); }),
            "2147483648 is out of range for int (-2147483648 to 2147483647)");
  EXPECT_EQ(RefusalOf([] { Int(INT64_MIN); }),
            "-9223372036854775808 is out of range for int (-2147483648 to 2147483647)");
}

TEST(Makers, FloatIsTheNearestOne) {
  EXPECT_EQ(Float(0.1), Value(0.1F));
  EXPECT_EQ(Float(FLT_MAX), Value(FLT_MAX));
  EXPECT_EQ(Float(-std::numeric_limits<double>::infinity()), Value(-std::numeric_limits<float>::infinity()));
  EXPECT_EQ(Float(std::nan("")).type(), Type::kFloat);
  EXPECT_EQ(RefusalOf([] { Float(1e39); }), "1e+39 is out of range for float");
  EXPECT_EQ(RefusalOf([] { Float(-1e300); }), "-1e+300 is out of range for float");
}

}  // namespace
}  // namespace scriptwells
