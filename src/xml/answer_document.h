// A document from memory that a server sent: what is plain is read by the plain scanner, the rest by the XML
// library's parser, which is made only then. Both read the same from a document. Used by one
// thread, in one scope, for one document, with the library started (XmlLibraryGuardScope).
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "xml/compact_tree.h"
#include "xml/parse_memory.h"
#include "xml/xml_node.h"
#include "xml/xml_parts.h"

namespace qv {

class AnswerDocument {
 public:
  AnswerDocument() noexcept : tree_(memory_) {}
  AnswerDocument(const AnswerDocument&) = delete;
  AnswerDocument& operator=(const AnswerDocument&) = delete;

  // As QvDomParser::ParseHostileText, but the text must outlive this object: nodes are views of it. Failures
  // are those of the parser, or std::bad_alloc when there is no memory for one.
  void ReadText(std::u16string_view text, const char* bufferId);
  // As QvDomParser::parse.
  void ReadFile(const char* fileName);

  // Before it is read: the document holds a secret, so what was read is cleared at the end.
  void ClearMemoryAtEnd() noexcept;
  // What the document and a parser take; for tests and measurements.
  std::size_t BytesInUse() const noexcept;

  // Null before the end of reading.
  XmlNode Document() const;
  // False when no element of the document has this name, as far as that is known without looking: a search
  // for what is not there can be left out.
  bool MayHold(std::u16string_view elementName) const;

 private:
  bool ReadPlainText(std::u16string_view text);
  ParsedDocument& Parser();

  ParseMemory memory_;
  CompactTree tree_;
  std::unique_ptr<ParsedDocument> parser_;
  bool isPlain_ = false;
  bool clears_ = false;
};

}  // namespace qv
