// What an upload makes of the script's answer.
#include <string>

#include "script/upload_fixture.h"

namespace qv {
namespace {

class UploadAnswer : public UploadFixture {
 protected:
  // The upload ends with the answer, and no file is sent.
  void ExpectRefused(const std::u16string& answer, const std::string& thrown, const std::string& ticket) {
    FakeHttp http;
    http.Answer(answer);
    const IAttachedFilePtr file = CreateAttachedFile(u"/a");
    EXPECT_EQ(UploadThrows(file.get()), thrown);
    EXPECT_EQ(http.Opens(), Lines{"Open(http, srv, 8080, , , )"});
    EXPECT_EQ(http.Closes(), "RS");
    EXPECT_EQ(TicketOf(file), ticket);
    EXPECT_EQ(http.LiveObjects(), 0);
  }
};

// The ticket is stored before the URL is parsed.
TEST_F(UploadAnswer, ValueThatIsNotAUrlEndsTheUpload) {
  const struct {
    const char16_t* type;
    const char16_t* content;
    const char* thrown = kNoUrl;
    const char* ticket = "<null>, -1";
  } rows[] = {{u"xsd:int", u"42"},
              {u"xsd:short", u"42"},
              {u"xsd:byte", u"42"},
              {u"xsd:double", u"1.5"},
              {u"float", u"1.5"},
              {u"xsd:boolean", u"true"},
              {u"xsd:boolean", u"0"},
              {u"xsd:date", u"2024-03-05"},
              {u"xsd:time", u"10:15:30Z"},
              {u"xsd:dateTime", u"2024-03-05T10:15:30Z"},
              {u"xsd:duration", u"P1D", kUnknownProblem, "<null>, 0"},
              {u"xsd:string", u"srv"},
              {u"xsd:string", u"/up?t=t1", kNoUrl, "t1, -1"},
              {u"xsd:string", u"http://srv?t=t1", kNoUrl, "t1, -1"},
              {u"xsd:string", u" "},
              {u"xsd:string", u"=t1"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(Shown(row.type) + " " + Shown(row.content));
    ExpectRefused(ExecuteAnswer(ValueElement(row.type, row.content)), row.thrown, row.ticket);
  }
}

TEST_F(UploadAnswer, AnswerWithoutAValueEndsTheUpload) {
  const struct {
    const char* name;
    std::u16string answer;
    std::string thrown = kNotValid;
  } rows[] = {
      {"null mark", ExecuteAnswer(u"<r xsi:null=\"1\"/>")},
      {"null mark of zero", ExecuteAnswer(u"<r xsi:null=\"0\">http://f/u?t=1</r>")},
      {"no value", ExecuteAnswer(u"")},
      {"no type", ExecuteAnswer(u"<r>http://f/u?t=1</r>"),
       Refused("Scriptwells SOAP module - General Parse fault.")},
      {"fault", kFaultFive, "EQvException 0x80040005 server words"},
      {"fault without a text", Enveloped(u"<soap:Fault/>"), Refused("<null>")},
      {"no envelope", u"<html>not found</html>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectRefused(row.answer, row.thrown, "<null>, 0");
  }
}

TEST_F(UploadAnswer, FaultLeavesTheOldTicketWithoutItsFlag) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  http_.Answer(FaultAnswer(u"gone"));
  EXPECT_EQ(UploadThrows(), Refused("gone"));
  EXPECT_EQ(TicketOf(file_), "t0, 0");
}

TEST_F(UploadAnswer, BrokenEnvelopeHasTheParsersPlace) {
  http_.Answer(u"<soap:Envelope>");
  const std::string start = Refused("Error at file application/xml, line 1");
  EXPECT_EQ(UploadThrows().substr(0, start.size()), start);
}

TEST_F(UploadAnswer, UrlWithoutATicketIsUsedAllTheSame) {
  EXPECT_EQ(Ticket(u"http://files/up"), "<null>");
  EXPECT_EQ(http_.Opens().back(), "Open(http, files, 80, , , )");
  EXPECT_EQ(http_.CallsNamed("SendFile").size(), 1U);
  EXPECT_EQ(http_.Closes(), "RSRS");
  EXPECT_EQ(TicketOf(file_), "<null>, -1");
}

TEST_F(UploadAnswer, EmptyTicketIsNotNull) {
  EXPECT_EQ(Ticket(u"http://files/up?t="), "");
  EXPECT_EQ(TicketOf(file_), ", -1");
}

TEST_F(UploadAnswer, WholeUrlIsTheTarget) {
  const struct {
    const char16_t* url;
    const char* ticket;
    const char* open;
    const char* request;
  } rows[] = {{u"https://files:8443/a=b/up?t=t1&amp;x=%20#f", "b/up?t", "Open(https, files, 8443, , , )",
               "OpenRequest(POST, /a=b/up?t=t1&x=%20#f, */*, 0)"},
              {u"http:\\\\files/up\\x?t=t1", "t1", "Open(http, files, 80, , , )",
               "OpenRequest(POST, /up\\x?t=t1, */*, 0)"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Ticket(row.url), row.ticket);
    EXPECT_EQ(http_.Opens().back(), row.open);
    EXPECT_EQ(http_.CallsNamed("OpenRequest(").back(), row.request);
  }
}

// An empty URL parses into nothing without a failure, so it is for the component to refuse it.
TEST_F(UploadAnswer, EmptyUrlReachesTheComponent) {
  for (const std::u16string& answer :
       {ExecuteAnswer(u"<r xsi:type=\"xsd:string\"/>"), UrlAnswer(u""),
        ExecuteAnswer(ValueElement(u"xsd:long", u"42")), ExecuteAnswer(ValueElement(u"xsd:any", u"x")),
        ExecuteAnswer(u"text"), kNoAnswerElement}) {
    http_.Answer(answer);
    http_.AnswerFile();
    EXPECT_TRUE(Upload().IsNull());
    EXPECT_EQ(http_.Opens().back(), "Open(, , 65535, , , )");
    EXPECT_EQ(TicketOf(file_), "<null>, -1");
  }
}

TEST_F(UploadAnswer, EmptyUrlThatTheComponentRefusesIsAnUnknownProblem) {
  http_.Answer(UrlAnswer(u""));
  http_.Fail(HttpStep::kOpen, E_INVALIDARG, u"no host", 2);
  EXPECT_EQ(UploadThrows(), kUnknownProblem);
  EXPECT_EQ(TicketOf(file_), "<null>, -1");
}

TEST_F(UploadAnswer, OnlyTheFirstValueCounts) {
  http_.Answer(ExecuteAnswer(ValueElement(u"xsd:string", u"http://files/up?t=t1") +
                             ValueElement(u"xsd:string", u"http://other/up?t=t2")));
  http_.AnswerFile();
  EXPECT_EQ(Shown(Upload()), "t1");
  EXPECT_EQ(http_.Opens().back(), "Open(http, files, 80, , , )");
}

}  // namespace
}  // namespace qv
