#include "variant/variant_whole.h"

#include <cmath>

namespace qv {
namespace {

constexpr double kTwoTo64 = 18446744073709551616.0;

double RoundHalfToEven(double value) noexcept {
  const double low = std::floor(value);
  const double rest = value - low;
  if (rest < 0.5) return low;
  if (rest > 0.5) return low + 1;
  return std::fmod(low, 2.0) == 0 ? low : low + 1;
}

std::int64_t SignedOf(const Operand& operand) noexcept {
  switch (operand.type->size) {
    case 1:
      return operand.data.cVal;  // NOLINT(bugprone-signed-char-misuse,cert-str34-c): signed is intended
    case 2:
      return operand.data.iVal;
    case 4:
      return operand.data.lVal;
    default:
      return operand.data.llVal;
  }
}

std::uint64_t UnsignedOf(const Operand& operand) noexcept {
  switch (operand.type->size) {
    case 1:
      return operand.data.bVal;
    case 2:
      return operand.data.uiVal;
    case 4:
      return operand.data.ulVal;
    default:
      return operand.data.ullVal;
  }
}

// The low bytes of `bits`, all others zero.
void StoreBits(std::uint64_t bits, std::size_t size, VariantData* data) noexcept {
  *data = VariantData{};
  if (size == 1) data->bVal = static_cast<std::uint8_t>(bits);
  if (size == 2) data->uiVal = static_cast<std::uint16_t>(bits);
  if (size == 4) data->ulVal = static_cast<std::uint32_t>(bits);
  if (size == 8) data->ullVal = bits;
}

// The greatest magnitude that fits.
std::uint64_t Limit(const Whole& whole, const VariantTag& type) noexcept {
  const std::uint64_t all = ~std::uint64_t{0} >> (64 - 8 * type.size);
  if (whole.isBits) return all;
  if (!type.isSigned) return whole.isNegative ? 0 : all;
  return whole.isNegative ? all / 2 + 1 : all / 2;
}

}  // namespace

Whole WholeOf(const Operand& operand) noexcept {
  if (!operand.type->isSigned) return {false, UnsignedOf(operand)};
  const std::int64_t value = SignedOf(operand);
  const auto bits = static_cast<std::uint64_t>(value);
  return {value < 0, value < 0 ? 0 - bits : bits};
}

HRESULT WholeFromReal(double value, Whole* whole) noexcept {
  const double rounded = RoundHalfToEven(value);
  // NaN fails every comparison.
  if (!(std::fabs(rounded) < kTwoTo64)) return DISP_E_OVERFLOW;
  *whole = {rounded < 0, static_cast<std::uint64_t>(std::fabs(rounded))};
  return S_OK;
}

double RealFromWhole(const Whole& whole) noexcept {
  const auto magnitude = static_cast<double>(whole.magnitude);
  return whole.isNegative ? -magnitude : magnitude;
}

HRESULT StoreWhole(const Whole& whole, const VariantTag& type, VariantData* data) noexcept {
  if (whole.magnitude > Limit(whole, type)) return DISP_E_OVERFLOW;
  StoreBits(whole.isNegative ? 0 - whole.magnitude : whole.magnitude, type.size, data);
  return S_OK;
}

void StoreTrue(const VariantTag& type, VariantData* data) noexcept {
  StoreBits(~std::uint64_t{0}, type.size, data);
}

}  // namespace qv
