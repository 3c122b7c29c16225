#include "platform/variant_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/serial_date.h"

namespace qv {
namespace {

WideString Widened(const char* begin, const char* end) {
  return WideString(std::u16string(begin, end));
}

WideString WholeText(std::int64_t value) {
  char digits[24];
  return Widened(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

// Whole numbers and booleans, by way of the widest of them.
HRESULT TextOfWhole(const Variant& source, WideString* text) {
  Variant whole;
  const HRESULT code = VariantChangeType(&whole, source, VT_I8);
  if (Succeeded(code)) *text = WholeText(whole.Data().llVal);
  return code;
}

WideString NumberText(double value, int precision) {
  char digits[40];
  char* const end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, precision).ptr;
  return Widened(digits, end);
}

std::u16string DayText(double serialDate) {
  const CalendarDate date = DecodeDate(serialDate);
  char text[24];
  const int length = std::snprintf(text, sizeof text, "%02d/%02d/%04d", date.month, date.day, date.year);
  return {text, text + length};
}

std::u16string ClockText(double serialDate) {
  const ClockTime time = DecodeTime(serialDate);
  char text[24];
  const int length = std::snprintf(text, sizeof text, "%02d:%02d:%02d", time.hour, time.minute, time.second);
  return {text, text + length};
}

std::u16string DateText(double serialDate) {
  const bool hasDay = std::trunc(serialDate) != 0;
  const bool hasClock = serialDate != std::trunc(serialDate) || !hasDay;
  std::u16string text = DayText(serialDate);
  if (!hasDay) text.clear();
  if (hasDay && hasClock) text += u' ';
  if (hasClock) text += ClockText(serialDate);
  return text;
}

HRESULT TextOfDate(double serialDate, WideString* text) {
  try {
    *text = WideString(DateText(serialDate));
    return S_OK;
  } catch (const EQvException&) {
    return DISP_E_TYPEMISMATCH;
  }
}

}  // namespace

HRESULT TextOfVariant(const Variant& source, WideString* text) {
  const VariantData& data = source.Data();
  switch (source.Tag()) {
    case VT_EMPTY:
      *text = u"";
      return S_OK;
    case VT_BSTR:
      *text = source.Text();
      return S_OK;
    case VT_R4:
      *text = NumberText(static_cast<double>(data.fltVal), 7);
      return S_OK;
    case VT_R8:
      *text = NumberText(data.dblVal, 15);
      return S_OK;
    case VT_DATE:
      return TextOfDate(data.date, text);
    case VT_NULL:
    case VT_UNKNOWN:
    case VT_DISPATCH:
      return DISP_E_TYPEMISMATCH;
    default:
      return TextOfWhole(source, text);
  }
}

}  // namespace qv
