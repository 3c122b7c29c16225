// Feeds documents to the parser and what it accepts to the serializer. Nothing may crash, leak or take long;
// the text is bytes in units, ends in a line feed, and without a document type is a document again. Input is
// UTF-8.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <xercesc/sax/SAXParseException.hpp>

#include "qvscriptwells/wide_string.h"
#include "qvscriptwells/xml_library_hold.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_serializer.h"

namespace {

constexpr int kDocumentType = 10;

void Require(bool holds) {
  if (!holds) std::abort();
}

bool HasDocumentType(const qv::XmlNode& document) {
  for (qv::XmlNode child = document.FirstChild(); !child.IsNull(); child = child.NextSibling())
    if (child.NodeType() == kDocumentType) return true;
  return false;
}

std::string BytesOf(const qv::WideString& text) {
  const std::u16string_view units = text.view();
  Require(std::all_of(units.begin(), units.end(), [](char16_t unit) { return unit < 0x100; }));
  return {units.begin(), units.end()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  const qv::WideString text = qv::FromUtf8({reinterpret_cast<const char*>(data), size});
  qv::QvDomParser parser;
  try {
    parser.ParseHostileText(text.view(), "application/xml");
  } catch (const XERCES_CPP_NAMESPACE::SAXParseException&) {
    return 0;
  }
  const std::string bytes = BytesOf(qv::CXMLSerializer().Serialize(parser.Document()));
  Require(bytes.back() == '\n');
  if (HasDocumentType(parser.Document())) return 0;
  qv::QvDomParser again;
  again.ParseHostileText(qv::FromUtf8(bytes).view(), "application/xml");
  Require(BytesOf(qv::CXMLSerializer().Serialize(again.Document())) == bytes);
  return 0;
}
