// Builds a record list from its XML element. Elements are found by position only; the wire format has no text
// between them, so a text node there counts as column, record or cell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "components/recordlist/cell_table.h"
#include "qvscriptwells/record_list.h"
#include "recordlist/cell_formaters.h"
#include "xml/xml_node.h"

namespace qv {

// For one table. Failure: EQvException for a cell, any other exception for the rest.
class RecordListReader {
 public:
  // `element` is not null.
  IRecordListPtr Read(const XmlNode& element);

 private:
  void ReadColumns(const XmlNode& headersBlock);
  void ReadRecords(const XmlNode& recordsBlock);
  // Into a list of any class, by its interfaces: a host may see each call.
  void ReadRecord(const XmlNode& record);
  void ReadCells(const XmlNode& record, IRecordListRecord* target);
  // Into a list of the built-in class, in place: nobody else has the list before Read returns it.
  void ReadRow(const XmlNode& record, CellTable& table);
  Variant ReadCell(const XmlNode& cell, std::int32_t type);
  std::vector<std::int32_t> ColumnTypes() const;
  // Guards against a short text with very many missing cells (kMostMissingCells).
  void RequireFilled() const;

  IRecordListPtr list_;
  IRecordListHeadersPtr headers_;
  CellFormaters formaters_;
  std::vector<std::int32_t> types_;  // for the built-in class
  std::int64_t columns_ = 0;
  std::int64_t records_ = 0;
  std::int64_t cells_ = 0;
};

}  // namespace qv
