// The functions of the XML library that the rooms need, as one table: only the files that it names refer to
// the XML library. So a program may load them, and it, when they are first needed, since the answers of most
// servers need neither. Threads: any, each document on one. Failures are those of the XML library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "qvscriptwells/wide_string.h"
#include "xml/xml_node.h"

namespace qv {

// A document that the XML library's parser reads (qv_dom_parser.h).
class ParsedDocument {
 public:
  ParsedDocument() = default;
  virtual ~ParsedDocument() = default;
  ParsedDocument(const ParsedDocument&) = delete;
  ParsedDocument& operator=(const ParsedDocument&) = delete;

  virtual void ReadHostileText(std::u16string_view text, const char* bufferId) = 0;
  virtual void ReadFile(const char* fileName) = 0;
  virtual void ClearMemoryAtEnd() noexcept = 0;
  virtual std::size_t BytesInUse() const noexcept = 0;
  virtual XmlNode Document() const = 0;
  virtual bool MayHold(std::u16string_view elementName) const = 0;
};

// An exception of the XML library. Borrowed from it, so valid as long as it is being handled.
struct XmlFailure {
  enum Kind { kNone, kSyntax, kTree, kLibrary };  // SAXParseException, DOMException, XMLException

  Kind kind = kNone;
  const char16_t* text = nullptr;  // the message; of kSyntax the system id
  std::uint64_t line = 0;
  std::uint64_t column = 0;
};

struct XmlParts {
  // XMLPlatformUtils; see xml_library_start.h.
  void (*start)();
  void (*stop)();
  // With the library started:
  std::unique_ptr<ParsedDocument> (*newDocument)();
  WideString (*renderFile)(const char* fileName);  // parsed, and serialized again
  // The exception that is being handled; kNone if it is not the XML library's.
  XmlFailure (*currentFailure)() noexcept;
};

// kNone also while the parts are not loaded.
XmlFailure CurrentXmlFailure() noexcept;

}  // namespace qv
