// Feeds documents to the XML library's parser, whose tree is the one that is serialized, and what it accepts
// to the serializer. Nothing may crash, leak or take long; the text is bytes in units, ends in a line feed,
// and without a document type is a document again. Input is UTF-8.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "qvscriptwells/wide_string.h"
#include "qvscriptwells/xml_library_hold.h"
#include "xml/stock_parser.h"
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
  qv::StockParser parser;
  qv::XmlNode document;
  try {
    document = parser.Parse(text.view());
  } catch (const XERCES_CPP_NAMESPACE::SAXParseException&) {
    return 0;
  } catch (const XERCES_CPP_NAMESPACE::DOMException&) {
    return 0;
  }
  const std::string bytes = BytesOf(qv::CXMLSerializer().Serialize(document));
  Require(bytes.back() == '\n');
  if (HasDocumentType(document)) return 0;
  const qv::WideString written = qv::FromUtf8(bytes);
  Require(BytesOf(qv::CXMLSerializer().Serialize(parser.Parse(written.view()))) == bytes);
  return 0;
}
