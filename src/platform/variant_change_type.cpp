#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

#include "platform/variant_text.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/variant.h"

namespace qv {
namespace {

struct Range {
  VARTYPE tag;
  std::int64_t low;
  std::int64_t high;
};

constexpr Range kRanges[] = {
    {VT_I1, -128, 127},
    {VT_I2, -32768, 32767},
    {VT_I4, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()},
    {VT_INT, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()},
    {VT_I8, std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()},
};

const Range* RangeOf(VARTYPE tag) noexcept {
  for (const Range& range : kRanges)
    if (range.tag == tag) return &range;
  return nullptr;
}

double RoundHalfToEven(double value) noexcept {
  const double low = std::floor(value);
  const double rest = value - low;
  if (rest < 0.5) return low;
  if (rest > 0.5) return low + 1;
  return std::fmod(low, 2.0) == 0 ? low : low + 1;
}

HRESULT WholeFromDouble(double value, std::int64_t* whole) noexcept {
  const double rounded = RoundHalfToEven(value);
  // 2^63 is the first double beyond the range; not a number fails both tests.
  if (!(rounded >= -9223372036854775808.0 && rounded < 9223372036854775808.0)) return DISP_E_OVERFLOW;
  *whole = static_cast<std::int64_t>(rounded);
  return S_OK;
}

bool IsBlank(char16_t unit) noexcept {
  return unit == u' ' || unit == u'\t';
}

// The text without blanks around, thousands separators of its whole part and a leading plus; empty when it
// holds anything that no number holds.
std::string PlainNumber(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  std::string plain;
  bool whole = true;
  bool digits = false;
  for (const char16_t unit : text) {
    if (unit == u',' && whole && digits) continue;
    whole = whole && unit != u'.' && unit != u'e' && unit != u'E';
    digits = digits || (unit >= u'0' && unit <= u'9');
    if (unit > 0x7F ||
        std::string_view("0123456789+-.eE").find(static_cast<char>(unit)) == std::string_view::npos)
      return {};
    plain.push_back(static_cast<char>(unit));
  }
  return plain.size() > 1 && plain[0] == '+' && plain[1] != '-' ? plain.substr(1) : plain;
}

HRESULT WholeFromText(std::u16string_view text, std::int64_t* whole) {
  const std::string plain = PlainNumber(text);
  const char* const end = plain.data() + plain.size();
  const auto asWhole = std::from_chars(plain.data(), end, *whole);
  if (asWhole.ec == std::errc() && asWhole.ptr == end) return S_OK;
  double number = 0;
  const auto asDouble = std::from_chars(plain.data(), end, number);
  if (plain.empty() || asDouble.ptr != end || asDouble.ec == std::errc::invalid_argument)
    return DISP_E_TYPEMISMATCH;
  return asDouble.ec == std::errc() ? WholeFromDouble(number, whole) : DISP_E_OVERFLOW;
}

HRESULT WholeFrom(const Variant& source, std::int64_t* whole) {
  const VariantData& data = source.Data();
  switch (source.Tag()) {
    case VT_EMPTY:
      *whole = 0;
      return S_OK;
    case VT_I1:
      *whole = data.cVal;  // NOLINT(bugprone-signed-char-misuse,cert-str34-c): a signed byte is meant
      return S_OK;
    case VT_UI1:
      *whole = data.bVal;
      return S_OK;
    case VT_I2:
      *whole = data.iVal;
      return S_OK;
    case VT_I4:
    case VT_INT:
      *whole = data.intVal;
      return S_OK;
    case VT_I8:
      *whole = data.llVal;
      return S_OK;
    case VT_BOOL:
      *whole = data.boolVal;
      return S_OK;
    case VT_R4:
      return WholeFromDouble(static_cast<double>(data.fltVal), whole);
    case VT_R8:
      return WholeFromDouble(data.dblVal, whole);
    case VT_DATE:
      return WholeFromDouble(data.date, whole);
    case VT_BSTR:
      return WholeFromText(source.Text().view(), whole);
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

Variant WholeVariant(VARTYPE tag, std::int64_t whole) noexcept {
  VariantData data;
  if (tag == VT_I1) data.cVal = static_cast<std::int8_t>(whole);
  if (tag == VT_I2) data.iVal = static_cast<std::int16_t>(whole);
  if (tag == VT_I4 || tag == VT_INT) data.intVal = static_cast<std::int32_t>(whole);
  if (tag == VT_I8) data.llVal = whole;
  return Variant::FromRaw(tag, data);
}

HRESULT ChangeToText(Variant* destination, const Variant& source) {
  WideString text;
  const HRESULT code = TextOfVariant(source, &text);
  if (Succeeded(code)) *destination = Variant::FromString(text);
  return code;
}

HRESULT ChangeType(Variant* destination, const Variant& source, VARTYPE tag) {
  if (source.Tag() == tag) {
    *destination = Variant(source);
    return S_OK;
  }
  if (tag == VT_BSTR) return ChangeToText(destination, source);
  const Range* range = RangeOf(tag);
  if (range == nullptr) return DISP_E_BADVARTYPE;
  std::int64_t whole = 0;
  const HRESULT code = WholeFrom(source, &whole);
  if (Failed(code)) return code;
  if (whole < range->low || whole > range->high) return DISP_E_OVERFLOW;
  *destination = WholeVariant(tag, whole);
  return S_OK;
}

}  // namespace

HRESULT VariantChangeType(Variant* destination, const Variant& source, VARTYPE tag) noexcept {
  try {
    return ChangeType(destination, source, tag);
  } catch (const _com_error& error) {
    return error.Error();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace qv
