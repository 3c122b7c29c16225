// One upload: which calls of the HTTP component it makes, what they carry, and what the file object holds
// afterwards.
#include "script/file_uploader.h"

#include <string>
#include <type_traits>

#include "fixtures/transfer_calls.h"
#include "script/fake_attached_file.h"
#include "script/upload_fixture.h"

namespace qv {
namespace {

static_assert(std::has_virtual_destructor_v<CFileUploader>);

class FileUploader : public UploadFixture {
 protected:
  // The calls that an upload has to make: the nested call, and the transfer with this session.
  static Lines ExpectedCalls(const std::string& session) {
    Lines calls = ExchangeCalls("srv", "8080", "/svc", "Execute", 146);
    const Lines transfer =
        TransferCalls("http, files, 81, , , ", "POST, /up?ticket=t1, */*, 0",
                      {"SetHeader(Cache-Control, no-cache)", "SetHeader(usid, " + session + ")",
                       "SendFile(c:\\data\\a b.txt)", "GetHeader(StatusCode)"});
    calls.insert(calls.end(), transfer.begin(), transfer.end());
    return calls;
  }
  // The session's text in the nested request is this.
  void ExpectUsid(const std::string& text) {
    EXPECT_NE(http_.Bodies()[0].find("<usid xsi:type=\"xsd:string\">" + text + "</usid>"), std::string::npos);
  }

  const FakeAttachedFilePtr fake_{new FakeAttachedFile(&http_, u"/a")};
};

TEST_F(FileUploader, UploadMakesTheseCallsInThisOrder) {
  EXPECT_EQ(Ticket(), "t1");
  EXPECT_EQ(http_.PlainCalls(), ExpectedCalls("u1"));
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
  EXPECT_EQ(TicketOf(file_), "t1, -1");
}

TEST_F(FileUploader, NestedRequestHoldsTheRenderingOfTheScript) {
  home_.Write(
      "ClientScripts/UploadScript.xml",
      "<?xml version=\"1.0\"?>\n<Scriptwell Language='JavaScript'><Code>a &lt; b</Code></Scriptwell>");
  Ticket();
  EXPECT_EQ(http_.Bodies(),
            Lines{RequestOfFile("&lt;Scriptwell Language=&quot;JavaScript&quot;&gt;&lt;Code&gt;"
                                "a &amp;lt; b&lt;/Code&gt;&lt;/Scriptwell&gt;\\u000A\\u000A",
                                kNoParameters)});
}

TEST_F(FileUploader, CookieIsSentWithBothRequestsUnlessItIsEmpty) {
  for (const WideString& cookie : {WideString(), WideString(u"")}) {
    map_[u"CookieHandle"] = Variant::FromString(cookie);
    Ticket();
  }
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
  EXPECT_EQ(http_.CallsNamed("SetHeader(usid").size(), 2U);
  FakeHttp http;
  http.Answer(UrlAnswer(u"http://files:81/up?ticket=t1"));
  http.AnswerFile();
  map_[u"CookieHandle"] = Text(u"k=v; w");
  file_ = CreateAttachedFile(u"/a");
  Upload();
  EXPECT_EQ(http.CallsNamed("SetHeader("),
            (Lines{"SetHeader(Host, srv:8080)", "SetHeader(Content-Type, text/xml)", ActionHeader("Execute"),
                   "SetHeader(Cookie, k=v; w)", "SetHeader(Cache-Control, no-cache)", "SetHeader(usid, u1)",
                   "SetHeader(Cookie, k=v; w)"}));
}

TEST_F(FileUploader, ProxyIsForTheFileOnlyAndWithoutItsPort) {
  map_[u"ProxyPort"] = Int(3128);
  Ticket();
  EXPECT_EQ(http_.Opens(), (Lines{"Open(http, srv, 8080, , , )", "Open(http, files, 81, , , )"}));
  for (const char16_t* proxy : {u"proxy", u"", u"@PROXY@", u"p:1", u" p "}) {
    FakeHttp http;
    http.Answer(UrlAnswer(u"http://files:81/up?ticket=t1"));
    http.AnswerFile();
    map_[u"Proxy"] = Text(proxy);
    Upload();
    EXPECT_EQ(http.Opens(), (Lines{"Open(http, srv, 8080, , , )",
                                   "Open(http, files, 81, , , " + Shown(WideString(proxy)) + ")"}));
  }
}

TEST_F(FileUploader, AbsentProxyIsEmptyAndNotNull) {
  ASSERT_EQ(map_.count(u"Proxy"), 0U);
  Ticket();
  EXPECT_EQ(http_.CallsNamed("Open("),
            (Lines{"Open(http, srv, 8080, <null>, <null>, )", "Open(http, files, 81, <null>, <null>, )"}));
}

TEST_F(FileUploader, AbsentSessionIsANullText) {
  map_.erase(u"ContextHandle");
  EXPECT_EQ(Ticket(), "t1");
  EXPECT_EQ(http_.CallsNamed("SetHeader(usid"), Lines{"SetHeader(usid, <null>)"});
  ExpectUsid("");
}

TEST_F(FileUploader, MapMayBeEmpty) {
  map_.clear();
  EXPECT_EQ(Ticket(), "t1");
  EXPECT_EQ(http_.PlainCalls(), ExpectedCalls("<null>"));
}

TEST_F(FileUploader, SessionIsEscapedInTheNestedEnvelopeAndPlainInTheHeader) {
  map_[u"ContextHandle"] = Text(u"a&b");
  Ticket();
  ExpectUsid("a&amp;b");
  EXPECT_EQ(http_.CallsNamed("SetHeader(usid"), Lines{"SetHeader(usid, a&b)"});
}

// The map of the host's call holds parameters and a script; none of it belongs to the nested one.
TEST_F(FileUploader, NestedRequestTakesNothingElseFromTheMap) {
  map_[u"parameters"] = Variant::FromObject(CreateParameters().get());
  map_[u"Script"] = Text(u"other");
  map_[u"ScriptLanguage"] = Text(u"VBScript");
  map_[u"ScriptFile"] = Text(u"/nowhere.xml");
  Ticket();
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
}

TEST_F(FileUploader, FileWithATicketUsesTheOtherScriptAndPassesTheTicket) {
  EXPECT_EQ(file_->put_TicketId(u"t<0>"), S_OK);
  EXPECT_EQ(Ticket(), "t1");
  EXPECT_EQ(http_.Bodies(), Lines{AgainRequest("t&lt;0&gt;")});
  EXPECT_EQ(TicketOf(file_), "t1, -1");
  EXPECT_EQ(file_->put_TicketId(WideString()), S_OK);
  Ticket();
  EXPECT_EQ(http_.Bodies().back(), AgainRequest(""));
}

TEST_F(FileUploader, SecondUploadIsUnderTheTicketUnlessTheHostHasReadIt) {
  Ticket();
  EXPECT_EQ(Ticket(u"http://files:81/up?ticket=t2"), "t2");
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), AgainRequest("t1")}));
  EXPECT_EQ(TicketOf(file_), "t2, -1");
  Ticket();
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), AgainRequest("t1"), FreshRequest()}));
}

TEST_F(FileUploader, FileIsAskedForThisAndNothingElse) {
  AnswerUpload();
  Upload(fake_.get());
  EXPECT_EQ(fake_->Log(), (Lines{"get_Filename after 0", "IsTicketId after 0", "put_TicketId(t1) after 14"}));
  EXPECT_EQ(fake_->Flag(), VARIANT_TRUE);
  EXPECT_EQ(fake_->References(), 1U);
}

TEST_F(FileUploader, FlagIsClearBeforeTheNestedCallIsSent) {
  fake_->Hold(u"t0");
  AnswerUpload();
  Upload(fake_.get());
  EXPECT_EQ(fake_->Log(), (Lines{"get_Filename after 0", "IsTicketId after 0", "get_TicketId after 0",
                                 "put_TicketId(t1) after 14"}));
  EXPECT_EQ(fake_->References(), 1U);
}

TEST_F(FileUploader, AnyFlagButZeroMeansATicket) {
  for (const VARIANT_BOOL flag : {VARIANT_TRUE, VARIANT_BOOL{1}, VARIANT_BOOL{0x100}}) {
    fake_->Hold(u"t0", flag);
    AnswerUpload();
    Upload(fake_.get());
    EXPECT_EQ(http_.Bodies().back(), AgainRequest("t0")) << flag;
  }
}

TEST_F(FileUploader, StatusOfTheAnswerIsNotLookedAt) {
  for (const char16_t* status : {u"404", u"500", u"", u"no number"}) {
    http_.Answer(UrlAnswer(u"http://files:81/up?ticket=t1"));
    http_.AnswerFile(status);
    EXPECT_EQ(Shown(Upload()), "t1");
  }
}

TEST_F(FileUploader, ComponentThatNeedsNoStartIsUsedAsItIs) {
  http_.OfferNoRunnable();
  AnswerUpload();
  EXPECT_EQ(UploadThrows(), "nothing");
  EXPECT_TRUE(http_.CallsNamed("Run").empty());
}

TEST_F(FileUploader, NameOfTheFileIsPassedUnchanged) {
  for (const WideString& name :
       {WideString(), WideString(u""), WideString(u"/a\\b"), WideString(u"\u00E9 %20"), WideString(u"..")}) {
    AnswerUpload();
    Upload(CreateAttachedFile(name).get());
    EXPECT_EQ(http_.CallsNamed("SendFile(").back(), "SendFile(" + Shown(name) + ")");
  }
}

}  // namespace
}  // namespace qv
