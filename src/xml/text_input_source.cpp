#include "xml/text_input_source.h"

#include <algorithm>
#include <cstring>

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr char16_t kReplacement = 0xFFFD;

bool IsSurrogate(char16_t unit) noexcept {
  return (unit & 0xF800) == 0xD800;
}
bool IsHighSurrogate(char16_t unit) noexcept {
  return (unit & 0xFC00) == 0xD800;
}
bool IsLowSurrogate(char16_t unit) noexcept {
  return (unit & 0xFC00) == 0xDC00;
}

// True for a surrogate at `index` that is part of a pair.
bool IsPaired(std::u16string_view text, std::size_t index) noexcept {
  if (IsHighSurrogate(text[index])) return index + 1 < text.size() && IsLowSurrogate(text[index + 1]);
  return index > 0 && IsHighSurrogate(text[index - 1]);
}

bool HoldsSurrogates(std::u16string_view text) noexcept {
  unsigned found = 0;
  for (const char16_t unit : text)
    found |= static_cast<unsigned>(IsSurrogate(unit));  // no branch: it vectorizes
  return found != 0;
}

class TextStream : public xc::BinInputStream {
 public:
  explicit TextStream(std::u16string_view text) noexcept : text_(text) {
    if (!text_.empty() && text_.front() == kByteOrderMark) text_.remove_prefix(1);
  }

  XMLFilePos curPos() const override { return position_ * sizeof(char16_t); }
  const XMLCh* getContentType() const override { return nullptr; }

  XMLSize_t readBytes(XMLByte* toFill, XMLSize_t maxToRead) override {
    const std::size_t count = std::min<std::size_t>(text_.size() - position_, maxToRead / sizeof(char16_t));
    if (count == 0) return 0;
    std::memcpy(toFill, text_.data() + position_, count * sizeof(char16_t));
    if (HoldsSurrogates(text_.substr(position_, count))) ReplaceLoneSurrogates(toFill, count);
    position_ += count;
    return count * sizeof(char16_t);
  }

 private:
  void ReplaceLoneSurrogates(XMLByte* bytes, std::size_t count) const noexcept {
    for (std::size_t i = 0; i < count; ++i) {
      if (!IsSurrogate(text_[position_ + i]) || IsPaired(text_, position_ + i)) continue;
      std::memcpy(bytes + i * sizeof(char16_t), &kReplacement, sizeof(char16_t));
    }
  }

  std::u16string_view text_;
  std::size_t position_ = 0;
};

}  // namespace

TextInputSource::TextInputSource(std::u16string_view text, const char16_t* systemId,
                                 xc::MemoryManager* manager)
    : InputSource(systemId, manager), text_(text) {}

xc::BinInputStream* TextInputSource::makeStream() const {
  return new (getMemoryManager()) TextStream(text_);
}

const XMLCh* TextInputSource::getEncoding() const {
  return xc::XMLUni::fgXMLChEncodingString;
}

}  // namespace qv
