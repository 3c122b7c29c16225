// Who keeps whom alive, and what objects in the cells may do when they are released.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "com/module.h"
#include "components/recordlist/list_helpers.h"
#include "fixtures/calling_object.h"
#include "fixtures/counting_object.h"
#include "qvscriptwells/com_call.h"

namespace qv {
namespace {

Variant WithLastCall(CallingObject::Call call) {
  auto* const object = new CallingObject;
  object->OnEnd(std::move(call));
  return Variant::FromObject(object);
}
Variant Counted() {
  return Variant::FromObject(new CountingObject);
}

class ListOwnership : public testing::Test {
 protected:
  void TearDown() override {
    list_.reset();
    EXPECT_EQ(CountingObject::Live(), 0);
    EXPECT_EQ(CallingObject::Live(), 0);
    ClearErrorInfo();
  }

  // A list of one column and three rows with a counted object in each.
  void FillThree() {
    AddColumns(list_, 1);
    for (int i = 0; i < 3; ++i) Put(NewRow(list_), 0, Counted());
  }

  // A list with a counted object, its columns, a column, both objects of its row, and a cursor.
  static std::vector<IUnknownPtr> PartsOfAList() {
    const IRecordListPtr list = NewList();
    const IRecordListHeaderPtr column = AddColumn(list, u"a");
    const IRecordListRecordPtr made = NewRow(list);
    Put(made, 0, Counted());
    const IRecordListCursorPtr cursor = Open(list);
    return {list, ColumnsOf(list), column, made, cursor, NextRow(cursor)};
  }

  IRecordListPtr list_ = NewList();
};

TEST_F(ListOwnership, ValuesGoWithTheList) {
  FillThree();
  EXPECT_EQ(CountingObject::Live(), 3);
  list_.reset();
  EXPECT_EQ(CountingObject::Live(), 0);
}

TEST_F(ListOwnership, PartsKeepTheListInEveryOrderOfGoing) {
  std::vector<int> order = {0, 1, 2, 3, 4, 5};
  do {
    std::vector<IUnknownPtr> parts = PartsOfAList();
    for (const int part : order) {
      EXPECT_EQ(CountingObject::Live(), 1);
      parts[static_cast<std::size_t>(part)].reset();
    }
    ASSERT_EQ(CountingObject::Live(), 0);
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(ListOwnership, CursorAloneStillGoesOverTheRows) {
  FillThree();
  const IRecordListCursorPtr cursor = Open(list_);
  list_.reset();
  int rows = 0;
  for (; HasMore(cursor); ++rows) EXPECT_NE(ValueAt(NextRow(cursor), 0).Object(), nullptr);
  EXPECT_EQ(rows, 3);
}

TEST_F(ListOwnership, RecordAloneStillTakesValuesAndLeadsToTheColumns) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  list_.reset();
  Put(row, 0, Int(4));
  EXPECT_EQ(Cells(row, 1), "4");
  IRecordListHeadersPtr columns;
  ASSERT_EQ(row->GetHeaders(Put(columns)), S_OK);
  EXPECT_EQ(columns->AddHeader(u"b", kColumnInt, nullptr), S_OK);
  EXPECT_EQ(Cells(row, 2), "4 -");
}

TEST_F(ListOwnership, ColumnAloneStillHasItsNameAndTheNameOutlivesIt) {
  IRecordListHeaderPtr column = AddColumn(list_, u"name");
  list_.reset();
  WideString name;
  EXPECT_EQ(column->GetName(&name), S_OK);
  EXPECT_EQ(column->SetDisplayName(u"d"), S_OK);
  column.reset();
  EXPECT_EQ(Shown(name), "name");
}

TEST_F(ListOwnership, ColumnsAloneStillTakeColumns) {
  const IRecordListHeadersPtr columns = ColumnsOf(list_);
  list_.reset();
  EXPECT_EQ(columns->AddHeader(u"a", kColumnInt, nullptr), S_OK);
  std::int32_t count = -1;
  EXPECT_EQ(columns->GetCount(&count), S_OK);
  EXPECT_EQ(count, 1);
}

TEST_F(ListOwnership, ListInItsOwnCellIsNeverFreedByItself) {
  IRecordListRecordPtr row = NewRow(list_, 2);
  Put(row, 0, Counted());
  Put(row, 1, Variant::FromObject(list_.get()));
  IRecordListCursor* const cursor = Open(list_).detach();
  list_.reset();
  row.reset();
  IUnknown* record = nullptr;
  EXPECT_EQ(cursor->Next(&record), S_OK);
  cursor->Release();
  const IRecordListRecordPtr again = AsRecord(record);
  EXPECT_EQ(CountingObject::Live(), 1);
  list_ = IRecordListPtr(static_cast<IRecordList*>(ValueAt(again, 1).Object()));
  Put(again, 1, Variant());  // the ring is broken, for the test's sake
}

TEST_F(ListOwnership, ReplacedObjectMayReadAndChangeTheList) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  IRecordListRecord* const raw = row.get();
  std::string seen;
  Put(row, 0, WithLastCall([&] {
        seen = Cells(row, 1);
        AddColumns(list_, 3);
        NewRow(list_);
        EXPECT_EQ(raw->SetValue(1, Int(21)), S_OK);
      }));
  Put(row, 0, Int(5));
  EXPECT_EQ(seen, "5");
  EXPECT_EQ(Cells(row, 4), "5 21 - -");
  EXPECT_EQ(CountRows(list_), 2);
}

TEST_F(ListOwnership, ReplacedObjectMayReplaceTheValueOnceMore) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  Put(row, 0, WithLastCall([&] { Put(row, 0, Counted()); }));
  Put(row, 0, Int(5));
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_UNKNOWN);
  EXPECT_EQ(CountingObject::Live(), 1);
}

TEST_F(ListOwnership, ReplacedObjectMayHoldTheLastReferences) {
  IRecordListRecordPtr row = NewRow(list_, 1);
  IRecordListRecord* const raw = row.get();
  Put(row, 0, WithLastCall([&] {
        row.reset();
        list_.reset();
      }));
  EXPECT_EQ(raw->SetValue(0, Counted()), S_OK);
  EXPECT_EQ(CountingObject::Live(), 0);
}

TEST_F(ListOwnership, ObjectThatIsReadOverMayChangeTheList) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  Put(row, 0, Int(5));
  Variant place = WithLastCall([&] { AddColumns(list_, 3); });
  EXPECT_EQ(row->GetValue(0, &place), S_OK);
  EXPECT_EQ(place.Data().intVal, 5);
  EXPECT_EQ(Cells(row, 4), "5 - - -");
}

TEST_F(ListOwnership, ObjectMayChangeTheListWhileItIsStored) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  auto* const object = new CallingObject;
  const Variant value = Variant::FromObject(object);
  object->OnAddRef([&] { AddColumns(list_, 3); });
  Put(row, 0, value);
  EXPECT_EQ(ValueAt(row, 0).Object(), object);
}

TEST_F(ListOwnership, ObjectMayReleaseRecordAndListWhileItIsStored) {
  IRecordListRecordPtr row = NewRow(list_, 1);
  IRecordListRecord* const raw = row.get();
  auto* const object = new CallingObject;
  const Variant value = Variant::FromObject(object);
  object->OnAddRef([&] {
    row.reset();
    list_.reset();
  });
  EXPECT_EQ(raw->SetValue(0, value), S_OK);
  EXPECT_EQ(ModuleLocks(), 0) << "the list is still there";
}

TEST_F(ListOwnership, ObjectMayChangeTheListWhileItIsRead) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  auto* const object = new CallingObject;
  Put(row, 0, Variant::FromObject(object));
  object->OnAddRef([&] {
    AddColumns(list_, 3);
    Put(row, 0, Int(5));
  });
  EXPECT_EQ(ValueAt(row, 0).Object(), object);
  EXPECT_EQ(Cells(row, 4), "5 - - -");
}

TEST_F(ListOwnership, ObjectThatLocksTheListWhileItIsStoredIsRefused) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  auto* const object = new CallingObject;
  const Variant value = Variant::FromObject(object);
  object->OnAddRef([&] { EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK); });
  EXPECT_EQ(row->SetValue(0, value), E_ACCESSDENIED);
  EXPECT_EQ(Cells(row, 1), "-");
}

// A reference that the list holds meanwhile keeps it from ending twice.
TEST_F(ListOwnership, ObjectMayUseTheListThatEnds) {
  AddColumns(list_, 1);
  IRecordList* const raw = list_.get();
  int rows = -1;
  std::int32_t columns = -1;
  Put(NewRow(list_), 0, WithLastCall([&] {
        const IRecordListPtr again(raw);
        rows = CountRows(again);
        columns = ColumnCount(again);
      }));
  Put(NewRow(list_), 0, Counted());
  list_.reset();
  EXPECT_EQ(rows, 0);
  EXPECT_EQ(columns, 1);
}

TEST_F(ListOwnership, RowsThatAreAddedWhileTheListEndsEndToo) {
  AddColumns(list_, 1);
  IRecordList* const raw = list_.get();
  int ended = 0;
  Put(NewRow(list_), 0, WithLastCall([&] {
        const IRecordListPtr again(raw);
        Put(NewRow(again), 0, WithLastCall([&] {
              ++ended;
              EXPECT_EQ(CountRows(IRecordListPtr(raw)), 0);
            }));
        EXPECT_EQ(CountRows(again), 1);
      }));
  list_.reset();
  EXPECT_EQ(ended, 1);
}

TEST_F(ListOwnership, ReferenceThatIsTakenWhileTheListEndsKeepsIt) {
  AddColumns(list_, 1);
  IRecordList* const raw = list_.get();
  IRecordListRecordPtr kept;
  Put(NewRow(list_), 0, WithLastCall([&] {
        kept = NewRow(IRecordListPtr(raw));
        Put(kept, 0, Counted());
      }));
  list_.reset();
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(ValueAt(kept, 0).Tag(), VT_UNKNOWN);
  EXPECT_EQ(CountingObject::Live(), 1);
}

// The record that the object's end leaves on the thread is not that of the failure.
TEST_F(ListOwnership, RefusedValueThatCallsBackLeavesTheMessageOfTheRefusal) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  std::int32_t count = -1;
  {
    const Variant value = WithLastCall([&] { EXPECT_EQ(ColumnsOf(list_)->GetCount(&count), S_OK); });
    EXPECT_EQ(row->SetValue(3, value), DISP_E_BADINDEX);
    EXPECT_EQ(TakenWords(), "There is no column 3; the list has 1.");
    EXPECT_EQ(count, -1);
  }
  EXPECT_EQ(count, 1);
}

// A table may be all that a host holds of a library that it loaded.
TEST_F(ListOwnership, ListAndItsPartsKeepTheLibraryLoaded) {
  const std::int32_t before = ModuleLocks();
  IRecordListPtr list = NewList();
  EXPECT_EQ(ModuleLocks(), before + 1);
  IRecordListHeadersPtr columns = ColumnsOf(list);
  list.reset();
  EXPECT_EQ(ModuleLocks(), before + 1);
  columns.reset();
  EXPECT_EQ(ModuleLocks(), before);
}

}  // namespace
}  // namespace qv
