// Who keeps whom alive, and what objects in the cells may do when they go.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "com/module.h"
#include "components/recordlist/list_helpers.h"
#include "fixtures/calling_object.h"
#include "fixtures/counting_object.h"

namespace qv {
namespace {

// Does something when its last reference goes.
class LastWords final : public IUnknown {
 public:
  explicit LastWords(std::function<void()> action) : action_(std::move(action)) {}

  HRESULT QueryInterface(const Guid&, void** object) noexcept override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) {
      action_();
      delete this;
    }
    return left;
  }

 private:
  ~LastWords() = default;
  std::function<void()> action_;
  std::uint32_t references_ = 0;
};

Variant WithLastWords(std::function<void()> action) {
  return Variant::FromObject(new LastWords(std::move(action)));
}
Variant Counted() {
  return Variant::FromObject(new CountingObject);
}

class ListOwnership : public testing::Test {
 protected:
  ListOwnership() : list_(NewList()) {}
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

  IRecordListPtr list_;
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
    const IRecordListPtr list = NewList();
    const IRecordListHeaderPtr column = AddColumn(list, u"a");
    const IRecordListRecordPtr made = NewRow(list);
    Put(made, 0, Counted());
    const IRecordListCursorPtr cursor = Open(list);
    IUnknownPtr parts[] = {list, ColumnsOf(list), column, made, cursor, NextRow(cursor)};
    const_cast<IRecordListPtr&>(list).reset();
    const_cast<IRecordListHeaderPtr&>(column).reset();
    const_cast<IRecordListRecordPtr&>(made).reset();
    const_cast<IRecordListCursorPtr&>(cursor).reset();
    for (const int part : order) {
      EXPECT_EQ(CountingObject::Live(), 1);
      parts[part].reset();
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
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  list_.reset();
  Put(row, 0, Variant::FromInt(4));
  EXPECT_EQ(Cells(row, 1), "4");
  IRecordListHeaders* columns = nullptr;
  ASSERT_EQ(row->GetHeaders(&columns), S_OK);
  const IRecordListHeadersPtr owned(columns, false);
  EXPECT_EQ(columns->AddHeader(u"b", kColumnInt, nullptr), S_OK);
  EXPECT_EQ(Cells(row, 2), "4 -");
}

TEST_F(ListOwnership, ColumnAloneStillHasItsName) {
  const IRecordListHeaderPtr column = AddColumn(list_, u"name");
  list_.reset();
  WideString name;
  EXPECT_EQ(column->GetName(&name), S_OK);
  EXPECT_EQ(Shown(name), "name");
  EXPECT_EQ(column->SetDisplayName(u"d"), S_OK);
}

TEST_F(ListOwnership, ColumnsAloneStillTakeColumns) {
  const IRecordListHeadersPtr columns = ColumnsOf(list_);
  list_.reset();
  EXPECT_EQ(columns->AddHeader(u"a", kColumnInt, nullptr), S_OK);
  std::int32_t count = -1;
  EXPECT_EQ(columns->GetCount(&count), S_OK);
  EXPECT_EQ(count, 1);
}

TEST_F(ListOwnership, NameOutlivesItsColumn) {
  WideString name;
  EXPECT_EQ(AddColumn(list_, u"name")->GetName(&name), S_OK);
  list_.reset();
  EXPECT_EQ(Shown(name), "name");
}

TEST_F(ListOwnership, ListInItsOwnCellIsNeverFreedByItself) {
  AddColumns(list_, 2);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Counted());
  Put(row, 1, Variant::FromObject(list_.get()));
  IRecordListCursor* const cursor = Open(list_).detach();
  list_.reset();
  const_cast<IRecordListRecordPtr&>(row).reset();
  IUnknown* record = nullptr;
  EXPECT_EQ(cursor->Next(&record), S_OK);
  cursor->Release();
  const IRecordListRecordPtr again = AsRecord(record);
  EXPECT_EQ(CountingObject::Live(), 1);
  list_ = IRecordListPtr(static_cast<IRecordList*>(ValueAt(again, 1).Object()));
  Put(again, 1, Variant());  // the ring is broken, for the test's sake
}

TEST_F(ListOwnership, ReplacedObjectMayReadAndChangeTheList) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  IRecordListRecord* const raw = row.get();
  std::string seen;
  Put(row, 0, WithLastWords([&] {
        seen = Cells(row, 1);
        AddColumns(list_, 3);
        NewRow(list_);
        EXPECT_EQ(raw->SetValue(1, Variant::FromInt(21)), S_OK);
      }));
  Put(row, 0, Variant::FromInt(5));
  EXPECT_EQ(seen, "5");
  EXPECT_EQ(Cells(row, 4), "5 21 - -");
  EXPECT_EQ(CountRows(list_), 2);
}

TEST_F(ListOwnership, ReplacedObjectMayReplaceTheValueOnceMore) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, WithLastWords([&] { Put(row, 0, Counted()); }));
  Put(row, 0, Variant::FromInt(5));
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_UNKNOWN);
  EXPECT_EQ(CountingObject::Live(), 1);
}

TEST_F(ListOwnership, ReplacedObjectMayHoldTheLastReferences) {
  AddColumns(list_, 1);
  IRecordListRecordPtr row = NewRow(list_);
  IRecordListRecord* const raw = row.get();
  Put(row, 0, WithLastWords([&] {
        row.reset();
        list_.reset();
      }));
  EXPECT_EQ(raw->SetValue(0, Counted()), S_OK);
  EXPECT_EQ(CountingObject::Live(), 0);
}

TEST_F(ListOwnership, ObjectThatIsReadOverMayChangeTheList) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Variant::FromInt(5));
  Variant place = WithLastWords([&] { AddColumns(list_, 3); });
  EXPECT_EQ(row->GetValue(0, &place), S_OK);
  EXPECT_EQ(place.Data().intVal, 5);
  EXPECT_EQ(Cells(row, 4), "5 - - -");
}

TEST_F(ListOwnership, ObjectMayChangeTheListWhileItIsStored) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  auto* const object = new CallingObject;
  const Variant value = Variant::FromObject(object);
  object->OnAddRef([&] { AddColumns(list_, 3); });
  Put(row, 0, value);
  EXPECT_EQ(ValueAt(row, 0).Object(), object);
}

TEST_F(ListOwnership, ObjectMayReleaseRecordAndListWhileItIsStored) {
  AddColumns(list_, 1);
  IRecordListRecordPtr row = NewRow(list_);
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
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  auto* const object = new CallingObject;
  Put(row, 0, Variant::FromObject(object));
  object->OnAddRef([&] {
    AddColumns(list_, 3);
    Put(row, 0, Variant::FromInt(5));
  });
  EXPECT_EQ(ValueAt(row, 0).Object(), object);
  EXPECT_EQ(Cells(row, 4), "5 - - -");
}

TEST_F(ListOwnership, ObjectThatLocksTheListWhileItIsStoredIsRefused) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  auto* const object = new CallingObject;
  const Variant value = Variant::FromObject(object);
  object->OnAddRef([&] { EXPECT_EQ(list_->SetLocked(VARIANT_TRUE), S_OK); });
  EXPECT_EQ(row->SetValue(0, value), E_ACCESSDENIED);
  EXPECT_EQ(Cells(row, 1), "-");
}

// Only a reference less than all keeps a list from ending twice.
TEST_F(ListOwnership, ObjectMayUseTheListThatEnds) {
  AddColumns(list_, 1);
  IRecordList* const raw = list_.get();
  int rows = -1;
  std::int32_t columns = -1;
  Put(NewRow(list_), 0, WithLastWords([&] {
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
  Put(NewRow(list_), 0, WithLastWords([&] {
        const IRecordListPtr again(raw);
        Put(NewRow(again), 0, WithLastWords([&] {
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
  Put(NewRow(list_), 0, WithLastWords([&] {
        kept = NewRow(IRecordListPtr(raw));
        Put(kept, 0, Counted());
      }));
  list_.reset();
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(ValueAt(kept, 0).Tag(), VT_UNKNOWN);
  EXPECT_EQ(CountingObject::Live(), 1);
}

// What the object's end leaves in the thread's record is not the failure's.
TEST_F(ListOwnership, RefusedValueThatCallsBackLeavesTheWordsOfTheRefusal) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  std::int32_t count = -1;
  {
    const Variant value = WithLastWords([&] { EXPECT_EQ(ColumnsOf(list_)->GetCount(&count), S_OK); });
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
