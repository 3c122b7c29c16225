#include "variant/variant_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "text/ascii.h"
#include "variant/variant_date.h"
#include "variant/variant_scaled.h"
#include "variant/variant_whole.h"

namespace qv {
namespace {

constexpr int kFloatDigits = 7;
constexpr int kDoubleDigits = 15;

struct BoolWord {
  std::u16string_view word;
  bool value;
};

constexpr BoolWord kBoolWords[] = {
    {u"TRUE", true}, {u"FALSE", false}, {u"#TRUE#", true}, {u"#FALSE#", false}};

WideString WholeText(const Whole& whole) {
  char digits[24] = "-";
  char* const begin = whole.isNegative ? digits + 1 : digits;
  const char* const end = std::to_chars(begin, digits + sizeof digits, whole.magnitude).ptr;
  return WideString(std::u16string(static_cast<const char*>(digits), end));
}

// The texts that scripts know from other hosts.
WideString EndlessText(double value) {
  const bool isNegative = std::signbit(value);
  if (std::isinf(value)) return isNegative ? u"-1.#INF" : u"1.#INF";
  return isNegative ? u"-1.#IND" : u"1.#QNAN";
}

WideString RealText(double value, int precision) {
  if (!std::isfinite(value)) return EndlessText(value);
  if (value == 0) return u"0";  // also for minus 0
  char digits[40];
  const char* const end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, precision).ptr;
  std::u16string text(static_cast<const char*>(digits), end);
  std::replace(text.begin(), text.end(), u'e', u'E');
  return WideString(text);
}

WideString RealText(const Operand& operand) {
  return operand.type->tag == VT_R4 ? RealText(static_cast<double>(operand.data.fltVal), kFloatDigits)
                                    : RealText(operand.data.dblVal, kDoubleDigits);
}

}  // namespace

HRESULT TextOf(const Operand& operand, WideString* text) {
  switch (operand.type->kind) {
    case ValueKind::kEmpty:
      *text = u"";
      return S_OK;
    case ValueKind::kWhole:
      *text = WholeText(WholeOf(operand));
      return S_OK;
    case ValueKind::kReal:
      *text = RealText(operand);
      return S_OK;
    case ValueKind::kBool:
      *text = operand.data.boolVal != VARIANT_FALSE ? u"-1" : u"0";
      return S_OK;
    case ValueKind::kScaled:
      *text = ScaledText(operand);
      return S_OK;
    case ValueKind::kDate:
      return WriteDate(operand.data.date, text) ? S_OK : DISP_E_TYPEMISMATCH;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

bool ReadBoolWord(std::u16string_view text, bool* value) noexcept {
  for (const BoolWord& row : kBoolWords) {
    const bool same = std::equal(
        text.begin(), text.end(), row.word.begin(), row.word.end(),
        [](char16_t unit, char16_t upper) noexcept { return ToAsciiUpper<char16_t>(unit) == upper; });
    if (same) *value = row.value;
    if (same) return true;
  }
  return false;
}

}  // namespace qv
