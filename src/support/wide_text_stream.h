// A growing text to which a message is written piece by piece. Out of memory throws `_com_error`,
// E_OUTOFMEMORY.
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

  // Before the first append: what is written is a secret (secret_text.h), and so is the text that is taken.
  void HoldsSecret() noexcept { isSecret_ = true; }
  // What is written from now on is none.
  void EndSecret() noexcept;
  // As it stands, null units too.
  void Append(std::u16string_view text);
  // Escaped once, as EncodeXmlText does.
  void AppendEncoded(std::u16string_view text);
  // Escaped and the result escaped again, in one pass.
  void AppendTwiceEncoded(std::u16string_view text);
  // `<name>text</name>`, the text escaped, or `<name/>` for an empty text.
  void AppendElement(std::u16string_view name, std::u16string_view text);
  // ` name="value"`, the value escaped.
  void AppendAttribute(std::u16string_view name, std::u16string_view value);
  // The null unit that ends a finished message.
  void AppendNull() { Append(std::u16string_view(u"\0", 1)); }

  std::size_t size() const noexcept { return length_; }
  // Borrowed until the next append.
  std::u16string_view view() const noexcept { return {text_, size()}; }
  // The text up to its first null unit. The stream is empty afterwards. Copies nothing.
  WideString TakeText();

 private:
  char16_t* Room(std::size_t units);  // where `units` more units may be written
  void Wrote(const char16_t* end);
  void AppendEscaped(std::u16string_view text, std::u16string_view ampersand);

  BStr text_ = nullptr;
  std::size_t length_ = 0;
  std::size_t capacity_ = 0;
  bool isSecret_ = false;
  std::size_t firstNull_ = std::u16string_view::npos;
};

// The one escape of XML that is written by hand.
// " & ' < > become their predefined entities (XML 1.0, 4.6); units from 0x7F up become decimal character
// references, one per 16-bit unit; all else stays, control characters too. Stops at the first null unit.
// Never null.
WideString EncodeXmlText(const WideString& text);

}  // namespace qv
