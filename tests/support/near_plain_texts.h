// Texts by chance near a shape that has its own reader: most have it, the others miss it by a little.
// QV_RANDOM_TEXTS sets how many texts a test compares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

namespace qv {

inline long RandomTexts(long usual) {
  const char* const asked = std::getenv("QV_RANDOM_TEXTS");
  return asked == nullptr ? usual : std::strtol(asked, nullptr, 10);
}

class NearPlainTexts {
 public:
  explicit NearPlainTexts(std::uint32_t seed) : engine_(seed) {}

  std::size_t Below(std::size_t bound) { return engine_() % bound; }
  // Borrowed until the next call. In `shape`, '#' is any digit, and 'b', 'c', 'd', 'g' are digits up to 1, 2,
  // 3 and 6. Every third text is changed in one or two places.
  std::u16string_view Next(std::u16string_view shape) {
    text_.assign(shape);
    for (char16_t& unit : text_) unit = Filled(unit);
    for (std::size_t changes = Below(3) == 0 ? 1 + Below(2) : 0; changes != 0; --changes) Change();
    return text_;
  }

 private:
  char16_t Digit(std::size_t bound) { return static_cast<char16_t>(u'0' + Below(bound)); }
  char16_t Filled(char16_t unit) {
    if (unit == u'#') return Digit(10);
    const bool isBounded = unit == u'b' || unit == u'c' || unit == u'd' || unit == u'g';
    return isBounded ? Digit(static_cast<std::size_t>(unit - u'a') + 1) : unit;
  }
  char16_t Stray() {
    static constexpr char16_t kStrays[] = u"0123456789999-+.:TZ ex\t\u0130\u0661\u2212\0";
    return kStrays[Below(sizeof kStrays / sizeof *kStrays)];
  }
  void Change() {
    const std::size_t at = Below(text_.size() + 1);
    const std::size_t kind = Below(3);
    if (kind == 0) text_.insert(at, 1, Stray());
    if (kind == 1 && at < text_.size()) text_[at] = Stray();
    if (kind == 2 && at < text_.size()) text_.erase(at, 1);
  }

  std::mt19937 engine_;
  std::u16string text_;
};

}  // namespace qv
