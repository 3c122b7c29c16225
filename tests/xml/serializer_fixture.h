// What the tests of the serializer share: a document to build nodes in, another that was parsed, and verbs to
// see what is written or thrown.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "xml/xml_node.h"
#include "xml/xml_serializer.h"

namespace qv {

constexpr char kSerializationFailed[] = "EQvException 0x00000000 Serializetion FAILED";

class SerializerFixture : public ::testing::Test {
 protected:
  SerializerFixture() : document_(xercesc::DOMImplementation::getImplementation()->createDocument()) {}
  ~SerializerFixture() override { document_->release(); }

  static std::string Written(const xercesc::DOMNode* node) {
    CXMLSerializer serializer;
    return Shown(serializer.Serialize(XmlNode(node)));
  }
  // One line: what is written of a single node ends with a line feed.
  static void ExpectLine(const xercesc::DOMNode* node, const std::string& line) {
    EXPECT_EQ(Written(node), line + "\\u000A");
  }
  static void ExpectFailure(const xercesc::DOMNode* node) {
    EXPECT_EQ(Thrown([node] { Written(node); }), kSerializationFailed);
  }
  xercesc::DOMElement* ParsedElement(const std::string& text) { return Parsed(text)->getDocumentElement(); }

  xercesc::DOMElement* Element(const char16_t* name) { return document_->createElement(name); }
  xercesc::DOMElement* Element(const char16_t* name, const char16_t* text) {
    xercesc::DOMElement* element = Element(name);
    element->appendChild(document_->createTextNode(text));
    return element;
  }
  // An element "r" with one attribute "a".
  xercesc::DOMElement* WithAttribute(const char16_t* value) {
    xercesc::DOMElement* element = Element(u"r");
    element->setAttribute(u"a", value);
    return element;
  }
  // Elements "a" inside each other; built from the innermost outwards, since the library looks at all
  // ancestors when a node is appended.
  xercesc::DOMElement* Nested(int levels, xercesc::DOMNode* innermost) {
    xercesc::DOMElement* top = nullptr;
    for (xercesc::DOMNode* below = innermost; levels > 0; --levels, below = top) {
      top = Element(u"a");
      top->appendChild(below);
    }
    return top;
  }

  // Read by the XML library's own parser; valid until the next call.
  xercesc::DOMDocument* Parsed(const std::string& text) {
    xercesc::HandlerBase throwing;
    parser_ = std::make_unique<xercesc::XercesDOMParser>();
    parser_->setErrorHandler(&throwing);
    parser_->setLoadExternalDTD(false);
    parser_->parse(
        xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "text"));
    parser_->setErrorHandler(nullptr);
    return parser_->getDocument();
  }

 private:
  XmlLibraryHold library_;
  std::unique_ptr<xercesc::XercesDOMParser> parser_;

 protected:
  xercesc::DOMDocument* document_;
};

}  // namespace qv
