// The translators of failures at the room's three borders: what each exception becomes there.
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMRangeException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/ArrayIndexOutOfBoundsException.hpp>
#include <xercesc/util/IOException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "fixtures/known_failures.h"
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

constexpr char kUnknownResponse[] = "EQvException 0x00000000 Unknown response problem";

std::string Translated(void (*thrower)(), void (*rethrow)()) {
  return Thrown([=] {
    try {
      thrower();
    } catch (...) {
      rethrow();
    }
  });
}

std::string InDocument(const std::string& message) {
  return Refused("The problem in building xml document => " + message);
}

ErrorInfo Record() {
  ErrorInfo info;
  info.description = u"component words";
  return info;
}

TEST(Rethrow, EachExceptionBecomesThis) {
  const XmlLibraryHold hold;
  const struct {
    const char* name;
    void (*thrower)();
    std::string asCallFailure;
    std::string asParseFailure;
    std::string asResponseFailure;
  } rows[] = {
      {"XML index",
       [] { throw xml::ArrayIndexOutOfBoundsException(__FILE__, __LINE__, xml::XMLExcepts::Array_BadIndex); },
       Refused("index is beyond array bounds"), kUnknownResponse, kNotValid},
      {"XML runtime",
       [] { throw xml::RuntimeException(__FILE__, __LINE__, xml::XMLExcepts::Enum_NoMoreElements); },
       Refused("no more elements in enumerator"), kUnknownResponse, kNotValid},
      {"XML input",
       [] { throw xml::IOException(__FILE__, __LINE__, xml::XMLExcepts::File_CouldNotOpenFile, u"x.xml"); },
       Refused("unable to open file 'x.xml'"), kUnknownResponse, kNotValid},
      {"XML out of memory", [] { throw xml::OutOfMemoryException(); }, kNoSoapCall, kUnknownResponse,
       kNotValid},
      {"DOM", [] { throw xml::DOMException(xml::DOMException::NOT_FOUND_ERR, 0); },
       InDocument("attempt is made to reference a node in a context where it does not exist"),
       "DOMException 8", "DOMException 8"},
      {"DOM without a message", [] { throw xml::DOMException(); }, InDocument(""), "DOMException 0",
       "DOMException 0"},
      {"DOM range",
       [] {
         throw xml::DOMRangeException(xml::DOMRangeException::BAD_BOUNDARYPOINTS_ERR, 0,
                                      xml::XMLPlatformUtils::fgMemoryManager);
       },
       InDocument("boundary points of a range do not meet specific requirements"), "DOMException 111",
       "DOMException 111"},
      {"SAX", [] { throw xml::SAXException(u"message"); }, kNoSoapCall, kUnknownResponse, kNotValid},
      {"SAX parse", [] { throw xml::SAXParseException(u"message", u"public", u"a/b.xml", 3, 17); },
       kNoSoapCall, kUnknownResponse, Refused("Error at file a/b.xml, line 3, char 17  Message: a/b.xml")},
      {"SAX parse without id",
       [] { throw xml::SAXParseException(u"message", nullptr, nullptr, 0, 5000000000); }, kNoSoapCall,
       kUnknownResponse, Refused("Error at file , line 0, char 5000000000  Message: ")},
      {"EQvException", [] { throw EQvException(u"own words"); }, Refused("own words"), Refused("own words"),
       Refused("own words")},
      {"EQvException with code", [] { throw EQvException(u"own words", 5); },
       "EQvException 0x80040005 own words", "EQvException 0x80040005 own words",
       "EQvException 0x80040005 own words"},
      {"EQvException without message", [] { throw EQvException(WideString(), 7); },
       "EQvException 0x80040007 <null>", "EQvException 0x80040007 <null>", "EQvException 0x80040007 <null>"},
      {"text", [] { throw WideString(u"bare words"); }, kNoSoapCall, kUnknownResponse, Refused("bare words")},
      {"_com_error", [] { throw _com_error(E_POINTER); }, kNoSoapCall, kUnknownResponse, kNotValid},
      {"_com_error with record", [] { throw _com_error(E_FAIL, Record()); }, kNoSoapCall, kUnknownResponse,
       kNotValid},
      {"std::runtime_error", [] { throw std::runtime_error("std words"); }, kNoSoapCall, kUnknownResponse,
       kNotValid},
      {"std::bad_alloc", [] { throw std::bad_alloc(); }, kNoSoapCall, kUnknownResponse, kNotValid},
      {"int", [] { throw 5; }, kNoSoapCall, kUnknownResponse, kNotValid},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Translated(row.thrower, &RethrowAsCallFailure), row.asCallFailure) << row.name;
    EXPECT_EQ(Translated(row.thrower, &RethrowAsParseFailure), row.asParseFailure) << row.name;
    EXPECT_EQ(Translated(row.thrower, &RethrowAsResponseFailure), row.asResponseFailure) << row.name;
  }
}

}  // namespace
}  // namespace qv
