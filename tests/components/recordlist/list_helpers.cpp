#include "components/recordlist/list_helpers.h"

#include <gtest/gtest.h>

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"

namespace qv {

IRecordListPtr NewList() {
  IRecordListPtr list;
  EXPECT_EQ(CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IRecordList::kIid, Put(list)), S_OK);
  return list;
}

IRecordListHeadersPtr ColumnsOf(const IRecordListPtr& list) {
  IRecordListHeadersPtr columns;
  EXPECT_EQ(list->GetHeaders(Put(columns)), S_OK);
  return columns;
}

IRecordListHeaderPtr AddColumn(const IRecordListPtr& list, const WideString& name, std::int32_t columnType) {
  IRecordListHeaderPtr column;
  EXPECT_EQ(ColumnsOf(list)->AddHeader(name, columnType, Put(column)), S_OK);
  return column;
}

void AddColumns(const IRecordListPtr& list, int count) {
  const IRecordListHeadersPtr columns = ColumnsOf(list);
  for (int i = 0; i < count; ++i) ASSERT_EQ(columns->AddHeader(u"c", kColumnInt, nullptr), S_OK);
}

IRecordListHeaderPtr ColumnAt(const IRecordListPtr& list, std::int32_t index) {
  IRecordListHeaderPtr column;
  EXPECT_EQ(ColumnsOf(list)->GetHeader(index, Put(column)), S_OK);
  return column;
}

std::int32_t ColumnCount(const IRecordListPtr& list) {
  std::int32_t count = -1;
  EXPECT_EQ(ColumnsOf(list)->GetCount(&count), S_OK);
  return count;
}

std::string NameOf(const IRecordListHeaderPtr& column) {
  WideString name = u"before";
  EXPECT_EQ(column->GetName(&name), S_OK);
  return Shown(name);
}

std::string DisplayNameOf(const IRecordListHeaderPtr& column) {
  WideString name = u"before";
  EXPECT_EQ(column->GetDisplayName(&name), S_OK);
  return Shown(name);
}

std::int32_t TypeOf(const IRecordListHeaderPtr& column) {
  std::int32_t type = -77;
  EXPECT_EQ(column->GetType(&type), S_OK);
  return type;
}

IRecordListRecordPtr AsRecord(IUnknown* owned) {
  const IUnknownPtr object(owned, false);
  EXPECT_NE(object, nullptr);
  return As<IRecordListRecord>(object);
}

IRecordListRecordPtr NewRow(const IRecordListPtr& list) {
  IUnknown* record = nullptr;
  EXPECT_EQ(list->NewRecord(&record), S_OK);
  return AsRecord(record);
}

IRecordListRecordPtr NewRow(const IRecordListPtr& list, int columns) {
  AddColumns(list, columns);
  return NewRow(list);
}

void AddNumbers(const IRecordListPtr& list, int count) {
  AddColumns(list, 1);
  for (int i = 1; i <= count; ++i) Put(NewRow(list), 0, Int(i));
}

IRecordListCursorPtr Open(const IRecordListPtr& list) {
  IRecordListCursorPtr cursor;
  EXPECT_EQ(list->OpenCursor(VARIANT_TRUE, Put(cursor)), S_OK);
  return cursor;
}

IRecordListRecordPtr NextRow(const IRecordListCursorPtr& cursor) {
  IUnknown* record = nullptr;
  EXPECT_EQ(cursor->Next(&record), S_OK);
  return AsRecord(record);
}

bool HasMore(const IRecordListCursorPtr& cursor) {
  VARIANT_BOOL more = 7;
  EXPECT_EQ(cursor->HasMore(&more), S_OK);
  EXPECT_TRUE(more == VARIANT_TRUE || more == VARIANT_FALSE) << more;
  return more != VARIANT_FALSE;
}

int CountRows(const IRecordListPtr& list) {
  const IRecordListCursorPtr cursor = Open(list);
  int rows = 0;
  for (; HasMore(cursor); ++rows) NextRow(cursor);
  return rows;
}

void Put(const IRecordListRecordPtr& row, std::int32_t index, const Variant& value) {
  EXPECT_EQ(row->SetValue(index, value), S_OK);
}

Variant ValueAt(const IRecordListRecordPtr& row, std::int32_t index) {
  Variant value = Variant::Null();
  EXPECT_EQ(row->GetValue(index, &value), S_OK);
  return value;
}

std::string Cells(const IRecordListRecordPtr& row, int count) {
  std::string shown;
  for (int i = 0; i < count; ++i) {
    const Variant value = ValueAt(row, i);
    const std::string text = value.Tag() == VT_INT     ? std::to_string(value.Data().intVal)
                             : value.Tag() == VT_EMPTY ? "-"
                                                       : "?";
    shown += (i == 0 ? "" : " ") + text;
  }
  return shown;
}

}  // namespace qv
