// A link with its caption, and their text form.
#include "values/url_impl.h"

#include <gtest/gtest.h>

#include <string>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"

namespace qv {
namespace {

constexpr char kNoUrl[] =
    "EQvException 0x00000000 Cannot parse url, expecting 'http://' after protocol name.";

// Link and caption.
std::string State(UrlImpl& url) {
  return Shown(url.get_Url()) + " | " + Shown(url.get_UrlCaption());
}

TEST(UrlImpl, FreshOneHasNoCaptionAndAnEmptyLink) {
  UrlImpl url;
  EXPECT_TRUE(url.get_UrlCaption().IsNull());
  EXPECT_TRUE(url.get_Url().IsEmpty());
  EXPECT_TRUE(url.ToString().IsEmpty());
}

TEST(UrlImpl, CaptionIsKeptAsItWasPut) {
  UrlImpl url;
  for (const char16_t* caption : {u"one", u"", u"no://url", u"a<b>&\u00E9"}) {
    url.put_UrlCaption(caption);
    EXPECT_EQ(Shown(url.get_UrlCaption()), Shown(caption));
    EXPECT_FALSE(url.get_UrlCaption().IsNull());
  }
  url.put_UrlCaption(WideString());
  EXPECT_TRUE(url.get_UrlCaption().IsNull());
  EXPECT_TRUE(url.get_Url().IsEmpty());
}

TEST(UrlImpl, LinkIsKeptWhole) {
  for (const char16_t* link : {u"scheme://srv/a/b", u"scheme://srv:8080/a?x=1", u"scheme:///a",
                               u"HTTP://user:pw@srv/a%20b#c", u"scheme://srv/a?u=x://y/z"}) {
    UrlImpl url;
    url.put_Url(link);
    EXPECT_EQ(Shown(url.get_Url()), Shown(link));
    EXPECT_EQ(Shown(url.ToString()), Shown(link));
    EXPECT_TRUE(url.get_UrlCaption().IsNull());
  }
}

TEST(UrlImpl, BackslashesOfTheSeparatorBecomeSlashesAndAnEmptyLinkChangesNothing) {
  UrlImpl url;
  const std::pair<const char16_t*, const char*> rows[] = {{u"scheme:\\\\srv/a\\b", "scheme://srv/a/b"},
                                                          {u"scheme://srv/a\\b", "scheme://srv/a\\b"},
                                                          {u"", "scheme://srv/a\\b"},
                                                          {nullptr, "scheme://srv/a\\b"}};
  for (const auto& [link, stored] : rows) {
    url.put_Url(link);
    EXPECT_EQ(Shown(url.get_Url()), stored);
  }
}

TEST(UrlImpl, RefusedLinkLeavesTheOldOneAndTheCaption) {
  for (const char16_t* link :
       {u"srv/a", u"u", u"scheme:/srv/a", u"://srv/a", u"scheme://srv", u"scheme://"}) {
    UrlImpl url;
    url.Init(u"scheme://old/a", u"caption");
    EXPECT_EQ(Thrown([&] { url.put_Url(link); }), kNoUrl) << Shown(link);
    EXPECT_EQ(State(url), "scheme://old/a | caption") << Shown(link);
    EXPECT_EQ(Shown(url.ToString()), "scheme://old/a");
  }
}

TEST(UrlImpl, InitSetsLinkAndCaption) {
  UrlImpl url;
  url.Init(u"scheme://srv/a", u"caption");
  EXPECT_EQ(State(url), "scheme://srv/a | caption");
  url.Init(u"", WideString());
  EXPECT_EQ(State(url), "scheme://srv/a | <null>");
}

TEST(UrlImpl, InitWithARefusedLinkDoesNotReachTheCaption) {
  UrlImpl url;
  url.put_UrlCaption(u"old");
  EXPECT_EQ(Thrown([&] { url.Init(u"srv/a", u"new"); }), kNoUrl);
  EXPECT_EQ(State(url), " | old");
}

// Init goes through the operations that a derived class may have replaced.
class NotingUrl : public UrlImpl {
 public:
  void put_Url(WideString value) override { notes += "url " + Shown(value) + ";"; }
  void put_UrlCaption(WideString value) override { notes += "caption " + Shown(value) + ";"; }

  std::string notes;
};

TEST(UrlImpl, InitPutsTheLinkFirst) {
  NotingUrl url;
  url.Init(u"u", u"c");
  EXPECT_EQ(url.notes, "url u;caption c;");
}

TEST(UrlImpl, TextIsNotReadBack) {
  UrlImpl url;
  url.Init(u"scheme://srv/a", u"caption");
  for (const char16_t* text :
       {u"x://y/z", u"", u"<Object>Url<DataType>string:string</DataType><Data>x://y/z:c</Data></Object>"})
    EXPECT_EQ(Thrown([&] { url.FromText(text); }), "nothing");
  EXPECT_EQ(Thrown([&] { url.FromText(WideString()); }), "nothing");
  EXPECT_EQ(State(url), "scheme://srv/a | caption");
}

TEST(UrlImpl, TextHasLinkAndCaptionWithAColonBetween) {
  const auto text = [](const std::string& data) {
    return "<Object>Url<DataType>string:string</DataType><Data>" + data + "</Data></Object>";
  };
  UrlImpl url;
  EXPECT_EQ(Shown(url.ToText()), text(":"));
  url.Init(u"u://u/u", u"c");
  EXPECT_EQ(Shown(url.ToText()), text("u://u/u:c"));
  url.Init(u"u://u/<&\"\u00E9", u"a<b>&c</Data>");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Shown(url.ToText()), text("u://u/<&\"\\u00E9:a<b>&c</Data>"));
}

}  // namespace
}  // namespace qv
