// The translators of failures at the room's three borders: each clause with what it makes.
#include <gtest/gtest.h>

#include <new>
#include <ostream>
#include <stdexcept>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMRangeException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/ArrayIndexOutOfBoundsException.hpp>
#include <xercesc/util/IOException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "fixtures/thrown.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/xml_library_hold.h"
#include "soap/server_connector.h"
#include "soap/soap_call.h"
#include "soap/soap_response.h"

namespace qv {
namespace {

namespace xml = XERCES_CPP_NAMESPACE;

using Thrower = void (*)();

void ThrowIndexException() {
  throw xml::ArrayIndexOutOfBoundsException(__FILE__, __LINE__, xml::XMLExcepts::Array_BadIndex);
}
void ThrowRuntimeException() {
  throw xml::RuntimeException(__FILE__, __LINE__, xml::XMLExcepts::Enum_NoMoreElements);
}
void ThrowIoException() {
  throw xml::IOException(__FILE__, __LINE__, xml::XMLExcepts::File_CouldNotOpenFile, u"x.xml");
}
void ThrowDomException() {
  throw xml::DOMException(xml::DOMException::NOT_FOUND_ERR, 0);
}
void ThrowDomWithoutMessage() {
  throw xml::DOMException();
}
void ThrowDomRangeException() {
  throw xml::DOMRangeException(xml::DOMRangeException::BAD_BOUNDARYPOINTS_ERR, 0,
                               xml::XMLPlatformUtils::fgMemoryManager);
}
void ThrowSaxParseException() {
  throw xml::SAXParseException(u"message", u"public", u"a/b.xml", 3, 17);
}
void ThrowSaxParseWithoutId() {
  throw xml::SAXParseException(u"message", nullptr, nullptr, 0, 5000000000);
}
void ThrowSaxException() {
  throw xml::SAXException(u"message");
}
void ThrowXmlOutOfMemory() {
  throw xml::OutOfMemoryException();
}
void ThrowQvException() {
  throw EQvException(u"own words");
}
void ThrowQvExceptionWithCode() {
  throw EQvException(u"own words", 5);
}
void ThrowQvExceptionWithoutWords() {
  throw EQvException(WideString(), 7);
}
void ThrowWideString() {
  throw WideString(u"bare words");
}
void ThrowComError() {
  throw _com_error(E_POINTER);
}
void ThrowComErrorWithWords() {
  ErrorInfo info;
  info.description = u"component words";
  throw _com_error(E_FAIL, info);
}
void ThrowStdException() {
  throw std::runtime_error("std words");
}
void ThrowBadAlloc() {
  throw std::bad_alloc();
}
void ThrowInt() {
  throw 5;
}

struct Row {
  const char* name;
  Thrower thrower;
  const char* thrown;
};
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

std::string NameOf(const testing::TestParamInfo<Row>& row) {
  return row.param.name;
}

std::string Translated(Thrower thrower, void (*rethrow)()) {
  return Thrown([=] {
    try {
      thrower();
    } catch (...) {
      rethrow();
    }
  });
}

class CallFailure : public testing::TestWithParam<Row> {
 protected:
  XmlLibraryHold hold_;
};

TEST_P(CallFailure, BecomesThis) {
  EXPECT_EQ(Translated(GetParam().thrower, &RethrowAsCallFailure), GetParam().thrown);
}

constexpr char kNoCall[] = "EQvException 0x00000000 Cannot create a soap call.";

INSTANTIATE_TEST_SUITE_P(
    Clauses, CallFailure,
    testing::Values(
        Row{"XmlIndex", ThrowIndexException, "EQvException 0x00000000 index is beyond array bounds"},
        Row{"XmlRuntime", ThrowRuntimeException, "EQvException 0x00000000 no more elements in enumerator"},
        Row{"XmlIo", ThrowIoException, "EQvException 0x00000000 unable to open file 'x.xml'"},
        Row{"Dom", ThrowDomException,
            "EQvException 0x00000000 The problem in building xml document => attempt is made to reference a "
            "node in a "
            "context where it does not exist"},
        Row{"DomWithoutMessage", ThrowDomWithoutMessage,
            "EQvException 0x00000000 The problem in building xml document => "},
        Row{"DomRange", ThrowDomRangeException,
            "EQvException 0x00000000 The problem in building xml document => boundary points of a range do "
            "not meet "
            "specific requirements"},
        Row{"Qv", ThrowQvException, "EQvException 0x00000000 own words"},
        Row{"QvWithCode", ThrowQvExceptionWithCode, "EQvException 0x80040005 own words"},
        Row{"QvWithoutWords", ThrowQvExceptionWithoutWords, "EQvException 0x80040007 <null>"},
        Row{"SaxParse", ThrowSaxParseException, kNoCall}, Row{"Sax", ThrowSaxException, kNoCall},
        Row{"XmlOutOfMemory", ThrowXmlOutOfMemory, kNoCall}, Row{"WideString", ThrowWideString, kNoCall},
        Row{"Com", ThrowComError, kNoCall}, Row{"ComWithWords", ThrowComErrorWithWords, kNoCall},
        Row{"Std", ThrowStdException, kNoCall}, Row{"BadAlloc", ThrowBadAlloc, kNoCall},
        Row{"Int", ThrowInt, kNoCall}),
    NameOf);

class ParseFailure : public testing::TestWithParam<Row> {
 protected:
  XmlLibraryHold hold_;
};

TEST_P(ParseFailure, BecomesThis) {
  EXPECT_EQ(Translated(GetParam().thrower, &RethrowAsParseFailure), GetParam().thrown);
}

constexpr char kUnknownResponse[] = "EQvException 0x00000000 Unknown response problem";

INSTANTIATE_TEST_SUITE_P(
    Clauses, ParseFailure,
    testing::Values(Row{"Dom", ThrowDomException, "DOMException 8"},
                    Row{"DomWithoutMessage", ThrowDomWithoutMessage, "DOMException 0"},
                    Row{"DomRange", ThrowDomRangeException, "DOMException 111"},
                    Row{"Qv", ThrowQvException, "EQvException 0x00000000 own words"},
                    Row{"QvWithCode", ThrowQvExceptionWithCode, "EQvException 0x80040005 own words"},
                    Row{"QvWithoutWords", ThrowQvExceptionWithoutWords, "EQvException 0x80040007 <null>"},
                    Row{"XmlRuntime", ThrowRuntimeException, kUnknownResponse},
                    Row{"SaxParse", ThrowSaxParseException, kUnknownResponse},
                    Row{"XmlOutOfMemory", ThrowXmlOutOfMemory, kUnknownResponse},
                    Row{"WideString", ThrowWideString, kUnknownResponse},
                    Row{"Com", ThrowComError, kUnknownResponse},
                    Row{"ComWithWords", ThrowComErrorWithWords, kUnknownResponse},
                    Row{"Std", ThrowStdException, kUnknownResponse},
                    Row{"BadAlloc", ThrowBadAlloc, kUnknownResponse}, Row{"Int", ThrowInt, kUnknownResponse}),
    NameOf);

class ResponseFailure : public testing::TestWithParam<Row> {
 protected:
  XmlLibraryHold hold_;
};

TEST_P(ResponseFailure, BecomesThis) {
  EXPECT_EQ(Translated(GetParam().thrower, &RethrowAsResponseFailure), GetParam().thrown);
}

constexpr char kNotValid[] = "EQvException 0x00000000 The respone that arrived is not valid";

INSTANTIATE_TEST_SUITE_P(
    Clauses, ResponseFailure,
    testing::Values(
        Row{"SaxParse", ThrowSaxParseException,
            "EQvException 0x00000000 Error at file a/b.xml, line 3, char 17  Message: a/b.xml"},
        Row{"SaxParseWithoutId", ThrowSaxParseWithoutId,
            "EQvException 0x00000000 Error at file , line 0, char 5000000000  Message: "},
        Row{"Dom", ThrowDomException, "DOMException 8"},
        Row{"DomRange", ThrowDomRangeException, "DOMException 111"},
        Row{"Qv", ThrowQvException, "EQvException 0x00000000 own words"},
        Row{"QvWithCode", ThrowQvExceptionWithCode, "EQvException 0x80040005 own words"},
        Row{"QvWithoutWords", ThrowQvExceptionWithoutWords, "EQvException 0x80040007 <null>"},
        Row{"WideString", ThrowWideString, "EQvException 0x00000000 bare words"},
        Row{"Sax", ThrowSaxException, kNotValid}, Row{"XmlRuntime", ThrowRuntimeException, kNotValid},
        Row{"XmlIo", ThrowIoException, kNotValid}, Row{"XmlOutOfMemory", ThrowXmlOutOfMemory, kNotValid},
        Row{"Com", ThrowComError, kNotValid}, Row{"ComWithWords", ThrowComErrorWithWords, kNotValid},
        Row{"Std", ThrowStdException, kNotValid}, Row{"BadAlloc", ThrowBadAlloc, kNotValid},
        Row{"Int", ThrowInt, kNotValid}),
    NameOf);

}  // namespace
}  // namespace qv
