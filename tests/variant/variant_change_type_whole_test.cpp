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

void ExpectOverflow(VARTYPE tag, const std::vector<Variant>& sources) {
  ExpectRefused(DISP_E_OVERFLOW, tag, sources);
}

TEST(VariantChangeTypeWhole, NothingAndFalseAreZero) {
  for (const Variant& zero : {I1(0), I2(0), I4(0), Int(0), I8(0), UI1(0), UI2(0), UI4(0), UInt(0), UI8(0)})
    ExpectAllBecome(zero, {Variant(), Bool(false)});
}

TEST(VariantChangeTypeWhole, TrueIsMinusOneAndAllBitsWithoutSign) {
  for (const Variant& result : {I1(-1), I2(-1), I4(-1), Int(-1), I8(-1), UI1(255), UI2(65535),
                                UI4(4294967295), UInt(4294967295), UI8(kAll)})
    ExpectAllBecome(result, {Bool(true)});
  ExpectChanged({{Raw(VT_BOOL, 1), I4(-1)}, {Raw(VT_BOOL, 0x100), UI1(255)}});
}

TEST(VariantChangeTypeWhole, ValuesInRangeKeepTheirNumber) {
  const Changes small = {
      {I1(-128), I2(-128)},     {I1(-1), I8(-1)},          {I1(-5), Int(-5)},       {I1(127), UI1(127)},
      {I2(-32768), I4(-32768)}, {I2(-32768), Int(-32768)}, {I2(255), UI1(255)},     {I2(32767), UI2(32767)},
      {I2(-128), I1(-128)},     {I4(65535), UI2(65535)},   {I4(-1), I8(-1)},        {I4(32767), I2(32767)},
      {I4(70000), Int(70000)},  {Int(-7), I4(-7)},         {Int(12), I2(12)},       {Int(0), UI8(0)},
      {Int(32767), I2(32767)},  {Int(-128), I1(-128)},     {UI1(255), I2(255)},     {UI1(255), Int(255)},
      {UI1(127), I1(127)},      {UI1(200), UI8(200)},      {UI2(65535), I4(65535)}, {UI2(32767), I2(32767)},
      {UI2(255), UI1(255)},     {UI8(65535), UI2(65535)},  {UI8(127), I1(127)}};
  ExpectChanged(small);
  const Changes large = {{I4(-2147483648), Int(-2147483648)},
                         {I4(2147483647), UInt(2147483647)},
                         {Int(-2147483647), Int(-2147483647)},
                         {I8(kMost), UI8(9223372036854775807U)},
                         {I8(kMost), I8(kMost)},
                         {I8(4294967295), UI4(4294967295)},
                         {I8(-2147483648), I4(-2147483648)},
                         {I8(-2147483648), Int(-2147483648)},
                         {I8(2147483647), Int(2147483647)},
                         {UI4(4294967295), I8(4294967295)},
                         {UI4(4294967295), UInt(4294967295)},
                         {UI4(2147483647), I4(2147483647)},
                         {UInt(3000000000), UI4(3000000000)},
                         {UInt(3000000000), I8(3000000000)},
                         {UI8(9223372036854775807U), I8(kMost)}};
  ExpectChanged(large);
}

TEST(VariantChangeTypeWhole, ValuesOutOfRangeOverflow) {
  ExpectOverflow(VT_I1, {I2(128), I2(-129), Int(128), I8(kLeast), UI1(128), UI8(kAll)});
  ExpectOverflow(VT_UI1, {I1(-1), I2(256), UI2(256)});
  ExpectOverflow(VT_I2, {I4(32768), I4(-32769), Int(32768), Int(-32769), UI2(32768)});
  ExpectOverflow(VT_UI2, {I2(-1), I4(65536), UI4(65536)});
  ExpectOverflow(VT_I4, {I8(2147483648), UI4(2147483648)});
  ExpectOverflow(VT_INT, {I8(2147483648), I8(-2147483649), I8(4294967296), UInt(4294967295)});
  ExpectOverflow(VT_UI4, {I4(-1), I8(4294967296), UI8(kAll)});
  ExpectOverflow(VT_UINT, {Int(-2147483648)});
  ExpectOverflow(VT_I8, {UI8(9223372036854775808U)});
  ExpectOverflow(VT_UI8, {I1(-1), I8(kLeast)});
}

TEST(VariantChangeTypeWhole, HalvesRoundToTheEvenNeighbour) {
  const Changes small = {
      {R8(0.5), I2(0)},      {R8(0.5), Int(0)},     {R8(1.5), I2(2)},       {R8(1.5), Int(2)},
      {R8(2.5), I4(2)},      {R8(2.5), Int(2)},     {R8(3.5), Int(4)},      {R8(-0.5), I4(0)},
      {R8(-0.5), Int(0)},    {R8(-1.5), I8(-2)},    {R8(-1.5), Int(-2)},    {R8(-2.5), I1(-2)},
      {R8(-2.5), Int(-2)},   {R8(2.51), Int(3)},    {R8(-2.51), Int(-3)},   {R8(-0.5), UI1(0)},
      {R8(-0.5), UI8(0)},    {R8(-0.0), UI4(0)},    {R8(126.5), I1(126)},   {R8(-128.5), I1(-128)},
      {R8(127.49), I1(127)}, {R8(254.5), UI1(254)}, {R8(255.49), UI1(255)}, {R4(2.5F), I4(2)},
      {R4(2.5F), Int(2)},    {R4(-3.5F), I8(-4)},   {R4(3.5F), UI1(4)},     {R4(-128.5F), I1(-128)},
      {Date(2.5), Int(2)},   {Date(-1.25), I2(-1)}, {Date(0.0), UI8(0)}};
  ExpectChanged(small);
  const Changes large = {{R8(65534.5), UI2(65534)},
                         {R8(-32768.5), I2(-32768)},
                         {Date(36526.5), I4(36526)},
                         {Date(36526.75), Int(36527)},
                         {R4(16777216.0F), UI4(16777216)}};
  ExpectChanged(large);
  ExpectAllBecome(UInt(4294967295), {R8(4294967295.25)});
  ExpectAllBecome(UI4(4294967294), {R8(4294967294.5)});
  ExpectAllBecome(Int(-2147483648), {R8(-2147483648.5)});
  ExpectAllBecome(Int(2147483647), {R8(2147483647.25)});
  ExpectAllBecome(I4(0), {R8(0.49999999999999994)});
  ExpectAllBecome(Int(0), {R8(0.49999999999999994)});
  ExpectAllBecome(I8(4503599627370498), {R8(4503599627370497.5)});
  ExpectAllBecome(I8(4611686018427387904), {R8(4611686018427387904.0)});
  ExpectAllBecome(I8(kLeast), {R8(-9223372036854775808.0)});
  ExpectAllBecome(UI8(9223372036854775808U), {R8(9223372036854775808.0)});
  ExpectAllBecome(UI8(18446744073709549568U), {R8(18446744073709549568.0)});
}

TEST(VariantChangeTypeWhole, OverflowIsJudgedOnTheRoundedValue) {
  ExpectOverflow(VT_I1, {R8(127.5), R8(-128.75), R8(-128.51)});
  ExpectOverflow(VT_UI1, {R8(255.5), R8(-0.51), R4(-1.0F)});
  ExpectOverflow(VT_I2, {R8(32767.5), R4(std::numeric_limits<float>::quiet_NaN()), Date(45356.25)});
  ExpectOverflow(VT_UI2, {R8(65535.5)});
  ExpectOverflow(VT_I4, {R8(2147483647.5), R8(kNan)});
  ExpectOverflow(VT_INT, {R8(2147483647.5), R8(-2147483649.0), R8(1e300), R8(-kInfinity), R8(kNan),
                          R4(2147483648.0F), R4(std::numeric_limits<float>::infinity()), Date(1e10)});
  ExpectOverflow(VT_UI4, {R8(4294967295.5), Date(-1.0)});
  ExpectOverflow(VT_I8, {R8(9223372036854775808.0), R8(-9223372036854777856.0), R8(-1e300), R8(kInfinity),
                         R8(kNan), Date(kNan)});
  ExpectOverflow(VT_UI8, {R8(-0.75), R8(18446744073709551616.0), R8(1e300), R8(-kInfinity), R8(kNan)});
}

}  // namespace
}  // namespace qv
