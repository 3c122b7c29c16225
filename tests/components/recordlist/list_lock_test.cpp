// Which lock refuses which change.
#include <gtest/gtest.h>

#include "components/recordlist/list_helpers.h"

namespace qv {
namespace {

constexpr char kDone[] = "done";
constexpr char kList[] = "The record list is locked.";
constexpr char kColumns[] = "The columns are locked.";
constexpr char kRecord[] = "The record is locked.";

class ListLock : public testing::Test {
 protected:
  ListLock() {
    Put(row_, 0, Int(1));
    ClearErrorInfo();
  }
  void TearDown() override { ClearErrorInfo(); }

  // Each change as "done" or the message of its refusal, which must have changed nothing.
  std::string ByNewRecord() {
    const int before = CountRows(list_);
    IUnknown* record = row_.get();
    const HRESULT code = list_->NewRecord(&record);
    std::string shown = Outcome(code);
    EXPECT_EQ(record == nullptr, Failed(code));
    if (Succeeded(code)) record->Release();
    EXPECT_EQ(CountRows(list_), before + (Succeeded(code) ? 1 : 0));
    return shown;
  }
  std::string ByAddHeader() {
    const std::int32_t before = ColumnCount(list_);
    IRecordListHeader* added = column_.get();
    const HRESULT code = columns_->AddHeader(u"b", kColumnInt, &added);
    std::string shown = Outcome(code);
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
    std::string shown = Outcome(code);
    WideString after;
    EXPECT_EQ(column_->GetDisplayName(&after), S_OK);
    EXPECT_EQ(Shown(after), Shown(Succeeded(code) ? name : before));
    return shown;
  }
  static std::string BySetValue(const IRecordListRecordPtr& row) {
    const std::int32_t before = ValueAt(row, 0).Data().intVal;
    const HRESULT code = row->SetValue(0, Int(before + 1));
    std::string shown = Outcome(code);
    EXPECT_EQ(ValueAt(row, 0).Data().intVal, before + (Succeeded(code) ? 1 : 0));
    return shown;
  }
  void ExpectChanges(const char* newRecord, const char* addHeader, const char* setDisplayName,
                     const char* setValue) {
    EXPECT_EQ(ByNewRecord(), newRecord);
    EXPECT_EQ(ByAddHeader(), addHeader);
    EXPECT_EQ(BySetDisplayName(), setDisplayName);
    EXPECT_EQ(BySetValue(row_), setValue);
  }
  void LockAll() {
    EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
    EXPECT_EQ(columns_->SetLocked(VARIANT_TRUE), S_OK);
    EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  }
  static std::string Outcome(HRESULT code) {
    if (code == S_OK) return kDone;
    EXPECT_EQ(code, E_ACCESSDENIED);
    return TakenWords();
  }

  const IRecordListPtr list_ = NewList();
  const IRecordListHeadersPtr columns_ = ColumnsOf(list_);
  const IRecordListHeaderPtr column_ = AddColumn(list_, u"a");
  IRecordListRecordPtr row_ = NewRow(list_);
  const IRecordListRecordPtr otherRow_ = NewRow(list_);
};

TEST_F(ListLock, AllBeginUnlocked) {
  ExpectChanges(kDone, kDone, kDone, kDone);
}

TEST_F(ListLock, LockedListIsClosedAsAWhole) {
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  ExpectChanges(kList, kList, kList, kList);
}

TEST_F(ListLock, LockedColumnsRefuseNewColumnsAndDisplayNames) {
  EXPECT_EQ(columns_->SetLocked(VARIANT_TRUE), S_OK);
  ExpectChanges(kDone, kColumns, kColumns, kDone);
}

TEST_F(ListLock, LockedRecordRefusesNewValues) {
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(BySetValue(otherRow_), kDone);
  ExpectChanges(kDone, kDone, kDone, kRecord);
}

TEST_F(ListLock, LocksOpenAgain) {
  LockAll();
  EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  ExpectChanges(kDone, kColumns, kColumns, kRecord);
  EXPECT_EQ(columns_->SetLocked(VARIANT_FALSE), S_OK);
  ExpectChanges(kDone, kDone, kDone, kRecord);
  EXPECT_EQ(row_->SetLocked(VARIANT_FALSE), S_OK);
  ExpectChanges(kDone, kDone, kDone, kDone);
}

// A reader locks the list first and its columns afterwards.
TEST_F(ListLock, LocksOfALockedListAreStillSwitched) {
  LockAll();
  EXPECT_EQ(otherRow_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(otherRow_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(BySetValue(otherRow_), kList);
  EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(BySetValue(otherRow_), kDone);
  ExpectChanges(kDone, kColumns, kColumns, kRecord);
}

TEST_F(ListLock, EachValueButZeroLocks) {
  for (const VARIANT_BOOL locked : {VARIANT_BOOL{-1}, VARIANT_BOOL{1}, VARIANT_BOOL{256}}) {
    EXPECT_EQ(row_->SetLocked(locked), S_OK);
    EXPECT_EQ(BySetValue(row_), kRecord) << locked;
    EXPECT_EQ(row_->SetLocked(VARIANT_FALSE), S_OK);
    EXPECT_EQ(columns_->SetLocked(locked), S_OK);
    EXPECT_EQ(ByAddHeader(), kColumns) << locked;
    EXPECT_EQ(columns_->SetLocked(VARIANT_FALSE), S_OK);
    EXPECT_EQ(list_->SetLocked(locked), S_OK);
    EXPECT_EQ(ByNewRecord(), kList) << locked;
    EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  }
}

TEST_F(ListLock, LockedTwiceOpensAtOnce) {
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(list_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(ByNewRecord(), kDone);
}

TEST_F(ListLock, TwoObjectsForOneRowShareItsLock) {
  const IRecordListCursorPtr cursor = Open(list_);
  const IRecordListRecordPtr same = NextRow(cursor);
  EXPECT_EQ(same->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(BySetValue(row_), kRecord);
  EXPECT_EQ(row_->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(BySetValue(same), kDone);
}

TEST_F(ListLock, LockOfARowIsKeptWithoutItsObject) {
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  row_.reset();
  AddColumn(list_, u"later");
  EXPECT_EQ(BySetValue(NextRow(Open(list_))), kRecord);
}

TEST_F(ListLock, EachRowOfALongListHasItsOwnLock) {
  for (int i = 2; i < 300; ++i) NewRow(list_);
  const IRecordListCursorPtr lockingCursor = Open(list_);
  for (int i = 0; i < 300; ++i)
    EXPECT_EQ(NextRow(lockingCursor)->SetLocked(i % 7 == 3 ? VARIANT_TRUE : VARIANT_FALSE), S_OK);
  const IRecordListCursorPtr cursor = Open(list_);
  for (int i = 0; i < 300; ++i) EXPECT_EQ(BySetValue(NextRow(cursor)), i % 7 == 3 ? kRecord : kDone) << i;
}

TEST_F(ListLock, LockedListIsReadAsBefore) {
  LockAll();
  EXPECT_EQ(ColumnCount(list_), 1);
  EXPECT_EQ(CountRows(list_), 2);
  EXPECT_EQ(Cells(NextRow(Open(list_)), 1), "1");
  EXPECT_EQ(NameOf(ColumnAt(list_, 0)), "a");
}

// The lock is reported before anything else that is wrong with a change.
TEST_F(ListLock, LockIsReportedFirst) {
  EXPECT_EQ(row_->SetLocked(VARIANT_TRUE), S_OK);
  EXPECT_EQ(row_->SetValue(5, Int(1)), E_ACCESSDENIED);
  EXPECT_EQ(row_->SetValue(0, Variant::FromRaw(0x77, VariantData())), E_ACCESSDENIED);
}

}  // namespace
}  // namespace qv
