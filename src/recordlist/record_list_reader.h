// Builds a record list from the element that holds one. Elements are found by their place alone; the wire
// form has no text between them, so a text node there counts as column, record or cell.
#pragma once

#include <cstdint>

#include "qvscriptwells/record_list.h"
#include "recordlist/cell_formaters.h"
#include "xml/xml_node.h"

namespace qv {

// For one table. Failure: EQvException for what a cell does, any other exception for the rest.
class RecordListReader {
 public:
  // `element` is not null.
  IRecordListPtr Read(const XmlNode& element);

 private:
  void ReadColumns(const XmlNode& headersBlock);
  void ReadRecords(const XmlNode& recordsBlock);
  void ReadCells(const XmlNode& record, IRecordListRecord* target);
  // A short text can ask for very many cells that no record has (kMostMissingCells).
  void RequireFilled() const;

  IRecordListPtr list_;
  IRecordListHeadersPtr headers_;
  CellFormaters formaters_;
  std::int64_t columns_ = 0;
  std::int64_t records_ = 0;
  std::int64_t cells_ = 0;
};

}  // namespace qv
