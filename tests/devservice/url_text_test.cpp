#include "devservice/values/url_text.h"

#include <gtest/gtest.h>

namespace qv::devservice {
namespace {

std::string Parsed(std::string_view text) {
  UrlValue url;
  return ParseUrl(text, url) ? url.link + "|" + url.caption : "(refused)";
}

TEST(UrlText, MarkupGivesLinkAndCaption) {
  EXPECT_EQ(Parsed("<URL>http://a/b?c=1&d=2</URL><C>a <b> c</C>"), "http://a/b?c=1&d=2|a <b> c");
  EXPECT_EQ(Parsed("<URL></URL><C></C>"), "|");
  EXPECT_EQ(Parsed("<URL/><C/>"), "|");
  EXPECT_EQ(Parsed("<URL>u</URL><C/>"), "u|");
  EXPECT_EQ(Parsed("<URL/><C>c</C>"), "|c");
}

TEST(UrlText, TextWithoutMarksIsALink) {
  EXPECT_EQ(Parsed("http://a/b"), "http://a/b|");
  EXPECT_EQ(Parsed(""), "|");
  EXPECT_EQ(Parsed("<url>u</url>"), "<url>u</url>|");
}

TEST(UrlText, BrokenMarkupIsRefused) {
  for (const char* text : {"<URL>", "<URL>u", "<URL>u</URL>", "<C>c</C>", "<URL>u</URL><C>c",
                           "<C>c</C><URL>u</URL>", "<URL>u</URL> <C>c</C>", "x<URL>u</URL><C>c</C>",
                           "<URL>u</URL><C>c</C>x", "<URL>a<URL>b</URL><C>c</C>", "<URL>u</URL><C>a<C>b</C>",
                           "<URL>a<C/>b</URL><C>c</C>", "<URL/><URL/>"}) {
    EXPECT_EQ(Parsed(text), "(refused)") << text;
  }
}

TEST(UrlText, EmptyPartsKeepTheirMarks) {
  EXPECT_EQ(FormatUrl({"u", "c"}), "<URL>u</URL><C>c</C>");
  EXPECT_EQ(FormatUrl({"", ""}), "<URL></URL><C></C>");
}

}  // namespace
}  // namespace qv::devservice
