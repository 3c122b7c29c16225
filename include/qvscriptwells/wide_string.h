// SPDX-License-Identifier: Apache-2.0
// The wide string: immutable counted UTF-16 text that may be null, and the raw string that some host
// interfaces use. Lengths and positions count 16-bit units. A text may contain null units.
//
// Null and empty are equal for == and IsEmpty; they differ in order (null first). Threads: a WideString
// object belongs to one thread at a time; copies on several threads may share one text. Failure: running out
// of memory throws `_com_error` with E_OUTOFMEMORY (com_error.h).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv {

// A raw string: `length` units and a null terminator, in a block that only the functions here allocate and
// free. The holder of the pointer owns the block and may write its units.
using BStr = char16_t*;

// A block of `length` units copied from `units`, or all zero if `units` is null. Null for lack of memory.
BStr AllocString(const char16_t* units, std::size_t length) noexcept;
// Null is allowed and does nothing.
void FreeString(BStr text) noexcept;
// 0 for null. Constant time.
std::size_t StringLength(const char16_t* text) noexcept;
// Replaces *text and frees the old string; for the in/out strings of host services. False for lack of memory;
// *text is unchanged then.
bool ReplaceString(BStr* text, std::u16string_view value) noexcept;

class WideString {
 public:
  WideString() noexcept = default;  // null
  // Implicit, so that literals and standard strings convert to a WideString.
  WideString(const char16_t* text);      // up to the first null unit; null stays null
  WideString(std::u16string_view text);  // never null, all units
  WideString(const std::u16string& text) : WideString(std::u16string_view(text)) {}  // as above
  WideString(const WideString& other) noexcept;
  WideString(WideString&& other) noexcept : text_(other.text_) { other.text_ = nullptr; }
  WideString& operator=(const WideString& other) noexcept;
  WideString& operator=(WideString&& other) noexcept;
  ~WideString() {
    if (text_ != nullptr) FreeString(text_);
  }

  // Takes over a raw string (null is allowed).
  static WideString Attach(BStr text) noexcept;
  // Returns a raw string that the receiver owns; this object becomes null. Copies the text if it is shared.
  BStr Detach();

  bool IsNull() const noexcept { return text_ == nullptr; }
  bool IsEmpty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return StringLength(text_); }
  // The units with a null terminator; null for a null string. Borrowed: valid until this object changes.
  const char16_t* data() const noexcept { return text_; }
  // The units, empty for a null string. Borrowed as above.
  std::u16string_view view() const noexcept { return {text_, size()}; }

 private:
  char16_t* text_ = nullptr;
};

// By units; null and empty are equal here.
inline bool operator==(const WideString& a, const WideString& b) noexcept {
  return a.view() == b.view();
}
inline bool operator!=(const WideString& a, const WideString& b) noexcept {
  return a.view() != b.view();
}
// The order of maps: null first, then unit by unit, the shorter first on a common prefix.
inline bool operator<(const WideString& a, const WideString& b) noexcept {
  if (a.IsNull() || b.IsNull()) return a.IsNull() && !b.IsNull();
  return a.view() < b.view();
}

// Conversion from and to UTF-8. A lone surrogate and a malformed byte sequence become U+FFFD.
std::string ToUtf8(std::u16string_view text);
inline std::string ToUtf8(const std::u16string& text) {
  return ToUtf8(std::u16string_view(text));
}
inline std::string ToUtf8(const WideString& text) {
  return ToUtf8(text.view());
}
inline std::string ToUtf8(const char16_t* text) {  // null gives ""
  return ToUtf8(WideString(text));
}
WideString FromUtf8(std::string_view text);

}  // namespace qv
