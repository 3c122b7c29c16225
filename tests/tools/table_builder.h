// Tables of the library's own class, as a script's answer would hold them.
#pragma once

#include <vector>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv::cli::testing {

struct BuiltColumn {
  const char16_t* name;
  std::int32_t type;
  const char16_t* displayName = nullptr;  // null: none is set
};

using BuiltRow = std::vector<Variant>;

inline void AddBuiltColumn(IRecordListHeaders* headers, const BuiltColumn& column) {
  IRecordListHeader* raw = nullptr;
  ThrowIfFailed(headers->AddHeader(column.name, column.type, &raw));
  const IRecordListHeaderPtr header(raw, false);
  if (column.displayName != nullptr) ThrowIfFailed(header->SetDisplayName(column.displayName));
}

// A VT_EMPTY is a cell that was never set.
inline void AddBuiltRow(IRecordList* list, const BuiltRow& row) {
  IUnknown* raw = nullptr;
  ThrowIfFailed(list->NewRecord(&raw));
  const boost::intrusive_ptr<IUnknown> object(raw, false);
  const IRecordListRecordPtr record = As<IRecordListRecord>(object);
  for (std::size_t i = 0; i < row.size(); ++i)
    if (row[i].Tag() != VT_EMPTY) ThrowIfFailed(record->SetValue(static_cast<std::int32_t>(i), row[i]));
}

inline IRecordListPtr BuildTable(const std::vector<BuiltColumn>& columns, const std::vector<BuiltRow>& rows) {
  IRecordListPtr list = CreateRecordList();
  IRecordListHeaders* raw = nullptr;
  ThrowIfFailed(list->GetHeaders(&raw));
  const IRecordListHeadersPtr headers(raw, false);
  for (const BuiltColumn& column : columns) AddBuiltColumn(headers.get(), column);
  for (const BuiltRow& row : rows) AddBuiltRow(list.get(), row);
  return list;
}

}  // namespace qv::cli::testing
