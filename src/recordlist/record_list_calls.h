// The operations of a record list that the reader and the writer use, as functions that throw: `_com_error`
// with the list's code, and its message if there is one; E_POINTER for a null argument or result.
#pragma once

#include <cstdint>

#include "qvscriptwells/record_list.h"

namespace qv {

IRecordListHeadersPtr HeadersOf(IRecordList* list);
IRecordListHeadersPtr HeadersOf(IRecordListRecord* record);
IRecordListHeaderPtr HeaderAt(IRecordListHeaders* headers, std::int32_t index);
std::int32_t CountOf(IRecordListHeaders* headers);
std::int32_t TypeOf(IRecordListHeader* header);
WideString NameOf(IRecordListHeader* header);
WideString DisplayNameOf(IRecordListHeader* header);
Variant ValueOf(IRecordListRecord* record, std::int32_t index);

void AddColumn(IRecordListHeaders* headers, const WideString& name, std::int32_t columnType);
IRecordListRecordPtr NewRecordOf(IRecordList* list);
void SetValueOf(IRecordListRecord* record, std::int32_t index, const Variant& value);

IRecordListCursorPtr CursorOf(IRecordList* list);
bool HasMore(IRecordListCursor* cursor);
// Null for a row without that interface.
IRecordListRecordPtr NextOf(IRecordListCursor* cursor);

void Lock(IRecordList* list, bool locked);
void Lock(IRecordListHeaders* headers, bool locked);
void Lock(IRecordListRecord* record, bool locked);

}  // namespace qv
