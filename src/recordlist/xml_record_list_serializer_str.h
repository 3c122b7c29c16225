// Writes the XML text of a table piece by piece; the order of the calls makes the document. No declaration,
// no line break, no indentation: servers in the field read it by position.
#pragma once

#include <string_view>

#include "qvscriptwells/wide_string.h"
#include "support/wide_text_stream.h"

namespace qv {

class CXMLRecordListSerializerStr {
 public:
  CXMLRecordListSerializerStr() = default;
  CXMLRecordListSerializerStr(const CXMLRecordListSerializerStr&) = delete;
  CXMLRecordListSerializerStr& operator=(const CXMLRecordListSerializerStr&) = delete;
  virtual ~CXMLRecordListSerializerStr() = default;

  void StartRecordList();
  void StartHeaders();
  // `id` stands twice in the element.
  void StartSchema(std::u16string_view id);
  // EQvException "Header contains special Xml chars that are not valid for tag name", code 0, for a name with
  // a character that the XML escape would replace. The display name is escaped.
  void WriteColumn(std::u16string_view name, std::u16string_view xmlTypeName,
                   std::u16string_view displayName);
  void EndSchema();
  void EndHeaders();
  void StartRecords();
  void StartRecord();
  // `text` is escaped once more here, though the formaters have escaped it: servers undo both.
  void WriteCell(std::u16string_view name, std::u16string_view text);
  void EndRecord();
  void EndRecords();
  void EndRecordList();
  // The document so far; the stream is empty afterwards.
  WideString TakeText();

 private:
  WideTextStream stream_;
};

// A fresh "uuid:" with the 36 characters of a random GUID.
WideString NewSchemaId();

}  // namespace qv
