#include "recordlist/record_list_writer.h"

#include "qvscriptwells/com_error.h"
#include "recordlist/column_types.h"
#include "recordlist/record_list_calls.h"

namespace qv {

WideString RecordListWriter::Write(IRecordList* list) {
  serializer_.StartRecordList();
  const IRecordListHeadersPtr headers = HeadersOf(list);
  columns_ = CountOf(headers.get());
  WriteHeaders(headers.get());
  const IRecordListCursorPtr cursor = CursorOf(list);
  serializer_.StartRecords();
  WriteRecords(cursor.get());
  serializer_.EndRecords();
  serializer_.EndRecordList();
  return serializer_.TakeText();
}

void RecordListWriter::WriteHeaders(IRecordListHeaders* headers) {
  serializer_.StartHeaders();
  serializer_.StartSchema(NewSchemaId().view());
  for (std::int32_t index = 0; index < columns_; ++index) WriteColumn(HeaderAt(headers, index).get());
  serializer_.EndSchema();
  serializer_.EndHeaders();
}

void RecordListWriter::WriteColumn(IRecordListHeader* header) {
  const std::int32_t type = TypeOf(header);
  const WideString name = NameOf(header);
  const WideString displayName = DisplayNameOf(header);
  serializer_.WriteColumn(name.view(), XmlTypeNameOf(type), displayName.view());
}

void RecordListWriter::WriteRecords(IRecordListCursor* cursor) {
  while (HasMore(cursor)) {
    const IRecordListRecordPtr record = NextOf(cursor);
    if (record != nullptr) WriteRecord(record.get());
  }
}

void RecordListWriter::WriteRecord(IRecordListRecord* record) {
  serializer_.StartRecord();
  for (std::int32_t index = 0; index < columns_; ++index) WriteCell(record, index);
  serializer_.EndRecord();
}

// Each cell uses the columns that its record returns.
void RecordListWriter::WriteCell(IRecordListRecord* record, std::int32_t index) {
  const IRecordListHeadersPtr headers = HeadersOf(record);
  const IRecordListHeaderPtr header = HeaderAt(headers.get(), index);
  const std::int32_t type = TypeOf(header.get());
  const Variant value = ValueOf(record, index);
  const WideString name = NameOf(header.get());
  serializer_.WriteCell(name.view(), formaters_.WriteCell(type, value).view());
}

}  // namespace qv
