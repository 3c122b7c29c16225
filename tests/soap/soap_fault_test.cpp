#include <gtest/gtest.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>

#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "soap/soap_response.h"

namespace qv {
namespace {

class SoapFault : public testing::Test {
 protected:
  static std::string Raised(const std::u16string& body) {
    return Thrown([&] {
      CSOAPResponse response;
      response.SetText(u"Execute", u"<soap:Envelope><soap:Body>" + body + u"</soap:Body></soap:Envelope>",
                       false);
      response.ParseText();
    });
  }
  // What a fault with this content of "faultstring" raises.
  static std::string RaisedFor(const std::u16string& faultString) {
    return Raised(u"<soap:Fault><faultcode>soap:Server</faultcode><faultstring>" + faultString +
                  u"</faultstring></soap:Fault>");
  }
  // The same for an error object with this content, escaped as servers do.
  static std::string RaisedForObject(const std::u16string& content) {
    return RaisedFor(u"<![CDATA[<ErrorObject>" + content + u"</ErrorObject>]]>");
  }

  XmlLibraryHold hold_;
};

TEST_F(SoapFault, FaultStringIsTheWords) {
  EXPECT_EQ(RaisedFor(u"no such table"), "EQvException 0x00000000 no such table");
}

TEST_F(SoapFault, MissingFaultStringHasNullWords) {
  EXPECT_EQ(Raised(u"<soap:Fault><faultcode>c</faultcode></soap:Fault>"), "EQvException 0x00000000 <null>");
  EXPECT_EQ(Raised(u"<soap:Fault/>"), "EQvException 0x00000000 <null>");
}

TEST_F(SoapFault, EmptyFaultStringHasEmptyWords) {
  EXPECT_EQ(RaisedFor(u""), "EQvException 0x00000000 ");
}

TEST_F(SoapFault, PrefixedFaultStringIsNone) {
  EXPECT_EQ(Raised(u"<soap:Fault><soap:faultstring>words</soap:faultstring></soap:Fault>"),
            "EQvException 0x00000000 <null>");
}

TEST_F(SoapFault, LastFaultStringWins) {
  EXPECT_EQ(Raised(u"<soap:Fault><faultstring>one</faultstring><faultstring>two</faultstring></soap:Fault>"),
            "EQvException 0x00000000 two");
  EXPECT_EQ(
      Raised(u"<soap:Fault><faultstring>one</faultstring></soap:Fault><x><faultstring>two</faultstring></x>"),
      "EQvException 0x00000000 two");
  EXPECT_EQ(Raised(u"<soap:Fault><faultstring>one</faultstring><faultstring/></soap:Fault>"),
            "EQvException 0x00000000 ");
}

TEST_F(SoapFault, OnlyTheFirstChildOfTheFaultStringCounts) {
  EXPECT_EQ(RaisedFor(u"one<b/>two"), "EQvException 0x00000000 one");
  EXPECT_EQ(RaisedFor(u"<b>inner</b>outer"), "EQvException 0x00000000 ");
}

TEST_F(SoapFault, ErrorObjectAsRealElementIsNotSeen) {
  EXPECT_EQ(RaisedFor(u"Failed: <ErrorObject><errorCode>5</errorCode></ErrorObject>"),
            "EQvException 0x00000000 Failed: ");
}

TEST_F(SoapFault, FaultAtAnyDepthIsAFault) {
  EXPECT_EQ(Raised(u"<a><b><soap:Fault><faultstring>deep</faultstring></soap:Fault></b></a>"),
            "EQvException 0x00000000 deep");
}

TEST_F(SoapFault, FaultWinsOverAnAnswer) {
  EXPECT_EQ(Raised(u"<ExecuteResponse/><soap:Fault><faultstring>words</faultstring></soap:Fault>"),
            "EQvException 0x00000000 words");
}

TEST_F(SoapFault, OtherSpellingsOfTheElementAreNoFault) {
  EXPECT_EQ(Raised(u"<SOAP:Fault><faultstring>words</faultstring></SOAP:Fault>"), "nothing");
  EXPECT_EQ(Raised(u"<Fault><faultstring>words</faultstring></Fault>"), "nothing");
  EXPECT_EQ(Raised(u"<soap:fault><faultstring>words</faultstring></soap:fault>"), "nothing");
}

TEST_F(SoapFault, EscapedErrorObjectGivesItsWordsAndNumber) {
  EXPECT_EQ(RaisedFor(u"&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/errorCode&gt;"
                      u"&lt;description&gt;no &amp;amp; table&lt;/description&gt;&lt;/ErrorObject&gt;"),
            "EQvException 0x80040005 no & table");
}

TEST_F(SoapFault, ErrorObjectIsCutOutOfTheTextAroundIt) {
  EXPECT_EQ(RaisedFor(u"<![CDATA[Server < was > unable: <ErrorObject a=\"b\"><errorCode>5</errorCode>"
                      u"<description>d</description></ErrorObject> & more <ErrorObject>]]>"),
            "EQvException 0x80040005 d");
}

TEST_F(SoapFault, ErrorCodeIsReadAsFarAsItsDigitsGo) {
  const std::u16string description = u"<description>d</description>";
  EXPECT_EQ(RaisedForObject(u"<errorCode>5</errorCode>" + description), "EQvException 0x80040005 d");
  EXPECT_EQ(RaisedForObject(u"<errorCode>0</errorCode>" + description), "EQvException 0x00000000 d");
  EXPECT_EQ(RaisedForObject(u"<errorCode> 12abc</errorCode>" + description), "EQvException 0x8004000C d");
  EXPECT_EQ(RaisedForObject(u"<errorCode>abc</errorCode>" + description), "EQvException 0x00000000 d");
  EXPECT_EQ(RaisedForObject(u"<errorCode>0x10</errorCode>" + description), "EQvException 0x00000000 d");
  EXPECT_EQ(RaisedForObject(u"<errorCode>-5</errorCode>" + description), "EQvException 0xFFFFFFFB d");
  EXPECT_EQ(RaisedForObject(u"<errorCode>70000</errorCode>" + description), "EQvException 0x80051170 d");
  EXPECT_EQ(RaisedForObject(u"<errorCode>4294967301</errorCode>" + description), "EQvException 0x80040005 d");
  EXPECT_EQ(RaisedForObject(u"<errorCode/>" + description), "EQvException 0x00000000 d");
}

TEST_F(SoapFault, MissingErrorCodeIsZero) {
  EXPECT_EQ(RaisedForObject(u"<description>d</description>"), "EQvException 0x00000000 d");
}

TEST_F(SoapFault, LastErrorCodeAndDescriptionWin) {
  EXPECT_EQ(RaisedForObject(u"<errorCode>5</errorCode><description>one</description>"
                            u"<x><errorCode>6</errorCode><description>two</description></x>"),
            "EQvException 0x80040006 two");
  EXPECT_EQ(
      RaisedForObject(u"<errorCode>5</errorCode><errorCode>abc</errorCode><description>d</description>"),
      "EQvException 0x00000000 d");
}

TEST_F(SoapFault, EmptyLastErrorCodeWinsAsZero) {
  EXPECT_EQ(RaisedForObject(u"<errorCode>5</errorCode><errorCode/><description>d</description>"),
            "EQvException 0x00000000 d");
  EXPECT_EQ(RaisedForObject(u"<errorCode>5</errorCode><errorCode></errorCode><description>d</description>"),
            "EQvException 0x00000000 d");
}

TEST_F(SoapFault, EmptyLastDescriptionWinsAsEmptyWords) {
  EXPECT_EQ(RaisedForObject(u"<errorCode>5</errorCode><description>one</description><description/>"),
            "EQvException 0x80040005 ");
}

TEST_F(SoapFault, MissingDescriptionGivesTheWholeFaultString) {
  EXPECT_EQ(RaisedFor(u"<![CDATA[before <ErrorObject><errorCode>5</errorCode></ErrorObject> behind]]>"),
            "EQvException 0x80040005 before <ErrorObject><errorCode>5</errorCode></ErrorObject> behind");
}

TEST_F(SoapFault, EmptyDescriptionGivesEmptyWords) {
  EXPECT_EQ(RaisedForObject(u"<errorCode>5</errorCode><description/>"), "EQvException 0x80040005 ");
}

TEST_F(SoapFault, NamesInTheErrorObjectAreExact) {
  EXPECT_EQ(RaisedForObject(u"<ErrorCode>5</ErrorCode><Description>d</Description>"),
            "EQvException 0x00000000 "
            "<ErrorObject><ErrorCode>5</ErrorCode><Description>d</Description></ErrorObject>");
}

TEST_F(SoapFault, TextWithOneTagOnlyHasNoErrorObject) {
  EXPECT_EQ(RaisedFor(u"<![CDATA[<ErrorObject><errorCode>5</errorCode>]]>"),
            "EQvException 0x00000000 <ErrorObject><errorCode>5</errorCode>");
  EXPECT_EQ(RaisedFor(u"<![CDATA[<errorCode>5</errorCode></ErrorObject>]]>"),
            "EQvException 0x00000000 <errorCode>5</errorCode></ErrorObject>");
  EXPECT_EQ(RaisedFor(u"<![CDATA[<ErrorObject/>]]>"), "EQvException 0x00000000 <ErrorObject/>");
  EXPECT_EQ(RaisedFor(u"<![CDATA[<errorobject></errorobject>]]>"),
            "EQvException 0x00000000 <errorobject></errorobject>");
}

TEST_F(SoapFault, EndTagAheadOfTheStartTagIsNoErrorObject) {
  EXPECT_EQ(RaisedFor(u"<![CDATA[</ErrorObject><ErrorObject>]]>"),
            "EQvException 0x00000000 </ErrorObject><ErrorObject>");
  EXPECT_EQ(RaisedFor(u"<![CDATA[</ErrorObject><ErrorObject></ErrorObject>]]>"),
            "EQvException 0x00000000 </ErrorObject><ErrorObject></ErrorObject>");
}

TEST_F(SoapFault, MalformedErrorObjectIsAParseError) {
  EXPECT_EQ(
      RaisedFor(u"<![CDATA[words <ErrorObject><errorCode>5</ErrorObject>]]>"),
      "EQvException 0x00000000 Error at file application/xml, line 1, char 28  Message: application/xml");
  EXPECT_EQ(
      RaisedFor(u"<![CDATA[<ErrorObject><errorCode>5</errorCode>\n<description>a & b</description>"
                u"</ErrorObject>]]>"),
      "EQvException 0x00000000 Error at file application/xml, line 2, char 17  Message: application/xml");
  EXPECT_EQ(
      RaisedFor(u"<![CDATA[<ErrorObjectX></ErrorObject>]]>"),
      "EQvException 0x00000000 Error at file application/xml, line 1, char 17  Message: application/xml");
}

TEST_F(SoapFault, NonAsciiWordsAreKept) {
  EXPECT_EQ(RaisedFor(u"caf\u00E9 &#8364;"), "EQvException 0x00000000 caf\\u00E9 \\u20AC");
  EXPECT_EQ(RaisedForObject(u"<description>caf\u00E9 \U0001F600</description>"),
            "EQvException 0x00000000 caf\\u00E9 \\uD83D\\uDE00");
}

TEST_F(SoapFault, ObjectBehindAStrayEndTagIsNone) {
  EXPECT_EQ(RaisedFor(u"<![CDATA[</ErrorObject><ErrorObject><errorCode>5</errorCode></ErrorObject>]]>"),
            "EQvException 0x00000000 </ErrorObject><ErrorObject><errorCode>5</errorCode></ErrorObject>");
}

// A text that cannot be read.
class UnreadableText : public xercesc::DOMTextImpl {
 public:
  using DOMTextImpl::DOMTextImpl;
  const XMLCh* getData() const override {
    throw xercesc::DOMException(xercesc::DOMException::INVALID_STATE_ERR);
  }
};

TEST_F(SoapFault, UnreadableFaultStringHasWordsOfItsOwn) {
  using xercesc::DOMDocument;
  DOMDocument* document =
      xercesc::DOMImplementation::getImplementation()->createDocument(nullptr, u"faultstring", nullptr);
  auto* text = new (document, xercesc::DOMMemoryManager::TEXT_OBJECT) UnreadableText(document, u"words");
  document->getDocumentElement()->appendChild(text);
  EXPECT_EQ(Thrown([&] { DeserializeFault(XmlNode(document)); }),
            "EQvException 0x00000000 Cannot deserializer the soap fault.");
  document->release();
}

}  // namespace
}  // namespace qv
