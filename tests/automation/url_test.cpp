// The Url object as a host meets it.
#include <gtest/gtest.h>

#include <string>

#include "automation/slot_order.h"
#include "automation/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

constexpr char kNoUrl[] = "Cannot parse url, expecting 'http://' after protocol name.";

class UrlObject : public testing::Test {
 protected:
  UrlObject() : object_(CreateUrl()) { LeaveStaleRecord(); }
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

  IUrlPtr object_;
};

TEST_F(UrlObject, StartsWithNullCaptionAndEmptyLink) {
  EXPECT_EQ(Caption(), "<null>");
  EXPECT_EQ(Link(), "");
}

TEST_F(UrlObject, CaptionIsKept) {
  EXPECT_EQ(object_->put_UrlCaption(u"one"), S_OK);
  EXPECT_EQ(object_->put_UrlCaption(u"two <&>"), S_OK);
  EXPECT_EQ(Caption(), "two <&>");
  EXPECT_EQ(object_->put_UrlCaption(u""), S_OK);
  EXPECT_EQ(Caption(), "");
  EXPECT_EQ(object_->put_UrlCaption(WideString()), S_OK);
  EXPECT_EQ(Caption(), "<null>");
  EXPECT_EQ(Link(), "");
}

TEST_F(UrlObject, LinkIsKeptWhole) {
  EXPECT_EQ(object_->put_Url(u"scheme://srv:8080/a?x=1"), S_OK);
  EXPECT_EQ(Link(), "scheme://srv:8080/a?x=1");
  EXPECT_EQ(object_->put_Url(u"scheme:\\\\srv/a"), S_OK);
  EXPECT_EQ(Link(), "scheme://srv/a");
  EXPECT_EQ(Caption(), "<null>");
}

TEST_F(UrlObject, EmptyLinkChangesNothing) {
  EXPECT_EQ(object_->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(object_->put_Url(u""), S_OK);
  EXPECT_EQ(object_->put_Url(WideString()), S_OK);
  EXPECT_EQ(Link(), "scheme://srv/a");
}

TEST_F(UrlObject, RefusedLinkHasItsWordsAndChangesNothing) {
  EXPECT_EQ(object_->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(object_->put_UrlCaption(u"caption"), S_OK);
  for (const char16_t* link : {u"srv/a", u"://srv/a", u"scheme://srv"}) EXPECT_EQ(Refused(link), kNoUrl);
  EXPECT_EQ(Link(), "scheme://srv/a");
  EXPECT_EQ(Caption(), "caption");
}

TEST_F(UrlObject, EveryMemberClearsTheStaleRecord) {
  Caption();
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(object_->put_UrlCaption(u"c"), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(object_->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  WideString text;
  EXPECT_EQ(object_->get_Url(&text), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(object_->ToString(&text), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(UrlObject, MissingPlacesAreRefused) {
  EXPECT_EQ(object_->get_UrlCaption(nullptr), E_POINTER);
  EXPECT_EQ(object_->get_Url(nullptr), E_POINTER);
  EXPECT_EQ(object_->ToString(nullptr), E_POINTER);
}

TEST_F(UrlObject, IsCounted) {
  EXPECT_EQ(object_->AddRef(), 2u);
  EXPECT_EQ(object_->Release(), 1u);
}

TEST_F(UrlObject, OnlyItsOwnInterfaceLeavesRecords) {
  const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(object_);
  ASSERT_NE(support, nullptr);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IUrl::kIid), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IDuration::kIid), S_FALSE);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IUnknown::kIid), S_FALSE);
}

TEST(UrlInterface, HasItsPublishedId) {
  const Guid id = {0x88298ee0, 0x4369, 0x42b1, {0x9c, 0xa3, 0x79, 0xe5, 0x9d, 0xa1, 0x51, 0x43}};
  EXPECT_TRUE(IUrl::kIid == id);
}

TEST(UrlInterface, EachPropertyIsReadBeforeItIsWritten) {
  const auto getCaption = &IUrl::get_UrlCaption;
  const auto putCaption = &IUrl::put_UrlCaption;
  const auto getUrl = &IUrl::get_Url;
  const auto putUrl = &IUrl::put_Url;
  const auto toString = &IUrl::ToString;
  const std::ptrdiff_t first = PlaceOf(&getCaption);
  EXPECT_EQ(PlaceOf(&putCaption) - first, kSlot);
  EXPECT_EQ(PlaceOf(&getUrl) - first, 2 * kSlot);
  EXPECT_EQ(PlaceOf(&putUrl) - first, 3 * kSlot);
  EXPECT_EQ(PlaceOf(&toString) - first, 4 * kSlot);
}

}  // namespace
}  // namespace qv
