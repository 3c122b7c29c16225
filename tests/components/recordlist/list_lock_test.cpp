// Which lock refuses which change.
#include <gtest/gtest.h>

#include "components/recordlist/list_helpers.h"

namespace qv {
namespace {

class ListLock : public testing::Test {
 protected:
  ListLock() : list_(NewList()), columns_(ColumnsOf(list_)), column_(AddColumn(list_, u"a")) {
    row_ = NewRow(list_);
    otherRow_ = NewRow(list_);
    Put(row_, 0, Variant::FromInt(1));
    ClearErrorInfo();
  }
  void TearDown() override { ClearErrorInfo(); }

  // Each change as "done" or the words of its refusal, which must have changed nothing.
  std::string ByNewRecord() {
    const int before = CountRows(list_);
    IUnknown* record = row_.get();
    const HRESULT code = list_->NewRecord(&record);
    const std::string shown = Outcome(code);
    EXPECT_EQ(record == nullptr, Failed(code));
    if (Succeeded(code)) record->Release();
    EXPECT_EQ(CountRows(list_), before + (Succeeded(code) ? 1 : 0));
    return shown;
  }
  std::string ByAddHeader() {
    const std::int32_t before = ColumnCount(list_);
    IRecordListHeader* added = column_.get();
    const HRESULT code = columns_->AddHeader(u"b", kColumnInt, &added);
    const std::string shown = Outcome(code);
    EXPECT_EQ(added == nullptr, Failed(code));
    if (Succeeded(code)) added->Release();
    EXPECT_EQ(ColumnCount(list_), before + (Succeeded(code) ? 1 : 0));
    return shown;
  }
  std::string BySetDisplayName() {
    WideString before;
    EXPECT_EQ(column_->GetDisplayName(&before), S_OK);
    const WideString name = Shown(before) == "one" ? u"two" : u"one";
    const HRESULT code = column_->SetDisplayName(name);
    const std::string shown = Outcome(code);
    WideString after;
    EXPECT_EQ(column_->GetDisplayName(&after), S_OK);
    EXPECT_EQ(Shown(after), Shown(Succeeded(code) ? name : before));
    return shown;
  }
  std::string BySetValue(const IRecordListRecordPtr& row) {
    const std::int32_t before = ValueAt(row, 0).Data().intVal;
    const HRESULT code = row->SetValue(0, Variant::FromInt(before + 1));
    const std::string shown = Outcome(code);
    EXPECT_EQ(ValueAt(row, 0).Data().intVal, before + (Succeeded(code) ? 1 : 0));
    return shown;
  }
  static std::string Outcome(HRESULT code) {
    if (code == S_OK) return "done";
    EXPECT_EQ(code, E_ACCESSDENIED);
    return TakenWords();
  }

  IRecordListPtr list_;
  IRecordListHeadersPtr columns_;
  IRecordListHeaderPtr column_;
  IRecordListRecordPtr row_;
  IRecordListRecordPtr otherRow_;
};

TEST_F(ListLock, AllBeginUnlocked) {
  EXPECT_EQ(ByNewRecord(), "done");
  EXPECT_EQ(ByAddHeader(), "done");
  EXPECT_EQ(BySetDisplayName(), "done");
  EXPECT_EQ(BySetValue(row_), "done");
}

TEST_F(ListLock, LockedListIsClosedAsAWhole) {
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(ByNewRecord(), "The record list is locked.");
  EXPECT_EQ(ByAddHeader(), "The record list is locked.");
  EXPECT_EQ(BySetDisplayName(), "The record list is locked.");
  EXPECT_EQ(BySetValue(row_), "The record list is locked.");
}

TEST_F(ListLock, LockedColumnsRefuseNewColumnsAndDisplayNames) {
  EXPECT_EQ(columns_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(ByAddHeader(), "The columns are locked.");
  EXPECT_EQ(BySetDisplayName(), "The columns are locked.");
  EXPECT_EQ(ByNewRecord(), "done");
  EXPECT_EQ(BySetValue(row_), "done");
}

TEST_F(ListLock, LockedRecordRefusesNewValues) {
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(BySetValue(row_), "The record is locked.");
  EXPECT_EQ(BySetValue(otherRow_), "done");
  EXPECT_EQ(ByNewRecord(), "done");
  EXPECT_EQ(ByAddHeader(), "done");
  EXPECT_EQ(BySetDisplayName(), "done");
}

TEST_F(ListLock, LocksOpenAgain) {
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(columns_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(ByNewRecord(), "done");
  EXPECT_EQ(ByAddHeader(), "The columns are locked.");
  EXPECT_EQ(BySetValue(row_), "The record is locked.");
  EXPECT_EQ(columns_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(ByAddHeader(), "done");
  EXPECT_EQ(BySetDisplayName(), "done");
  EXPECT_EQ(row_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(BySetValue(row_), "done");
}

// A reader locks the list first and its columns afterwards.
TEST_F(ListLock, LocksOfALockedListAreStillSwitched) {
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(columns_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(otherRow_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(otherRow_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(BySetValue(otherRow_), "The record list is locked.");
  EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(BySetValue(otherRow_), "done");
  EXPECT_EQ(BySetValue(row_), "The record is locked.");
  EXPECT_EQ(BySetDisplayName(), "The columns are locked.");
}

TEST_F(ListLock, EachValueButZeroLocks) {
  for (const VARIANT_BOOL locked : {VARIANT_BOOL{-1}, VARIANT_BOOL{1}, VARIANT_BOOL{256}}) {
    EXPECT_EQ(row_->SetLocked(locked), S_OK);
    EXPECT_EQ(BySetValue(row_), "The record is locked.") << locked;
    EXPECT_EQ(row_->SetLocked(VARIANT_FALSE), S_OK);
    EXPECT_EQ(columns_->SetLocked(locked), S_OK);
    EXPECT_EQ(ByAddHeader(), "The columns are locked.") << locked;
    EXPECT_EQ(columns_->SetLocked(VARIANT_FALSE), S_OK);
    EXPECT_EQ(list_->SetLocked(locked), S_OK);
    EXPECT_EQ(ByNewRecord(), "The record list is locked.") << locked;
    EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  }
}

TEST_F(ListLock, LockedTwiceOpensAtOnce) {
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(ByNewRecord(), "done");
}

TEST_F(ListLock, TwoObjectsForOneRowShareItsLock) {
  const IRecordListCursorPtr cursor = Open(list_);
  const IRecordListRecordPtr same = NextRow(cursor);
  EXPECT_EQ(same->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(BySetValue(row_), "The record is locked.");
  EXPECT_EQ(row_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(BySetValue(same), "done");
}

TEST_F(ListLock, LockOfARowIsKeptWhenNobodyHoldsTheRow) {
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  row_.reset();
  AddColumn(list_, u"later");
  EXPECT_EQ(BySetValue(NextRow(Open(list_))), "The record is locked.");
}

TEST_F(ListLock, RowsOfALongListHaveLocksOfTheirOwn) {
  for (int i = 2; i < 300; ++i) NewRow(list_);
  const IRecordListCursorPtr lockingCursor = Open(list_);
  for (int i = 0; i < 300; ++i)
    if (i % 7 == 3) {
      EXPECT_EQ(NextRow(lockingCursor)->SetLocked(VARIANT_TRUE), S_OK);
    } else {
      NextRow(lockingCursor);
    }
  const IRecordListCursorPtr cursor = Open(list_);
  for (int i = 0; i < 300; ++i)
    EXPECT_EQ(BySetValue(NextRow(cursor)), i % 7 == 3 ? "The record is locked." : "done") << i;
}

TEST_F(ListLock, LockedListIsReadAsBefore) {
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(columns_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(ColumnCount(list_), 1);
  EXPECT_EQ(CountRows(list_), 2);
  EXPECT_EQ(Cells(NextRow(Open(list_)), 1), "1");
  WideString name;
  EXPECT_EQ(ColumnAt(list_, 0)->GetName(&name), S_OK);
  EXPECT_EQ(Shown(name), "a");
}

// What is locked is told before what else is wrong with a change.
TEST_F(ListLock, LockIsToldFirst) {
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(row_->SetValue(5, Variant::FromInt(1)), E_ACCESSDENIED);
  EXPECT_EQ(row_->SetValue(0, Variant::FromRaw(0x77, VariantData())), E_ACCESSDENIED);
}

}  // namespace
}  // namespace qv
