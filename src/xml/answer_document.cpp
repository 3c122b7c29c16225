#include "xml/answer_document.h"

#include <xercesc/util/OutOfMemoryException.hpp>

#include "qvscriptwells/xml_memory.h"
#include "xml/plain_scanner.h"
#include "xml/xml_library_start.h"

namespace qv {

void AnswerDocument::ReadText(std::u16string_view text, const char* bufferId) {
  isPlain_ = ReadPlainText(text);
  if (isPlain_) return;
  tree_.Forget();
  memory_.GiveAllBack();
  Parser().ReadHostileText(text, bufferId);
}

void AnswerDocument::ReadFile(const char* fileName) {
  Parser().ReadFile(fileName);
}

// Without memory the document is not plain: the parser then reports the failure.
bool AnswerDocument::ReadPlainText(std::u16string_view text) {
  memory_.SetLimit(ThreadXmlMemoryCeiling());
  try {
    tree_.Start(text, CompactTree::CeilingFor(text.size()));
    return ScanPlainDocument(text, tree_);
  } catch (const XERCES_CPP_NAMESPACE::OutOfMemoryException&) {
    return false;
  }
}

ParsedDocument& AnswerDocument::Parser() {
  parser_ = RequireXmlLibrary().newDocument();
  if (clears_) parser_->ClearMemoryAtEnd();
  return *parser_;
}

void AnswerDocument::ClearMemoryAtEnd() noexcept {
  clears_ = true;
  memory_.ClearAtEnd();
}

std::size_t AnswerDocument::BytesInUse() const noexcept {
  return memory_.BytesInUse() + (parser_ ? parser_->BytesInUse() : 0);
}

XmlNode AnswerDocument::Document() const {
  if (isPlain_) return XmlNode(tree_, CompactTree::kDocumentIndex);
  return parser_ ? parser_->Document() : XmlNode();
}

bool AnswerDocument::MayHold(std::u16string_view elementName) const {
  return isPlain_ ? tree_.HasElementNamed(elementName) : !parser_ || parser_->MayHold(elementName);
}

}  // namespace qv
