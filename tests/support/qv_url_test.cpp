#include "support/qv_url.h"

#include <gtest/gtest.h>

#include "qvscriptwells/e_qv_exception.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

struct ParsedUrl {
  const char16_t* text;
  const char16_t* protocol;
  const char16_t* host;
  std::int32_t port;
  const char16_t* path;
};

void ExpectParsed(const ParsedUrl& row) {
  CQvUrl url;
  EXPECT_TRUE(url.SetUrl(row.text));
  const std::string name = testing::PrintToString(WideString(row.text));
  EXPECT_EQ(url.protocol, row.protocol) << name;
  EXPECT_EQ(url.host, row.host) << name;
  EXPECT_EQ(url.port, row.port) << name;
  EXPECT_EQ(url.path, row.path) << name;
  EXPECT_EQ(url.url, row.text) << name;
  EXPECT_TRUE(url.firstSpareText.IsEmpty()) << name;
  EXPECT_TRUE(url.secondSpareText.IsEmpty()) << name;
}

void ExpectRefused(CQvUrl& url, const WideString& text) {
  try {
    url.SetUrl(text);
    ADD_FAILURE() << "nothing was thrown for " << testing::PrintToString(text);
  } catch (const EQvException& error) {
    EXPECT_EQ(error.Description(), u"Cannot parse url, expecting 'http://' after protocol name.");
    EXPECT_EQ(error.Code(), 0);
  }
}

TEST(CQvUrl, FreshOneHasEmptyTextsAndNoPort) {
  const CQvUrl url;
  for (const WideString* text :
       {&url.protocol, &url.host, &url.path, &url.url, &url.firstSpareText, &url.secondSpareText}) {
    EXPECT_TRUE(text->IsEmpty());
    EXPECT_FALSE(text->IsNull());
  }
  EXPECT_EQ(url.port, -1);
}

TEST(CQvUrl, OneMadeFromAnEmptyTextHasNullTextsAndNoPort) {
  for (const WideString& made : {WideString(), WideString(u"")}) {
    const CQvUrl url(made);
    for (const WideString* text :
         {&url.protocol, &url.host, &url.path, &url.url, &url.firstSpareText, &url.secondSpareText})
      EXPECT_TRUE(text->IsNull());
    EXPECT_EQ(url.port, -1);
  }
}

TEST(CQvUrl, OneMadeFromATextIsParsed) {
  const CQvUrl url(u"scheme://srv:8080/a?x=1");
  EXPECT_EQ(url.protocol, u"scheme");
  EXPECT_EQ(url.host, u"srv");
  EXPECT_EQ(url.port, 8080);
  EXPECT_EQ(url.path, u"/a?x=1");
  EXPECT_EQ(url.url, u"scheme://srv:8080/a?x=1");
  EXPECT_TRUE(url.firstSpareText.IsNull());
  EXPECT_TRUE(url.secondSpareText.IsNull());
}

TEST(CQvUrl, OneMadeFromABadTextRaises) {
  EXPECT_THROW(CQvUrl(u"srv/a"), EQvException);
}

TEST(CQvUrl, ProtocolHostPortAndPath) {
  const ParsedUrl rows[] = {
      {u"scheme://srv/a/b", u"scheme", u"srv", 80, u"/a/b"},
      {u"scheme://srv:8080/a?x=1", u"scheme", u"srv", 8080, u"/a?x=1"},
      {u"scheme://h/x", u"scheme", u"h", 80, u"/x"},
      {u"scheme://srv/", u"scheme", u"srv", 80, u"/"},
      {u"https://srv/a", u"https", u"srv", 80, u"/a"},
      {u"HTTP://SRV/A", u"HTTP", u"SRV", 80, u"/A"},
      {u"scheme://srv/a%20b?c=%41#d", u"scheme", u"srv", 80, u"/a%20b?c=%41#d"},
      {u"scheme://srv//a//b", u"scheme", u"srv", 80, u"//a//b"},
      {u"scheme://srv/a:9/b", u"scheme", u"srv", 80, u"/a:9/b"},
      {u"scheme://srv /a b", u"scheme", u"srv ", 80, u"/a b"},
      {u"scheme://\u00E9/\u00E9", u"scheme", u"\u00E9", 80, u"/\u00E9"},
  };
  for (const ParsedUrl& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, PortIsReadWithoutCheck) {
  const ParsedUrl rows[] = {
      {u"scheme://srv:/a", u"scheme", u"srv", 0, u"/a"},
      {u"scheme://srv:abc/a", u"scheme", u"srv", 0, u"/a"},
      {u"scheme://srv:80x/a", u"scheme", u"srv", 80, u"/a"},
      {u"scheme://srv: 81/a", u"scheme", u"srv", 81, u"/a"},
      {u"scheme://srv:-5/a", u"scheme", u"srv", -5, u"/a"},
      {u"scheme://srv:70000/a", u"scheme", u"srv", 70000, u"/a"},
      {u"scheme://srv:4294967301/a", u"scheme", u"srv", 5, u"/a"},
      {u"scheme://srv:0080/a", u"scheme", u"srv", 80, u"/a"},
  };
  for (const ParsedUrl& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, ColonsInTheAuthority) {
  const ParsedUrl rows[] = {
      {u"scheme://:8080/a", u"scheme", u":8080", 80, u"/a"},
      {u"scheme://srv:80:90/a", u"scheme", u"srv", 80, u":90/a"},
      {u"scheme://srv::80/a", u"scheme", u"srv", 0, u"/a"},
      {u"scheme://user:pw@srv/a", u"scheme", u"user", 0, u"/a"},
      {u"scheme://[::1]:80/a", u"scheme", u"[", 0, u":80/a"},
  };
  for (const ParsedUrl& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, AuthorityMayBeEmpty) {
  const ParsedUrl rows[] = {
      {u"scheme:///a", u"scheme", u"", 80, u"/a"},
      {u"scheme:////a", u"scheme", u"", 80, u"//a"},
  };
  for (const ParsedUrl& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, FurtherSeparatorCutsThePath) {
  const ParsedUrl rows[] = {
      {u"scheme://srv/a?u=x://y/z", u"scheme", u"srv", 80, u"/a?u=x"},
      {u"scheme://srv/a://", u"scheme", u"srv", 80, u"/a"},
  };
  for (const ParsedUrl& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, BackslashesServeAsSeparatorAndAreTurnedInTheUrlOnly) {
  CQvUrl url;
  EXPECT_TRUE(url.SetUrl(u"scheme:\\\\srv/a"));
  EXPECT_EQ(url.protocol, u"scheme");
  EXPECT_EQ(url.host, u"srv");
  EXPECT_EQ(url.port, 80);
  EXPECT_EQ(url.path, u"/a");
  EXPECT_EQ(url.url, u"scheme://srv/a");
  EXPECT_TRUE(url.SetUrl(u"scheme:\\\\srv\\a:81/b\\c"));
  EXPECT_EQ(url.host, u"srv\\a");
  EXPECT_EQ(url.port, 81);
  EXPECT_EQ(url.path, u"/b\\c");
  EXPECT_EQ(url.url, u"scheme://srv/a:81/b/c");
}

TEST(CQvUrl, BackslashesBehindSlashesStay) {
  CQvUrl url;
  EXPECT_TRUE(url.SetUrl(u"scheme://srv\\x/a\\b"));
  EXPECT_EQ(url.host, u"srv\\x");
  EXPECT_EQ(url.path, u"/a\\b");
  EXPECT_EQ(url.url, u"scheme://srv\\x/a\\b");
}

TEST(CQvUrl, EmptyTextChangesNothing) {
  CQvUrl url(u"scheme://srv:8080/a");
  EXPECT_TRUE(url.SetUrl(u""));
  EXPECT_TRUE(url.SetUrl(WideString()));
  EXPECT_EQ(url.protocol, u"scheme");
  EXPECT_EQ(url.host, u"srv");
  EXPECT_EQ(url.port, 8080);
  EXPECT_EQ(url.path, u"/a");
  EXPECT_EQ(url.url, u"scheme://srv:8080/a");
}

TEST(CQvUrl, TextOfUnknownShapeIsRefusedAndChangesNothing) {
  for (const char16_t* text :
       {u"srv/a", u"srv", u"scheme:/srv/a", u"scheme:\\srv/a", u"://srv/a", u":\\\\srv/a", u" "}) {
    CQvUrl url(u"old://host:81/path");
    ExpectRefused(url, text);
    EXPECT_EQ(url.protocol, u"old");
    EXPECT_EQ(url.host, u"host");
    EXPECT_EQ(url.port, 81);
    EXPECT_EQ(url.path, u"/path");
    EXPECT_EQ(url.url, u"old://host:81/path");
  }
}

TEST(CQvUrl, TextWithoutPathIsRefusedBehindItsProtocol) {
  for (const char16_t* text : {u"scheme://srv", u"scheme://srv:8080", u"scheme://", u"scheme:\\\\srv\\a"}) {
    CQvUrl url(u"old://host:81/path");
    ExpectRefused(url, text);
    EXPECT_EQ(url.protocol, u"scheme");
    EXPECT_EQ(url.host, u"host");
    EXPECT_EQ(url.port, 81);
    EXPECT_EQ(url.path, u"/path");
    EXPECT_EQ(url.url, u"old://host:81/path");
  }
}

TEST(CQvUrl, LaterTextReplacesAllFields) {
  CQvUrl url(u"old://host:81/path");
  EXPECT_TRUE(url.SetUrl(u"new://srv/x"));
  EXPECT_EQ(url.protocol, u"new");
  EXPECT_EQ(url.host, u"srv");
  EXPECT_EQ(url.port, 80);
  EXPECT_EQ(url.path, u"/x");
  EXPECT_EQ(url.url, u"new://srv/x");
}

}  // namespace
}  // namespace qv
