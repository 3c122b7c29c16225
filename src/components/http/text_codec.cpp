#include "components/http/text_codec.h"

#include <iconv.h>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "text/string_block.h"

namespace qv {
namespace {

constexpr char16_t kReplacement = 0xFFFD;
bool IsHighSurrogate(char16_t c) noexcept {
  return c >= 0xD800 && c < 0xDC00;
}
bool IsLowSurrogate(char16_t c) noexcept {
  return c >= 0xDC00 && c < 0xE000;
}
bool IsSurrogate(char32_t c) noexcept {
  return c >= 0xD800 && c < 0xE000;
}

#ifdef __SSE2__

constexpr std::size_t kStep = 16;

// Copies sixteen units as bytes; false, and copies nothing, if one of them is not ASCII.
bool NarrowStep(const char16_t* in, char* out) noexcept {
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 8));
  const __m128i beyond = _mm_and_si128(_mm_or_si128(low, high), _mm_set1_epi16(static_cast<short>(0xFF80)));
  if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyond, _mm_setzero_si128())) != 0xFFFF) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(low, high));
  return true;
}

bool WidenStep(const char* in, char16_t* out) noexcept {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
  if (_mm_movemask_epi8(bytes) != 0) return false;
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(bytes, zero));
  return true;
}

#else

constexpr std::size_t kStep = 1;

bool NarrowStep(const char16_t* in, char* out) noexcept {
  if (*in >= 0x80) return false;
  *out = static_cast<char>(*in);
  return true;
}

bool WidenStep(const char* in, char16_t* out) noexcept {
  const unsigned char byte = static_cast<unsigned char>(*in);
  if (byte >= 0x80) return false;
  *out = byte;
  return true;
}

#endif

// Copies the ASCII prefix and returns its length.
std::size_t NarrowAscii(const char16_t* in, std::size_t size, char* out) noexcept {
  std::size_t done = 0;
  while (done + kStep <= size && NarrowStep(in + done, out + done)) done += kStep;
  for (; done < size && in[done] < 0x80; ++done) out[done] = static_cast<char>(in[done]);
  return done;
}

std::size_t WidenAscii(const char* in, std::size_t size, char16_t* out) noexcept {
  std::size_t done = 0;
  while (done + kStep <= size && WidenStep(in + done, out + done)) done += kStep;
  for (; done < size && static_cast<unsigned char>(in[done]) < 0x80; ++done)
    out[done] = static_cast<unsigned char>(in[done]);
  return done;
}

// Removes and returns the first character.
char32_t NextCharacter(std::u16string_view* text) noexcept {
  const char16_t first = text->front();
  text->remove_prefix(1);
  if (IsHighSurrogate(first) && !text->empty() && IsLowSurrogate(text->front())) {
    const char16_t second = text->front();
    text->remove_prefix(1);
    return 0x10000 + ((static_cast<char32_t>(first) - 0xD800) << 10) +
           (static_cast<char32_t>(second) - 0xDC00);
  }
  return IsSurrogate(first) ? char32_t{kReplacement} : char32_t{first};
}

char Byte(char32_t value) noexcept {
  return static_cast<char>(static_cast<unsigned char>(value));
}

char* PutUtf8(char32_t c, char* out) noexcept {
  if (c < 0x80) {
    *out++ = Byte(c);
    return out;
  }
  if (c < 0x800) {
    *out++ = Byte(0xC0 | (c >> 6));
  } else if (c < 0x10000) {
    *out++ = Byte(0xE0 | (c >> 12));
    *out++ = Byte(0x80 | ((c >> 6) & 0x3F));
  } else {
    *out++ = Byte(0xF0 | (c >> 18));
    *out++ = Byte(0x80 | ((c >> 12) & 0x3F));
    *out++ = Byte(0x80 | ((c >> 6) & 0x3F));
  }
  *out++ = Byte(0x80 | (c & 0x3F));
  return out;
}

std::size_t Utf8Size(std::u16string_view text) noexcept {
  std::size_t size = 0;
  while (!text.empty()) {
    const char32_t c = NextCharacter(&text);
    size += c < 0x80 ? 1U : c < 0x800 ? 2U : c < 0x10000 ? 3U : 4U;
  }
  return size;
}

char* PutUtf8(std::u16string_view text, char* out) noexcept {
  while (!text.empty()) {
    const std::size_t plain = NarrowAscii(text.data(), text.size(), out);
    text.remove_prefix(plain);
    out += plain;
    while (!text.empty() && text.front() >= 0x80) out = PutUtf8(NextCharacter(&text), out);
  }
  return out;
}

// Lead byte: how many bytes follow, and the range of the first of them, which rules out overlong forms,
// surrogates and values beyond Unicode.
struct Lead {
  std::size_t more;
  unsigned char low;
  unsigned char high;
};

Lead LeadOf(unsigned char byte) noexcept {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

// The longest prefix that could begin a character, and the character if the prefix is complete.
struct Piece {
  std::size_t size;
  char32_t character;
  bool whole;
  bool open;  // the bytes ended inside the character
};

Piece FirstPiece(std::string_view bytes) noexcept {
  const unsigned char first = static_cast<unsigned char>(bytes.front());
  if (first < 0x80) return {1, first, true, false};
  const Lead lead = LeadOf(first);
  if (lead.more == 0) return {1, kReplacement, false, false};
  char32_t value = first & (0x3FU >> lead.more);
  for (std::size_t i = 1; i <= lead.more; ++i) {
    if (i == bytes.size()) return {i, kReplacement, false, true};
    const unsigned char next = static_cast<unsigned char>(bytes[i]);
    const bool fits = i == 1 ? next >= lead.low && next <= lead.high : (next & 0xC0) == 0x80;
    if (!fits) return {i, kReplacement, false, false};
    value = (value << 6) | (next & 0x3FU);
  }
  return {lead.more + 1, value, true, false};
}

char16_t* PutUtf16(char32_t c, char16_t* out) noexcept {
  if (c < 0x10000) {
    *out++ = static_cast<char16_t>(c);
    return out;
  }
  *out++ = static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
  *out++ = static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
  return out;
}

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
    if (!pair) units[i] = kReplacement;
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

std::string EncodeUtf8(std::u16string_view text) {
  std::string bytes(Utf8Size(text), '\0');
  PutUtf8(text, bytes.data());
  return bytes;
}

RoomyBytes EncodeUtf8WithRoom(std::u16string_view first, std::u16string_view second, std::size_t room) {
  RoomyBytes bytes;
  bytes.room = room;
  bytes.block = NewSecretBlock(room + first.size() + second.size());
  const std::size_t plain = NarrowAscii(first.data(), first.size(), bytes.Text());
  first.remove_prefix(plain);
  const std::size_t total = plain + Utf8Size(first) + Utf8Size(second);
  if (!first.empty() || total > plain + second.size()) {
    SecretBlock larger = NewSecretBlock(room + total);
    std::memcpy(larger.get() + room, bytes.Text(), plain);
    bytes.block = std::move(larger);
  }
  PutUtf8(second, PutUtf8(first, bytes.Text() + plain));
  bytes.size = total;
  return bytes;
}

WideString DecodeUtf8(std::string_view bytes) {
  char16_t* const units = NewStringBlock(bytes.size());
  WideString text = WideString::Attach(units);
  char16_t* out = units;
  while (!bytes.empty()) {
    const std::size_t plain = WidenAscii(bytes.data(), bytes.size(), out);
    bytes.remove_prefix(plain);
    out += plain;
    while (!bytes.empty() && static_cast<unsigned char>(bytes.front()) >= 0x80) {
      const Piece piece = FirstPiece(bytes);
      out = PutUtf16(piece.character, out);
      bytes.remove_prefix(piece.size);
    }
  }
  SetStringLength(units, static_cast<std::size_t>(out - units));
  return text;
}

WideString DecodeLatin1(std::string_view bytes) {
  char16_t* const units = NewStringBlock(bytes.size());
  WideString text = WideString::Attach(units);
  for (std::size_t i = 0; i < bytes.size(); ++i) units[i] = static_cast<unsigned char>(bytes[i]);
  SetStringLength(units, bytes.size());
  return text;
}

WideString DecodeUtf16(std::string_view bytes, bool bigEndian) {
  const std::size_t whole = bytes.size() / 2;
  const std::size_t size = whole + bytes.size() % 2;
  char16_t* const units = NewStringBlock(size);
  WideString text = WideString::Attach(units);
  for (std::size_t i = 0; i < whole; ++i) units[i] = UnitAt(bytes.data() + 2 * i, bigEndian);
  if (size > whole) units[whole] = kReplacement;
  ReplaceLoneSurrogates(units, size);
  SetStringLength(units, size);
  return text;
}

bool DecodeByIconv(std::string_view bytes, const std::string& charset, WideString* text) {
  Iconv converter(charset);
  if (!converter.IsOpen()) return false;
  std::u16string units;
  units.reserve(bytes.size());                 // avoids most reallocations
  char* in = const_cast<char*>(bytes.data());  // iconv does not write to its input
  std::size_t left = bytes.size();
  while (left > 0 && !converter.Run(&in, &left, &units)) {
    units += kReplacement;
    if (left == 0) break;
    ++in;
    --left;
  }
  *text = WideString(std::u16string_view(units));
  explicit_bzero(units.data(), units.size() * sizeof(char16_t));
  return true;
}

bool IsUtf8(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const Piece piece = FirstPiece(bytes);
    if (!piece.whole) return false;
    bytes.remove_prefix(piece.size);
  }
  return true;
}

std::size_t OpenTailUtf8(std::string_view bytes) noexcept {
  const std::size_t most = std::min<std::size_t>(3, bytes.size());
  for (std::size_t tail = most; tail > 0; --tail) {
    const Piece piece = FirstPiece(bytes.substr(bytes.size() - tail));
    if (piece.open && piece.size == tail) return tail;
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
