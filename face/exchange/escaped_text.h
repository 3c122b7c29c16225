// Reads texts through the escapes of XML, URLs and JSON, character by character.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace scriptwells {

// "&lt;" and "&#60;"; "%3C"; "\u003c" and "\"", and what scripts have beyond JSON: "\x3c" and "\'".
enum class Escape { kXml, kPercent, kJson };
// Of the bytes below all escapes. Bytes that are not UTF-8 count as Latin-1.
enum class Coding { kUtf8, kUtf16Little, kUtf16Big };

class EscapedText {
 public:
  static constexpr char32_t kEnd = 0xFFFFFFFF;
  struct Character {
    char32_t value;   // may be one half of a surrogate pair; kEnd after the last one
    std::size_t end;  // where the next one begins, in bytes
  };

  // Borrows the text. The first of `escapes` is the outermost: "&amp;lt;" is "<" for {kXml, kXml}. What is
  // not escaped is read as it is.
  EscapedText(std::string_view text, Coding coding, std::vector<Escape> escapes)
      : text_(text), coding_(coding), escapes_(std::move(escapes)) {}

  // The character that begins at this byte.
  Character At(std::size_t at) const { return Read(at, escapes_.size()); }
  std::string_view Bytes() const noexcept { return text_; }
  const std::vector<Escape>& Escapes() const noexcept { return escapes_; }

 private:
  Character Read(std::size_t at, std::size_t level) const;
  Character ReadPlain(std::size_t at) const;
  Character ReadUtf16(std::size_t at) const;
  Character ReadXml(Character first, std::size_t level) const;
  Character ReadPercent(Character first, std::size_t level) const;
  Character ReadJson(Character first, std::size_t level) const;
  Character ReadHex(std::size_t at, int digits, std::size_t level) const;

  std::string_view text_;
  Coding coding_;
  std::vector<Escape> escapes_;
};

// What an escape begins with: '&', '%', '\'.
char IntroducerOf(Escape escape) noexcept;

// A text of XML without its escapes, in UTF-8.
std::string DecodeXmlText(std::string_view text);

}  // namespace scriptwells
