// The exception that a fault becomes.
#include <gtest/gtest.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>

#include "fixtures/known_failures.h"
#include "fixtures/soap_texts.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "soap/soap_response.h"

namespace qv {
namespace {

class SoapFault : public testing::Test {
 protected:
  struct Row {
    const char* name;
    std::u16string text;
    std::string thrown;
  };

  // What a body with this content throws.
  static void ExpectBody(const Row& row) {
    EXPECT_EQ(Thrown([&row] {
                CSOAPResponse response;
                response.SetText(u"Execute", Enveloped(row.text), false);
                response.ParseText();
              }),
              row.thrown)
        << row.name;
  }
  // What a fault with this content of "faultstring" throws.
  static void ExpectFaultString(const Row& row) {
    ExpectBody({row.name,
                u"<soap:Fault><faultcode>soap:Server</faultcode><faultstring>" + row.text +
                    u"</faultstring></soap:Fault>",
                row.thrown});
  }
  // The same for this text, escaped as servers do, and for an error object with this content.
  static void ExpectText(const Row& row) {
    ExpectFaultString({row.name, u"<![CDATA[" + row.text + u"]]>", row.thrown});
  }
  static void ExpectObject(const Row& row) {
    ExpectText({row.name, u"<ErrorObject>" + row.text + u"</ErrorObject>", row.thrown});
  }

  XmlLibraryHold hold_;
};

TEST_F(SoapFault, IsFoundByItsExactNameAtAnyDepth) {
  const Row rows[] = {
      {"no fault string", u"<soap:Fault><faultcode>c</faultcode></soap:Fault>", Refused("<null>")},
      {"empty fault", u"<soap:Fault/>", Refused("<null>")},
      {"prefix of the fault string", u"<soap:Fault><soap:faultstring>words</soap:faultstring></soap:Fault>",
       Refused("<null>")},
      {"last fault string wins",
       u"<soap:Fault><faultstring>one</faultstring><faultstring>two</faultstring></soap:Fault>",
       Refused("two")},
      {"last one elsewhere wins",
       u"<soap:Fault><faultstring>one</faultstring></soap:Fault><x><faultstring>two</faultstring></x>",
       Refused("two")},
      {"empty last one wins", u"<soap:Fault><faultstring>one</faultstring><faultstring/></soap:Fault>",
       Refused("")},
      {"depth", u"<a><b><soap:Fault><faultstring>deep</faultstring></soap:Fault></b></a>", Refused("deep")},
      {"fault beside an answer",
       u"<ExecuteResponse/><soap:Fault><faultstring>words</faultstring></soap:Fault>", Refused("words")},
      {"upper-case prefix", u"<SOAP:Fault><faultstring>words</faultstring></SOAP:Fault>", "nothing"},
      {"no prefix", u"<Fault><faultstring>words</faultstring></Fault>", "nothing"},
      {"lower case", u"<soap:fault><faultstring>words</faultstring></soap:fault>", "nothing"},
  };
  for (const Row& row : rows) ExpectBody(row);
}

TEST_F(SoapFault, FaultStringIsTheMessage) {
  const Row rows[] = {
      {"text", u"no such table", Refused("no such table")},
      {"empty", u"", Refused("")},
      {"first child alone", u"one<b/>two", Refused("one")},
      {"first child is an element", u"<b>inner</b>outer", Refused("")},
      {"error object as an element", u"Failed: <ErrorObject><errorCode>5</errorCode></ErrorObject>",
       Refused("Failed: ")},
      {"beyond ASCII", u"caf\u00E9 &#8364;", Refused("caf\\u00E9 \\u20AC")},
      {"escaped error object",
       u"&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/errorCode&gt;"
       u"&lt;description&gt;no &amp;amp; table&lt;/description&gt;&lt;/ErrorObject&gt;",
       "EQvException 0x80040005 no & table"},
  };
  for (const Row& row : rows) ExpectFaultString(row);
}

TEST_F(SoapFault, ErrorObjectIsCutOutOfTheText) {
  const std::string parseError = Refused("Error at file application/xml, ");
  const Row rows[] = {
      {"text around it",
       u"Server < was > unable: <ErrorObject a=\"b\"><errorCode>5</errorCode>"
       u"<description>d</description></ErrorObject> & more <ErrorObject>",
       "EQvException 0x80040005 d"},
      {"whole text without a description",
       u"before <ErrorObject><errorCode>5</errorCode></ErrorObject> behind",
       "EQvException 0x80040005 before <ErrorObject><errorCode>5</errorCode></ErrorObject> behind"},
      {"start tag alone", u"<ErrorObject><errorCode>5</errorCode>",
       Refused("<ErrorObject><errorCode>5</errorCode>")},
      {"end tag alone", u"<errorCode>5</errorCode></ErrorObject>",
       Refused("<errorCode>5</errorCode></ErrorObject>")},
      {"empty element", u"<ErrorObject/>", Refused("<ErrorObject/>")},
      {"lower case", u"<errorobject></errorobject>", Refused("<errorobject></errorobject>")},
      {"end before start", u"</ErrorObject><ErrorObject>", Refused("</ErrorObject><ErrorObject>")},
      {"end before a pair", u"</ErrorObject><ErrorObject></ErrorObject>",
       Refused("</ErrorObject><ErrorObject></ErrorObject>")},
      {"end before an object", u"</ErrorObject><ErrorObject><errorCode>5</errorCode></ErrorObject>",
       Refused("</ErrorObject><ErrorObject><errorCode>5</errorCode></ErrorObject>")},
      {"malformed", u"words <ErrorObject><errorCode>5</ErrorObject>",
       parseError + "line 1, char 28  Message: application/xml"},
      {"bare ampersand",
       u"<ErrorObject><errorCode>5</errorCode>\n<description>a & b</description></ErrorObject>",
       parseError + "line 2, char 17  Message: application/xml"},
      {"longer name", u"<ErrorObjectX></ErrorObject>",
       parseError + "line 1, char 17  Message: application/xml"},
  };
  for (const Row& row : rows) ExpectText(row);
}

TEST_F(SoapFault, ErrorObjectHasCodeAndMessage) {
  const Row rows[] = {
      {"code", u"<errorCode>5</errorCode><description>d</description>", "EQvException 0x80040005 d"},
      {"zero", u"<errorCode>0</errorCode><description>d</description>", Refused("d")},
      {"digits before letters", u"<errorCode> 12abc</errorCode><description>d</description>",
       "EQvException 0x8004000C d"},
      {"letters", u"<errorCode>abc</errorCode><description>d</description>", Refused("d")},
      {"hexadecimal", u"<errorCode>0x10</errorCode><description>d</description>", Refused("d")},
      {"negative", u"<errorCode>-5</errorCode><description>d</description>", "EQvException 0xFFFFFFFB d"},
      {"17 bits", u"<errorCode>70000</errorCode><description>d</description>", "EQvException 0x80051170 d"},
      {"33 bits", u"<errorCode>4294967301</errorCode><description>d</description>",
       "EQvException 0x80040005 d"},
      {"empty code", u"<errorCode/><description>d</description>", Refused("d")},
      {"no code", u"<description>d</description>", Refused("d")},
      {"last of several",
       u"<errorCode>5</errorCode><description>one</description>"
       u"<x><errorCode>6</errorCode><description>two</description></x>",
       "EQvException 0x80040006 two"},
      {"last code is letters",
       u"<errorCode>5</errorCode><errorCode>abc</errorCode><description>d</description>", Refused("d")},
      {"last code is empty", u"<errorCode>5</errorCode><errorCode/><description>d</description>",
       Refused("d")},
      {"last code has no text",
       u"<errorCode>5</errorCode><errorCode></errorCode><description>d</description>", Refused("d")},
      {"last description is empty", u"<errorCode>5</errorCode><description>one</description><description/>",
       "EQvException 0x80040005 "},
      {"empty description", u"<errorCode>5</errorCode><description/>", "EQvException 0x80040005 "},
      {"names are exact", u"<ErrorCode>5</ErrorCode><Description>d</Description>",
       Refused("<ErrorObject><ErrorCode>5</ErrorCode><Description>d</Description></ErrorObject>")},
      {"beyond ASCII", u"<description>caf\u00E9 \U0001F600</description>",
       Refused(R"(caf\u00E9 \uD83D\uDE00)")},
  };
  for (const Row& row : rows) ExpectObject(row);
}

// A text that cannot be read.
class UnreadableText : public xercesc::DOMTextImpl {
 public:
  using DOMTextImpl::DOMTextImpl;
  const XMLCh* getData() const override {
    throw xercesc::DOMException(xercesc::DOMException::INVALID_STATE_ERR);
  }
};

TEST_F(SoapFault, UnreadableFaultStringHasItsOwnMessage) {
  using xercesc::DOMDocument;
  DOMDocument* document =
      xercesc::DOMImplementation::getImplementation()->createDocument(nullptr, u"faultstring", nullptr);
  auto* text = new (document, xercesc::DOMMemoryManager::TEXT_OBJECT) UnreadableText(document, u"words");
  document->getDocumentElement()->appendChild(text);
  EXPECT_EQ(Thrown([&] { DeserializeFault(XmlNode(document)); }),
            Refused("Cannot deserializer the soap fault."));
  document->release();
}

}  // namespace
}  // namespace qv
