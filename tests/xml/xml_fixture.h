// What the tests of this room share: the library up for one test, and verbs to parse and to see a refusal.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include <xercesc/sax/SAXParseException.hpp>

#include "fixtures/shown_text.h"
#include "qvscriptwells/xml_library_hold.h"
#include "qvscriptwells/xml_memory.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_node.h"

namespace qv {

// The place and message of a SAXParseException, read after the parser is gone. `thrown` false: the text was
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

  static void ExpectRead(std::u16string_view text) { EXPECT_FALSE(RefusalOf(text).thrown) << Start(text); }
  static void ExpectRefused(std::u16string_view text) { EXPECT_TRUE(RefusalOf(text).thrown) << Start(text); }
  static void ExpectMessage(std::u16string_view text, std::u16string_view message) {
    EXPECT_EQ(RefusalOf(text).message, message) << Start(text);
  }
  // Refused at this place of the text.
  static void ExpectRefusedAt(std::u16string_view text, unsigned long long line, unsigned long long column) {
    const Refusal refusal = RefusalOf(text);
    EXPECT_TRUE(refusal.thrown) << Start(text);
    EXPECT_EQ(refusal.systemId, u"application/xml") << Start(text);
    EXPECT_EQ(refusal.line, line) << Start(text);
    EXPECT_EQ(refusal.column, column) << Start(text);
  }
  // The value of the document element's first child.
  std::u16string_view FirstValue(std::u16string_view text) { return Root(text).FirstChild().Value(); }

  static std::u16string Repeat(std::u16string_view piece, int times) {
    std::u16string all;
    for (int i = 0; i < times; ++i) all += piece;
    return all;
  }
  // "<n0/><n1/>" and so on for "<n" and "/>".
  static std::u16string Numbered(std::u16string_view before, int count, std::u16string_view after) {
    std::u16string all;
    for (int i = 0; i < count; ++i) {
      const std::string number = std::to_string(i);
      all += std::u16string(before) + std::u16string(number.begin(), number.end()) + std::u16string(after);
    }
    return all;
  }
  static std::string Start(std::u16string_view text) { return Shown(WideString(text.substr(0, 60))); }

 private:
  XmlLibraryHold library_;
  std::unique_ptr<QvDomParser> parser_;
};

}  // namespace qv
