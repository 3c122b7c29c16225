// Writes a record list as XML text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "components/recordlist/cell_table.h"
#include "qvscriptwells/record_list.h"
#include "recordlist/cell_formaters.h"
#include "recordlist/xml_record_list_serializer_str.h"

namespace qv {

// For one table. Failure: as FormaterRecordList::WriteValue.
class RecordListWriter {
 public:
  // E_POINTER for null.
  WideString Write(IRecordList* list);

 private:
  struct Column {
    std::int32_t type;
    WideString name;
  };

  void WriteHeaders(IRecordListHeaders* headers);
  void WriteColumn(IRecordListHeader* header);
  // Of a list of any class, by its interfaces: a host may see each call.
  void WriteRecords(IRecordList* list);
  void WriteRecord(IRecordListRecord* record);
  void WriteCell(IRecordListRecord* record, std::int32_t index);
  // Of a list of the built-in class, whose columns do not change, in place.
  std::vector<Column> ColumnsOf(IRecordListHeaders* headers) const;
  void WriteRows(CellTable& table, const std::vector<Column>& columns);
  void WriteStored(const Column& column, const Variant& cell);
  void WriteObject(const Column& column, const Variant& cell);
  void WriteText(const Column& column, const Variant& value);

  CXMLRecordListSerializerStr serializer_;
  CellFormaters formaters_;
  std::int32_t count_ = 0;  // of the columns, asked for once
};

}  // namespace qv
