// What an upload makes of the script's answer.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "script/upload_fixture.h"

namespace qv {
namespace {

constexpr char kNotValid[] = "EQvException 0x00000000 The respone that arrived is not valid";

struct Row {
  const char* name;
  const char16_t* value;  // the whole element
  const char* thrown;
  const char* ticket;
};
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class UploadAnswer : public UploadFixture {
 protected:
  std::string ThrowsFor(const std::u16string& answer) {
    http_.Answer(answer);
    return UploadThrows();
  }
  void ExpectNoPost() const {
    EXPECT_EQ(Opens(), Lines{"Open(http, srv, 8080, , , )"});
    EXPECT_EQ(Closes(), "RS");
  }
};
class RefusedAnswer : public UploadAnswer, public testing::WithParamInterface<Row> {};

TEST_P(RefusedAnswer, EndsTheUpload) {
  EXPECT_EQ(ThrowsFor(ValueAnswer(GetParam().value)), GetParam().thrown);
  ExpectNoPost();
  EXPECT_EQ(TicketOf(file_.get()), GetParam().ticket);
}

// The ticket is stored before the URL is parsed.
constexpr Row kRows[] = {
    {"Int", u"<r xsi:type=\"xsd:int\">42</r>", kNotParsed, "<null>, -1"},
    {"Short", u"<r xsi:type=\"xsd:short\">42</r>", kNotParsed, "<null>, -1"},
    {"Byte", u"<r xsi:type=\"xsd:byte\">42</r>", kNotParsed, "<null>, -1"},
    {"Double", u"<r xsi:type=\"xsd:double\">1.5</r>", kNotParsed, "<null>, -1"},
    {"Float", u"<r xsi:type=\"float\">1.5</r>", kNotParsed, "<null>, -1"},
    {"BooleanTrue", u"<r xsi:type=\"xsd:boolean\">true</r>", kNotParsed, "<null>, -1"},
    {"BooleanFalse", u"<r xsi:type=\"xsd:boolean\">0</r>", kNotParsed, "<null>, -1"},
    {"Date", u"<r xsi:type=\"xsd:date\">2024-03-05</r>", kNotParsed, "<null>, -1"},
    {"Time", u"<r xsi:type=\"xsd:time\">10:15:30Z</r>", kNotParsed, "<null>, -1"},
    {"DateTime", u"<r xsi:type=\"xsd:dateTime\">2024-03-05T10:15:30Z</r>", kNotParsed, "<null>, -1"},
    {"Duration", u"<r xsi:type=\"xsd:duration\">P1D</r>", kUnknownProblem, "<null>, 0"},
    {"NullMark", u"<r xsi:null=\"1\"/>", kNotValid, "<null>, 0"},
    {"NullMarkOfZero", u"<r xsi:null=\"0\">http://f/u?t=1</r>", kNotValid, "<null>, 0"},
    {"NoValue", u"", kNotValid, "<null>, 0"},
    {"NoType", u"<r>http://f/u?t=1</r>",
     "EQvException 0x00000000 Scriptwells SOAP module - General Parse fault.", "<null>, 0"},
    {"BareHost", u"<r xsi:type=\"xsd:string\">srv</r>", kNotParsed, "<null>, -1"},
    {"RelativeUrl", u"<r xsi:type=\"xsd:string\">/up?t=t1</r>", kNotParsed, "t1, -1"},
    {"UrlWithoutPath", u"<r xsi:type=\"xsd:string\">http://srv?t=t1</r>", kNotParsed, "t1, -1"},
    {"Blank", u"<r xsi:type=\"xsd:string\"> </r>", kNotParsed, "<null>, -1"},
    {"EqualSignFirst", u"<r xsi:type=\"xsd:string\">=t1</r>", kNotParsed, "<null>, -1"},
};

INSTANTIATE_TEST_SUITE_P(Values, RefusedAnswer, testing::ValuesIn(kRows),
                         [](const testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

TEST_F(UploadAnswer, FaultHasItsWordsAndCode) {
  EXPECT_EQ(
      ThrowsFor(u"<soap:Envelope><soap:Body><soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5"
                u"&lt;/errorCode&gt;&lt;description&gt;no room&lt;/description&gt;&lt;/ErrorObject&gt;"
                u"</faultstring></soap:Fault></soap:Body></soap:Envelope>"),
      "EQvException 0x80040005 no room");
  ExpectNoPost();
  EXPECT_EQ(TicketOf(file_.get()), "<null>, 0");
}

TEST_F(UploadAnswer, FaultWithoutWordsKeepsItsNullText) {
  EXPECT_EQ(ThrowsFor(u"<soap:Envelope><soap:Body><soap:Fault/></soap:Body></soap:Envelope>"),
            "EQvException 0x00000000 <null>");
}

TEST_F(UploadAnswer, FaultLeavesTheOldTicketWithoutItsFlag) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  EXPECT_EQ(ThrowsFor(u"<soap:Envelope><soap:Body><soap:Fault><faultstring>gone</faultstring></soap:Fault>"
                      u"</soap:Body></soap:Envelope>"),
            "EQvException 0x00000000 gone");
  EXPECT_EQ(TicketOf(file_.get()), "t0, 0");
}

TEST_F(UploadAnswer, TextThatIsNoEnvelopeIsNotValid) {
  EXPECT_EQ(ThrowsFor(u"<html>not found</html>"), kNotValid);
  ExpectNoPost();
}

TEST_F(UploadAnswer, BrokenEnvelopeHasTheParsersPlace) {
  const std::string start = "EQvException 0x00000000 Error at file application/xml, line 1";
  EXPECT_EQ(ThrowsFor(u"<soap:Envelope>").substr(0, start.size()), start);
}

TEST_F(UploadAnswer, UrlWithoutATicketIsUsedAllTheSame) {
  AnswerUpload(u"http://files/up");
  const WideString ticket = Upload();
  EXPECT_TRUE(ticket.IsNull());
  EXPECT_EQ(Opens().back(), "Open(http, files, 80, , , )");
  EXPECT_EQ(http_.CallsNamed("SendFile").size(), 1u);
  EXPECT_EQ(Closes(), "RSRS");
  EXPECT_EQ(TicketOf(file_.get()), "<null>, -1");
}

TEST_F(UploadAnswer, EmptyTicketIsNotNull) {
  AnswerUpload(u"http://files/up?t=");
  const WideString ticket = Upload();
  EXPECT_FALSE(ticket.IsNull());
  EXPECT_TRUE(ticket.IsEmpty());
  EXPECT_EQ(TicketOf(file_.get()), ", -1");
}

TEST_F(UploadAnswer, WholeUrlIsTheTarget) {
  AnswerUpload(u"https://files:8443/a=b/up?t=t1&amp;x=%20#f");
  EXPECT_EQ(Shown(Upload()), "b/up?t");
  EXPECT_EQ(Opens().back(), "Open(https, files, 8443, , , )");
  EXPECT_EQ(http_.CallsNamed("OpenRequest(").back(), "OpenRequest(POST, /a=b/up?t=t1&x=%20#f, */*, 0)");
}

TEST_F(UploadAnswer, BackslashUrlKeepsItsBackslashesInThePath) {
  AnswerUpload(u"http:\\\\files/up\\x?t=t1");
  EXPECT_EQ(Shown(Upload()), "t1");
  EXPECT_EQ(Opens().back(), "Open(http, files, 80, , , )");
  EXPECT_EQ(http_.CallsNamed("OpenRequest(").back(), "OpenRequest(POST, /up\\x?t=t1, */*, 0)");
}

// An empty URL parses into nothing without a failure, so it is for the component to refuse it.
TEST_F(UploadAnswer, EmptyUrlReachesTheComponent) {
  for (const char16_t* value :
       {u"<r xsi:type=\"xsd:string\"/>", u"<r xsi:type=\"xsd:string\"></r>",
        u"<r xsi:type=\"xsd:long\">42</r>", u"<r xsi:type=\"xsd:any\">x</r>", u"text"}) {
    http_.Answer(ValueAnswer(value));
    http_.AnswerFile();
    EXPECT_TRUE(Upload().IsNull());
    EXPECT_EQ(Opens().back(), "Open(, , 65535, , , )");
    EXPECT_EQ(TicketOf(file_.get()), "<null>, -1");
  }
}

TEST_F(UploadAnswer, EmptyUrlThatTheComponentRefusesIsAnUnknownProblem) {
  http_.Fail(HttpStep::kOpen, E_INVALIDARG, u"no host", 2);
  EXPECT_EQ(ThrowsFor(ValueAnswer(u"<r xsi:type=\"xsd:string\"/>")), kUnknownProblem);
  EXPECT_EQ(TicketOf(file_.get()), "<null>, -1");
}

TEST_F(UploadAnswer, OnlyTheFirstValueCounts) {
  http_.Answer(
      ValueAnswer(u"<r xsi:type=\"xsd:string\">http://files/up?t=t1</r>"
                  u"<r xsi:type=\"xsd:string\">http://other/up?t=t2</r>"));
  http_.AnswerFile();
  EXPECT_EQ(Shown(Upload()), "t1");
  EXPECT_EQ(Opens().back(), "Open(http, files, 80, , , )");
}

// An answer without the element of the action is a success without a value.
TEST_F(UploadAnswer, MissingAnswerElementIsAnEmptyUrl) {
  http_.Answer(u"<soap:Envelope><soap:Body/></soap:Envelope>");
  http_.AnswerFile();
  EXPECT_TRUE(Upload().IsNull());
  EXPECT_EQ(Opens().back(), "Open(, , 65535, , , )");
}

}  // namespace
}  // namespace qv
