// What the tests of this room share: the library up for one test, and verbs to parse and to see a refusal.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include <xercesc/sax/SAXParseException.hpp>

#include "qvscriptwells/xml_library_hold.h"
#include "qvscriptwells/xml_memory.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_node.h"

namespace qv {

// The place and words of a SAXParseException, read after the parser is gone. `thrown` false: the text was
// accepted.
struct Refusal {
  bool thrown = false;
  std::u16string systemId;
  unsigned long long line = 0;
  unsigned long long column = 0;
  std::u16string message;
};

class XmlFixture : public ::testing::Test {
 protected:
  // Parses, keeps the parser for the rest of the test, and gives the document's element.
  XmlNode Root(std::u16string_view text) {
    parser_ = std::make_unique<QvDomParser>();
    parser_->ParseHostileText(text, "application/xml");
    XmlNode node = parser_->Document().FirstChild();
    while (!node.IsNull() && node.NodeType() != XmlNode::kElement) node = node.NextSibling();
    return node;
  }

  static Refusal RefusalOf(std::u16string_view text) {
    try {
      QvDomParser parser;
      parser.ParseHostileText(text, "application/xml");
    } catch (const XERCES_CPP_NAMESPACE::SAXParseException& e) {
      return {true, e.getSystemId(), e.getLineNumber(), e.getColumnNumber(), e.getMessage()};
    }
    return {};
  }

  // Under a ceiling of so many bytes.
  static Refusal RefusalOf(std::u16string_view text, std::size_t memory) {
    SetThreadXmlMemoryCeiling(memory);
    Refusal refusal = RefusalOf(text);
    SetThreadXmlMemoryCeiling(kNoXmlMemoryCeiling);
    return refusal;
  }

  static std::u16string Repeat(std::u16string_view piece, int times) {
    std::u16string all;
    for (int i = 0; i < times; ++i) all += piece;
    return all;
  }

 private:
  XmlLibraryHold library_;
  std::unique_ptr<QvDomParser> parser_;
};

}  // namespace qv
