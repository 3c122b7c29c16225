// The error record of the thread after operations of a record list.
#include "components/recordlist/record_list_fixture.h"

#include <functional>

#include "qvscriptwells/com_call.h"

namespace qv {
namespace {

TEST_F(RecordList, NullOutputParametersAreRefusedAndNothingIsChanged) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  const IRecordListCursorPtr cursor = Open(list_);
  const IRecordListHeaderPtr column = ColumnAt(list_, 0);
  const IRecordListHeadersPtr columns = ColumnsOf(list_);
  const std::function<HRESULT()> operations[] = {
      [&] { return list_->NewRecord(nullptr); },
      [&] { return list_->GetHeaders(nullptr); },
      [&] { return list_->OpenCursor(VARIANT_TRUE, nullptr); },
      [&] { return columns->GetHeader(0, nullptr); },
      [&] { return columns->GetCount(nullptr); },
      [&] { return column->GetName(nullptr); },
      [&] { return column->GetDisplayName(nullptr); },
      [&] { return column->GetType(nullptr); },
      [&] { return row->GetValue(0, nullptr); },
      [&] { return row->GetHeaders(nullptr); },
      [&] { return cursor->HasMore(nullptr); },
      [&] { return cursor->Next(nullptr); },
  };
  int number = 0;
  for (const std::function<HRESULT()>& operation : operations) {
    SCOPED_TRACE(++number);
    EXPECT_EQ(operation(), E_POINTER);
    EXPECT_EQ(TakenWords(), "There is no place for the answer.");
  }
  EXPECT_EQ(CountRows(list_), 1);
  EXPECT_TRUE(HasMore(cursor));
}

TEST_F(RecordList, EachOperationClearsTheStaleRecord) {
  IRecordListHeadersPtr columns = ColumnsOf(list_);
  IRecordListHeaderPtr column = AddColumn(list_, u"a");
  const IRecordListRecordPtr row = NewRow(list_);
  const IRecordListCursorPtr cursor = Open(list_);
  WideString text;
  std::int32_t number = 0;
  VARIANT_BOOL more = VARIANT_FALSE;
  Variant value;
  IUnknownPtr record;
  IRecordListCursorPtr otherCursor;
  const std::function<HRESULT()> operations[] = {
      [&] { return list_->NewRecord(Put(record)); },
      [&] { return list_->GetHeaders(Put(columns)); },
      [&] { return list_->OpenCursor(VARIANT_TRUE, Put(otherCursor)); },
      [&] { return list_->SetLocked(VARIANT_FALSE); },
      [&] { return columns->AddHeader(u"b", kColumnInt, nullptr); },
      [&] { return columns->GetHeader(0, Put(column)); },
      [&] { return columns->GetCount(&number); },
      [&] { return columns->SetLocked(VARIANT_FALSE); },
      [&] { return column->GetDisplayName(&text); },
      [&] { return column->SetDisplayName(u"d"); },
      [&] { return column->GetName(&text); },
      [&] { return column->GetType(&number); },
      [&] { return row->GetValue(0, &value); },
      [&] { return row->SetValue(0, value); },
      [&] { return row->GetHeaders(Put(columns)); },
      [&] { return row->SetLocked(VARIANT_FALSE); },
      [&] { return cursor->HasMore(&more); },
      [&] { return cursor->Next(Put(record)); },
  };
  int place = 0;
  for (const std::function<HRESULT()>& operation : operations) {
    SCOPED_TRACE(++place);
    LeaveStaleRecord();
    EXPECT_EQ(operation(), S_OK);
    EXPECT_EQ(TakenWords(), "no record");
  }
}

}  // namespace
}  // namespace qv
