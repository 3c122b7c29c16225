// Writes a record list as XML text.
#pragma once

#include <cstdint>

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
  void WriteHeaders(IRecordListHeaders* headers);
  void WriteColumn(IRecordListHeader* header);
  void WriteRecords(IRecordListCursor* cursor);
  void WriteRecord(IRecordListRecord* record);
  void WriteCell(IRecordListRecord* record, std::int32_t index);

  CXMLRecordListSerializerStr serializer_;
  CellFormaters formaters_;
  std::int32_t columns_ = 0;
};

}  // namespace qv
