#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "fixtures/formaters.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "qvscriptwells/xml_memory.h"
#include "soap/soap_response.h"

namespace qv {
namespace {

constexpr char kNotValid[] = "EQvException 0x00000000 The respone that arrived is not valid";

std::u16string Enveloped(const std::u16string& inside) {
  return u"<soap:Envelope><soap:Body>" + inside + u"</soap:Body></soap:Envelope>";
}

class SoapResponse : public testing::Test {
 protected:
  void SetUp() override { EnsureFormaters(); }

  static Variant Parse(const WideString& action, const WideString& text) {
    CSOAPResponse response;
    response.SetText(action, text, false);
    response.ParseText();
    return response.Value();
  }
  static std::string ParseThrows(const WideString& action, const WideString& text) {
    return Thrown([&] { Parse(action, text); });
  }
  // The session id that an answer to CreateUserSession with this content gives; "no text" for another tag.
  static std::string SessionId(const std::u16string& content) {
    const Variant value = Parse(u"CreateUserSession", Enveloped(u"<CreateUserSessionResponse>" + content +
                                                                u"</CreateUserSessionResponse>"));
    return value.Tag() == VT_BSTR ? Shown(value.Text()) : "no text";
  }
  // The value of an answer to Execute with this content.
  static Variant Result(const std::u16string& content) {
    return Parse(u"Execute", Enveloped(u"<ExecuteResponse>" + content + u"</ExecuteResponse>"));
  }

  XmlLibraryHold hold_;
};

TEST_F(SoapResponse, NewResponseIsEmpty) {
  const CSOAPResponse response{};
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
  EXPECT_TRUE(response.Cookie().IsNull());
}

// What counts as an envelope.

TEST_F(SoapResponse, TextWithoutEnvelopeMarkerIsNoAnswer) {
  EXPECT_EQ(ParseThrows(u"Execute", u"<html><body>404</body></html>"), kNotValid);
  EXPECT_EQ(ParseThrows(u"Execute", u"hello"), kNotValid);
  EXPECT_EQ(ParseThrows(u"Execute", u""), kNotValid);
  EXPECT_EQ(ParseThrows(u"Execute", WideString()), kNotValid);
}

TEST_F(SoapResponse, OtherEnvelopePrefixesAreNoAnswer) {
  EXPECT_EQ(ParseThrows(u"Execute", u"<SOAP-ENV:Envelope><a><ExecuteResponse/></a></SOAP-ENV:Envelope>"),
            kNotValid);
  EXPECT_EQ(ParseThrows(u"Execute", u"<Soap:Envelope><a><ExecuteResponse/></a></Soap:Envelope>"), kNotValid);
  EXPECT_EQ(ParseThrows(u"Execute", u"<s:Envelope><a><ExecuteResponse/></a></s:Envelope>"), kNotValid);
  EXPECT_EQ(ParseThrows(u"Execute", u"<soap:envelope><a><ExecuteResponse/></a></soap:envelope>"), kNotValid);
}

TEST_F(SoapResponse, UpperCasePrefixIsAnEnvelope) {
  const Variant value = Parse(u"Execute",
                              u"<SOAP:Envelope><SOAP:Body><ExecuteResponse><r xsi:type=\"xsd:int\">7</r>"
                              u"</ExecuteResponse></SOAP:Body></SOAP:Envelope>");
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 7);
}

TEST_F(SoapResponse, EnvelopeMarkerInsideOtherTextCounts) {
  const Variant value = Parse(u"Execute",
                              u"<!-- soap:Envelope --><a><b><ExecuteResponse><r xsi:type=\"xsd:int\">7</r>"
                              u"</ExecuteResponse></b></a>");
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(
      ParseThrows(u"Execute", u"<html><body>soap:Envelope<br></body></html>"),
      "EQvException 0x00000000 Error at file application/xml, line 1, char 32  Message: application/xml");
}

TEST_F(SoapResponse, ProseThatNamesTheEnvelopeIsAParseError) {
  EXPECT_EQ(
      ParseThrows(u"Execute", u"soap:Envelope"),
      "EQvException 0x00000000 Error at file application/xml, line 1, char 1  Message: application/xml");
}

// Parse errors.

TEST_F(SoapResponse, ParseErrorTellsLineAndColumnAndRepeatsTheId) {
  EXPECT_EQ(
      ParseThrows(u"Execute", u"<soap:Envelope>\n<a>\n</b></soap:Envelope>"),
      "EQvException 0x00000000 Error at file application/xml, line 3, char 3  Message: application/xml");
  EXPECT_EQ(
      ParseThrows(u"Execute", u"<soap:Envelope>\n  <soap:Body>\n    <x></y></soap:Body>\n</soap:Envelope>"),
      "EQvException 0x00000000 Error at file application/xml, line 3, char 10  Message: application/xml");
  EXPECT_EQ(
      ParseThrows(u"Execute", u"<soap:Envelope>"),
      "EQvException 0x00000000 Error at file application/xml, line 1, char 16  Message: application/xml");
}

TEST_F(SoapResponse, RefusedEntitiesAreAParseError) {
  std::u16string text = u"<!DOCTYPE a [<!ENTITY a \"aaaaaaaaaa\">";
  for (char16_t name = u'b'; name < u'k'; ++name) {
    const char16_t before = static_cast<char16_t>(name - 1);
    text += u"<!ENTITY " + std::u16string(1, name) + u" \"";
    for (int i = 0; i < 10; ++i) text += u"&" + std::u16string(1, before) + u";";
    text += u"\">";
  }
  text += u"]><soap:Envelope>&j;</soap:Envelope>";
  const std::string thrown = ParseThrows(u"Execute", text);
  EXPECT_EQ(thrown.substr(0, 61), "EQvException 0x00000000 Error at file application/xml, line 1");
}

// A server can answer with markup that takes 60 bytes for each unit of it.
TEST_F(SoapResponse, MoreMemoryThanTheHostGivesIsAParseError) {
  std::u16string text = u"<soap:Envelope>";
  for (int i = 0; i < 1000000; ++i) text += u"<a/>";
  text += u"</soap:Envelope>";
  SetThreadXmlMemoryCeiling(std::size_t{16} << 20);
  const std::string thrown = ParseThrows(u"Execute", text);
  EXPECT_EQ(thrown.substr(0, 67), "EQvException 0x00000000 Error at file application/xml, line 1, char");
  const Variant next =
      Parse(u"Execute", Enveloped(u"<ExecuteResponse><r xsi:type=\"xsd:int\">7</r></ExecuteResponse>"));
  EXPECT_EQ(next.Data().intVal, 7);
  SetThreadXmlMemoryCeiling(kNoXmlMemoryCeiling);
  EXPECT_EQ(ParseThrows(u"Execute", text), "nothing");
}

TEST_F(SoapResponse, EncodingNamedInTheDeclarationDoesNotMisleadTheParser) {
  for (const char16_t* encoding : {u"ISO-8859-1", u"UTF-16", u"utf-8", u"windows-1252"}) {
    const Variant value =
        Parse(u"CreateUserSession",
              u"<?xml version=\"1.0\" encoding=\"" + std::u16string(encoding) + u"\"?>" +
                  Enveloped(u"<CreateUserSessionResponse><u>\u00E9\u20AC</u></CreateUserSessionResponse>"));
    EXPECT_EQ(Shown(value.Text()), "\\u00E9\\u20AC") << Shown(encoding);
  }
}

// Which element is the answer.

TEST_F(SoapResponse, EnvelopeWithoutAnswerIsEmptyAndNoFailure) {
  EXPECT_EQ(Parse(u"Execute", Enveloped(u"")).Tag(), VT_EMPTY);
  EXPECT_EQ(Parse(u"Execute", u"<soap:Envelope/>").Tag(), VT_EMPTY);
  EXPECT_EQ(Parse(u"CreateUserSession", Enveloped(u"<ExecuteResponse><u>1</u></ExecuteResponse>")).Tag(),
            VT_EMPTY);
}

TEST_F(SoapResponse, AnswerUnderNS2IsFound) {
  const Variant value = Parse(
      u"Execute", Enveloped(u"<NS2:ExecuteResponse><r xsi:type=\"xsd:int\">7</r></NS2:ExecuteResponse>"));
  EXPECT_EQ(value.Tag(), VT_INT);
}

TEST_F(SoapResponse, AnswerUnderOtherPrefixesIsNotFound) {
  for (const char16_t* name : {u"ns2:ExecuteResponse", u"q1:ExecuteResponse", u"NS1:ExecuteResponse",
                               u"executeresponse", u"Executeresponse", u"ExecuteResponses"}) {
    const std::u16string tag(name);
    EXPECT_EQ(
        Parse(u"Execute", Enveloped(u"<" + tag + u"><r xsi:type=\"xsd:int\">7</r></" + tag + u">")).Tag(),
        VT_EMPTY)
        << Shown(name);
  }
}

TEST_F(SoapResponse, UnprefixedAnswerWinsOverAnEarlierNS2) {
  const Variant value =
      Parse(u"CreateUserSession",
            Enveloped(u"<NS2:CreateUserSessionResponse><u>two</u></NS2:CreateUserSessionResponse>"
                      u"<CreateUserSessionResponse><u>one</u></CreateUserSessionResponse>"));
  EXPECT_EQ(Shown(value.Text()), "one");
}

TEST_F(SoapResponse, FirstOfSeveralAnswersWins) {
  const Variant value = Parse(u"CreateUserSession",
                              Enveloped(u"<CreateUserSessionResponse><u>1</u></CreateUserSessionResponse>"
                                        u"<CreateUserSessionResponse><u>2</u></CreateUserSessionResponse>"));
  EXPECT_EQ(Shown(value.Text()), "1");
}

TEST_F(SoapResponse, SessionAnswerIsFoundAtAnyDepth) {
  const Variant value = Parse(u"CreateUserSession",
                              u"<a>soap:Envelope<b><c><CreateUserSessionResponse><u>deep</u>"
                              u"</CreateUserSessionResponse></c></b></a>");
  EXPECT_EQ(Shown(value.Text()), "deep");
}

TEST_F(SoapResponse, CloseAnswerIsEmptyWhateverItHolds) {
  EXPECT_EQ(Parse(u"CloseUserSession", Enveloped(u"<CloseUserSessionResponse/>")).Tag(), VT_EMPTY);
  EXPECT_EQ(Parse(u"CloseUserSession",
                  Enveloped(u"<CloseUserSessionResponse><r>bad</r></CloseUserSessionResponse>"))
                .Tag(),
            VT_EMPTY);
}

// The session id.

TEST_F(SoapResponse, SessionIdIsTheTextOfTheFirstChildElement) {
  EXPECT_EQ(SessionId(u"<CreateUserSessionResult>u1</CreateUserSessionResult>"), "u1");
  EXPECT_EQ(SessionId(u"<anything>u1</anything><other>u2</other>"), "u1");
  EXPECT_EQ(SessionId(u"<u xsi:type=\"xsd:string\" a=\"b\">u1</u>"), "u1");
}

TEST_F(SoapResponse, SessionIdKeepsItsBlanksAndUnescapesItsText) {
  EXPECT_EQ(SessionId(u"<u> a&amp;b&#233; </u>"), " a&b\\u00E9 ");
}

TEST_F(SoapResponse, SessionIdInCDataIsTheLastChildsValue) {
  EXPECT_EQ(SessionId(u"<u><![CDATA[a<b]]></u>"), "a<b");
}

TEST_F(SoapResponse, SessionIdIsTheFirstTextAmongOtherChildren) {
  EXPECT_EQ(SessionId(u"<u><x/>one<y/>two</u>"), "one");
  EXPECT_EQ(SessionId(u"<u><![CDATA[cdata]]>text</u>"), "text");
  EXPECT_EQ(SessionId(u"<u><x>inner</x>outer</u>"), "outer");
}

TEST_F(SoapResponse, SessionIdWithoutTextIsTheLastChildsValue) {
  EXPECT_EQ(SessionId(u"<u><![CDATA[first]]><!--last--></u>"), "last");
}

TEST_F(SoapResponse, SessionIdThatHoldsElementsOnlyIsAnEmptyText) {
  EXPECT_EQ(SessionId(u"<u><x>1</x><y>2</y></u>"), "");
}

TEST_F(SoapResponse, MissingSessionIdIsAnEmptyText) {
  EXPECT_EQ(SessionId(u""), "");
  EXPECT_EQ(SessionId(u"<u/>"), "");
  EXPECT_EQ(SessionId(u"u1"), "");
  EXPECT_EQ(SessionId(u"\n  <u>u1</u>"), "");
}

// The result of a script: places, not names.

TEST_F(SoapResponse, ResultIsReadByItsType) {
  const Variant value = Result(u"<anything xsi:type=\"xsd:string\">a&lt;b</anything>");
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(Shown(value.Text()), "a<b");
}

TEST_F(SoapResponse, OnlyTheFirstChildOfTheAnswerCounts) {
  const Variant value = Result(u"<r xsi:type=\"xsd:int\">1</r><r xsi:type=\"xsd:int\">2</r>");
  EXPECT_EQ(value.Data().intVal, 1);
}

TEST_F(SoapResponse, AnswerWithoutChildIsNull) {
  EXPECT_EQ(Result(u"").Tag(), VT_NULL);
}

TEST_F(SoapResponse, NullMarkIsNull) {
  EXPECT_EQ(Result(u"<r xsi:null=\"0\">5</r>").Tag(), VT_NULL);
}

TEST_F(SoapResponse, UnknownTypesAreEmpty) {
  EXPECT_EQ(Result(u"<r xsi:type=\"xsd:decimal\">5</r>").Tag(), VT_EMPTY);
  EXPECT_EQ(Result(u"<r xsi:type=\"xsd:float\">5</r>").Tag(), VT_EMPTY);
}

TEST_F(SoapResponse, ResultWithNeitherTypeNorNullMarkIsAFault) {
  EXPECT_EQ(Thrown([] { Result(u"<r>5</r>"); }),
            "EQvException 0x00000000 Scriptwells SOAP module - General Parse fault.");
}

TEST_F(SoapResponse, BlankAheadOfTheBodyTakesItsPlace) {
  EXPECT_EQ(ParseThrows(u"Execute",
                        u"<soap:Envelope>\n<soap:Body><ExecuteResponse><r xsi:type=\"xsd:int\">7</r>"
                        u"</ExecuteResponse></soap:Body></soap:Envelope>"),
            "EQvException 0x00000000 The node is NULL.");
}

TEST_F(SoapResponse, BlankAheadOfTheAnswerTakesItsPlace) {
  EXPECT_EQ(Parse(u"Execute", Enveloped(u" <ExecuteResponse><r xsi:type=\"xsd:int\">7</r></ExecuteResponse>"))
                .Tag(),
            VT_NULL);
}

TEST_F(SoapResponse, BlankAheadOfTheValueTakesItsPlace) {
  EXPECT_EQ(Result(u" <r xsi:type=\"xsd:int\">7</r>").Tag(), VT_EMPTY);
}

TEST_F(SoapResponse, HeaderAheadOfTheBodyTakesItsPlace) {
  EXPECT_EQ(
      Parse(u"Execute",
            u"<soap:Envelope><soap:Header><h><v xsi:type=\"xsd:int\">1</v></h></soap:Header><soap:Body>"
            u"<ExecuteResponse><r xsi:type=\"xsd:int\">7</r></ExecuteResponse></soap:Body></soap:Envelope>")
          .Data()
          .intVal,
      1);
  EXPECT_EQ(ParseThrows(u"Execute",
                        u"<soap:Envelope><soap:Header/><soap:Body><ExecuteResponse>"
                        u"<r xsi:type=\"xsd:int\">7</r></ExecuteResponse></soap:Body></soap:Envelope>"),
            "EQvException 0x00000000 The node is NULL.");
}

TEST_F(SoapResponse, AnyOtherActionIsReadLikeAScript) {
  const Variant value = Parse(u"Foo", Enveloped(u"<FooResponse><r xsi:type=\"xsd:int\">7</r></FooResponse>"));
  EXPECT_EQ(value.Tag(), VT_INT);
}

TEST_F(SoapResponse, FailedParseKeepsTheValue) {
  CSOAPResponse response;
  response.SetText(u"Execute", u"hello", false);
  EXPECT_EQ(Thrown([&] { response.ParseText(); }), kNotValid);
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
}

TEST_F(SoapResponse, CopyHoldsItsOwnValue) {
  CSOAPResponse response;
  response.SetText(u"CreateUserSession",
                   Enveloped(u"<CreateUserSessionResponse><u>u1</u></CreateUserSessionResponse>"), false);
  response.ParseText();
  const CSOAPResponse copy = response;
  response = CSOAPResponse();
  EXPECT_EQ(Shown(copy.Value().Text()), "u1");
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
}

// A saved response.

class SavedResponse : public SoapResponse {
 protected:
  SavedResponse() {
    char name[] = "/tmp/qv_saved_response_XXXXXX";
    directory_ = mkdtemp(name);
  }
  ~SavedResponse() override { std::filesystem::remove_all(directory_); }

  WideString Save(const std::string& text) const {
    const std::string path = directory_ + "/response.xml";
    std::ofstream(path, std::ios::binary) << text;
    return WideString(std::u16string(path.begin(), path.end()));
  }
  static Variant ParseFile(const WideString& action, const WideString& path) {
    CSOAPResponse response;
    response.SetText(action, path, true);
    response.ParseText();
    return response.Value();
  }

  std::string directory_;
};

TEST_F(SavedResponse, IsParsedFromItsFile) {
  const WideString path = Save(
      "<soap:Envelope><soap:Body><CreateUserSessionResponse><u>u1</u></CreateUserSessionResponse></soap:Body>"
      "</soap:Envelope>");
  EXPECT_EQ(Shown(ParseFile(u"CreateUserSession", path).Text()), "u1");
}

TEST_F(SavedResponse, NeedsNoEnvelopeMarker) {
  const WideString path =
      Save("<s:E><s:B><ExecuteResponse><r xsi:type=\"xsd:int\">7</r></ExecuteResponse></s:B></s:E>");
  EXPECT_EQ(ParseFile(u"Execute", path).Data().intVal, 7);
}

TEST_F(SavedResponse, FaultAsRootIsAFault) {
  const WideString path = Save("<soap:Fault><faultstring>saved words</faultstring></soap:Fault>");
  EXPECT_EQ(Thrown([&] { ParseFile(u"Execute", path); }), "EQvException 0x00000000 saved words");
}

TEST_F(SavedResponse, ParseErrorTellsLineAndColumn) {
  const WideString path = Save("<a>\n<b>\n</c></a>");
  const std::string thrown = Thrown([&] { ParseFile(u"Execute", path); });
  EXPECT_EQ(thrown.substr(0, 38), "EQvException 0x00000000 Error at file ");
  EXPECT_NE(thrown.find("response.xml, line 3, char 3  Message: "), std::string::npos) << thrown;
  EXPECT_EQ(thrown.substr(thrown.size() - 12), "response.xml");
}

TEST_F(SavedResponse, MissingFileIsAFailure) {
  const std::string path = directory_ + "/absent.xml";
  const std::string thrown =
      Thrown([&] { ParseFile(u"Execute", WideString(std::u16string(path.begin(), path.end()))); });
  EXPECT_EQ(thrown.substr(0, 23), "EQvException 0x00000000");
}

}  // namespace
}  // namespace qv
