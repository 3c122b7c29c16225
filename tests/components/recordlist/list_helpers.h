// Record lists of the built-in class, and short ways to call them. Each helper expects success.
#pragma once

#include <string>

#include "fixtures/variant_makers.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/record_list.h"

namespace qv {

IRecordListPtr NewList();
IRecordListHeadersPtr ColumnsOf(const IRecordListPtr& list);
IRecordListHeaderPtr AddColumn(const IRecordListPtr& list, const WideString& name,
                               std::int32_t columnType = kColumnString);
void AddColumns(const IRecordListPtr& list, int count);
IRecordListHeaderPtr ColumnAt(const IRecordListPtr& list, std::int32_t index);
std::int32_t ColumnCount(const IRecordListPtr& list);
std::string NameOf(const IRecordListHeaderPtr& column);
std::string DisplayNameOf(const IRecordListHeaderPtr& column);
std::int32_t TypeOf(const IRecordListHeaderPtr& column);

IRecordListRecordPtr NewRow(const IRecordListPtr& list);
// The same after adding `columns` columns.
IRecordListRecordPtr NewRow(const IRecordListPtr& list, int columns);
// Adds a column, and a row for each number from 1 to `count`.
void AddNumbers(const IRecordListPtr& list, int count);
IRecordListCursorPtr Open(const IRecordListPtr& list);
IRecordListRecordPtr NextRow(const IRecordListCursorPtr& cursor);
bool HasMore(const IRecordListCursorPtr& cursor);
int CountRows(const IRecordListPtr& list);

void Put(const IRecordListRecordPtr& row, std::int32_t index, const Variant& value);
Variant ValueAt(const IRecordListRecordPtr& row, std::int32_t index);
// The cells of a row as "1 2 -": whole numbers, "-" for an empty cell, "?" for anything else.
std::string Cells(const IRecordListRecordPtr& row, int count);

// The record of an object reference, which is taken over.
IRecordListRecordPtr AsRecord(IUnknown* owned);

}  // namespace qv
