// Service URLs: their parts, and texts that have none.
#include "support/qv_url.h"

#include <gtest/gtest.h>

#include "fixtures/thrown.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr char kRefused[] =
    "EQvException 0x00000000 Cannot parse url, expecting 'http://' after protocol name.";

struct Parts {
  const char16_t* url;
  const char16_t* protocol;
  const char16_t* host;
  std::int32_t port;
  const char16_t* path;
};

void ExpectParts(const CQvUrl& url, const Parts& parts) {
  const std::string name = Shown(parts.url);
  EXPECT_EQ(url.protocol, parts.protocol) << name;
  EXPECT_EQ(url.host, parts.host) << name;
  EXPECT_EQ(url.port, parts.port) << name;
  EXPECT_EQ(url.path, parts.path) << name;
  EXPECT_EQ(url.url, parts.url) << name;
}

void ExpectParsed(const Parts& row) {
  CQvUrl url;
  EXPECT_TRUE(url.SetUrl(row.url));
  ExpectParts(url, row);
  EXPECT_TRUE(url.firstSpareText.IsEmpty());
  EXPECT_TRUE(url.secondSpareText.IsEmpty());
}

void ExpectNoParts(const CQvUrl& url, bool areNull) {
  for (const WideString* text :
       {&url.protocol, &url.host, &url.path, &url.url, &url.firstSpareText, &url.secondSpareText}) {
    EXPECT_TRUE(text->IsEmpty());
    EXPECT_EQ(text->IsNull(), areNull);
  }
  EXPECT_EQ(url.port, -1);
}

TEST(CQvUrl, WithoutTextItHasNoPartsAndNoPort) {
  ExpectNoParts(CQvUrl(), false);
  for (const WideString& made : {WideString(), WideString(u"")}) ExpectNoParts(CQvUrl(made), true);
}

TEST(CQvUrl, OneMadeFromATextIsParsed) {
  const CQvUrl url(u"scheme://srv:8080/a?x=1");
  ExpectParts(url, {u"scheme://srv:8080/a?x=1", u"scheme", u"srv", 8080, u"/a?x=1"});
  EXPECT_TRUE(url.firstSpareText.IsNull());
  EXPECT_TRUE(url.secondSpareText.IsNull());
  EXPECT_EQ(Thrown([] { CQvUrl(u"srv/a"); }), kRefused);
}

TEST(CQvUrl, ProtocolHostPortAndPath) {
  const Parts rows[] = {{u"scheme://srv/a/b", u"scheme", u"srv", 80, u"/a/b"},
                        {u"scheme://srv:8080/a?x=1", u"scheme", u"srv", 8080, u"/a?x=1"},
                        {u"scheme://h/x", u"scheme", u"h", 80, u"/x"},
                        {u"scheme://srv/", u"scheme", u"srv", 80, u"/"},
                        {u"https://srv/a", u"https", u"srv", 80, u"/a"},
                        {u"HTTP://SRV/A", u"HTTP", u"SRV", 80, u"/A"},
                        {u"scheme://srv/a%20b?c=%41#d", u"scheme", u"srv", 80, u"/a%20b?c=%41#d"},
                        {u"scheme://srv//a//b", u"scheme", u"srv", 80, u"//a//b"},
                        {u"scheme://srv/a:9/b", u"scheme", u"srv", 80, u"/a:9/b"},
                        {u"scheme://srv /a b", u"scheme", u"srv ", 80, u"/a b"},
                        {u"scheme://\u00E9/\u00E9", u"scheme", u"\u00E9", 80, u"/\u00E9"}};
  for (const Parts& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, PortIsReadWithoutCheck) {
  const Parts rows[] = {{u"scheme://srv:/a", u"scheme", u"srv", 0, u"/a"},
                        {u"scheme://srv:abc/a", u"scheme", u"srv", 0, u"/a"},
                        {u"scheme://srv:80x/a", u"scheme", u"srv", 80, u"/a"},
                        {u"scheme://srv: 81/a", u"scheme", u"srv", 81, u"/a"},
                        {u"scheme://srv:-5/a", u"scheme", u"srv", -5, u"/a"},
                        {u"scheme://srv:70000/a", u"scheme", u"srv", 70000, u"/a"},
                        {u"scheme://srv:4294967301/a", u"scheme", u"srv", 5, u"/a"},
                        {u"scheme://srv:0080/a", u"scheme", u"srv", 80, u"/a"}};
  for (const Parts& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, ColonsInTheAuthorityWhichMayBeEmpty) {
  const Parts rows[] = {{u"scheme://:8080/a", u"scheme", u":8080", 80, u"/a"},
                        {u"scheme://srv:80:90/a", u"scheme", u"srv", 80, u":90/a"},
                        {u"scheme://srv::80/a", u"scheme", u"srv", 0, u"/a"},
                        {u"scheme://user:pw@srv/a", u"scheme", u"user", 0, u"/a"},
                        {u"scheme://[::1]:80/a", u"scheme", u"[", 0, u":80/a"},
                        {u"scheme:///a", u"scheme", u"", 80, u"/a"},
                        {u"scheme:////a", u"scheme", u"", 80, u"//a"}};
  for (const Parts& row : rows) ExpectParsed(row);
}

TEST(CQvUrl, FurtherSeparatorCutsThePath) {
  ExpectParsed({u"scheme://srv/a?u=x://y/z", u"scheme", u"srv", 80, u"/a?u=x"});
  ExpectParsed({u"scheme://srv/a://", u"scheme", u"srv", 80, u"/a"});
}

TEST(CQvUrl, BackslashesServeAsSeparatorAndBecomeSlashesInTheUrlOnly) {
  CQvUrl url;
  EXPECT_TRUE(url.SetUrl(u"scheme:\\\\srv/a"));
  ExpectParts(url, {u"scheme://srv/a", u"scheme", u"srv", 80, u"/a"});
  EXPECT_TRUE(url.SetUrl(u"scheme:\\\\srv\\a:81/b\\c"));
  ExpectParts(url, {u"scheme://srv/a:81/b/c", u"scheme", u"srv\\a", 81, u"/b\\c"});
  ExpectParsed({u"scheme://srv\\x/a\\b", u"scheme", u"srv\\x", 80, u"/a\\b"});
}

TEST(CQvUrl, EmptyTextChangesNothing) {
  CQvUrl url(u"scheme://srv:8080/a");
  EXPECT_TRUE(url.SetUrl(u""));
  EXPECT_TRUE(url.SetUrl(WideString()));
  ExpectParts(url, {u"scheme://srv:8080/a", u"scheme", u"srv", 8080, u"/a"});
}

TEST(CQvUrl, TextOfUnknownShapeIsRefusedAndChangesNothing) {
  for (const char16_t* text :
       {u"srv/a", u"srv", u"scheme:/srv/a", u"scheme:\\srv/a", u"://srv/a", u":\\\\srv/a", u" "}) {
    CQvUrl url(u"old://host:81/path");
    EXPECT_EQ(Thrown([&] { url.SetUrl(text); }), kRefused) << Shown(text);
    ExpectParts(url, {u"old://host:81/path", u"old", u"host", 81, u"/path"});
  }
}

TEST(CQvUrl, TextWithoutPathIsRefusedAfterItsProtocolIsSet) {
  for (const char16_t* text : {u"scheme://srv", u"scheme://srv:8080", u"scheme://", u"scheme:\\\\srv\\a"}) {
    CQvUrl url(u"old://host:81/path");
    EXPECT_EQ(Thrown([&] { url.SetUrl(text); }), kRefused) << Shown(text);
    ExpectParts(url, {u"old://host:81/path", u"scheme", u"host", 81, u"/path"});
  }
}

TEST(CQvUrl, LaterTextReplacesAllFields) {
  CQvUrl url(u"old://host:81/path");
  EXPECT_TRUE(url.SetUrl(u"new://srv/x"));
  ExpectParts(url, {u"new://srv/x", u"new", u"srv", 80, u"/x"});
}

}  // namespace
}  // namespace qv
