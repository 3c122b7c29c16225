#include "support/wide_text_stream.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "qvscriptwells/secret_text.h"
#include "support/escape_units.h"
#include "text/string_block.h"

namespace qv {
namespace {

constexpr std::size_t kFirstCapacity = 128;
constexpr std::size_t kLongestTwiceEncoded = 12;  // "&amp;#65535;"
constexpr std::u16string_view kAmp = u"&amp;";
constexpr std::size_t kNone = std::u16string_view::npos;

char16_t* Put(char16_t* to, std::u16string_view text) noexcept {
  if (!text.empty()) std::memcpy(to, text.data(), text.size() * sizeof(char16_t));
  return to + text.size();
}

// Writes an escaped unit; `ampersand` replaces each "&" of its escape.
char16_t* PutEscaped(char16_t* to, char16_t unit, std::u16string_view ampersand) noexcept {
  const std::u16string_view entity = XmlEntity(unit);
  to = Put(to, ampersand);
  if (!entity.empty()) return Put(to, entity.substr(1));
  char digits[8] = {};
  const char* const end = std::to_chars(digits, digits + sizeof digits, static_cast<unsigned>(unit)).ptr;
  *to++ = u'#';
  for (const char* digit = digits; digit != end; ++digit) *to++ = static_cast<char16_t>(*digit);
  *to++ = u';';
  return to;
}

}  // namespace

WideTextStream::~WideTextStream() {
  if (text_ != nullptr) SetStringLength(text_, length_);
  FreeString(text_);
}

char16_t* WideTextStream::Room(std::size_t units) {
  const std::size_t needed = size() + units;
  if (text_ == nullptr) {
    capacity_ = std::max(needed, kFirstCapacity);
    text_ = NewStringBlock(capacity_);
    if (isSecret_) MarkSecret(text_);
  } else if (needed > capacity_) {
    const std::size_t larger = std::max(needed, capacity_ + capacity_ / 2);
    SetStringLength(text_, length_);
    text_ = ResizeStringBlock(text_, larger);
    capacity_ = larger;
  }
  return text_ + size();
}

void WideTextStream::Wrote(const char16_t* end) {
  length_ = static_cast<std::size_t>(end - text_);
}

void WideTextStream::EndSecret() noexcept {
  if (isSecret_ && text_ != nullptr) MarkSecretFront(text_, length_);
  isSecret_ = false;
}

void WideTextStream::Append(std::u16string_view text) {
  const std::size_t plain = PlainRun(text);  // ends at a null unit too, and is faster than find
  const std::size_t null = firstNull_ == kNone && plain != text.size() ? text.find(u'\0', plain) : kNone;
  if (null != kNone) firstNull_ = size() + null;
  AppendPlain(text);
}

void WideTextStream::AppendPlain(std::u16string_view text) {
  Wrote(Put(Room(text.size()), text));
}

void WideTextStream::AppendEncoded(std::u16string_view text) {
  AppendEscaped(text, u"&");
}

// The second escape changes only the ampersands of the first.
void WideTextStream::AppendTwiceEncoded(std::u16string_view text) {
  AppendEscaped(text, kAmp);
}

void WideTextStream::AppendEscaped(std::u16string_view text, std::u16string_view ampersand) {
  char16_t* to = Room(text.size() + kLongestTwiceEncoded);
  const char16_t* limit = text_ + capacity_ - kLongestTwiceEncoded;
  while (!text.empty() && text.front() != 0) {
    const std::size_t plain = PlainRun(text);
    if (to + plain > limit) {
      Wrote(to);
      to = Room(text.size() + text.size() / 2 + 2 * kLongestTwiceEncoded);
      limit = text_ + capacity_ - kLongestTwiceEncoded;
    }
    to = Put(to, text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty() || text.front() == 0) break;
    to = PutEscaped(to, text.front(), ampersand);
    text.remove_prefix(1);
  }
  Wrote(to);
}

void WideTextStream::AppendElement(std::u16string_view name, std::u16string_view text) {
  constexpr std::size_t kMarks = 5;
  if (name.find(u'\0') != kNone) {
    firstNull_ = std::min(firstNull_, size() + 1 + name.find(u'\0'));
  }
  char16_t* to = Room(2 * name.size() + kMarks);
  *to++ = u'<';
  to = Put(to, name);
  if (text.empty()) {
    *to++ = u'/';
    *to++ = u'>';
    return Wrote(to);
  }
  *to++ = u'>';
  Wrote(to);
  AppendEncoded(text);
  to = Room(name.size() + kMarks);
  *to++ = u'<';
  *to++ = u'/';
  to = Put(to, name);
  *to++ = u'>';
  Wrote(to);
}

void WideTextStream::AppendAttribute(std::u16string_view name, std::u16string_view value) {
  Append(u" ");
  Append(name);
  Append(u"=\"");
  AppendEncoded(value);
  Append(u"\"");
}

WideString WideTextStream::TakeText() {
  Room(0);
  if (isSecret_ && firstNull_ < size())
    explicit_bzero(text_ + firstNull_, (size() - firstNull_) * sizeof(char16_t));
  SetStringLength(text_, std::min(size(), firstNull_));
  length_ = 0;
  WideString taken = WideString::Attach(text_);
  text_ = nullptr;
  capacity_ = 0;
  firstNull_ = kNone;
  return taken;
}

WideString EncodeXmlText(const WideString& text) {
  if (!text.view().empty() && PlainRun(text.view()) == text.size()) return text;  // shared
  WideTextStream stream;
  stream.AppendEncoded(text.view());
  return stream.TakeText();
}

}  // namespace qv
