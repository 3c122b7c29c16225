#include "components/http/text_codec.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "text/string_block.h"
#include "text/utf8_codec.h"

namespace qv {
namespace {

char16_t UnitAt(const char* bytes, bool bigEndian) noexcept {
  const unsigned first = static_cast<unsigned char>(bytes[0]);
  const unsigned second = static_cast<unsigned char>(bytes[1]);
  return static_cast<char16_t>(bigEndian ? (first << 8) | second : (second << 8) | first);
}

void ReplaceLoneSurrogates(char16_t* units, std::size_t size) noexcept {
  for (std::size_t i = 0; i < size; ++i) {
    if (!IsSurrogate(units[i])) continue;
    const bool pair = IsHighSurrogate(units[i]) && i + 1 < size && IsLowSurrogate(units[i + 1]);
    if (pair) ++i;
    if (!pair) units[i] = kReplacementUnit;
  }
}

// A unique_ptr does not fit, since "no converter" is all bits set instead of null.
class Iconv {
 public:
  explicit Iconv(const std::string& charset) : converter_(iconv_open("UTF-16LE", charset.c_str())) {}
  ~Iconv() {
    if (IsOpen()) iconv_close(converter_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  bool IsOpen() const noexcept { return converter_ != reinterpret_cast<iconv_t>(-1); }
  // Appends to `out`; stops at an invalid byte (returns false, sets errno) or when all is read.
  bool Run(char** in, std::size_t* left, std::u16string* out);

 private:
  iconv_t converter_;
};

bool Iconv::Run(char** in, std::size_t* left, std::u16string* out) {
  for (;;) {
    char16_t units[2048];
    char* next = reinterpret_cast<char*>(units);
    std::size_t room = sizeof(units);
    const std::size_t result = iconv(converter_, in, left, &next, &room);
    const int error = errno;
    out->append(units, (sizeof(units) - room) / sizeof(char16_t));
    explicit_bzero(units, sizeof(units) - room);
    if (result != static_cast<std::size_t>(-1)) return true;
    if (error == E2BIG) continue;
    return false;
  }
}

}  // namespace

RoomyBytes EncodeUtf8WithRoom(std::u16string_view first, std::u16string_view second, std::size_t room) {
  RoomyBytes bytes;
  bytes.room = room;
  bytes.size = Utf8Size(first) + Utf8Size(second);
  bytes.block = NewSecretBlock(room + bytes.size);
  PutUtf8(second, PutUtf8(first, bytes.Text()));
  return bytes;
}

char16_t* PutDecodedUtf8(std::string_view bytes, char16_t* out) noexcept {
  for (;;) {
    const DecodedUtf8 decoded = DecodeWellFormedUtf8(bytes, out);
    out = decoded.end;
    bytes.remove_prefix(decoded.bytes);
    if (bytes.empty()) return out;
    *out++ = kReplacementUnit;
    bytes.remove_prefix(FirstUtf8Piece(bytes).size);
  }
}

char16_t* PutDecodedLatin1(std::string_view bytes, char16_t* out) noexcept {
  for (std::size_t i = 0; i < bytes.size(); ++i) out[i] = static_cast<unsigned char>(bytes[i]);
  return out + bytes.size();
}

char16_t* PutDecodedUtf16(std::string_view bytes, bool bigEndian, char16_t* out) noexcept {
  const std::size_t whole = bytes.size() / 2;
  const std::size_t size = whole + bytes.size() % 2;
  for (std::size_t i = 0; i < whole; ++i) out[i] = UnitAt(bytes.data() + 2 * i, bigEndian);
  if (size > whole) out[whole] = kReplacementUnit;
  ReplaceLoneSurrogates(out, size);
  return out + size;
}

WideString DecodeUtf8(std::string_view bytes) {
  char16_t* const units = NewStringBlock(bytes.size());
  SetStringLength(units, static_cast<std::size_t>(PutDecodedUtf8(bytes, units) - units));
  return WideString::Attach(units);
}

WideString DecodeLatin1(std::string_view bytes) {
  char16_t* const units = NewStringBlock(bytes.size());
  SetStringLength(units, static_cast<std::size_t>(PutDecodedLatin1(bytes, units) - units));
  return WideString::Attach(units);
}

bool DecodeByIconv(std::string_view bytes, const std::string& charset, WideString* text) {
  Iconv converter(charset);
  if (!converter.IsOpen()) return false;
  std::u16string units;
  units.reserve(bytes.size());                 // avoids most reallocations
  char* in = const_cast<char*>(bytes.data());  // iconv does not write to its input
  std::size_t left = bytes.size();
  while (left > 0 && !converter.Run(&in, &left, &units)) {
    units += kReplacementUnit;
    if (left == 0) break;
    ++in;
    --left;
  }
  *text = WideString(std::u16string_view(units));
  explicit_bzero(units.data(), units.size() * sizeof(char16_t));
  return true;
}

bool IsUtf8(std::string_view bytes) noexcept {
  bytes.remove_prefix(AsciiPrefix(bytes));
  while (!bytes.empty()) {
    const Utf8Piece piece = FirstUtf8Piece(bytes);
    if (!piece.isWhole) return false;
    bytes.remove_prefix(piece.size);
  }
  return true;
}

std::size_t OpenTailUtf8(std::string_view bytes) noexcept {
  const std::size_t most = std::min<std::size_t>(3, bytes.size());
  for (std::size_t tail = most; tail > 0; --tail) {
    const Utf8Piece piece = FirstUtf8Piece(bytes.substr(bytes.size() - tail));
    if (piece.isOpen && piece.size == tail) return tail;
  }
  return 0;
}

std::size_t OpenTailUtf16(std::string_view bytes, bool bigEndian) noexcept {
  const std::size_t odd = bytes.size() % 2;
  if (bytes.size() < 2 + odd) return odd;
  const char16_t last = UnitAt(bytes.data() + bytes.size() - odd - 2, bigEndian);
  return odd + (IsHighSurrogate(last) ? 2 : 0);
}

}  // namespace qv
