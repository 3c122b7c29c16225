#include "face/tape/tape_text.h"

#include <utf8.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <utility>

#include "face/text/unsafe_characters.h"

namespace scriptwells {

namespace {

constexpr std::string_view kKinds[] = {"session:", "password:", "ticket:"};
constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kBytesOfLine = 57;       // 76 digits in base64
constexpr std::size_t kLongestSecret = 65536;  // the length of one; a tape may name any
constexpr std::size_t kMostDigits = 9;

struct EscapeRow {
  char byte;
  char letter;
};
constexpr EscapeRow kEscapes[] = {{'\\', '\\'}, {'\r', 'r'}, {'\t', 't'}, {'<', '<'}};

// Whether a mask could begin with this text.
bool BeginsMask(std::string_view text) {
  return std::any_of(std::begin(kKinds), std::end(kKinds),
                     [text](std::string_view kind) { return text.substr(1, kind.size()) == kind; });
}

std::string HexEscape(char byte) {
  char escape[5];
  static_cast<void>(std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(byte)));
  return escape;
}

bool IsControl(char byte) noexcept {
  return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

// The bytes of a printable character at this place; 0 for any other.
std::size_t PrintableAt(const std::string& text, std::size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  if (first < 0x80) return IsControl(text[at]) ? 0 : 1;
  if (first < 0xC2 || FormatCharacterAt(text, at) != 0) return 0;
  const std::size_t size = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (at + size > text.size() || (first == 0xC2 && static_cast<unsigned char>(text[at + 1]) < 0xA0)) return 0;
  const auto begin = text.begin() + static_cast<std::ptrdiff_t>(at);
  return utf8::is_valid(begin, begin + static_cast<std::ptrdiff_t>(size)) ? size : 0;
}

class LineWriter {
 public:
  explicit LineWriter(TapeSizes sizes) : sizes_(sizes) {}

  void Add(const TapePiece& piece) {
    if (!piece.mask.empty()) return AddMask(piece);
    for (std::size_t at = 0; at < piece.text.size();) at += AddCharacter(piece.text, at);
  }
  std::vector<std::string> Take() {
    if (!line_.empty()) Break();
    return std::move(lines_);
  }

 private:
  void AddMask(const TapePiece& piece) {
    line_ += "<" + piece.mask + ">";
    if (sizes_ == TapeSizes::kShown) line_ += "{" + std::to_string(piece.size) + "}";
  }
  // Returns its bytes.
  std::size_t AddCharacter(const std::string& text, std::size_t at) {
    if (text[at] == '\n') {
      EndLine();
      return 1;
    }
    if (text[at] == '<' && at > 0 && text[at - 1] == '>') Break();
    const std::size_t size = PrintableAt(text, at);
    if (size == 0 || text[at] == '\\' || (text[at] == '<' && BeginsMask(std::string_view(text).substr(at))))
      return AddEscape(text[at]);
    line_.append(text, at, size);
    return size;
  }
  std::size_t AddEscape(char byte) {
    for (const EscapeRow& row : kEscapes)
      if (row.byte == byte) {
        line_ += std::string("\\") + row.letter;
        return 1;
      }
    line_ += HexEscape(byte);
    return 1;
  }
  // Editors remove a blank at the end.
  void EndLine() {
    if (!line_.empty() && line_.back() == ' ') line_.replace(line_.size() - 1, 1, HexEscape(' '));
    lines_.push_back(std::exchange(line_, {}));
  }
  void Break() { lines_.push_back(std::exchange(line_, {}) + "\\"); }

  TapeSizes sizes_;
  std::string line_;
  std::vector<std::string> lines_;
};

// Printable text with line ends, or nearly.
bool IsText(const TapeText& text) {
  std::size_t bytes = 0;
  std::size_t odd = 0;
  for (const TapePiece& piece : text) {
    if (!piece.mask.empty()) return true;
    for (std::size_t at = 0; at < piece.text.size();) {
      const std::size_t size = PrintableAt(piece.text, at);
      if (size == 0 && piece.text[at] != '\n' && piece.text[at] != '\r' && piece.text[at] != '\t') ++odd;
      at += std::max<std::size_t>(size, 1);
    }
    bytes += piece.text.size();
  }
  return odd * 4 <= bytes;
}

std::string Base64Of(std::string_view bytes) {
  std::string digits;
  unsigned group = 0;
  int bits = 0;
  for (const char byte : bytes) {
    group = (group << 8 | static_cast<unsigned char>(byte)) & 0xFFFF;
    for (bits += 8; bits >= 6; bits -= 6) digits += kBase64[group >> (bits - 6) & 0x3F];
  }
  if (bits > 0) digits += kBase64[group << (6 - bits) & 0x3F];
  digits.append((4 - digits.size() % 4) % 4, '=');
  return digits;
}

std::vector<std::string> Base64Lines(const TapeText& text) {
  std::vector<std::string> lines;
  for (const TapePiece& piece : text)
    for (std::size_t at = 0; at < piece.text.size(); at += kBytesOfLine)
      lines.push_back(Base64Of(std::string_view(piece.text).substr(at, kBytesOfLine)));
  return lines;
}

std::string& BytesAtEnd(TapeText* text) {
  if (text->empty() || !text->back().mask.empty()) text->emplace_back();
  return text->back().text;
}

// A number at the front of the text, which it takes, and `end` after it.
std::size_t TakeNumber(std::string_view* text, char end) {
  const std::size_t digits = text->find(end);
  std::size_t number = 0;
  if (digits == 0 || digits > kMostDigits) throw TapeFault("a mask has no number, or no length");
  const auto result = std::from_chars(text->data(), text->data() + digits, number);
  if (result.ec != std::errc() || result.ptr != text->data() + digits)
    throw TapeFault("a mask has no number, or no length");
  text->remove_prefix(digits + 1);
  return number;
}

// "<session:1>{24}" at the front of the line.
void TakeMask(std::string_view* line, TapeText* text) {
  line->remove_prefix(1);
  const std::string_view kind = line->substr(0, line->find(':') + 1);
  line->remove_prefix(kind.size());
  const std::size_t number = TakeNumber(line, '>');
  if (line->empty() || line->front() != '{') throw TapeFault("a mask has no length");
  line->remove_prefix(1);
  const std::size_t size = TakeNumber(line, '}');
  if (size > kLongestSecret) throw TapeFault("a mask is too long");
  text->push_back({{}, std::string(kind) + std::to_string(number), size});
}

char HexByte(std::string_view digits) {
  unsigned value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (digits.size() != 2 || result.ec != std::errc() || result.ptr != digits.data() + 2)
    throw TapeFault("\\x is not followed by two digits");
  return static_cast<char>(value);
}

// What follows a backslash.
char TakeEscape(std::string_view* line) {
  const char letter = line->front();
  if (letter == 'x') {
    const char byte = HexByte(line->substr(1, 2));
    line->remove_prefix(3);
    return byte;
  }
  for (const EscapeRow& row : kEscapes)
    if (row.letter == letter) {
      line->remove_prefix(1);
      return row.byte;
    }
  throw TapeFault("an escape that is not known");
}

}  // namespace

std::vector<std::string> TapeLines(const TapeText& text, TapeSizes sizes) {
  LineWriter writer(sizes);
  for (const TapePiece& piece : text) writer.Add(piece);
  return writer.Take();
}

std::string MarkedLines(const TapeText& text, std::string_view mark) {
  const bool isBody = mark == ">>" || mark == "<<";
  const bool isText = !isBody || IsText(text);
  const std::string start = isText ? std::string(mark) + " " : std::string(1, mark[0]) + "b ";
  std::string lines;
  for (const std::string& line : isText ? TapeLines(text) : Base64Lines(text)) lines += start + line + "\n";
  return lines;
}

void ReadTapeLine(std::string_view line, TapeText* text) {
  while (!line.empty()) {
    const std::size_t plain = std::min(line.find_first_of("\\<"), line.size());
    if (std::any_of(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(plain), IsControl))
      throw TapeFault("a control character, such as an editor leaves");
    if (plain > 0) BytesAtEnd(text) += line.substr(0, plain);
    line.remove_prefix(plain);
    if (line.empty()) break;
    if (line.front() == '<' && BeginsMask(line)) {
      TakeMask(&line, text);
      continue;
    }
    const bool isEscape = line.front() == '\\';
    line.remove_prefix(1);
    if (isEscape && line.empty()) return;
    BytesAtEnd(text) += isEscape ? TakeEscape(&line) : '<';
  }
  BytesAtEnd(text) += '\n';
}

void ReadBase64Line(std::string_view line, TapeText* text) {
  const std::size_t digits = std::min(line.find('='), line.size());
  const bool endsWell = line.find_first_not_of('=', digits) == std::string_view::npos;
  if (line.size() % 4 != 0 || line.size() - digits > 2 || !endsWell)
    throw TapeFault("a damaged line of base64");
  if (digits == 0) return;
  std::string& bytes = BytesAtEnd(text);
  unsigned group = 0;
  int bits = 0;
  for (const char digit : line.substr(0, digits)) {
    const std::size_t value = kBase64.find(digit);
    if (value == std::string_view::npos) throw TapeFault("a damaged line of base64");
    group = (group << 6 | static_cast<unsigned>(value)) & 0xFFFF;
    bits += 6;
    if (bits >= 8) bytes += static_cast<char>(group >> (bits -= 8) & 0xFF);
  }
}

std::size_t SizeOf(const TapeText& text) noexcept {
  std::size_t size = 0;
  for (const TapePiece& piece : text) size += piece.mask.empty() ? piece.text.size() : piece.size;
  return size;
}

}  // namespace scriptwells
