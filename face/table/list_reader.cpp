#include "face/table/list_reader.h"

#include "qvscriptwells/com_call.h"

namespace scriptwells {

namespace {

using qv::ThrowIfFailed;

// A call that succeeds without an object is a failure, too.
void CheckGiven(const void* object) {
  if (object == nullptr) qv::_com_raise_error(qv::E_POINTER);
}

ListColumn ReadColumn(qv::IRecordListHeaders* headers, std::int32_t index) {
  qv::IRecordListHeaderPtr header;
  ThrowIfFailed(headers->GetHeader(index, Put(header)), headers, qv::IRecordListHeaders::kIid);
  CheckGiven(header.get());
  qv::WideString name;
  ThrowIfFailed(header->GetName(&name), header.get(), qv::IRecordListHeader::kIid);
  ListColumn column;
  ThrowIfFailed(header->GetType(&column.type), header.get(), qv::IRecordListHeader::kIid);
  column.name = qv::ToUtf8(name);
  return column;
}

bool HasMore(qv::IRecordListCursor* cursor) {
  qv::VARIANT_BOOL more = qv::VARIANT_FALSE;
  ThrowIfFailed(cursor->HasMore(&more), cursor, qv::IRecordListCursor::kIid);
  return more != qv::VARIANT_FALSE;
}

qv::IRecordListRecordPtr NextRecord(qv::IRecordListCursor* cursor) {
  qv::IUnknownPtr row;
  ThrowIfFailed(cursor->Next(Put(row)), cursor, qv::IRecordListCursor::kIid);
  qv::IRecordListRecordPtr record = qv::As<qv::IRecordListRecord>(row);
  if (!record) qv::_com_raise_error(qv::E_NOINTERFACE);
  return record;
}

}  // namespace

std::vector<ListColumn> ReadColumns(qv::IRecordList* list) {
  qv::IRecordListHeadersPtr headers;
  ThrowIfFailed(list->GetHeaders(Put(headers)), list, qv::IRecordList::kIid);
  CheckGiven(headers.get());
  std::int32_t count = 0;
  ThrowIfFailed(headers->GetCount(&count), headers.get(), qv::IRecordListHeaders::kIid);
  std::vector<ListColumn> columns;
  // NOLINTNEXTLINE(performance-inefficient-vector-operation): a host's count is not trusted with memory
  for (std::int32_t i = 0; i < count; ++i) columns.push_back(ReadColumn(headers.get(), i));
  return columns;
}

qv::CellTable ReadCells(qv::IRecordList* list, std::size_t columns) {
  qv::CellTable cells;
  for (std::size_t i = 0; i < columns; ++i) cells.AddColumn();
  qv::IRecordListCursorPtr cursor;
  ThrowIfFailed(list->OpenCursor(qv::VARIANT_TRUE, Put(cursor)), list, qv::IRecordList::kIid);
  CheckGiven(cursor.get());
  while (HasMore(cursor.get())) {
    const qv::IRecordListRecordPtr record = NextRecord(cursor.get());
    qv::Variant* const row = cells.AddRow();
    for (std::size_t i = 0; i < columns; ++i)
      ThrowIfFailed(record->GetValue(static_cast<std::int32_t>(i), &row[i]), record.get(),
                    qv::IRecordListRecord::kIid);
  }
  return cells;
}

}  // namespace scriptwells
