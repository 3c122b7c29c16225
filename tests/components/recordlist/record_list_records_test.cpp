// What operations of a record list leave behind on the thread.
#include "components/recordlist/record_list_fixture.h"

#include <functional>

#include "qvscriptwells/class_registry.h"

namespace qv {
namespace {

TEST_F(RecordList, MissingPlacesAreRefusedAndNothingIsChanged) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  const IRecordListCursorPtr cursor = Open(list_);
  const IRecordListHeaderPtr column = ColumnAt(list_, 0);
  const IRecordListHeadersPtr columns = ColumnsOf(list_);
  const HRESULT codes[] = {
      list_->NewRecord(nullptr),       list_->GetHeaders(nullptr), list_->OpenCursor(VARIANT_TRUE, nullptr),
      columns->GetHeader(0, nullptr),  columns->GetCount(nullptr), column->GetName(nullptr),
      column->GetDisplayName(nullptr), column->GetType(nullptr),   row->GetValue(0, nullptr),
      row->GetHeaders(nullptr),        cursor->HasMore(nullptr),   cursor->Next(nullptr)};
  for (const HRESULT code : codes) EXPECT_EQ(code, E_POINTER);
  EXPECT_EQ(TakenWords(), "There is no place for the answer.");
  EXPECT_EQ(CountRows(list_), 1);
  EXPECT_TRUE(HasMore(cursor));
}

TEST_F(RecordList, EachMissingPlaceLeavesARecord) {
  const IRecordListHeaderPtr column = AddColumn(list_, u"a");
  const std::string words = "There is no place for the answer.";
  EXPECT_EQ(list_->NewRecord(nullptr), E_POINTER);
  EXPECT_EQ(TakenWords(), words);
  EXPECT_EQ(list_->GetHeaders(nullptr), E_POINTER);
  EXPECT_EQ(TakenWords(), words);
  EXPECT_EQ(list_->OpenCursor(VARIANT_TRUE, nullptr), E_POINTER);
  EXPECT_EQ(TakenWords(), words);
  EXPECT_EQ(column->GetName(nullptr), E_POINTER);
  EXPECT_EQ(TakenWords(), words);
  EXPECT_EQ(NewRow(list_)->GetHeaders(nullptr), E_POINTER);
  EXPECT_EQ(TakenWords(), words);
  EXPECT_EQ(Open(list_)->HasMore(nullptr), E_POINTER);
  EXPECT_EQ(TakenWords(), words);
}

TEST_F(RecordList, EachOperationClearsTheStaleRecord) {
  const IRecordListHeadersPtr columns = ColumnsOf(list_);
  const IRecordListHeaderPtr column = AddColumn(list_, u"a");
  const IRecordListRecordPtr row = NewRow(list_);
  const IRecordListCursorPtr cursor = Open(list_);
  WideString text;
  std::int32_t number = 0;
  VARIANT_BOOL more = VARIANT_FALSE;
  Variant value;
  IUnknown* record = nullptr;
  IRecordListHeaders* sameColumns = nullptr;
  IRecordListHeader* sameColumn = nullptr;
  IRecordListCursor* otherCursor = nullptr;
  const std::function<HRESULT()> operations[] = {
      [&] {
        const HRESULT code = list_->NewRecord(&record);
        record->Release();
        return code;
      },
      [&] {
        const HRESULT code = list_->GetHeaders(&sameColumns);
        sameColumns->Release();
        return code;
      },
      [&] {
        const HRESULT code = list_->OpenCursor(VARIANT_TRUE, &otherCursor);
        otherCursor->Release();
        return code;
      },
      [&] { return list_->SetLocked(VARIANT_FALSE); },
      [&] { return columns->AddHeader(u"b", kColumnInt, nullptr); },
      [&] {
        const HRESULT code = columns->GetHeader(0, &sameColumn);
        sameColumn->Release();
        return code;
      },
      [&] { return columns->GetCount(&number); },
      [&] { return columns->SetLocked(VARIANT_FALSE); },
      [&] { return column->GetDisplayName(&text); },
      [&] { return column->SetDisplayName(u"d"); },
      [&] { return column->GetName(&text); },
      [&] { return column->GetType(&number); },
      [&] { return row->GetValue(0, &value); },
      [&] { return row->SetValue(0, value); },
      [&] {
        const HRESULT code = row->GetHeaders(&sameColumns);
        sameColumns->Release();
        return code;
      },
      [&] { return row->SetLocked(VARIANT_FALSE); },
      [&] { return cursor->HasMore(&more); },
      [&] {
        const HRESULT code = cursor->Next(&record);
        record->Release();
        return code;
      },
  };
  int place = 0;
  for (const std::function<HRESULT()>& operation : operations) {
    LeaveStaleRecord();
    EXPECT_EQ(operation(), S_OK) << place;
    EXPECT_EQ(TakenWords(), "no record") << place;
    ++place;
  }
}

}  // namespace
}  // namespace qv
