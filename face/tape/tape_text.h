// How bytes stand on a tape: as lines of printable text, exact but for masked secrets.
//
//   < HTTP/1.1 200 OK\r                 a line end is LF; CR is "\r"
//   << <r><usid><session:1>{24}</usid>\    "\" at the end: the bytes go on without a line end
//   <b R0lGODlh                         bytes in base64
//
// "\\" is a backslash, "\t" a tab, "\xff" a byte that is not printable UTF-8, and "\<" a "<" that begins no
// mask. A body is broken between "><", too, so that each element of an envelope has a line.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace scriptwells {

// What is wrong with a line; the reader of the tape adds its number.
class TapeFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Bytes, or a masked secret.
struct TapePiece {
  std::string text{};    // of bytes
  std::string mask{};    // "session:1"; empty for bytes
  std::size_t size = 0;  // of the secret, in bytes of the message
};
using TapeText = std::vector<TapePiece>;

enum class TapeSizes { kShown, kLeftOut };

// The lines of a text without their marks and line ends.
std::vector<std::string> TapeLines(const TapeText& text, TapeSizes sizes = TapeSizes::kShown);
// The lines with `mark` and a blank before each. The bytes of a body (">>", "<<") that are mostly not
// printable are in base64 (">b", "<b").
std::string MarkedLines(const TapeText& text, std::string_view mark);

// Append the bytes of a line. Throw TapeFault.
void ReadTapeLine(std::string_view line, TapeText* text);
void ReadBase64Line(std::string_view line, TapeText* text);

// The bytes with `masked` in place of each secret.
template <class Masked>
std::string JoinedBytes(const TapeText& text, const Masked& masked) {
  std::string bytes;
  for (const TapePiece& piece : text) bytes += piece.mask.empty() ? piece.text : masked(piece);
  return bytes;
}
// With their sizes.
std::size_t SizeOf(const TapeText& text) noexcept;

}  // namespace scriptwells
