// A growing text for writing a message piece by piece. Lack of memory throws `_com_error`, E_OUTOFMEMORY.
#pragma once

#include <cstddef>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

class WideTextStream {
 public:
  WideTextStream() = default;
  ~WideTextStream();
  WideTextStream(const WideTextStream&) = delete;
  WideTextStream& operator=(const WideTextStream&) = delete;

  // Call before the first append: marks the content and the resulting text as secret (secret_text.h).
  void HoldsSecret() noexcept { isSecret_ = true; }
  // Later content is not secret.
  void EndSecret() noexcept;
  // Call before the first append: the expected number of units, to avoid reallocations.
  void Reserve(std::size_t units) { Room(units); }
  // Appends unchanged, including null units.
  void Append(std::u16string_view text);
  // For literals, which have a known length and no null unit inside.
  template <std::size_t kSize>
  void Append(const char16_t (&literal)[kSize]) {
    AppendPlain({literal, kSize - 1});
  }
  // Escaped once, as EncodeXmlText does.
  void AppendEncoded(std::u16string_view text);
  // Escaped twice, in one pass.
  void AppendTwiceEncoded(std::u16string_view text);
  // `<name>text</name>`, the text escaped, or `<name/>` for an empty text.
  void AppendElement(std::u16string_view name, std::u16string_view text);
  // ` name="value"`, the value escaped.
  void AppendAttribute(std::u16string_view name, std::u16string_view value);
  // Appends the null terminator of a finished message.
  void AppendNull() { Append(std::u16string_view(u"\0", 1)); }

  std::size_t size() const noexcept { return length_; }
  // Borrowed until the next append.
  std::u16string_view view() const noexcept { return {text_, size()}; }
  // Moves out the text up to its first null unit, without a copy; the stream is then empty.
  WideString TakeText();

 private:
  char16_t* Room(std::size_t units);  // space for `units` more units
  void Wrote(const char16_t* end);
  void AppendPlain(std::u16string_view text);
  void AppendEscaped(std::u16string_view text, std::u16string_view ampersand);

  BStr text_ = nullptr;
  std::size_t length_ = 0;
  std::size_t capacity_ = 0;
  bool isSecret_ = false;
  std::size_t firstNull_ = std::u16string_view::npos;
};

// The only handwritten XML escape. " & ' < > become their predefined entities (XML 1.0, 4.6); units from 0x7F
// up become decimal character references, one per 16-bit unit; all else stays, even control characters. Stops
// at the first null unit. Never null.
WideString EncodeXmlText(const WideString& text);

}  // namespace qv
