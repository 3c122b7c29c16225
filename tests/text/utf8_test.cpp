// UTF-8 and UTF-16, there and back.
#include <gtest/gtest.h>
#include <utf8.h>

#include <iterator>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "fixtures/scarce_memory.h"
#include "qvscriptwells/wide_string.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

using Row = std::pair<std::u16string_view, std::string_view>;

// The edges of one, two, three and four bytes, and of the surrogates.
TEST(Utf8, WellFormedTextGoesThereAndComesBack) {
  const Row rows[] = {{u""sv, ""sv},
                      {u"abc~\x7F"sv, "abc~\x7F"sv},
                      {u"a\0b"sv, "a\0b"sv},
                      {u"\u0080"sv, "\xC2\x80"sv},
                      {u"\u00E9"sv, "\xC3\xA9"sv},
                      {u"\u07FF"sv, "\xDF\xBF"sv},
                      {u"\u0800"sv, "\xE0\xA0\x80"sv},
                      {u"\u20AC"sv, "\xE2\x82\xAC"sv},
                      {u"\uD7FF"sv, "\xED\x9F\xBF"sv},
                      {u"\uE000"sv, "\xEE\x80\x80"sv},
                      {u"\uFFFF"sv, "\xEF\xBF\xBF"sv},
                      {u"\U00010000"sv, "\xF0\x90\x80\x80"sv},
                      {u"a\U0001F600z"sv, "a\xF0\x9F\x98\x80z"sv},
                      {u"\U0010FFFF"sv, "\xF4\x8F\xBF\xBF"sv}};
  for (const auto& [wide, bytes] : rows) {
    EXPECT_EQ(ToUtf8(wide), bytes);
    EXPECT_EQ(ToUtf8(WideString(wide)), bytes);
    EXPECT_EQ(FromUtf8(bytes).view(), wide);
  }
  EXPECT_EQ(ToUtf8(WideString()), "");
  EXPECT_EQ(ToUtf8(std::u16string(u"caf\u00E9")), "caf\xC3\xA9");
}

TEST(Utf8, EachLoneSurrogateBecomesOneReplacement) {
  const Row rows[] = {{u"a\xD83D"sv, "a\xEF\xBF\xBD"sv},
                      {u"\xDE00z"sv, "\xEF\xBF\xBDz"sv},
                      {u"\xD83Dz"sv, "\xEF\xBF\xBDz"sv},
                      {u"\xDE00\xD83D"sv, "\xEF\xBF\xBD\xEF\xBF\xBD"sv},
                      {u"\xD83D\xD83D\xDE00"sv, "\xEF\xBF\xBD\xF0\x9F\x98\x80"sv},
                      {u"\xD83D\xDE00\xDE00"sv, "\xF0\x9F\x98\x80\xEF\xBF\xBD"sv},
                      {u"\xD800\xD800\xDFFF"sv, "\xEF\xBF\xBD\xF0\x90\x8F\xBF"sv}};
  for (const auto& [wide, bytes] : rows) EXPECT_EQ(ToUtf8(wide), bytes);
}

// How many replacements there are for one bad sequence is open; that nothing else comes out of it is not. The
// bad ones are cut, never occur, are too long, are surrogates, or are beyond the last character.
TEST(Utf8, MalformedBytesBecomeReplacementsAndNothingElse) {
  for (const std::string_view bad :
       {"\x80"sv, "\xC3"sv, "\xE2"sv, "\xE2\x82"sv, "\xF0\x9F\x98"sv, "\xFF"sv, "\xC0"sv, "\xC0\x80"sv,
        "\xE0\x80\xAF"sv, "\xF0\x80\x80\xAF"sv, "\xED\xA0\x80"sv, "\xED\xA0\xBD\xED\xB8\x80"sv,
        "\xF4\x90\x80\x80"sv, "\xF8\x88\x80\x80\x80"sv}) {
    const WideString text = FromUtf8("a" + std::string(bad) + "z");
    SCOPED_TRACE(testing::PrintToString(text));
    ASSERT_GE(text.size(), 3U);
    EXPECT_EQ(text.view().front(), u'a');
    EXPECT_EQ(text.view().back(), u'z');
    const std::u16string_view inside = text.view().substr(1, text.size() - 2);
    EXPECT_EQ(inside.find_first_not_of(u'\uFFFD'), std::u16string_view::npos);
    EXPECT_LE(inside.size(), bad.size());
  }
  EXPECT_EQ(FromUtf8("a\xC3").view(), u"a\uFFFD"sv);
  EXPECT_EQ(FromUtf8("\x80").view(), u"\uFFFD"sv);
}

// The conversions of utfcpp, character by character.
std::u16string SlowFromUtf8(const std::string& bytes) {
  std::string clean;
  utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(clean), char32_t{0xFFFD});
  std::u16string text;
  utf8::unchecked::utf8to16(clean.begin(), clean.end(), std::back_inserter(text));
  return text;
}

std::string SlowToUtf8(const std::u16string& text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t character = text[at];
    const bool isHigh = character >= 0xD800 && character < 0xDC00;
    if (isHigh && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] < 0xE000)
      character = 0x10000 + ((character - 0xD800) << 10) + (char32_t{text[++at]} - 0xDC00);
    if (character >= 0xD800 && character < 0xE000) character = 0xFFFD;
    utf8::append(character, std::back_inserter(bytes));
  }
  return bytes;
}

// ASCII with some other characters, cut anywhere and with some bytes changed.
class RandomTexts {
 public:
  std::string Bytes() {
    std::string bytes;
    while (bytes.size() < length_(random_)) AppendCharacter(&bytes);
    if (odds_(random_) < 3 && !bytes.empty()) bytes.resize(random_() % bytes.size());
    for (std::size_t left = odds_(random_) % 4; left > 0 && !bytes.empty(); --left)
      bytes[random_() % bytes.size()] = static_cast<char>(random_() % 256);
    return bytes;
  }
  std::u16string Units() {
    std::u16string units = SlowFromUtf8(Bytes());
    for (std::size_t left = odds_(random_) % 4; left > 0 && !units.empty(); --left)
      units[random_() % units.size()] = static_cast<char16_t>(0xD700 + random_() % 0xA00);
    return units;
  }

 private:
  void AppendCharacter(std::string* bytes) {
    static constexpr char32_t kLimits[] = {0x80, 0x800, 0xD800, 0x110000};
    if (odds_(random_) < 9) {
      bytes->append(1 + random_() % 20, static_cast<char>('a' + random_() % 26));
    } else {
      const char32_t character = static_cast<char32_t>(random_() % kLimits[random_() % 4]);
      utf8::append(character >= 0xD800 && character < 0xE000 ? U'\u20AC' : character,
                   std::back_inserter(*bytes));
    }
  }

  std::mt19937 random_{12345};  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  std::uniform_int_distribution<std::size_t> length_{0, 150};
  std::uniform_int_distribution<unsigned> odds_{0, 9};
};

TEST(Utf8, RandomAndDamagedTextsAreConvertedAsCharacterByCharacter) {
  RandomTexts texts;
  for (int i = 0; i < 20'000; ++i) {
    const std::string bytes = texts.Bytes();
    ASSERT_EQ(FromUtf8(bytes).view(), SlowFromUtf8(bytes)) << testing::PrintToString(bytes);
    const std::u16string units = texts.Units();
    ASSERT_EQ(ToUtf8(units), SlowToUtf8(units));
  }
}

TEST(Utf8, EachPairOfBytesIsConvertedAsCharacterByCharacter) {
  for (int first = 0; first < 256; ++first)
    for (int second = 0; second < 256; ++second)
      for (const char* end : {"", "\x80", "\x80\x80", "\xBFz"}) {
        const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
        ASSERT_EQ(FromUtf8(bytes + end).view(), SlowFromUtf8(bytes + end)) << first << " " << second;
      }
}

// A text that comes out shorter than its bytes keeps the longer block if there is no memory to trim it.
TEST(Utf8, WideTextWithoutMemoryHasOneCode) {
  const std::string refused = "_com_error 0x8007000E <null>";
  const std::pair<std::string_view, std::set<std::string>> rows[] = {
      {"a text of some length", {refused}},
      {"a text of some length \xC3\xA9", {refused, "nothing"}},
      {"a broken text of some length \xC3", {refused, "nothing"}}};
  for (const auto& [bytes, outcomes] : rows) {
    const std::string text(bytes);
    const std::u16string wide = SlowFromUtf8(text);
    EXPECT_EQ(ThrownWithout(Memory::kBoth, [&] { EXPECT_EQ(FromUtf8(text).view(), wide); }), outcomes)
        << text;
  }
}

TEST(Utf8, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ToUtf8(u"\u00E9"sv), "\xC3\xA9");
  EXPECT_EQ(FromUtf8("\xC3\xA9").view(), u"\u00E9"sv);
}

}  // namespace
}  // namespace qv
