// The Url object as a host meets it.
#include <gtest/gtest.h>

#include "automation/property_checks.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

constexpr char kNoUrl[] = "Cannot parse url, expecting 'http://' after protocol name.";

class UrlObject : public testing::Test {
 protected:
  UrlObject() { LeaveStaleRecord(); }
  void TearDown() override { ClearErrorInfo(); }

  std::string Caption() {
    WideString value(u"before");
    EXPECT_EQ(object_->get_UrlCaption(&value), S_OK);
    return Shown(value);
  }
  // Both ways to the link, which must agree.
  std::string Link() {
    WideString link(u"before");
    WideString text(u"before");
    EXPECT_EQ(object_->get_Url(&link), S_OK);
    EXPECT_EQ(object_->ToString(&text), S_OK);
    EXPECT_EQ(Shown(link), Shown(text));
    return Shown(link);
  }
  std::string Refused(const WideString& link) {
    EXPECT_EQ(object_->put_Url(link), DISP_E_EXCEPTION);
    return TakenWords();
  }

  const IUrlPtr object_ = CreateUrl();
};

TEST_F(UrlObject, CaptionIsKept) {
  ExpectText("UrlCaption", object_, &IUrl::get_UrlCaption, &IUrl::put_UrlCaption);
  EXPECT_EQ(Link(), "");
}

TEST_F(UrlObject, LinkIsKeptWhole) {
  ExpectProperty<IUrl, WideString>("Url", object_, &IUrl::get_Url, &IUrl::put_Url, u"before", u"",
                                   {u"scheme://srv:8080/a?x=1", u"scheme://srv/a"});
  EXPECT_EQ(object_->put_Url(u"scheme:\\\\srv/a?x=2"), S_OK);
  EXPECT_EQ(Link(), "scheme://srv/a?x=2");
  EXPECT_EQ(Caption(), "<null>");
}

TEST_F(UrlObject, EmptyLinkChangesNothing) {
  EXPECT_EQ(object_->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(object_->put_Url(u""), S_OK);
  EXPECT_EQ(object_->put_Url(WideString()), S_OK);
  EXPECT_EQ(Link(), "scheme://srv/a");
}

TEST_F(UrlObject, RefusedLinkHasItsMessageAndChangesNothing) {
  EXPECT_EQ(object_->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(object_->put_UrlCaption(u"caption"), S_OK);
  for (const char16_t* link : {u"srv/a", u"://srv/a", u"scheme://srv"}) EXPECT_EQ(Refused(link), kNoUrl);
  EXPECT_EQ(Link(), "scheme://srv/a");
  EXPECT_EQ(Caption(), "caption");
}

TEST_F(UrlObject, TextClearsTheStaleRecord) {
  WideString text;
  EXPECT_EQ(object_->ToString(&text), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  EXPECT_EQ(object_->ToString(nullptr), E_POINTER);
}

}  // namespace
}  // namespace qv
