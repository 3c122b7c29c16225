#include "recordlist/record_list_writer.h"

#include <new>

#include "components/recordlist/record_list_object.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/error_info.h"
#include "recordlist/column_types.h"
#include "recordlist/record_list_calls.h"

namespace qv {

WideString RecordListWriter::Write(IRecordList* list) {
  serializer_.StartRecordList();
  const IRecordListHeadersPtr headers = HeadersOf(list);
  count_ = CountOf(headers.get());
  WriteHeaders(headers.get());
  CellTable* const table = CellsOf(list);
  if (table == nullptr)
    WriteRecords(list);
  else
    WriteRows(*table, ColumnsOf(headers.get()));
  serializer_.EndRecords();
  serializer_.EndRecordList();
  return serializer_.TakeText();
}

void RecordListWriter::WriteHeaders(IRecordListHeaders* headers) {
  serializer_.StartHeaders();
  serializer_.StartSchema(NewSchemaId().view());
  for (std::int32_t index = 0; index < count_; ++index) WriteColumn(HeaderAt(headers, index).get());
  serializer_.EndSchema();
  serializer_.EndHeaders();
}

void RecordListWriter::WriteColumn(IRecordListHeader* header) {
  const std::int32_t type = TypeOf(header);
  const WideString name = NameOf(header);
  const WideString displayName = DisplayNameOf(header);
  serializer_.WriteColumn(name.view(), XmlTypeNameOf(type), displayName.view());
}

void RecordListWriter::WriteRecords(IRecordList* list) {
  const IRecordListCursorPtr cursor = CursorOf(list);
  serializer_.StartRecords();
  while (HasMore(cursor.get())) {
    const IRecordListRecordPtr record = NextOf(cursor.get());
    if (record != nullptr) WriteRecord(record.get());
  }
}

void RecordListWriter::WriteRecord(IRecordListRecord* record) {
  serializer_.StartRecord();
  for (std::int32_t index = 0; index < count_; ++index) WriteCell(record, index);
  serializer_.EndRecord();
}

// Each cell uses the columns that its record returns.
void RecordListWriter::WriteCell(IRecordListRecord* record, std::int32_t index) {
  const IRecordListHeadersPtr headers = HeadersOf(record);
  const IRecordListHeaderPtr header = HeaderAt(headers.get(), index);
  const std::int32_t type = TypeOf(header.get());
  const Variant value = ValueOf(record, index);
  WriteText({type, NameOf(header.get())}, value);
}

std::vector<RecordListWriter::Column> RecordListWriter::ColumnsOf(IRecordListHeaders* headers) const {
  try {
    std::vector<Column> columns;
    for (std::int32_t index = 0; index < count_; ++index) {
      const IRecordListHeaderPtr header = HeaderAt(headers, index);
      columns.push_back({TypeOf(header.get()), NameOf(header.get())});
    }
    return columns;
  } catch (const std::bad_alloc&) {
    _com_raise_error(E_OUTOFMEMORY);
  }
}

// Objects in the cells may add rows meanwhile, which are written too.
void RecordListWriter::WriteRows(CellTable& table, const std::vector<Column>& columns) {
  serializer_.StartRecords();
  for (std::size_t row = 0; row < table.Rows(); ++row) {
    serializer_.StartRecord();
    for (std::size_t index = 0; index < columns.size(); ++index)
      WriteStored(columns[index], table.Cell(row, index));
    serializer_.EndRecord();
  }
}

void RecordListWriter::WriteStored(const Column& column, const Variant& cell) {
  if (cell.Object() == nullptr)
    WriteText(column, cell);
  else
    WriteObject(column, cell);
}

// Objects are counted and called, and may change the table then: the value is a copy. No error record of
// theirs stays, as after the calls of the list's interfaces.
void RecordListWriter::WriteObject(const Column& column, const Variant& cell) {
  {
    const Variant value = cell;  // NOLINT(performance-unnecessary-copy-initialization): see above
    ClearErrorInfo();
    WriteText(column, value);
  }
  ClearErrorInfo();
}

void RecordListWriter::WriteText(const Column& column, const Variant& value) {
  serializer_.WriteCell(column.name.view(), formaters_.WriteCell(column.type, value));
}

}  // namespace qv
