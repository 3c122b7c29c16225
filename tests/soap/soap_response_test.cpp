// What an answer's text becomes: which element is read, and how a bad text fails.
#include "soap/soap_response.h"

#include <gtest/gtest.h>

#include "fixtures/known_failures.h"
#include "fixtures/shown_value.h"
#include "fixtures/soap_texts.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "qvscriptwells/xml_memory.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

const std::u16string kSeven = ValueElement(u"xsd:int", u"7");

std::string ParserAt(const std::string& place) {
  return Refused("Error at file application/xml, " + place + "  Message: application/xml");
}

class SoapResponse : public testing::Test {
 protected:
  void SetUp() override { FillFormaters(); }

  // The value that the text, or the file of this name, gives, or what it throws.
  static std::string Parsed(const WideString& action, const WideString& text, bool isFile = false) {
    std::string value;
    const std::string thrown = Thrown([&] {
      CSOAPResponse response;
      response.SetText(action, text, isFile);
      response.ParseText();
      value = ShownValue(response.Value());
    });
    return thrown == "nothing" ? value : thrown;
  }
  static std::string Executed(const WideString& text) { return Parsed(u"Execute", text); }

  // One row for each text of a table.
  struct Row {
    const char* name;
    WideString text;
    std::string value;
  };
  template <std::size_t count>
  static void ExpectRows(const WideString& action, const Row (&rows)[count]) {
    for (const Row& row : rows) EXPECT_EQ(Parsed(action, row.text), row.value) << row.name;
  }

  XmlLibraryHold hold_;
};

TEST_F(SoapResponse, EnvelopeIsKnownByItsMarker) {
  const std::u16string answer = u"<a><ExecuteResponse/></a>";
  const Row rows[] = {
      {"page", u"<html><body>404</body></html>", kNotValid},
      {"prose", u"hello", kNotValid},
      {"empty", u"", kNotValid},
      {"null", WideString(), kNotValid},
      {"another prefix", u"<SOAP-ENV:Envelope>" + answer + u"</SOAP-ENV:Envelope>", kNotValid},
      {"mixed case", u"<Soap:Envelope>" + answer + u"</Soap:Envelope>", kNotValid},
      {"short prefix", u"<s:Envelope>" + answer + u"</s:Envelope>", kNotValid},
      {"lower case name", u"<soap:envelope>" + answer + u"</soap:envelope>", kNotValid},
      {"upper case prefix",
       u"<SOAP:Envelope><SOAP:Body><ExecuteResponse>" + kSeven +
           u"</ExecuteResponse></SOAP:Body></SOAP:Envelope>",
       "VT_INT 7"},
      {"marker in a comment",
       u"<!-- soap:Envelope --><a><b><ExecuteResponse>" + kSeven + u"</ExecuteResponse></b></a>", "VT_INT 7"},
      {"marker after others",
       u"<!-- :Envelope x:Envelope oap:Envelope soap:Envelope --><a><b><ExecuteResponse>" + kSeven +
           u"</ExecuteResponse></b></a>",
       "VT_INT 7"},
      {"marker without its start", u"oap:Envelope", kNotValid},
      {"marker without a prefix", u":Envelope", kNotValid},
      {"marker without its end", u"soap:Envelop", kNotValid},
      {"marker in a page", u"<html><body>soap:Envelope<br></body></html>", ParserAt("line 1, char 32")},
      {"marker alone", u"soap:Envelope", ParserAt("line 1, char 1")},
      {"wrong end tag", u"<soap:Envelope>\n<a>\n</b></soap:Envelope>", ParserAt("line 3, char 3")},
      {"wrong end tag further on",
       u"<soap:Envelope>\n  <soap:Body>\n    <x></y></soap:Body>\n</soap:Envelope>",
       ParserAt("line 3, char 10")},
      {"no end tag", u"<soap:Envelope>", ParserAt("line 1, char 16")},
  };
  ExpectRows(u"Execute", rows);
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
  EXPECT_EQ(Executed(text).substr(0, 61), Refused("Error at file application/xml, line 1"));
}

// A server can answer with markup that takes 8 bytes for each unit of it.
TEST_F(SoapResponse, MoreMemoryThanTheHostGivesIsAParseError) {
  std::u16string text = u"<soap:Envelope>";
  for (int i = 0; i < 1000000; ++i) text += u"<a/>";
  text += u"</soap:Envelope>";
  SetThreadXmlMemoryCeiling(std::size_t{16} << 20);
  EXPECT_EQ(Executed(text).substr(0, 67), Refused("Error at file application/xml, line 1, char"));
  EXPECT_EQ(Executed(ExecuteAnswer(kSeven)), "VT_INT 7");
  SetThreadXmlMemoryCeiling(kNoXmlMemoryCeiling);
  EXPECT_EQ(Executed(text), "VT_EMPTY");
}

TEST_F(SoapResponse, EncodingNamedInTheDeclarationDoesNotMisleadTheParser) {
  for (const std::u16string encoding : {u"ISO-8859-1", u"UTF-16", u"utf-8", u"windows-1252"})
    EXPECT_EQ(Parsed(u"CreateUserSession", u"<?xml version=\"1.0\" encoding=\"" + encoding + u"\"?>" +
                                               SessionAnswer(u"<u>\u00E9\u20AC</u>")),
              "VT_BSTR \\u00E9\\u20AC")
        << Shown(encoding);
}

TEST_F(SoapResponse, SessionIdIsTheTextOfTheFirstElementOfTheAnswer) {
  const Row rows[] = {
      {"no answer", Enveloped(u"<ExecuteResponse><u>1</u></ExecuteResponse>"), "VT_EMPTY"},
      {"without prefix before NS2",
       Enveloped(u"<NS2:CreateUserSessionResponse><u>two</u></NS2:CreateUserSessionResponse>"
                 u"<CreateUserSessionResponse><u>one</u></CreateUserSessionResponse>"),
       "VT_BSTR one"},
      {"first of two answers",
       Enveloped(u"<CreateUserSessionResponse><u>1</u></CreateUserSessionResponse>"
                 u"<CreateUserSessionResponse><u>2</u></CreateUserSessionResponse>"),
       "VT_BSTR 1"},
      {"any depth",
       u"<a>soap:Envelope<b><c><CreateUserSessionResponse><u>deep</u></CreateUserSessionResponse></c></b></"
       u"a>",
       "VT_BSTR deep"},
      {"usual", SessionAnswer(u"<CreateUserSessionResult>u1</CreateUserSessionResult>"), "VT_BSTR u1"},
      {"any name", SessionAnswer(u"<anything>u1</anything><other>u2</other>"), "VT_BSTR u1"},
      {"attributes", SessionAnswer(u"<u xsi:type=\"xsd:string\" a=\"b\">u1</u>"), "VT_BSTR u1"},
      {"blanks and references", SessionAnswer(u"<u> a&amp;b&#233; </u>"), "VT_BSTR  a&b\\u00E9 "},
      {"first text among elements", SessionAnswer(u"<u><x/>one<y/>two</u>"), "VT_BSTR one"},
      {"text after CDATA", SessionAnswer(u"<u><![CDATA[cdata]]>text</u>"), "VT_BSTR text"},
      {"text after an element", SessionAnswer(u"<u><x>inner</x>outer</u>"), "VT_BSTR outer"},
      // Without a text it is the value of the last child.
      {"CDATA", SessionAnswer(u"<u><![CDATA[a<b]]></u>"), "VT_BSTR a<b"},
      {"comment", SessionAnswer(u"<u><![CDATA[first]]><!--last--></u>"), "VT_BSTR last"},
      {"elements alone", SessionAnswer(u"<u><x>1</x><y>2</y></u>"), "VT_BSTR "},
      {"no element", SessionAnswer(u""), "VT_BSTR "},
      {"empty element", SessionAnswer(u"<u/>"), "VT_BSTR "},
      {"text alone", SessionAnswer(u"u1"), "VT_BSTR "},
      {"blank before the element", SessionAnswer(u"\n  <u>u1</u>"), "VT_BSTR "},
  };
  ExpectRows(u"CreateUserSession", rows);
}

TEST_F(SoapResponse, CloseAnswerIsEmptyWhateverItHolds) {
  const Row rows[] = {
      {"empty", kSessionClosed, "VT_EMPTY"},
      {"filled", Enveloped(u"<CloseUserSessionResponse><r>bad</r></CloseUserSessionResponse>"), "VT_EMPTY"}};
  ExpectRows(u"CloseUserSession", rows);
}

TEST_F(SoapResponse, ResultOfAScriptIsReadByItsPlace) {
  const auto answerNamed = [](const std::u16string& name) {
    return Enveloped(u"<" + name + u">" + kSeven + u"</" + name + u">");
  };
  const std::u16string response = u"<ExecuteResponse>" + kSeven + u"</ExecuteResponse>";
  const Row rows[] = {
      {"no answer", Enveloped(u""), "VT_EMPTY"},
      {"no body", u"<soap:Envelope/>", "VT_EMPTY"},
      {"under NS2", answerNamed(u"NS2:ExecuteResponse"), "VT_INT 7"},
      {"under ns2", answerNamed(u"ns2:ExecuteResponse"), "VT_EMPTY"},
      {"under q1", answerNamed(u"q1:ExecuteResponse"), "VT_EMPTY"},
      {"under NS1", answerNamed(u"NS1:ExecuteResponse"), "VT_EMPTY"},
      {"lower case", answerNamed(u"executeresponse"), "VT_EMPTY"},
      {"mixed case", answerNamed(u"Executeresponse"), "VT_EMPTY"},
      {"longer name", answerNamed(u"ExecuteResponses"), "VT_EMPTY"},
      {"any name of the value", ExecuteAnswer(u"<anything xsi:type=\"xsd:string\">a&lt;b</anything>"),
       "VT_BSTR a<b"},
      {"first value", ExecuteAnswer(kSeven + ValueElement(u"xsd:int", u"2")), "VT_INT 7"},
      {"no value", ExecuteAnswer(u""), "VT_NULL"},
      {"null mark", ExecuteAnswer(u"<r xsi:null=\"0\">5</r>"), "VT_NULL"},
      {"decimal", ExecuteAnswer(ValueElement(u"xsd:decimal", u"5")), "VT_EMPTY"},
      {"float with prefix", ExecuteAnswer(ValueElement(u"xsd:float", u"5")), "VT_EMPTY"},
      {"neither type nor null mark", ExecuteAnswer(u"<r>5</r>"),
       Refused("Scriptwells SOAP module - General Parse fault.")},
      // A blank or a header takes the place of what comes after it.
      {"blank before the body", u"<soap:Envelope>\n<soap:Body>" + response + u"</soap:Body></soap:Envelope>",
       Refused("The node is NULL.")},
      {"blank before the answer", Enveloped(u" " + response), "VT_NULL"},
      {"blank before the value", ExecuteAnswer(u" " + kSeven), "VT_EMPTY"},
      {"header before the body",
       u"<soap:Envelope><soap:Header><h><v xsi:type=\"xsd:int\">1</v></h></soap:Header><soap:Body>" +
           response + u"</soap:Body></soap:Envelope>",
       "VT_INT 1"},
      {"empty header",
       u"<soap:Envelope><soap:Header/><soap:Body>" + response + u"</soap:Body></soap:Envelope>",
       Refused("The node is NULL.")},
  };
  ExpectRows(u"Execute", rows);
  EXPECT_EQ(Parsed(u"Foo", answerNamed(u"FooResponse")), "VT_INT 7");
}

TEST_F(SoapResponse, NewAndFailedResponsesAreEmpty) {
  CSOAPResponse response{};
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
  EXPECT_TRUE(response.Cookie().IsNull());
  response.SetText(u"Execute", u"hello", false);
  EXPECT_EQ(Thrown([&] { response.ParseText(); }), kNotValid);
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
}

TEST_F(SoapResponse, CopyHoldsItsOwnValue) {
  CSOAPResponse response;
  response.SetText(u"CreateUserSession", SessionAnswer(u"<u>u1</u>"), false);
  response.ParseText();
  const CSOAPResponse copy = response;
  response = CSOAPResponse();
  EXPECT_EQ(ShownValue(copy.Value()), "VT_BSTR u1");
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
}

// A saved response needs no envelope.
TEST_F(SoapResponse, FileIsReadLikeAText) {
  const struct {
    const char16_t* action;
    const char* text;
    std::string value;
  } rows[] = {
      {u"CreateUserSession",
       "<soap:Envelope><soap:Body><CreateUserSessionResponse><u>u1</u></CreateUserSessionResponse>"
       "</soap:Body></soap:Envelope>",
       "VT_BSTR u1"},
      {u"Execute", "<s:E><s:B><ExecuteResponse><r xsi:type=\"xsd:int\">7</r></ExecuteResponse></s:B></s:E>",
       "VT_INT 7"},
      {u"Execute", "<soap:Fault><faultstring>saved words</faultstring></soap:Fault>", Refused("saved words")},
  };
  const TemporaryDirectory files;
  for (const auto& row : rows)
    EXPECT_EQ(Parsed(row.action, FromUtf8(files.Write("response.xml", row.text)), true), row.value);
}

TEST_F(SoapResponse, ParseErrorOfAFileHasLineAndColumn) {
  const TemporaryDirectory files;
  const std::string thrown =
      Parsed(u"Execute", FromUtf8(files.Write("response.xml", "<a>\n<b>\n</c></a>")), true);
  EXPECT_EQ(thrown.substr(0, 38), Refused("Error at file "));
  EXPECT_NE(thrown.find("response.xml, line 3, char 3  Message: "), std::string::npos) << thrown;
  EXPECT_EQ(thrown.substr(thrown.size() - 12), "response.xml");
  EXPECT_EQ(Parsed(u"Execute", FromUtf8(files.Path("absent.xml")), true).substr(0, 23),
            "EQvException 0x00000000");
}

}  // namespace
}  // namespace qv
