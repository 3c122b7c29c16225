#include "xml/serializer_output.h"

#include <algorithm>

#include <xercesc/dom/DOMException.hpp>

namespace qv {
namespace {

bool IsAscii(char16_t unit) noexcept {
  return unit < 0x80;
}

bool IsPlainInAttribute(char16_t unit) noexcept {
  return unit >= 0x20 && unit < 0x7F && unit != u'&' && unit != u'<' && unit != u'>' && unit != u'"';
}

bool IsPlainInText(char16_t unit) noexcept {
  return IsPlainInAttribute(unit) || unit == u'"' || unit == u'\n' || unit == u'\t';
}

bool IsFirstHalf(char16_t unit) noexcept {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsSecondHalf(char16_t unit) noexcept {
  return unit >= 0xDC00 && unit < 0xE000;
}

// For some lone surrogates the formatter never returns, and it writes invalid UTF-8 for others.
void RequirePairs(const char16_t* at, const char16_t* end) {
  for (; at != end; ++at) {
    if (IsFirstHalf(*at) && at + 1 != end && IsSecondHalf(at[1]))
      ++at;
    else if (IsFirstHalf(*at) || IsSecondHalf(*at))
      throw xercesc::DOMException(xercesc::DOMException::INVALID_CHARACTER_ERR);
  }
}

}  // namespace

void SerializerOutput::Put(const XMLCh* text) {
  if (text != nullptr) PutRuns(text, &IsAscii, Formatter::NoEscapes);
}

void SerializerOutput::PutText(std::u16string_view text) {
  PutRuns(text, &IsPlainInText, Formatter::CharEscapes);
}

void SerializerOutput::PutAttribute(std::u16string_view text) {
  PutRuns(text, &IsPlainInAttribute, Formatter::AttrEscapes);
}

// Surrogates are never plain, so a run never splits a pair.
void SerializerOutput::PutRuns(std::u16string_view text, bool (*isPlain)(char16_t unit),
                               Formatter::EscapeFlags escapes) {
  const char16_t* at = text.data();
  const char16_t* const end = at + text.size();
  while (at != end) {
    const char16_t* const special = std::find_if_not(at, end, isPlain);
    target_.Append({at, static_cast<std::size_t>(special - at)});
    at = std::find_if(special, end, isPlain);
    if (at == special) continue;
    RequirePairs(special, at);
    formatter_.formatBuf(special, static_cast<XMLSize_t>(at - special), escapes, Formatter::DefaultUnRep);
  }
}

}  // namespace qv
