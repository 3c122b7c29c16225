// Attached files as parameters: the request that names them, and the uploads that come before it.
#include <gtest/gtest.h>

#include <string>

#include "fixtures/counting_object.h"
#include "script/fake_attached_file.h"
#include "script/fake_parameters.h"
#include "script/upload_fixture.h"
#include "soap/soap_call.h"

namespace qv {
namespace {

constexpr char16_t kDone[] =
    u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"xsd:int\">1</r></ExecuteResponse></soap:Body>"
    u"</soap:Envelope>";

std::string TicketElement(const std::string& name, const std::string& ticket) {
  return ParameterElement(name, "FileTicket", "<Id xsi:type=\"string\">" + ticket + "</Id>");
}

class AttachedFileOnWire : public UploadFixture {
 protected:
  AttachedFileOnWire() {
    map_[u"ScriptLanguage"] = Variant::FromString(u"VBScript");
    map_[u"Script"] = Variant::FromString(u"a<b");
  }
  void TearDown() override {
    UploadFixture::TearDown();
    EXPECT_EQ(CountingObject::Live(), 0);
  }

  void Run(IUnknown* parameters) {
    map_[u"parameters"] = Variant::FromObject(parameters);
    CSOAPCall().Run(CQvUrl(u"http://srv:8080/svc"), u"Execute", u"", map_);
  }
  std::string RunThrows(IUnknown* parameters) {
    return Thrown([&] { Run(parameters); });
  }
  // The last request, which is the host's.
  std::string Sent(IUnknown* parameters) {
    http_.Answer(kDone);
    Run(parameters);
    return http_.Bodies().back();
  }
  void Add(const WideString& key, IUnknown* object) {
    EXPECT_EQ(list_->Add(key, Variant::FromObject(object), nullptr), S_OK);
  }
  // A list from elsewhere with one parameter "k".
  FakeParametersPtr Foreign(const Variant& value, const WideString& typeName) {
    FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", value, typeName);
    return list;
  }

  FakeLog log_;
  IParametersPtr list_ = CreateParameters();
};

TEST_F(AttachedFileOnWire, ElementStandsLikeThis) {
  AnswerUpload(u"http://files/up?t=t1");
  Add(u"doc", file_.get());
  EXPECT_EQ(Sent(list_.get()),
            RequestWith("<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
                        "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" "
                        "ns1:arrayType=\"ns2:Parameter[1]\">"
                        "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                        "<Name xsi:type=\"xsd:string\">doc</Name>"
                        "<Value xsi:type=\"FileTicket\"><Id xsi:type=\"string\">t1</Id></Value>"
                        "</Parameter>"
                        "</parameters>"));
}

TEST_F(AttachedFileOnWire, TicketIsEscaped) {
  AnswerUpload(u"http://files/up?t=&lt;&quot;&amp;&apos;&gt;&#233;&#128512;");
  Add(u"<k>", file_.get());
  EXPECT_EQ(Sent(list_.get()),
            RequestWith(ParameterArray(
                "1", TicketElement("&lt;k&gt;", "&lt;&quot;&amp;&apos;&gt;&#233;&#55357;&#56832;"))));
}

TEST_F(AttachedFileOnWire, NullAndEmptyTicketsGoOutEmpty) {
  AnswerUpload(u"http://files/up");
  Add(u"a", file_.get());
  EXPECT_EQ(Sent(list_.get()), RequestWith(ParameterArray("1", TicketElement("a", ""))));
  EXPECT_EQ(TicketOf(file_.get()), "<null>, -1");
  AnswerUpload(u"http://files/up?t=");
  EXPECT_EQ(Sent(list_.get()), RequestWith(ParameterArray("1", TicketElement("a", ""))));
}

TEST_F(AttachedFileOnWire, UploadIsCompleteBeforeTheRequestGoesOut) {
  map_[u"Proxy"] = Variant::FromString(u"proxy");
  AnswerUpload(u"http://files/up?t=t1");
  Add(u"doc", file_.get());
  Sent(list_.get());
  EXPECT_EQ(Opens(), (Lines{"Open(http, srv, 8080, , , )", "Open(http, files, 80, , , proxy)",
                            "Open(http, srv, 8080, , , proxy)"}));
  EXPECT_EQ(Closes(), "RSRSRS");
  EXPECT_EQ(http_.Bodies(),
            (Lines{FreshRequest(), RequestWith(ParameterArray("1", TicketElement("doc", "t1")))}));
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
}

TEST_F(AttachedFileOnWire, FilesGoOutOneAfterAnotherInListOrder) {
  const IAttachedFilePtr second = CreateAttachedFile(u"/second");
  EXPECT_EQ(second->put_TicketId(u"old"), S_OK);
  AnswerUpload(u"http://files/up?t=t1");
  AnswerUpload(u"http://files/up?t=t2");
  Add(u"a", file_.get());
  EXPECT_EQ(list_->Add(u"n", Variant::FromInt(7), nullptr), S_OK);
  Add(u"b", second.get());
  Sent(list_.get());
  EXPECT_EQ(http_.CallsNamed("SendFile("), (Lines{"SendFile(c:\\data\\a b.txt)", "SendFile(/second)"}));
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), AgainRequest("old"),
                                   RequestWith(ParameterArray("3", TicketElement("a", "t1") +
                                                                       ParameterElement("n", "xsd:int", "7") +
                                                                       TicketElement("b", "t2")))}));
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
  EXPECT_EQ(TicketOf(second.get()), "t2, -1");
}

TEST_F(AttachedFileOnWire, SameFileTwiceIsSentUnderItsFirstTicket) {
  AnswerUpload(u"http://files/up?t=t1");
  AnswerUpload(u"http://files/up?t=t2");
  Add(u"a", file_.get());
  Add(u"b", file_.get());
  Sent(list_.get());
  EXPECT_EQ(http_.Bodies(),
            (Lines{FreshRequest(), AgainRequest("t1"),
                   RequestWith(ParameterArray("2", TicketElement("a", "t1") + TicketElement("b", "t2")))}));
}

TEST_F(AttachedFileOnWire, FailureAtTheSecondFileLeavesTheTicketOfTheFirst) {
  const IAttachedFilePtr second = CreateAttachedFile(u"/second");
  AnswerUpload(u"http://files/up?t=t1");
  http_.Answer(UrlAnswer(u"http://files/up?t=t2"));
  http_.Fail(HttpStep::kSendFile, HTTP_E_FILE_NOT_FOUND, u"no such file", 2);
  Add(u"a", file_.get());
  Add(u"b", second.get());
  EXPECT_EQ(RunThrows(list_.get()), "EQvException 0x00000000 no such file");
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), FreshRequest()}));
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
  EXPECT_EQ(TicketOf(second.get()), "t2, -1");
}

TEST_F(AttachedFileOnWire, FailureBehindAFileKeepsItsTicketAndSendsNothing) {
  AnswerUpload(u"http://files/up?t=t1");
  Add(u"a", file_.get());
  EXPECT_EQ(list_->Add(u"b", Variant(), nullptr), S_OK);
  EXPECT_EQ(RunThrows(list_.get()), kNoDocument);
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
}

TEST_F(AttachedFileOnWire, FaultOfTheNestedCallIsTheCallsOwn) {
  http_.Answer(
      u"<soap:Envelope><soap:Body><soap:Fault><faultstring>no room</faultstring></soap:Fault>"
      u"</soap:Body></soap:Envelope>");
  Add(u"a", file_.get());
  EXPECT_EQ(RunThrows(list_.get()), "EQvException 0x00000000 no room");
  EXPECT_EQ(http_.Bodies().size(), 1u);
}

TEST_F(AttachedFileOnWire, TypeNameMatchesInAnyCase) {
  int calls = 0;
  for (const char16_t* name : {u"attachedfile", u"ATTACHEDFILE", u"aTTACHEDfILE", u"AttachedFile"}) {
    AnswerUpload(u"http://files/up?t=t" + std::u16string(1, static_cast<char16_t>(u'0' + calls)));
    EXPECT_EQ(Sent(Foreign(Variant::FromObject(file_.get()), name).get()),
              RequestWith(ParameterArray("1", TicketElement("k", "t" + std::to_string(calls++)))));
  }
}

TEST_F(AttachedFileOnWire, SimilarTypeNameIsNone) {
  for (const char16_t* name : {u"AttachedFiles", u"AttachedFil", u" AttachedFile", u"xsd:AttachedFile"}) {
    EXPECT_EQ(RunThrows(Foreign(Variant::FromObject(file_.get()), name).get()), kNoDocument);
    EXPECT_TRUE(http_.Calls().empty());
  }
  EXPECT_EQ(TicketOf(file_.get()), "<null>, 0");
}

TEST_F(AttachedFileOnWire, FileUnderAnotherTypeNameIsWrittenByThatType) {
  EXPECT_EQ(Sent(Foreign(Variant::FromObject(file_.get()), u"boolean").get()).find("FileTicket"),
            std::string::npos);
  EXPECT_EQ(http_.Bodies().size(), 1u);
}

TEST_F(AttachedFileOnWire, ObjectThatIsNoFileIsAnUnknownProblem) {
  const CountingObjectPtr object(new CountingObject);
  EXPECT_EQ(RunThrows(Foreign(Variant::FromObject(object.get()), u"AttachedFile").get()), kUnknownProblem);
  EXPECT_TRUE(http_.Calls().empty());
  map_.clear();
  EXPECT_EQ(object->References(), 1u);
}

TEST_F(AttachedFileOnWire, ValueThatIsNoObjectIsAnUnknownProblem) {
  for (const Variant& value : {Variant::FromObject(nullptr), Variant::FromString(u"/a"), Variant::FromInt(1),
                               Variant(), Variant::Null()}) {
    EXPECT_EQ(RunThrows(Foreign(value, u"AttachedFile").get()), kUnknownProblem) << value.Tag();
    EXPECT_TRUE(http_.Calls().empty());
  }
}

TEST_F(AttachedFileOnWire, MissingKeyOfTheUploadIsRefused) {
  map_.erase(u"UploadFile");
  Add(u"a", file_.get());
  EXPECT_EQ(RunThrows(list_.get()), kNoDocument);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(AttachedFileOnWire, ReferencesAreGivenBack) {
  const FakeAttachedFilePtr file(new FakeAttachedFile(&http_, u"/a"));
  AnswerUpload(u"http://files/up?t=t1");
  Sent(Foreign(Variant::FromObject(file.get()), u"AttachedFile").get());
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route", 4);
  EXPECT_EQ(RunThrows(Foreign(Variant::FromObject(file.get()), u"AttachedFile").get()),
            "EQvException 0x00000000 Cannot create a soap call.");
  map_.clear();
  EXPECT_EQ(file->References(), 1u);
}

}  // namespace
}  // namespace qv
