#include "tools/output/record_table.h"

#include <cmath>
#include <optional>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "tools/output/answer_format.h"
#include "tools/values/date_text.h"

namespace qv::cli {

namespace {

struct TypeRow {
  std::int32_t type;
  const char* name;
  bool isNumber = false;
  bool isTime = false;
};

constexpr TypeRow kTypes[] = {
    {kColumnString, "string"},
    {kColumnBoolean, "boolean"},
    {kColumnFloat, "float", true},
    {kColumnDouble, "double", true},
    {kColumnDuration, "duration", false, true},
    {kColumnBlob, "blob"},
    {kColumnUrlText, "url"},
    {kColumnInt, "int", true},
    {kColumnShort, "short", true},
    {kColumnLong, "long", true},
    {kColumnByte, "byte", true},
    {kColumnUnsignedShort, "unsigned short", true},
    {kColumnDateTime, "datetime", false, true},
    {kColumnTime, "time", false, true},
    {kColumnDate, "date", false, true},
    {kColumnUrl, "url"},
};

// A call that succeeds without an object is a failure, too.
void CheckGiven(const void* object) {
  if (object == nullptr) _com_raise_error(E_POINTER);
}

TableColumn ReadColumn(IRecordListHeaders* headers, std::int32_t index) {
  IRecordListHeader* raw = nullptr;
  ThrowIfFailed(headers->GetHeader(index, &raw), headers, IRecordListHeaders::kIid);
  const IRecordListHeaderPtr header(raw, false);
  CheckGiven(raw);
  const auto check = [&header](HRESULT code) { ThrowIfFailed(code, header.get(), IRecordListHeader::kIid); };
  TableColumn column;
  WideString name;
  check(header->GetName(&name));
  WideString displayName;
  check(header->GetDisplayName(&displayName));
  check(header->GetType(&column.type));
  column.name = ToUtf8(name);
  column.displayName = ToUtf8(displayName.IsNull() ? name : displayName);
  return column;
}

IRecordListRecordPtr NextRecord(IRecordListCursor* cursor) {
  IUnknown* raw = nullptr;
  ThrowIfFailed(cursor->Next(&raw), cursor, IRecordListCursor::kIid);
  const boost::intrusive_ptr<IUnknown> row(raw, false);
  return As<IRecordListRecord>(row);
}

// The text of a date in the form of its column; nothing where the value decides.
std::optional<std::string> DateCellText(const Variant& cell, std::int32_t columnType) {
  if (cell.Tag() != VT_DATE) return std::nullopt;
  const double serial = cell.Data().date;
  std::optional<std::string> point = SerialDateTimeText(serial);
  if (columnType == kColumnDateTime) return point;
  if (columnType == kColumnDate && point && serial == std::trunc(serial)) return point->substr(0, 10);
  return std::nullopt;
}

}  // namespace

std::string ColumnTypeName(std::int32_t type) {
  for (const TypeRow& row : kTypes)
    if (row.type == type) return row.name;
  return "unknown";
}

bool IsNumberColumn(std::int32_t type) {
  for (const TypeRow& row : kTypes)
    if (row.type == type) return row.isNumber;
  return false;
}

bool IsTimeColumn(std::int32_t type) {
  for (const TypeRow& row : kTypes)
    if (row.type == type) return row.isTime;
  return false;
}

std::string CellText(const Variant& cell, std::int32_t columnType) {
  const std::optional<std::string> date = DateCellText(cell, columnType);
  return date ? *date : ValueText(cell);
}

std::string CellJson(const Variant& cell, std::int32_t columnType) {
  const std::optional<std::string> date = DateCellText(cell, columnType);
  return date ? "\"" + *date + "\"" : ValueJsonText(cell);
}

RecordTable::RecordTable(IRecordListPtr list) : list_(std::move(list)) {
  ReadColumns();
  IRecordListCursor* raw = nullptr;
  ThrowIfFailed(list_->OpenCursor(VARIANT_TRUE, &raw), list_.get(), IRecordList::kIid);
  cursor_ = IRecordListCursorPtr(raw, false);
  CheckGiven(raw);
}

void RecordTable::ReadColumns() {
  IRecordListHeaders* raw = nullptr;
  ThrowIfFailed(list_->GetHeaders(&raw), list_.get(), IRecordList::kIid);
  const IRecordListHeadersPtr headers(raw, false);
  CheckGiven(raw);
  std::int32_t count = 0;
  ThrowIfFailed(headers->GetCount(&count), headers.get(), IRecordListHeaders::kIid);
  for (std::int32_t i = 0; i < count; ++i) columns_.push_back(ReadColumn(headers.get(), i));
}

bool RecordTable::Next(std::vector<Variant>& cells) {
  VARIANT_BOOL more = VARIANT_FALSE;
  ThrowIfFailed(cursor_->HasMore(&more), cursor_.get(), IRecordListCursor::kIid);
  if (more == VARIANT_FALSE) return false;
  const IRecordListRecordPtr record = NextRecord(cursor_.get());
  if (!record) _com_raise_error(E_NOINTERFACE);
  cells.assign(columns_.size(), Variant());
  for (std::size_t i = 0; i < columns_.size(); ++i)
    ThrowIfFailed(record->GetValue(static_cast<std::int32_t>(i), &cells[i]), record.get(),
                  IRecordListRecord::kIid);
  return true;
}

}  // namespace qv::cli
