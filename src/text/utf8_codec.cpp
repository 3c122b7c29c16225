#include "text/utf8_codec.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace qv {
namespace {

#ifdef __SSE2__

constexpr std::size_t kStep = 16;

bool IsAscii(__m128i low, __m128i high) noexcept {
  const __m128i beyond = _mm_and_si128(_mm_or_si128(low, high), _mm_set1_epi16(static_cast<short>(0xFF80)));
  return _mm_movemask_epi8(_mm_cmpeq_epi16(beyond, _mm_setzero_si128())) == 0xFFFF;
}

__m128i Eight(const char16_t* in) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
}

bool IsAsciiStep(const char16_t* in) noexcept {
  return IsAscii(Eight(in), Eight(in + 8));
}

// Copies sixteen units as bytes; false, and copies nothing, if one of them is not ASCII.
bool NarrowStep(const char16_t* in, char* out) noexcept {
  const __m128i low = Eight(in);
  const __m128i high = Eight(in + 8);
  if (!IsAscii(low, high)) return false;
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

bool IsAsciiStep(const char16_t* in) noexcept {
  return *in < 0x80;
}

bool NarrowStep(const char16_t* in, char* out) noexcept {
  if (!IsAsciiStep(in)) return false;
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

bool IsAscii(char byte) noexcept {
  return static_cast<unsigned char>(byte) < 0x80;
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
  return IsSurrogate(first) ? char32_t{kReplacementUnit} : char32_t{first};
}

char Byte(char32_t value) noexcept {
  return static_cast<char>(static_cast<unsigned char>(value));
}

char* PutCharacter(char32_t c, char* out) noexcept {
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

}  // namespace

std::size_t NarrowAscii(std::u16string_view text, char* out) noexcept {
  const char16_t* const in = text.data();
  std::size_t done = 0;
  while (done + kStep <= text.size() && NarrowStep(in + done, out + done)) done += kStep;
  for (; done < text.size() && in[done] < 0x80; ++done) out[done] = static_cast<char>(in[done]);
  return done;
}

std::size_t WidenAscii(std::string_view bytes, char16_t* out) noexcept {
  const char* const in = bytes.data();
  std::size_t done = 0;
  while (done + kStep <= bytes.size() && WidenStep(in + done, out + done)) done += kStep;
  for (; done < bytes.size() && IsAscii(in[done]); ++done) out[done] = static_cast<unsigned char>(in[done]);
  return done;
}

std::size_t AsciiPrefix(std::string_view bytes) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t done = 0;
  for (std::uint64_t eight = 0; done + sizeof(eight) <= bytes.size(); done += sizeof(eight)) {
    std::memcpy(&eight, bytes.data() + done, sizeof(eight));
    if ((eight & kHighBits) != 0) break;
  }
  while (done < bytes.size() && IsAscii(bytes[done])) ++done;
  return done;
}

// A surrogate counts as three bytes, the size of U+FFFD. A pair is four bytes, not six.
std::size_t Utf8Size(std::u16string_view text) noexcept {
  std::size_t size = text.size();
  bool afterHigh = false;
  for (std::size_t at = 0; at < text.size();) {
    if (at + kStep <= text.size() && IsAsciiStep(text.data() + at)) {
      afterHigh = false;
      at += kStep;
      continue;
    }
    for (const std::size_t end = std::min(at + kStep, text.size()); at < end; ++at) {
      const char16_t unit = text[at];
      size += (unit >= 0x80 ? 1U : 0U) + (unit >= 0x800 ? 1U : 0U);
      size -= afterHigh && IsLowSurrogate(unit) ? 2U : 0U;
      afterHigh = IsHighSurrogate(unit);
    }
  }
  return size;
}

char* PutUtf8(std::u16string_view text, char* out) noexcept {
  while (!text.empty()) {
    const std::size_t plain = NarrowAscii(text, out);
    text.remove_prefix(plain);
    out += plain;
    while (!text.empty() && text.front() >= 0x80) out = PutCharacter(NextCharacter(&text), out);
  }
  return out;
}

Utf8Piece FirstUtf8Piece(std::string_view bytes) noexcept {
  const unsigned char first = static_cast<unsigned char>(bytes.front());
  if (first < 0x80) return {1, first, true, false};
  const Lead lead = LeadOf(first);
  if (lead.more == 0) return {1, kReplacementUnit, false, false};
  char32_t value = first & (0x3FU >> lead.more);
  for (std::size_t i = 1; i <= lead.more; ++i) {
    if (i == bytes.size()) return {i, kReplacementUnit, false, true};
    const unsigned char next = static_cast<unsigned char>(bytes[i]);
    const bool fits = i == 1 ? next >= lead.low && next <= lead.high : (next & 0xC0) == 0x80;
    if (!fits) return {i, kReplacementUnit, false, false};
    value = (value << 6) | (next & 0x3FU);
  }
  return {lead.more + 1, value, true, false};
}

char16_t* PutUtf16(char32_t character, char16_t* out) noexcept {
  if (character < 0x10000) {
    *out++ = static_cast<char16_t>(character);
    return out;
  }
  *out++ = static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
  *out++ = static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
  return out;
}

DecodedUtf8 DecodeWellFormedUtf8(std::string_view bytes, char16_t* out) noexcept {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const std::size_t plain = WidenAscii(bytes.substr(done), out);
    done += plain;
    out += plain;
    while (done < bytes.size() && !IsAscii(bytes[done])) {
      const Utf8Piece piece = FirstUtf8Piece(bytes.substr(done));
      if (!piece.isWhole) return {done, out};
      out = PutUtf16(piece.character, out);
      done += piece.size;
    }
  }
  return {done, out};
}

}  // namespace qv
