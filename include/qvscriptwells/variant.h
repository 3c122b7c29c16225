// A tagged value: what parameters hold and scripts answer. Tags and the eight data bytes are those that COM
// publishes; texts and objects are owned by the Variant that carries their tag.
//
// Failure: copying a Variant whose tag is unknown throws `_com_error` with DISP_E_BADVARTYPE; making a text
// may throw E_OUTOFMEMORY. Threads: one at a time per object; counts of objects are plain, so a Variant that
// holds an object stays on that object's thread.
#pragma once

#include <cstdint>

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
constexpr VARTYPE VT_DATE = 7;
constexpr VARTYPE VT_BSTR = 8;
constexpr VARTYPE VT_DISPATCH = 9;
constexpr VARTYPE VT_BOOL = 11;
constexpr VARTYPE VT_VARIANT = 12;
constexpr VARTYPE VT_UNKNOWN = 13;
constexpr VARTYPE VT_I1 = 16;
constexpr VARTYPE VT_UI1 = 17;
constexpr VARTYPE VT_I8 = 20;
constexpr VARTYPE VT_INT = 22;
constexpr VARTYPE VT_BYREF = 0x4000;

using VARIANT_BOOL = std::int16_t;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// The eight data bytes. Which member counts is told by the tag; all bytes that the tag leaves unused are
// zero.
union VariantData {
  std::int64_t llVal = 0;  // VT_I8
  std::int8_t cVal;        // VT_I1
  std::uint8_t bVal;       // VT_UI1
  std::int16_t iVal;       // VT_I2
  std::int32_t lVal;       // VT_I4
  std::int32_t intVal;     // VT_INT
  float fltVal;            // VT_R4
  double dblVal;           // VT_R8
  double date;             // VT_DATE: days since 30 December 1899, the fraction is the time of day
  VARIANT_BOOL boolVal;    // VT_BOOL
  BStr bstrVal;            // VT_BSTR
  IUnknown* punkVal;       // VT_UNKNOWN and VT_DISPATCH
  void* byref;             // a tag with VT_BYREF: borrowed
};

class Variant {
 public:
  Variant() noexcept = default;  // VT_EMPTY
  Variant(const Variant& other);
  Variant(Variant&& other) noexcept;
  Variant& operator=(const Variant& other);
  Variant& operator=(Variant&& other) noexcept;
  ~Variant() { Clear(); }

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
  static Variant FromObject(IUnknown* object) noexcept;  // VT_UNKNOWN; adds a reference, null is allowed
  // Any tag with any bytes. A text or object pointer under its tag is taken over with one owner.
  static Variant FromRaw(VARTYPE tag, const VariantData& data) noexcept;

  VARTYPE Tag() const noexcept { return tag_; }
  // The raw bytes, whatever the tag says. Reading another member than the tag's gives the bytes' meaning
  // there.
  const VariantData& Data() const noexcept { return data_; }
  // The text of a VT_BSTR (which may be null), shared; null for any other tag.
  WideString Text() const noexcept;
  // The object of a VT_UNKNOWN or VT_DISPATCH, borrowed; null for any other tag.
  IUnknown* Object() const noexcept;

  // Releases the content; tag VT_EMPTY and all bytes zero afterwards.
  void Clear() noexcept;

 private:
  Variant(VARTYPE tag, const VariantData& data) noexcept : tag_(tag), data_(data) {}

  VARTYPE tag_ = VT_EMPTY;
  VariantData data_{};
};

// Converts `source` to the tag VT_I1, VT_I2, VT_I4, VT_INT, VT_I8, VT_BSTR or to its own tag, and stores the
// result in `*destination` (which may be `source`). VT_EMPTY is 0, true is -1; fractions round half to even;
// texts may have blanks around, a sign, thousands separators, a decimal point and an exponent.
// DISP_E_OVERFLOW: out of the tag's range. DISP_E_TYPEMISMATCH: VT_NULL, an object, a text that is no number.
// DISP_E_BADVARTYPE: another target. As text, true is "-1", VT_EMPTY is empty, numbers have 7 (float) or 15
// digits, a date reads "03/05/2024 10:15:30". *destination stays as it was on failure.
HRESULT VariantChangeType(Variant* destination, const Variant& source, VARTYPE tag) noexcept;

}  // namespace qv
