// Writes the XML text of a table piece by piece; the order of the calls is the order of the document. No
// declaration, line breaks or indentation, since deployed servers read it by position.
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
  // The element contains `id` twice.
  void StartSchema(std::u16string_view id);
  // EQvException "Header contains special Xml chars that are not valid for tag name", code 0, for a name with
  // a character that the XML escape would replace. The display name is escaped.
  void WriteColumn(std::u16string_view name, std::u16string_view xmlTypeName,
                   std::u16string_view displayName);
  void EndSchema();
  void EndHeaders();
  void StartRecords();
  void StartRecord();
  // Escapes `text` a second time, after the formaters; servers undo both.
  void WriteCell(std::u16string_view name, std::u16string_view text);
  void EndRecord();
  void EndRecords();
  void EndRecordList();
  // Returns the document and empties the stream.
  WideString TakeText();

 private:
  WideTextStream stream_;
};

// A new "uuid:" with the 36 characters of a random GUID.
WideString NewSchemaId();

}  // namespace qv
