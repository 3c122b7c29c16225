// One upload: which calls of the HTTP component it makes, what they carry, and what the file object holds
// afterwards.
#include "script/file_uploader.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "script/fake_attached_file.h"
#include "script/upload_fixture.h"

namespace qv {
namespace {

static_assert(std::has_virtual_destructor_v<CFileUploader>);

constexpr char16_t kUploadUrl[] = u"http://files:81/up?ticket=t1";

class FileUploader : public UploadFixture {
 protected:
  // The calls from the second component on.
  Lines PostCalls() const {
    const Lines calls = Calls();
    std::size_t first = 0;
    for (std::size_t i = 0; i < calls.size(); ++i)
      if (calls[i] == "CoCreate IUnknown") first = i;
    return Lines(calls.begin() + static_cast<std::ptrdiff_t>(first), calls.end());
  }
};

TEST_F(FileUploader, UploadMakesTheseCallsInThisOrder) {
  AnswerUpload(kUploadUrl);
  EXPECT_EQ(Shown(Upload()), "t1");
  EXPECT_EQ(Calls(),
            (Lines{"CoCreate IUnknown",
                   "Run",
                   "Query IHttpSession",
                   "Open(http, srv, 8080, , , )",
                   "OpenRequest(POST, /svc, text/xml, 0)",
                   "SetHeader(Host, srv:8080)",
                   "SetHeader(Content-Type, text/xml)",
                   "SetHeader(SOAPAction, http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute)",
                   "Send(body, )",
                   "GetHeader(StatusCode)",
                   "GetHeader(Content-Length)",
                   "Read(146)",
                   "Close request",
                   "Close session",
                   "CoCreate IUnknown",
                   "Run",
                   "Query IHttpSession",
                   "Open(http, files, 81, , , )",
                   "OpenRequest(POST, /up?ticket=t1, */*, 0)",
                   "SetHeader(Cache-Control, no-cache)",
                   "SetHeader(usid, u1)",
                   "SendFile(c:\\data\\a b.txt)",
                   "GetHeader(StatusCode)",
                   "Close request",
                   "Close session"}));
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
}

TEST_F(FileUploader, NestedRequestHoldsTheRenderingOfTheScript) {
  home_.Write(
      "ClientScripts/UploadScript.xml",
      "<?xml version=\"1.0\"?>\n<Scriptwell Language='JavaScript'><Code>a &lt; b</Code></Scriptwell>");
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(http_.Bodies(),
            Lines{RequestOfFile("&lt;Scriptwell Language=&quot;JavaScript&quot;&gt;&lt;Code&gt;"
                                "a &amp;lt; b&lt;/Code&gt;&lt;/Scriptwell&gt;\\u000A\\u000A",
                                kNoParameters)});
}

TEST_F(FileUploader, CookieGoesAlongWithBothRequests) {
  map_[u"CookieHandle"] = Variant::FromString(u"k=v; w");
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(http_.CallsNamed("SetHeader("),
            (Lines{"SetHeader(Host, srv:8080)", "SetHeader(Content-Type, text/xml)",
                   "SetHeader(SOAPAction, http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute)",
                   "SetHeader(Cookie, k=v; w)", "SetHeader(Cache-Control, no-cache)", "SetHeader(usid, u1)",
                   "SetHeader(Cookie, k=v; w)"}));
}

TEST_F(FileUploader, EmptyCookieMakesNoHeader) {
  for (const WideString& cookie : {WideString(), WideString(u"")}) {
    map_[u"CookieHandle"] = Variant::FromString(cookie);
    AnswerUpload(kUploadUrl);
    Upload();
  }
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
  EXPECT_EQ(http_.CallsNamed("SetHeader(usid").size(), 2u);
}

TEST_F(FileUploader, ProxyIsForTheFileOnlyAndWithoutItsPort) {
  map_[u"Proxy"] = Variant::FromString(u"proxy");
  map_[u"ProxyPort"] = Variant::FromInt(3128);
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(Opens(), (Lines{"Open(http, srv, 8080, , , )", "Open(http, files, 81, , , proxy)"}));
}

TEST_F(FileUploader, ProxyTravelsAsItStands) {
  for (const char16_t* proxy : {u"", u"@PROXY@", u"p:1", u" p "}) {
    map_[u"Proxy"] = Variant::FromString(proxy);
    AnswerUpload(kUploadUrl);
    Upload();
    EXPECT_EQ(Opens().back(), "Open(http, files, 81, , , " + Shown(WideString(proxy)) + ")");
  }
}

TEST_F(FileUploader, PortWithoutProxyMeansNothing) {
  map_[u"ProxyPort"] = Variant::FromInt(3128);
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(Opens(), (Lines{"Open(http, srv, 8080, , , )", "Open(http, files, 81, , , )"}));
}

TEST_F(FileUploader, AbsentSessionIsANullText) {
  map_.erase(u"ContextHandle");
  AnswerUpload(kUploadUrl);
  EXPECT_EQ(Shown(Upload()), "t1");
  EXPECT_EQ(http_.CallsNamed("SetHeader(usid"), Lines{"SetHeader(usid, <null>)"});
  EXPECT_NE(http_.Bodies()[0].find("<usid xsi:type=\"xsd:string\"></usid>"), std::string::npos);
}

TEST_F(FileUploader, MapMayBeEmpty) {
  map_.clear();
  AnswerUpload(kUploadUrl);
  EXPECT_EQ(Shown(Upload()), "t1");
  EXPECT_EQ(PostCalls(),
            (Lines{"CoCreate IUnknown", "Run", "Query IHttpSession", "Open(http, files, 81, , , )",
                   "OpenRequest(POST, /up?ticket=t1, */*, 0)", "SetHeader(Cache-Control, no-cache)",
                   "SetHeader(usid, <null>)", "SendFile(c:\\data\\a b.txt)", "GetHeader(StatusCode)",
                   "Close request", "Close session"}));
}

TEST_F(FileUploader, SessionIsEscapedInTheNestedEnvelopeAndPlainInTheHeader) {
  map_[u"ContextHandle"] = Variant::FromString(u"a&b");
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_NE(http_.Bodies()[0].find("<usid xsi:type=\"xsd:string\">a&amp;b</usid>"), std::string::npos);
  EXPECT_EQ(http_.CallsNamed("SetHeader(usid"), Lines{"SetHeader(usid, a&b)"});
}

// The map of the host's call holds parameters and a script; none of it belongs to the nested one.
TEST_F(FileUploader, NestedRequestTakesNothingElseFromTheMap) {
  map_[u"parameters"] = Variant::FromObject(CreateParameters().get());
  map_[u"Script"] = Variant::FromString(u"other");
  map_[u"ScriptLanguage"] = Variant::FromString(u"VBScript");
  map_[u"ScriptFile"] = Variant::FromString(u"/nowhere.xml");
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
}

TEST_F(FileUploader, FileWithATicketUsesTheOtherScriptAndHandsTheTicketOver) {
  EXPECT_EQ(file_->put_TicketId(u"t<0>"), S_OK);
  AnswerUpload(kUploadUrl);
  EXPECT_EQ(Shown(Upload()), "t1");
  EXPECT_EQ(http_.Bodies(), Lines{AgainRequest("t&lt;0&gt;")});
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
}

TEST_F(FileUploader, NullTicketIsHandedOverAsAnEmptyOne) {
  EXPECT_EQ(file_->put_TicketId(WideString()), S_OK);
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(http_.Bodies(), Lines{AgainRequest("")});
}

TEST_F(FileUploader, SecondUploadOfAFileIsUnderItsTicket) {
  AnswerUpload(kUploadUrl);
  AnswerUpload(u"http://files:81/up?ticket=t2");
  Upload();
  EXPECT_EQ(Shown(Upload()), "t2");
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), AgainRequest("t1")}));
  EXPECT_EQ(TicketOf(file_.get()), "t2, -1");
}

TEST_F(FileUploader, HostThatReadsTheTicketGetsAFreshUpload) {
  AnswerUpload(kUploadUrl);
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
  Upload();
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), FreshRequest()}));
}

TEST_F(FileUploader, FileIsAskedForThisAndNothingElse) {
  const FakeAttachedFilePtr file(new FakeAttachedFile(&http_, u"/a"));
  AnswerUpload(kUploadUrl);
  Upload(file.get());
  EXPECT_EQ(file->Log(), (Lines{"get_Filename after 0", "IsTicketId after 0", "put_TicketId(t1) after 14"}));
  EXPECT_EQ(file->Flag(), VARIANT_TRUE);
  EXPECT_EQ(file->References(), 1u);
}

TEST_F(FileUploader, FlagIsClearBeforeTheNestedCallGoesOut) {
  const FakeAttachedFilePtr file(new FakeAttachedFile(&http_, u"/a"));
  file->Hold(u"t0");
  AnswerUpload(kUploadUrl);
  Upload(file.get());
  EXPECT_EQ(file->Log(), (Lines{"get_Filename after 0", "IsTicketId after 0", "get_TicketId after 0",
                                "put_TicketId(t1) after 14"}));
  EXPECT_EQ(file->References(), 1u);
}

TEST_F(FileUploader, AnyFlagButZeroMeansATicket) {
  for (const VARIANT_BOOL flag : {VARIANT_TRUE, VARIANT_BOOL{1}, VARIANT_BOOL{0x100}}) {
    const FakeAttachedFilePtr file(new FakeAttachedFile(&http_, u"/a"));
    file->Hold(u"t0", flag);
    AnswerUpload(kUploadUrl);
    Upload(file.get());
    EXPECT_EQ(http_.Bodies().back(), AgainRequest("t0")) << flag;
  }
}

TEST_F(FileUploader, AbsentProxyIsEmptyAndNotNull) {
  ASSERT_EQ(map_.count(u"Proxy"), 0u);
  AnswerUpload(kUploadUrl);
  Upload();
  EXPECT_EQ(http_.CallsNamed("Open("),
            (Lines{"Open(http, srv, 8080, <null>, <null>, )", "Open(http, files, 81, <null>, <null>, )"}));
}

TEST_F(FileUploader, StatusOfTheAnswerIsNotLookedAt) {
  for (const char16_t* status : {u"404", u"500", u"", u"no number"}) {
    http_.Answer(UrlAnswer(kUploadUrl));
    http_.AnswerFile(status);
    EXPECT_EQ(Shown(Upload()), "t1");
  }
}

TEST_F(FileUploader, ComponentWithoutStartOfItsOwnIsUsedAsItIs) {
  http_.OfferNoRunnable();
  AnswerUpload(kUploadUrl);
  EXPECT_EQ(UploadThrows(), "nothing");
  EXPECT_TRUE(http_.CallsNamed("Run").empty());
}

TEST_F(FileUploader, NameOfTheFileIsHandedOnUnchanged) {
  for (const WideString& name :
       {WideString(), WideString(u""), WideString(u"/a\\b"), WideString(u"\u00E9 %20"), WideString(u"..")}) {
    AnswerUpload(kUploadUrl);
    Upload(CreateAttachedFile(name).get());
    EXPECT_EQ(http_.CallsNamed("SendFile(").back(), "SendFile(" + Shown(name) + ")");
  }
}

}  // namespace
}  // namespace qv
