#include "components/recordlist/list_helpers.h"

#include <gtest/gtest.h>

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"

namespace qv {

IRecordListPtr NewList() {
  void* made = nullptr;
  EXPECT_EQ(CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IRecordList::kIid, &made), S_OK);
  return IRecordListPtr(static_cast<IRecordList*>(made), false);
}

IRecordListHeadersPtr ColumnsOf(const IRecordListPtr& list) {
  IRecordListHeaders* columns = nullptr;
  EXPECT_EQ(list->GetHeaders(&columns), S_OK);
  return IRecordListHeadersPtr(columns, false);
}

IRecordListHeaderPtr AddColumn(const IRecordListPtr& list, const WideString& name, std::int32_t columnType) {
  IRecordListHeader* column = nullptr;
  EXPECT_EQ(ColumnsOf(list)->AddHeader(name, columnType, &column), S_OK);
  return IRecordListHeaderPtr(column, false);
}

void AddColumns(const IRecordListPtr& list, int count) {
  const IRecordListHeadersPtr columns = ColumnsOf(list);
  for (int i = 0; i < count; ++i) ASSERT_EQ(columns->AddHeader(u"c", kColumnInt, nullptr), S_OK);
}

IRecordListHeaderPtr ColumnAt(const IRecordListPtr& list, std::int32_t index) {
  IRecordListHeader* column = nullptr;
  EXPECT_EQ(ColumnsOf(list)->GetHeader(index, &column), S_OK);
  return IRecordListHeaderPtr(column, false);
}

std::int32_t ColumnCount(const IRecordListPtr& list) {
  std::int32_t count = -1;
  EXPECT_EQ(ColumnsOf(list)->GetCount(&count), S_OK);
  return count;
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

IRecordListCursorPtr Open(const IRecordListPtr& list) {
  IRecordListCursor* cursor = nullptr;
  EXPECT_EQ(list->OpenCursor(VARIANT_TRUE, &cursor), S_OK);
  return IRecordListCursorPtr(cursor, false);
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
