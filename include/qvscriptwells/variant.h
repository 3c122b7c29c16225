// SPDX-License-Identifier: Apache-2.0
// A tagged value, for parameters and for the results of scripts. Tags and the eight data bytes are those that
// COM publishes. A Variant owns its text or object.
//
// Failure: copying a Variant whose tag is unknown throws `_com_error` with DISP_E_BADVARTYPE; creating a text
// may throw E_OUTOFMEMORY. Threads: one at a time per object. Reference counts are not atomic, so a Variant
// that holds an object stays on that object's thread.
#pragma once

#include <cstdint>
#include <utility>

#include "qvscriptwells/unknown.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

using VARTYPE = std::uint16_t;

constexpr VARTYPE VT_EMPTY = 0;
constexpr VARTYPE VT_NULL = 1;
constexpr VARTYPE VT_I2 = 2;
constexpr VARTYPE VT_I4 = 3;
constexpr VARTYPE VT_R4 = 4;
constexpr VARTYPE VT_R8 = 5;
constexpr VARTYPE VT_CY = 6;
constexpr VARTYPE VT_DATE = 7;
constexpr VARTYPE VT_BSTR = 8;
constexpr VARTYPE VT_DISPATCH = 9;
constexpr VARTYPE VT_BOOL = 11;
constexpr VARTYPE VT_VARIANT = 12;
constexpr VARTYPE VT_UNKNOWN = 13;
constexpr VARTYPE VT_DECIMAL = 14;
constexpr VARTYPE VT_I1 = 16;
constexpr VARTYPE VT_UI1 = 17;
constexpr VARTYPE VT_UI2 = 18;
constexpr VARTYPE VT_UI4 = 19;
constexpr VARTYPE VT_I8 = 20;
constexpr VARTYPE VT_UI8 = 21;
constexpr VARTYPE VT_INT = 22;
constexpr VARTYPE VT_UINT = 23;
constexpr VARTYPE VT_BYREF = 0x4000;

using VARIANT_BOOL = std::int16_t;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// The value of a VT_DECIMAL: a whole number of 96 bits, divided by 10 to the power `scale` (0 to 28).
// VariantChangeType reads it; it has no wire format.
struct DECIMAL {
  std::uint16_t wReserved = 0;
  std::uint8_t scale = 0;
  std::uint8_t sign = 0;  // DECIMAL_NEG or 0
  std::uint32_t Hi32 = 0;
  std::uint64_t Lo64 = 0;
};
constexpr std::uint8_t DECIMAL_NEG = 0x80;

// The eight data bytes. The tag says which member is valid; the bytes that it does not use are zero.
union VariantData {
  std::int64_t llVal = 0;  // VT_I8
  std::uint64_t ullVal;    // VT_UI8
  std::int8_t cVal;        // VT_I1
  std::uint8_t bVal;       // VT_UI1
  std::int16_t iVal;       // VT_I2
  std::uint16_t uiVal;     // VT_UI2
  std::int32_t lVal;       // VT_I4
  std::uint32_t ulVal;     // VT_UI4
  std::int32_t intVal;     // VT_INT
  std::uint32_t uintVal;   // VT_UINT
  float fltVal;            // VT_R4
  double dblVal;           // VT_R8
  std::int64_t cyVal;      // VT_CY: ten-thousandths
  double date;             // VT_DATE: days since 30 December 1899, the fraction is the time of day
  VARIANT_BOOL boolVal;    // VT_BOOL
  BStr bstrVal;            // VT_BSTR
  IUnknown* punkVal;       // VT_UNKNOWN and VT_DISPATCH
  void* byref;             // VT_BYREF with any tag: borrowed
};

class Variant {
 public:
  Variant() noexcept = default;  // VT_EMPTY
  Variant(const Variant& other);
  Variant(Variant&& other) noexcept { Swap(other); }
  // Releases the old content after storing the new one: an object that calls back on its release finds the
  // new content, and may assign again.
  Variant& operator=(const Variant& other);
  Variant& operator=(Variant&& other) noexcept {
    Variant taken(std::move(other));
    Swap(taken);
    return *this;
  }
  ~Variant() {
    if (OwnsContent()) Clear();
  }

  static Variant Null() noexcept;
  static Variant FromByte(std::int8_t value) noexcept;    // VT_I1, type name "byte"
  static Variant FromShort(std::int16_t value) noexcept;  // VT_I2, "short"
  static Variant FromInt(std::int32_t value) noexcept;    // VT_INT, "int"
  static Variant FromLong(std::int64_t value) noexcept;   // VT_I8, "long"
  static Variant FromBool(bool value) noexcept;           // VT_BOOL, "boolean"
  static Variant FromFloat(float value) noexcept;         // VT_R4, "float"
  static Variant FromDouble(double value) noexcept;       // VT_R8, "double"
  // VT_DATE (serial_date.h). On the wire "time" for a whole part of 0, "date" for a whole number, else
  // "datetime".
  static Variant FromDate(double serialDate) noexcept;
  static Variant FromString(const WideString& text) noexcept;  // VT_BSTR, "string"; shares the text
  static Variant FromObject(IUnknown* object) noexcept;       // VT_UNKNOWN; adds a reference, null is allowed
  static Variant FromDecimal(const DECIMAL& value) noexcept;  // VT_DECIMAL
  // Any tag with any bytes. Takes ownership of one reference to a text or object.
  static Variant FromRaw(VARTYPE tag, const VariantData& data) noexcept;

  VARTYPE Tag() const noexcept { return tag_; }
  // The raw bytes, whatever the tag says. Another member than the tag's reinterprets the bytes.
  const VariantData& Data() const noexcept { return data_; }
  // The number of a VT_DECIMAL; 0 for any other tag.
  DECIMAL Decimal() const noexcept;
  // The text of a VT_BSTR (which may be null), shared; null for any other tag.
  WideString Text() const noexcept;
  // The object of a VT_UNKNOWN or VT_DISPATCH, borrowed; null for any other tag.
  IUnknown* Object() const noexcept;

  // Releases the content; tag VT_EMPTY and all bytes zero afterwards.
  void Clear() noexcept;

 private:
  Variant(VARTYPE tag, const VariantData& data) noexcept : tag_(tag), data_(data) {}
  bool OwnsContent() const noexcept { return tag_ == VT_BSTR || tag_ == VT_UNKNOWN || tag_ == VT_DISPATCH; }
  void Swap(Variant& other) noexcept {
    std::swap(tag_, other.tag_);
    std::swap(scale_, other.scale_);
    std::swap(sign_, other.sign_);
    std::swap(high_, other.high_);
    std::swap(data_, other.data_);
  }

  VARTYPE tag_ = VT_EMPTY;
  // Rest of a VT_DECIMAL; its low part is in data_.
  std::uint8_t scale_ = 0;
  std::uint8_t sign_ = 0;
  std::uint32_t high_ = 0;
  VariantData data_{};
};

// Converts `source` to `tag` and stores the result, which owns its content, in `*destination`; that may be
// `source` or what `source` points to. On failure it is unchanged. Texts are English (en-US) in every locale.
//
// Tags: every VT_ constant above but VT_VARIANT; VT_CY and VT_DECIMAL for a source only. A source may be a
// pointer to the value (VT_BYREF), also one to a Variant (VT_BYREF | VT_VARIANT), which may be such a pointer
// itself, up to eight in a row.
//
// Same tag        a copy.
// From VT_EMPTY   0, false, day 0 at midnight, the empty text.
// From VT_CY, VT_DECIMAL  the number, exactly; as text without trailing zeros.
// From VT_BOOL    -1 for true, and to an unsigned tag the number with all bits set; as text "-1" and "0".
// To VT_BOOL      whether the number is not 0. A text is "True", "False", "#TRUE#", "#FALSE#" in any case and
//                 without blanks, or a number.
// To whole tags   halves round to the even neighbour, and the rounded value has to be in range.
// To VT_R4        the nearest value. NaN stays NaN; an infinite VT_R8 overflows.
// To VT_DATE      a number is the serial date. A text is "3/5/2024" or "2024-03-05", alone or with a blank
//                 and a time, or a time alone: "10:15", "10:15:30", "10:15:30 PM". Separators are '-' and
//                 '/'. Years of two digits or one are those from 1930 to 2029. Not read: numbers, names of
//                 months, dates without year or with the day before the month.
// To VT_BSTR      VT_R4 with 7 and VT_R8 with 15 digits: "1.5", "1E+15", "1E-05", else "1.#INF", "-1.#INF",
//                 "1.#QNAN", "-1.#IND". A date reads "3/5/2024 10:15:30 AM", to the second, without the time
//                 at midnight and without the date on day 0.
// Text to number  blanks around; one sign before the number (with one blank after it) or after it, or
//                 parentheses for a negative number; commas after the first digit of the whole part, a
//                 decimal point, an exponent. A number too small for a float is 0. "&H1F" is hexadecimal and
//                 "&O17" octal; their bits are copied to a signed tag ("&HFFFF" is -1 as VT_I2, 65535 as
//                 VT_I4 and VT_R8).
// To an object    VT_UNKNOWN and VT_DISPATCH become each other by QueryInterface; a null object stays null.
// From an object  to anything else: its default property (DISPID_VALUE of its IDispatch), read once. An
//                 object there is not converted further.
//
// DISP_E_OVERFLOW: out of the tag's range; for VT_DATE the years 100 to 9999. DISP_E_TYPEMISMATCH: no such
// conversion: VT_NULL, to VT_EMPTY or VT_NULL, anything else to an object, an object without the interface or
// without a default property, a text that cannot be parsed, a VT_DATE out of range to text.
// DISP_E_BADVARTYPE: another tag, or VT_BYREF in the target. E_INVALIDARG: a null pointer, too many in a row,
// or an invalid DECIMAL. E_OUTOFMEMORY.
HRESULT VariantChangeType(Variant* destination, const Variant& source, VARTYPE tag) noexcept;

}  // namespace qv
