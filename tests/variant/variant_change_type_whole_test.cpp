// To whole numbers of every width, signed and unsigned, from numbers, booleans, dates and nothing.
#include <gtest/gtest.h>

#include <limits>

#include "variant/variant_rows.h"

namespace qv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();

TEST(VariantChangeTypeWhole, NothingIsZero) {
  ExpectChanged({
      {Variant(), VT_I1, I1(0)},
      {Variant(), VT_I2, I2(0)},
      {Variant(), VT_I4, I4(0)},
      {Variant(), VT_INT, Int(0)},
      {Variant(), VT_I8, I8(0)},
      {Variant(), VT_UI1, UI1(0)},
      {Variant(), VT_UI2, UI2(0)},
      {Variant(), VT_UI4, UI4(0)},
      {Variant(), VT_UINT, UInt(0)},
      {Variant(), VT_UI8, UI8(0)},
  });
}

TEST(VariantChangeTypeWhole, BooleanIsMinusOneAndAllBitsWithoutSign) {
  ExpectChanged({
      {Bool(true), VT_I1, I1(-1)},
      {Bool(true), VT_I2, I2(-1)},
      {Bool(true), VT_I4, I4(-1)},
      {Bool(true), VT_INT, Int(-1)},
      {Bool(true), VT_I8, I8(-1)},
      {Bool(true), VT_UI1, UI1(255)},
      {Bool(true), VT_UI2, UI2(65535)},
      {Bool(true), VT_UI4, UI4(4294967295)},
      {Bool(true), VT_UINT, UInt(4294967295)},
      {Bool(true), VT_UI8, UI8(18446744073709551615u)},
      {Bool(false), VT_I2, I2(0)},
      {Bool(false), VT_I8, I8(0)},
      {Bool(false), VT_UI1, UI1(0)},
      {Bool(false), VT_UI8, UI8(0)},
      {Raw(VT_BOOL, 1), VT_I4, I4(-1)},
      {Raw(VT_BOOL, 0x100), VT_UI1, UI1(255)},
  });
}

TEST(VariantChangeTypeWhole, ValuesInRangeKeepTheirNumber) {
  ExpectChanged({
      {I1(-128), VT_I2, I2(-128)},
      {I1(-1), VT_I8, I8(-1)},
      {I1(127), VT_UI1, UI1(127)},
      {I2(-32768), VT_I4, I4(-32768)},
      {I2(255), VT_UI1, UI1(255)},
      {I2(32767), VT_UI2, UI2(32767)},
      {I2(-128), VT_I1, I1(-128)},
      {I4(-2147483648), VT_INT, Int(-2147483648)},
      {I4(2147483647), VT_UINT, UInt(2147483647)},
      {I4(65535), VT_UI2, UI2(65535)},
      {I4(-1), VT_I8, I8(-1)},
      {I4(32767), VT_I2, I2(32767)},
      {Int(-7), VT_I4, I4(-7)},
      {Int(12), VT_I2, I2(12)},
      {Int(0), VT_UI8, UI8(0)},
      {I8(kMost), VT_UI8, UI8(9223372036854775807u)},
      {I8(4294967295), VT_UI4, UI4(4294967295)},
      {I8(-2147483648), VT_I4, I4(-2147483648)},
      {UI1(255), VT_I2, I2(255)},
      {UI1(127), VT_I1, I1(127)},
      {UI1(200), VT_UI8, UI8(200)},
      {UI2(65535), VT_I4, I4(65535)},
      {UI2(32767), VT_I2, I2(32767)},
      {UI2(255), VT_UI1, UI1(255)},
      {UI4(4294967295), VT_I8, I8(4294967295)},
      {UI4(4294967295), VT_UINT, UInt(4294967295)},
      {UI4(2147483647), VT_I4, I4(2147483647)},
      {UInt(3000000000), VT_UI4, UI4(3000000000)},
      {UInt(3000000000), VT_I8, I8(3000000000)},
      {UI8(9223372036854775807u), VT_I8, I8(kMost)},
      {UI8(65535), VT_UI2, UI2(65535)},
      {UI8(127), VT_I1, I1(127)},
  });
}

TEST(VariantChangeTypeWhole, ValuesOutOfRangeOverflow) {
  ExpectRefused({
      {I1(-1), VT_UI1, DISP_E_OVERFLOW},
      {I1(-1), VT_UI8, DISP_E_OVERFLOW},
      {I2(128), VT_I1, DISP_E_OVERFLOW},
      {I2(-129), VT_I1, DISP_E_OVERFLOW},
      {I2(256), VT_UI1, DISP_E_OVERFLOW},
      {I2(-1), VT_UI2, DISP_E_OVERFLOW},
      {I4(32768), VT_I2, DISP_E_OVERFLOW},
      {I4(-32769), VT_I2, DISP_E_OVERFLOW},
      {I4(65536), VT_UI2, DISP_E_OVERFLOW},
      {I4(-1), VT_UI4, DISP_E_OVERFLOW},
      {Int(-2147483648), VT_UINT, DISP_E_OVERFLOW},
      {Int(128), VT_I1, DISP_E_OVERFLOW},
      {I8(2147483648), VT_I4, DISP_E_OVERFLOW},
      {I8(-2147483649), VT_INT, DISP_E_OVERFLOW},
      {I8(4294967296), VT_UI4, DISP_E_OVERFLOW},
      {I8(kLeast), VT_UI8, DISP_E_OVERFLOW},
      {I8(kLeast), VT_I1, DISP_E_OVERFLOW},
      {UI1(128), VT_I1, DISP_E_OVERFLOW},
      {UI2(32768), VT_I2, DISP_E_OVERFLOW},
      {UI2(256), VT_UI1, DISP_E_OVERFLOW},
      {UI4(2147483648), VT_I4, DISP_E_OVERFLOW},
      {UI4(65536), VT_UI2, DISP_E_OVERFLOW},
      {UInt(4294967295), VT_INT, DISP_E_OVERFLOW},
      {UI8(9223372036854775808u), VT_I8, DISP_E_OVERFLOW},
      {UI8(kAll), VT_UI4, DISP_E_OVERFLOW},
      {UI8(kAll), VT_I1, DISP_E_OVERFLOW},
  });
}

TEST(VariantChangeTypeWhole, HalvesRoundToTheEvenNeighbour) {
  ExpectChanged({
      {R8(0.5), VT_I2, I2(0)},
      {R8(1.5), VT_I2, I2(2)},
      {R8(2.5), VT_I4, I4(2)},
      {R8(-0.5), VT_I4, I4(0)},
      {R8(-1.5), VT_I8, I8(-2)},
      {R8(-2.5), VT_I1, I1(-2)},
      {R8(-0.5), VT_UI1, UI1(0)},
      {R8(-0.5), VT_UI8, UI8(0)},
      {R8(-0.0), VT_UI4, UI4(0)},
      {R8(254.5), VT_UI1, UI1(254)},
      {R8(255.49), VT_UI1, UI1(255)},
      {R8(65534.5), VT_UI2, UI2(65534)},
      {R8(4294967294.5), VT_UI4, UI4(4294967294)},
      {R8(4294967295.25), VT_UINT, UInt(4294967295)},
      {R8(18446744073709549568.0), VT_UI8, UI8(18446744073709549568u)},
      {R8(9223372036854775808.0), VT_UI8, UI8(9223372036854775808u)},
      {R8(-9223372036854775808.0), VT_I8, I8(kLeast)},
      {R8(-32768.5), VT_I2, I2(-32768)},
      {R8(0.49999999999999994), VT_I4, I4(0)},
      {R8(4503599627370497.5), VT_I8, I8(4503599627370498)},
      {R4(2.5f), VT_I4, I4(2)},
      {R4(3.5f), VT_UI1, UI1(4)},
      {R4(-128.5f), VT_I1, I1(-128)},
      {R4(16777216.0f), VT_UI4, UI4(16777216)},
      {Date(36526.5), VT_I4, I4(36526)},
      {Date(36526.75), VT_INT, Int(36527)},
      {Date(-1.25), VT_I2, I2(-1)},
      {Date(0.0), VT_UI8, UI8(0)},
  });
}

TEST(VariantChangeTypeWhole, OverflowIsJudgedOnTheRoundedValue) {
  ExpectRefused({
      {R8(127.5), VT_I1, DISP_E_OVERFLOW},
      {R8(-128.75), VT_I1, DISP_E_OVERFLOW},
      {R8(32767.5), VT_I2, DISP_E_OVERFLOW},
      {R8(2147483647.5), VT_I4, DISP_E_OVERFLOW},
      {R8(255.5), VT_UI1, DISP_E_OVERFLOW},
      {R8(65535.5), VT_UI2, DISP_E_OVERFLOW},
      {R8(4294967295.5), VT_UI4, DISP_E_OVERFLOW},
      {R8(-0.51), VT_UI1, DISP_E_OVERFLOW},
      {R8(-0.75), VT_UI8, DISP_E_OVERFLOW},
      {R8(9223372036854775808.0), VT_I8, DISP_E_OVERFLOW},
      {R8(-9223372036854777856.0), VT_I8, DISP_E_OVERFLOW},
      {R8(18446744073709551616.0), VT_UI8, DISP_E_OVERFLOW},
      {R8(1e300), VT_UI8, DISP_E_OVERFLOW},
      {R8(kInfinity), VT_I8, DISP_E_OVERFLOW},
      {R8(-kInfinity), VT_UI8, DISP_E_OVERFLOW},
      {R8(kNan), VT_I4, DISP_E_OVERFLOW},
      {R8(kNan), VT_UI8, DISP_E_OVERFLOW},
      {R4(std::numeric_limits<float>::quiet_NaN()), VT_I2, DISP_E_OVERFLOW},
      {R4(-1.0f), VT_UI1, DISP_E_OVERFLOW},
      {Date(45356.25), VT_I2, DISP_E_OVERFLOW},
      {Date(-1.0), VT_UI4, DISP_E_OVERFLOW},
      {Date(kNan), VT_I8, DISP_E_OVERFLOW},
  });
}

}  // namespace
}  // namespace qv
