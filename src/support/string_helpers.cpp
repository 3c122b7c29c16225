#include "support/string_helpers.h"

#include <algorithm>

#include "qvscriptwells/e_qv_exception.h"
#include "support/numbers.h"
#include "text/ascii.h"
#include "text/string_block.h"

namespace qv {
namespace {

bool IsSurrogate(char16_t unit) noexcept {
  return unit >= 0xD800 && unit <= 0xDFFF;
}
bool IsPair(std::u16string_view text, std::size_t at) noexcept {
  return text[at] < 0xDC00 && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] <= 0xDFFF;
}

// Narrowing stops at the first null unit, as it does in C.
bool CanBeNarrowed(std::u16string_view text) noexcept {
  for (std::size_t at = 0; at < text.size() && text[at] != 0; ++at) {
    if (!IsSurrogate(text[at])) continue;
    if (!IsPair(text, at)) return false;
    ++at;
  }
  return true;
}

// A writable copy; pass it to Attach afterwards.
BStr WritableCopy(std::u16string_view text) {
  return WideString(text).Detach();
}

WideString Mapped(std::u16string_view text, char16_t (*map)(char16_t) noexcept) {
  BStr units = WritableCopy(text);
  std::transform(units, units + text.size(), units, map);
  return WideString::Attach(units);
}

}  // namespace

std::int64_t Find(const WideString& pattern, const WideString& text) {
  if (pattern.IsEmpty() || text.IsEmpty()) return -1;
  const std::size_t found = text.view().find(pattern.view());
  return found == std::u16string_view::npos ? -1 : static_cast<std::int64_t>(found);
}

std::int32_t NarrowedInt(std::u16string_view text) {
  if (const std::optional<std::int32_t> plain = PlainInt(text)) return *plain;
  return CanBeNarrowed(text) ? ParseInt(text) : 0;
}

std::int32_t ToInt(const WideString& text) {
  return NarrowedInt(text.view());
}

std::int32_t ToLong(const WideString& text) {
  return ParseInt(text.view());
}

void ReplaceChar(WideString& text, char16_t old, char16_t fresh) {
  const std::u16string_view all = text.view();
  const std::size_t end = std::min(all.find(u'\0'), all.size());
  if (all.substr(0, end).find(old) == std::u16string_view::npos) return;
  BStr units = WritableCopy(all);
  std::replace(units, units + end, old, fresh);
  text = WideString::Attach(units);
}

WideString ToUpper(const WideString& text) {
  const std::u16string_view all = text.view();
  return std::none_of(all.begin(), all.end(), IsAsciiLower<char16_t>) ? text
                                                                      : Mapped(all, &ToAsciiUpper<char16_t>);
}

WideString ToLower(const WideString& text) {
  const std::u16string_view all = text.view();
  return std::none_of(all.begin(), all.end(), IsAsciiUpper<char16_t>) ? text
                                                                      : Mapped(all, &ToAsciiLower<char16_t>);
}

WideString Copy(const WideString& text, std::size_t position, std::size_t count) {
  if (position > text.size()) throw EQvException(u"Invalid position in function Copy");
  return WideString(text.view().substr(position, count));
}

void Resize(WideString& text, std::size_t size) {
  if (text.IsEmpty()) {
    BStr blanks = NewStringBlock(size);
    std::fill_n(blanks, size, u' ');
    SetStringLength(blanks, size);
    text = WideString::Attach(blanks);
  }
  if (text.size() > size) text = WideString(text.view().substr(0, size));
}

bool EqualIgnoreCase(const char16_t* a, const char16_t* b) {
  if (a == nullptr || b == nullptr) return (a == nullptr || *a == 0) && (b == nullptr || *b == 0);
  while (*a != 0 && ToAsciiLower(*a) == ToAsciiLower(*b)) {
    ++a;
    ++b;
  }
  return *a == 0 && *b == 0;
}

}  // namespace qv
