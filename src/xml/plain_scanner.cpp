#include "xml/plain_scanner.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace qv {
namespace {

// What an ASCII unit can be.
enum Class : unsigned char {
  kName = 1,       // part of a name
  kNameStart = 2,  // begins one
  kText = 4,       // part of a text, without a meaning
  kValue = 8,      // and in the value of an attribute
  kSpace = 16,     // may stand between attributes
};

constexpr std::array<unsigned char, 128> MakeClasses() {
  std::array<unsigned char, 128> classes{};
  for (std::size_t unit = 0x20; unit < classes.size(); ++unit) classes[unit] = kText | kValue;
  for (const char16_t unit : {u'<', u'&', u'>'}) classes[unit] = 0;
  classes[']'] = kValue;
  classes['"'] = kText;
  classes['\''] = kText;
  classes['\t'] = kText | kSpace;
  classes['\n'] = kText | kSpace;
  classes[' '] |= kSpace;
  for (std::size_t unit = 'a'; unit <= 'z'; ++unit) {
    classes[unit] |= kName | kNameStart;
    classes[unit - 'a' + 'A'] |= kName | kNameStart;
  }
  for (std::size_t unit = '0'; unit <= '9'; ++unit) classes[unit] |= kName;
  classes['_'] |= kName | kNameStart;
  for (const char16_t unit : {u'-', u'.', u':'}) classes[unit] |= kName;
  return classes;
}

constexpr std::array<unsigned char, 128> kClasses = MakeClasses();

bool Is(char16_t unit, unsigned wanted) noexcept {
  return unit < kClasses.size() && (kClasses[unit] & wanted) != 0;
}

// For units beyond ASCII: false for surrogates, U+FFFE and U+FFFF.
bool IsPlainBeyondAscii(char16_t unit) noexcept {
  return unit < 0xD800 || (unit >= 0xE000 && unit < 0xFFFE);
}

bool IsPair(const char16_t* at) noexcept {
  return (at[0] & 0xFC00) == 0xD800 && (at[1] & 0xFC00) == 0xDC00;
}

// For names, which are short.
bool AreSame(const char16_t* a, const char16_t* b, std::size_t length) noexcept {
  for (; length >= 4; length -= 4, a += 4, b += 4)
    if (std::memcmp(a, b, 4 * sizeof(char16_t)) != 0) return false;
  for (; length != 0; --length)
    if (*a++ != *b++) return false;
  return true;
}

constexpr std::size_t kMostNames = 128;
constexpr std::size_t kLongestName = 256;
constexpr unsigned kMostAttributes = 32;

// The text ends with ">" here, and every loop below stops at one, so none of them has to look for the end.
// After a ">" the text may end.
class PlainScanner {
 public:
  PlainScanner(std::u16string_view text, CompactTree& tree) noexcept
      : begin_(text.data()), at_(begin_), end_(begin_ + text.size()), tree_(tree) {}

  bool Run() {
    while (end_ != at_ && Is(end_[-1], kSpace)) --end_;
    if (end_ == at_ || end_[-1] != u'>' || !Declaration()) return false;
    if (at_ == end_) return false;
    SkipSpace();
    if (*at_ != u'<') return false;
    ++at_;
    if (!StartTag() || !Content()) return false;
    tree_.Finish();
    return at_ == end_;
  }

 private:
  // --- Markup. Each begins after its "<", and false means that the document is not plain.

  bool Content() {
    while (!tree_.IsInDocument()) {
      if (at_ == end_ || (*at_ != u'<' && !TextBetweenTags())) return false;
      ++at_;
      if (!(*at_ == u'/' ? EndTag() : StartTag())) return false;
    }
    return true;
  }

  bool StartTag() {
    CompactTree::Index name = 0;
    if (!Name(&name)) return false;
    tree_.OpenElement(name);
    for (unsigned attributes = 0;; ++attributes) {
      const bool isParted = SkipSpace();
      if (*at_ == u'>') {
        ++at_;
        return true;
      }
      if (*at_ == u'/') {
        tree_.CloseElement();
        return Take(u"/>");
      }
      if (!isParted || attributes == kMostAttributes || !Attribute()) return false;
    }
  }

  bool Attribute() {
    CompactTree::Index name = 0;
    if (!Name(&name)) return false;
    CompactTree::Index& element = elementOf_[name];
    if (element == tree_.CurrentElement()) return false;  // it has one of this name
    element = tree_.CurrentElement();
    SkipSpace();
    if (!Take(u"=")) return false;
    SkipSpace();
    const char16_t quote = *at_;
    if (quote != u'"' && quote != u'\'') return false;
    ++at_;
    const char16_t* const begin = at_;
    if (!SkipValue(quote)) return false;
    CompactTree::Text value = Here(begin);
    if (*at_ == u'&' && !StoreWithReferences(&value, [&] { return SkipValue(quote); })) return false;
    if (*at_ != quote) return false;
    ++at_;
    tree_.AddAttribute(name, value);
    return true;
  }

  bool EndTag() {
    ++at_;
    const CompactTree::Index name = tree_.NameOfOpenElement();
    if (!IsHere(name)) return false;
    at_ += names_[name].size();
    if (*at_ != u'>') SkipSpace();
    if (*at_ != u'>') return false;
    ++at_;
    tree_.CloseElement();
    return true;
  }

  bool TextBetweenTags() {
    const char16_t* const begin = at_;
    if (!SkipText()) return false;
    CompactTree::Text text = Here(begin);
    if (*at_ == u'&' && !StoreWithReferences(&text, [this] { return SkipText(); })) return false;
    if (*at_ != u'<') return false;
    tree_.AddText(text);
    return true;
  }

  // <?xml version="1.0" encoding="..." standalone="..."?>, of which the last two may be missing. What else
  // begins with "<?" is not plain.
  bool Declaration() {
    if (!Take(u"<?")) return true;
    if (!Take(u"xml") || !SkipBlanks() || !Take(u"version") || !TakeQuoted(u"1.0")) return false;
    bool isParted = SkipBlanks();
    if (isParted && Take(u"encoding")) {
      if (!Encoding()) return false;
      isParted = SkipBlanks();
    }
    if (isParted && Take(u"standalone")) {
      const char16_t* const begin = at_;
      if (!TakeQuoted(u"yes")) {
        at_ = begin;
        if (!TakeQuoted(u"no")) return false;
      }
      SkipBlanks();
    }
    return Take(u"?>");
  }

  bool Encoding() {
    char16_t quote = 0;
    if (!OpenQuote(&quote)) return false;
    if (!Is(*at_, kNameStart) || *at_ == u'_') return false;
    while (Is(*at_, kName) && *at_ != u':') ++at_;
    if (*at_ != quote) return false;
    ++at_;
    return true;
  }

  // --- Names.

  // A name is mostly the one that followed the name before it the last time, too.
  bool Name(CompactTree::Index* number) {
    unsigned char& follower = followers_[lastName_];
    if (IsHere(follower) && !Is(at_[names_[follower].size()], kName)) {
      at_ += names_[follower].size();
    } else if (!OtherName(&follower)) {
      return false;
    }
    lastName_ = follower;
    *number = follower;
    return true;
  }

  // Whether the name is next, with at least one unit after it.
  bool IsHere(CompactTree::Index number) const noexcept {
    const std::u16string_view name = names_[number];
    return !name.empty() && static_cast<std::size_t>(end_ - at_) > name.size() &&
           AreSame(at_, name.data(), name.size());
  }

  bool OtherName(unsigned char* number) {
    const char16_t* const begin = at_;
    if (!Is(*at_, kNameStart)) return false;
    while (Is(*at_, kName)) ++at_;
    const auto length = static_cast<std::size_t>(at_ - begin);
    return length <= kLongestName && NumberOf({begin, length}, number);
  }

  bool NumberOf(std::u16string_view name, unsigned char* number) {
    std::size_t place = name.size() + std::size_t{5} * name.front() + std::size_t{11} * name.back() +
                        std::size_t{3} * name[name.size() / 2];
    while (places_[place % kPlaces] != 0 && names_[places_[place % kPlaces] - 1U] != name) ++place;
    unsigned char& known = places_[place % kPlaces];
    if (known == 0) {
      if (count_ == kMostNames) return false;
      tree_.AddName(Here(name.data()));  // numbers them in order, too
      names_[count_] = name;
      known = static_cast<unsigned char>(++count_);
    }
    *number = static_cast<unsigned char>(known - 1U);
    return true;
  }

  // --- Text.

  // Skips to the next unit with a meaning.
  bool SkipText() {
    for (;; ++at_) {
      SkipUnits(kText);
      if (*at_ == u']') {
        if (at_[1] == u']') return false;
      } else if (*at_ == u'>') {
        if (at_ + 1 == end_) return false;
      } else if (!SkipFirstOfPair()) {
        return true;
      }
    }
  }

  bool SkipValue(char16_t quote) {
    for (;; ++at_) {
      SkipUnits(kValue);
      if (*at_ == u'>') {
        if (at_ + 1 == end_) return false;
      } else if (*at_ == quote || (*at_ != u'"' && *at_ != u'\'' && !SkipFirstOfPair())) {
        return true;
      }
    }
  }

  void SkipUnits(unsigned wanted) noexcept {
    const char16_t* at = at_;
    while (*at < kClasses.size() ? (kClasses[*at] & wanted) != 0 : IsPlainBeyondAscii(*at)) ++at;
    at_ = at;
  }

  bool SkipFirstOfPair() noexcept {
    if (!IsPair(at_)) return false;
    ++at_;
    return true;
  }

  // Copies what was skipped and all that follows, with references replaced by their values.
  template <class Skip>
  bool StoreWithReferences(CompactTree::Text* text, const Skip& skip) {
    const std::uint32_t offset = tree_.StoredUnits();
    tree_.Store({begin_ + text->offset, text->length});
    while (*at_ == u'&') {
      ++at_;
      if (!(*at_ == u'#' ? CharacterReference() : NamedReference())) return false;
      const char16_t* const begin = at_;
      if (!skip()) return false;
      tree_.Store({begin, static_cast<std::size_t>(at_ - begin)});
    }
    *text = {offset, tree_.StoredUnits() - offset, true};
    return true;
  }

  bool NamedReference() {
    struct Entity {
      std::u16string_view name;
      std::u16string_view value;
    };
    constexpr Entity kEntities[] = {
        {u"amp;", u"&"}, {u"lt;", u"<"}, {u"gt;", u">"}, {u"quot;", u"\""}, {u"apos;", u"'"}};
    const auto* const found = std::find_if(std::begin(kEntities), std::end(kEntities),
                                           [this](const Entity& entity) { return Take(entity.name); });
    if (found == std::end(kEntities)) return false;
    tree_.Store(found->value);
    return true;
  }

  bool CharacterReference() {
    ++at_;
    const bool isHex = *at_ == u'x';
    if (isHex) ++at_;
    const char16_t* const begin = at_;
    std::uint32_t value = 0;
    for (std::uint32_t digit = DigitAt(isHex); digit != kNoDigit; digit = DigitAt(isHex)) {
      value = value * (isHex ? 16U : 10U) + digit;
      if (value > 0x10FFFF) return false;
      ++at_;
    }
    return at_ != begin && Take(u";") && StoreCharacter(value);
  }

  static constexpr std::uint32_t kNoDigit = 99;

  std::uint32_t DigitAt(bool isHex) const noexcept {
    const char16_t unit = *at_;
    if (unit >= u'0' && unit <= u'9') return unit - std::uint32_t{u'0'};
    const std::uint32_t letter = (unit | 0x20U) - u'a';
    return isHex && unit < 128 && letter < 6 ? letter + 10 : kNoDigit;
  }

  bool StoreCharacter(std::uint32_t value) {
    if (value >= 0x10000) {
      const std::uint32_t rest = value - 0x10000;
      const char16_t pair[] = {static_cast<char16_t>(0xD800 + (rest >> 10)),
                               static_cast<char16_t>(0xDC00 + (rest & 0x3FF))};
      tree_.Store({pair, 2});
      return true;
    }
    const auto unit = static_cast<char16_t>(value);
    if (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r') return false;
    if (!IsPlainBeyondAscii(unit)) return false;
    tree_.Store({&unit, 1});
    return true;
  }

  // --- Units.

  bool Take(std::u16string_view wanted) noexcept {
    const char16_t* at = at_;
    for (const char16_t unit : wanted) {
      if (at == end_ || *at != unit) return false;
      ++at;
    }
    at_ = at;
    return true;
  }

  bool OpenQuote(char16_t* quote) noexcept {
    SkipBlanks();
    if (!Take(u"=")) return false;
    SkipBlanks();
    *quote = *at_;
    return Take(u"\"") || Take(u"'");
  }

  bool TakeQuoted(std::u16string_view value) noexcept {
    char16_t quote = 0;
    return OpenQuote(&quote) && Take(value) && Take({&quote, 1});
  }

  bool SkipBlanks() noexcept {
    const char16_t* const begin = at_;
    while (*at_ == u' ') ++at_;
    return at_ != begin;
  }

  bool SkipSpace() noexcept {
    const char16_t* const begin = at_;
    while (Is(*at_, kSpace)) ++at_;
    return at_ != begin;
  }

  // From there to here, as a view of the text.
  CompactTree::Text Here(const char16_t* begin) const noexcept {
    return {static_cast<std::uint32_t>(begin - begin_), static_cast<std::uint32_t>(at_ - begin), false};
  }

  static constexpr std::size_t kPlaces = 2 * kMostNames;

  const char16_t* const begin_;
  const char16_t* at_;
  const char16_t* end_;
  CompactTree& tree_;
  std::array<std::u16string_view, kMostNames> names_;
  unsigned count_ = 0;
  unsigned char lastName_ = 0;
  unsigned char followers_[kMostNames] = {};
  unsigned char places_[kPlaces] = {};             // numbers of names, each plus 1
  CompactTree::Index elementOf_[kMostNames] = {};  // that had an attribute of this name last
};

}  // namespace

bool ScanPlainDocument(std::u16string_view text, CompactTree& tree) {
  return text.size() <= CompactTree::kMostUnits && PlainScanner(text, tree).Run();
}

}  // namespace qv
