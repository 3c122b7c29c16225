// Which forms of a secret are found, and what stays.
#include "face/exchange/masking.h"

#include <gtest/gtest.h>

#include "fixtures/secret_forms.h"
#include "qvscriptwells/wide_string.h"

namespace scriptwells {
namespace {

// With the characters that each escape changes.
constexpr char kSecret[] = "p<w>&\"'%+/ \\\xC3\xA9\xF0\x9F\x98\x80!";

std::string Masked(const std::string& text, const std::string& secret = kSecret) {
  Masking masking;
  masking.Add(secret);
  return masking.Masked(text);
}

std::string Utf16(const std::string& text, bool isBig) {
  std::string bytes;
  const qv::WideString wide = qv::FromUtf8(text);
  for (const char16_t unit : wide.view()) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += isBig ? high : low;
    bytes += isBig ? low : high;
  }
  return bytes;
}

// An independent encoder.
std::string Base64(const std::string& bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  unsigned group = 0;
  int bits = 0;
  for (const char c : bytes) {
    group = group << 8 | static_cast<unsigned char>(c);
    for (bits += 8; bits >= 6; bits -= 6) text += kDigits[(group >> (bits - 6)) & 0x3F];
  }
  if (bits > 0) text += kDigits[(group << (6 - bits)) & 0x3F];
  while (text.size() % 4 != 0) text += '=';
  return text;
}

TEST(Masking, PlainSecretsAreReplacedEverywhere) {
  EXPECT_EQ(Masked("a secret, a secret", "secret"), "a ***, a ***");
  EXPECT_EQ(Masked("secretsecret", "secret"), "******");
  EXPECT_EQ(Masked("anana", "ana"), "***");
  EXPECT_EQ(Masked("", "secret"), "");
  EXPECT_EQ(Masked("nothing of it", "secret"), "nothing of it");
  EXPECT_EQ(Masked("text", ""), "text");
  EXPECT_EQ(Masked(std::string("[") + kSecret + "]"), "[***]");
}

TEST(Masking, EscapesAreSeenThrough) {
  const char* const forms[] = {
      // XML with names, with numbers as this library writes them, with hexadecimal ones
      "p&lt;w&gt;&amp;&quot;&apos;%+/ \\&#233;&#55357;&#56832;!",
      "&#112;&#60;w&#62;&#38;&#34;&#39;%+/ \\&#0233;&#128512;&#33;",
      "p&#x3c;w&#X3E;&#x26;&#x22;&#x27;%+/ \\&#xE9;&#x1F600;!",
      // only what must be escaped
      "p&lt;w>&amp;\"'%+/ \\\xC3\xA9\xF0\x9F\x98\x80!",
      // URL
      "p%3Cw%3E%26%22%27%25%2B%2F%20%5C%C3%A9%F0%9F%98%80%21",
      "p%3cw%3e%26%22'%25%2b/+%5c%c3%a9%f0%9f%98%80!",
      // JSON
      R"(p<w>&\"'%+\/ \\\u00e9\ud83d\ude00!)",
      "p\\u003Cw\\u003e\\u0026\\u0022\\u0027%+/\\u0020\\u005c\\u00E9\xF0\x9F\x98\x80!",
      // scripts
      "p\\x3Cw\\x3e&\\\"\\'%+/ \\\\\xC3\xA9\xF0\x9F\x98\x80!",
      // twice: XML in XML, a URL in XML, XML in a URL, JSON in XML, XML in JSON
      "p&amp;lt;w&amp;gt;&amp;amp;&amp;quot;&amp;apos;%+/ \\&amp;#233;&amp;#55357;&amp;#56832;!",
      "p%3Cw%3E%26%22&#37;27%25%2B/%20%5C%C3%A9%F0%9F%98%80!",
      "p%26lt;w%26gt%3B%26amp;%22'%25%2B/%20%5C%26%23233;%F0%9F%98%80!",
      R"(p&lt;w&gt;&amp;\&quot;'%+/ \\\u00e9\ud83d\ude00!)",
      "p\\u0026lt;w\\u0026gt;\\u0026amp;\\\"'%+\\/ \\\\\\u0026#233;\xF0\x9F\x98\x80!",
      // Latin-1 for one character of it
      "p<w>&\"'%+/ \\\xE9\xF0\x9F\x98\x80!"};
  for (const char* form : forms) EXPECT_EQ(Masked(std::string("[") + form + "]"), "[***]") << form;
}

TEST(Masking, NoFormStays) {
  for (const qv::test::SecretForm& form : qv::test::FormsOf(kSecret)) {
    const std::string masked = Masked("[" + form.text + "]");
    EXPECT_EQ(masked.find(form.text), std::string::npos) << form.name;
    EXPECT_NE(masked.find("***"), std::string::npos) << form.name;
  }
}

TEST(Masking, OtherTextWithEscapesStays) {
  for (const char* text : {"p&lt;w", "100% &unknown; &#xZZ; &", "%", "%4", "%zz", "\\", "\\u12", "&#;",
                           "&#99999999;", "&lt;&gt;&amp;&quot;&apos;", "%E0%A0", "\xC3", "\xF0\x9F"})
    EXPECT_EQ(Masked(text), text);
}

TEST(Masking, TextInUtf16) {
  for (const bool isBig : {false, true}) {
    EXPECT_EQ(Masked(Utf16(std::string("[") + kSecret + "]", isBig)),
              Utf16("[", isBig) + "***" + Utf16("]", isBig));
    EXPECT_EQ(Masked(Utf16("p&lt;w&gt;&amp;&quot;&apos;%+/ \\&#233;&#55357;&#56832;!", isBig)), "***");
  }
}

// Wherever it begins within the encoded bytes. At most the digits at its ends stay, which hold bits of other
// bytes.
TEST(Masking, Base64AtAllAlignments) {
  for (std::size_t before = 0; before < 4; ++before)
    for (const std::string& bytes : {std::string(kSecret), Utf16(kSecret, false), Utf16(kSecret, true)}) {
      const std::string encoded = Base64(std::string(before, 'x') + bytes + "after it");
      const std::string masked = Masked(encoded);
      const std::size_t mask = masked.find("***");
      ASSERT_NE(mask, std::string::npos) << before << encoded;
      const std::size_t covered = encoded.size() - (masked.size() - 3);
      EXPECT_GE(covered * 6, bytes.size() * 8 - 10);
      EXPECT_EQ(masked.substr(0, mask), encoded.substr(0, mask));
      EXPECT_EQ(masked.substr(mask + 3), encoded.substr(mask + covered));
    }
}

TEST(Masking, Base64OfUrlsAndEscapedBase64) {
  // "~~>>??" has both digits that differ.
  const std::string encoded = Base64("~~>>??");
  ASSERT_EQ(encoded, "fn4+Pj8/");
  EXPECT_EQ(Masked("a=fn4-Pj8_", "~~>>??"), "a=***");
  EXPECT_EQ(Masked("a=fn4%2BPj8%2F", "~~>>??"), "a=***");
  EXPECT_EQ(Masked(R"("fn4+Pj8\/")", "~~>>??"), "\"***\"");
}

TEST(Masking, ShortSecretsAreNotSearchedInBase64) {
  EXPECT_EQ(Masked("YWJj YQ==", "a"), "YWJj YQ==");
  EXPECT_EQ(Masked("[a]", "a"), "[***]");
}

TEST(Masking, SeveralSecretsMayOverlap) {
  Masking masking;
  for (const char* secret : {"abcd", "cdef", "cd"}) masking.Add(secret);
  EXPECT_EQ(masking.Masked("xabcdefx cd"), "x***x ***");
}

TEST(Masking, LargeTextsAreMaskedInTime) {
  std::string text;
  while (text.size() < 2'000'000) text += "<cell>Rome &amp; Ostia 100%</cell>\n";
  EXPECT_EQ(Masked(text + kSecret), text + "***");
}

}  // namespace
}  // namespace scriptwells
