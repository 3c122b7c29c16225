// Attached files as parameters: the request that names them, and the uploads that come before it.
#include "script/fake_attached_file.h"
#include "script/upload_fixture.h"

namespace qv {
namespace {

class AttachedFileOnWire : public UploadFixture {
 protected:
  AttachedFileOnWire() { PutScript(); }
  // A list of the library's with the file under this key.
  IParametersPtr One(const WideString& key = u"doc") { return List({{key, Object(file_)}}); }
  static std::string RequestFor(const std::string& ticket, const std::string& key = "doc") {
    return RequestWith(ParameterArray("1", TicketElement(key, ticket)));
  }

  const IAttachedFilePtr second_ = CreateAttachedFile(u"/second");
};

TEST_F(AttachedFileOnWire, TicketIsEscapedAndNullOrEmptyIsEmpty) {
  AnswerUpload(u"http://files/up?t=&lt;&quot;&amp;&apos;&gt;&#233;&#128512;");
  EXPECT_EQ(Sent(One(u"<k>")), RequestFor("&lt;&quot;&amp;&apos;&gt;&#233;&#55357;&#56832;", "&lt;k&gt;"));
  file_ = CreateAttachedFile(u"/a");
  AnswerUpload(u"http://files/up");
  EXPECT_EQ(Sent(One()), RequestFor(""));
  EXPECT_EQ(TicketOf(file_), "<null>, -1");
  AnswerUpload(u"http://files/up?t=");
  EXPECT_EQ(Sent(One()), RequestFor(""));
}

TEST_F(AttachedFileOnWire, UploadIsCompleteBeforeTheRequestIsSent) {
  map_[u"Proxy"] = Text(u"proxy");
  AnswerUpload(u"http://files/up?t=t1");
  Sent(One());
  EXPECT_EQ(http_.Opens(), (Lines{"Open(http, srv, 8080, , , )", "Open(http, files, 80, , , proxy)",
                                  "Open(http, srv, 8080, , , proxy)"}));
  EXPECT_EQ(http_.Closes(), "RSRSRS");
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), RequestFor("t1")}));
  EXPECT_EQ(TicketOf(file_), "t1, -1");
}

TEST_F(AttachedFileOnWire, FilesAreSentOneAfterAnotherInListOrder) {
  EXPECT_EQ(second_->put_TicketId(u"old"), S_OK);
  AnswerUpload(u"http://files/up?t=t1");
  AnswerUpload(u"http://files/up?t=t2");
  Sent(List({{u"a", Object(file_)}, {u"n", Int(7)}, {u"b", Object(second_)}}));
  EXPECT_EQ(http_.CallsNamed("SendFile("), (Lines{"SendFile(c:\\data\\a b.txt)", "SendFile(/second)"}));
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), AgainRequest("old"),
                                   RequestWith(ParameterArray("3", TicketElement("a", "t1") +
                                                                       ParameterElement("n", "xsd:int", "7") +
                                                                       TicketElement("b", "t2")))}));
  EXPECT_EQ(TicketOf(file_), "t1, -1");
  EXPECT_EQ(TicketOf(second_), "t2, -1");
}

TEST_F(AttachedFileOnWire, SameFileTwiceIsSentUnderItsFirstTicket) {
  AnswerUpload(u"http://files/up?t=t1");
  AnswerUpload(u"http://files/up?t=t2");
  Sent(List({{u"a", Object(file_)}, {u"b", Object(file_)}}));
  EXPECT_EQ(http_.Bodies(),
            (Lines{FreshRequest(), AgainRequest("t1"),
                   RequestWith(ParameterArray("2", TicketElement("a", "t1") + TicketElement("b", "t2")))}));
}

TEST_F(AttachedFileOnWire, FailureAfterAFileKeepsItsTicket) {
  AnswerUpload(u"http://files/up?t=t1");
  EXPECT_EQ(RunThrows(List({{u"a", Object(file_)}, {u"b", Variant()}})), kNoDocument);
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
  EXPECT_EQ(TicketOf(file_), "t1, -1");
  AnswerUpload(u"http://files/up?t=t3");
  http_.Answer(UrlAnswer(u"http://files/up?t=t2"));
  http_.Fail(HttpStep::kSendFile, HTTP_E_FILE_NOT_FOUND, u"no such file", 3);
  EXPECT_EQ(RunThrows(List({{u"a", Object(file_)}, {u"b", Object(second_)}})), Refused("no such file"));
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), FreshRequest(), FreshRequest()}));
  EXPECT_EQ(TicketOf(file_), "t3, -1");
  EXPECT_EQ(TicketOf(second_), "t2, -1");
}

TEST_F(AttachedFileOnWire, FaultOfTheNestedCallFailsTheCall) {
  http_.Answer(FaultAnswer(u"no room"));
  EXPECT_EQ(RunThrows(One()), Refused("no room"));
  EXPECT_EQ(http_.Bodies().size(), 1U);
}

TEST_F(AttachedFileOnWire, TypeNameMatchesInAnyCase) {
  int calls = 0;
  for (const char16_t* name : {u"attachedfile", u"ATTACHEDFILE", u"aTTACHEDfILE", u"AttachedFile"}) {
    AnswerUpload(u"http://files/up?t=t" + std::u16string(1, static_cast<char16_t>(u'0' + calls)));
    EXPECT_EQ(Sent(Foreign(Object(file_), name)), RequestFor("t" + std::to_string(calls++), "k"));
  }
}

TEST_F(AttachedFileOnWire, FileUnderAnotherTypeNameIsNotUploaded) {
  for (const char16_t* name : {u"AttachedFiles", u"AttachedFil", u" AttachedFile", u"xsd:AttachedFile"})
    ExpectRefused(Foreign(Object(file_), name));
  EXPECT_EQ(TicketOf(file_), "<null>, 0");
  EXPECT_EQ(Sent(Foreign(Object(file_), u"boolean")).find("FileTicket"), std::string::npos);
  EXPECT_EQ(http_.Bodies().size(), 1U);
}

TEST_F(AttachedFileOnWire, ValueThatIsNotAFileIsAnUnknownProblem) {
  const CountingObjectPtr object(new CountingObject);
  for (const Variant& value :
       {Object(object), Object(nullptr), Text(u"/a"), Int(1), Variant(), Variant::Null()}) {
    SCOPED_TRACE(value.Tag());
    ExpectRefused(Foreign(value, u"AttachedFile"), kUnknownProblem);
  }
  EXPECT_EQ(object->References(), 1U);
}

TEST_F(AttachedFileOnWire, MissingKeyOfTheUploadIsRefused) {
  map_.erase(u"UploadFile");
  ExpectRefused(One());
}

TEST_F(AttachedFileOnWire, ReferencesAreGivenBack) {
  const FakeAttachedFilePtr file(new FakeAttachedFile(&http_, u"/a"));
  AnswerUpload(u"http://files/up?t=t1");
  Sent(Foreign(Object(file), u"AttachedFile"));
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route", 4);
  EXPECT_EQ(RunThrows(Foreign(Object(file), u"AttachedFile")), kNoSoapCall);
  EXPECT_EQ(file->References(), 1U);
}

}  // namespace
}  // namespace qv
