#include "support/escape_units.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qv {
namespace {

#if defined(__SSE2__)
constexpr std::size_t kBlock = 16;

__m128i Equal(__m128i bytes, char value) noexcept {
  return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(value));
}
__m128i Masked(__m128i bytes, int mask) noexcept {
  return _mm_and_si128(bytes, _mm_set1_epi8(static_cast<char>(mask)));
}

// One bit for each of the 16 units from `units` that ends a run. Packing converts units from 0x100 up to
// 0xFF, and those from 0x8000 up, which are negative for it, to 0: both end a run.
unsigned EndsInBlock(const char16_t* units) noexcept {
  const auto* const from = reinterpret_cast<const __m128i*>(units);
  const __m128i bytes = _mm_packus_epi16(_mm_loadu_si128(from), _mm_loadu_si128(from + 1));
  const __m128i from7F = _mm_cmpeq_epi8(_mm_max_epu8(bytes, _mm_set1_epi8(0x7F)), bytes);
  __m128i ends = _mm_or_si128(from7F, _mm_or_si128(Equal(bytes, 0), Equal(bytes, '"')));
  ends = _mm_or_si128(ends, Equal(Masked(bytes, 0xFE), '&'));  // & and '
  ends = _mm_or_si128(ends, Equal(Masked(bytes, 0xFD), '<'));  // < and >
  return static_cast<unsigned>(_mm_movemask_epi8(ends));
}
#endif

}  // namespace

std::u16string_view XmlEntity(char16_t unit) noexcept {
  switch (unit) {
    case u'"':
      return u"&quot;";
    case u'&':
      return u"&amp;";
    case u'\'':
      return u"&apos;";
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    default:
      return {};
  }
}

std::size_t PlainRun(std::u16string_view text) noexcept {
  std::size_t at = 0;
#if defined(__SSE2__)
  for (; at + kBlock <= text.size(); at += kBlock) {
    const unsigned ends = EndsInBlock(text.data() + at);
    if (ends != 0) return at + static_cast<std::size_t>(__builtin_ctz(ends));
  }
#endif
  while (at < text.size() && !EndsPlainRun(text[at])) ++at;
  return at;
}

}  // namespace qv
