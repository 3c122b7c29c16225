// What a table costs, and what happens when memory runs out.
#include <gtest/gtest.h>

#include <functional>

#include "components/recordlist/list_helpers.h"
#include "fixtures/scarce_memory.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

void Fill(const IRecordListPtr& list, int columns, int rows) {
  const Variant value = Int(1);
  for (int row = 0; row < rows; ++row) {
    IUnknown* object = nullptr;
    ASSERT_EQ(list->NewRecord(&object), S_OK);
    const IRecordListRecordPtr record = AsRecord(object);
    for (int column = 0; column < columns; ++column) ASSERT_EQ(record->SetValue(column, value), S_OK);
  }
}

TEST(ListCost, MillionCellsTakeAtMostFortyBytesEach) {
  constexpr std::size_t kCells = 1000000;
  for (const int columns : {1, 10, 1000}) {
    SCOPED_TRACE(columns);
    const std::size_t before = HeapBytes();
    ForgetHeapPeak();
    const IRecordListPtr list = NewList();
    AddColumns(list, columns);
    Fill(list, columns, static_cast<int>(kCells) / columns);
    const std::size_t taken = HeapBytes() - before;
    RecordProperty("bytesPerCell", std::to_string(static_cast<double>(taken) / kCells));
    EXPECT_GE(taken, 16 * kCells) << "the cells are not in the measured heap";
    EXPECT_LE(taken, 40 * kCells);
    EXPECT_LE(HeapPeak() - before, 40 * kCells);
  }
}

TEST(ListMemory, EmptyListsAreSmall) {
  NewList();  // the registry has what it allocates
  const std::size_t before = HeapBytes();
  const IRecordListPtr list = NewList();
  EXPECT_LE(HeapBytes() - before, 1024U);
}

TEST(ListMemory, AllIsFreed) {
  NewList();  // the registry has what it allocates
  const std::size_t before = HeapBytes();
  {
    const IRecordListPtr list = NewList();
    AddColumns(list, 20);
    Fill(list, 20, 100);
    AddColumns(list, 1);
    CountRows(list);
  }
  EXPECT_EQ(HeapBytes(), before);
}

// A reader and a writer ask for these at each cell.
TEST(ListMemory, ColumnsAndCellsAreReturnedWithoutAnAllocation) {
  const IRecordListPtr list = NewList();
  AddColumns(list, 3);
  const IRecordListRecordPtr row = NewRow(list);
  const IRecordListCursorPtr cursor = Open(list);
  const Variant text = Text(u"text");
  const std::size_t before = HeapBlocks();
  for (std::int32_t i = 0; i < 3; ++i) {
    Put(row, i, text);
    WideString name;
    std::int32_t type = -1;
    EXPECT_EQ(ColumnAt(list, i)->GetName(&name), S_OK);
    EXPECT_EQ(ColumnAt(list, i)->GetDisplayName(&name), S_OK);
    EXPECT_EQ(ColumnAt(list, i)->GetType(&type), S_OK);
    EXPECT_EQ(ValueAt(row, i).Tag(), VT_BSTR);
    EXPECT_TRUE(HasMore(cursor));
  }
  EXPECT_EQ(HeapBlocks(), before);
}

// Runs `operation` with no block, then one block and so on, until it succeeds: each failure is E_OUTOFMEMORY
// with its message, and `unchanged` checks the state afterwards. Returns the number of failures.
int FailuresUntilDone(const std::function<HRESULT()>& operation, const std::function<void()>& unchanged) {
  for (int blocks = 0; blocks < 50; ++blocks) {
    LeaveStaleRecord();
    HRESULT code = S_OK;
    {
      const ScarceMemory scarce(Memory::kObjects, blocks);
      code = operation();
    }
    if (Succeeded(code)) return blocks;
    EXPECT_EQ(code, E_OUTOFMEMORY);
    EXPECT_EQ(TakenWords(), "There is not enough memory.");
    unchanged();
  }
  ADD_FAILURE() << "never done";
  return -1;
}

class ScarceList : public testing::Test {
 protected:
  void TearDown() override { ClearErrorInfo(); }

  const IRecordListPtr list_ = NewList();
};

TEST(ScarceListClass, CreationFailsWithACode) {
  NewList();  // the registry has what it allocates
  int failures = 0;
  for (;; ++failures) {
    ASSERT_LT(failures, 50);
    int stranger = 0;
    void* made = &stranger;
    HRESULT code = S_OK;
    {
      const ScarceMemory scarce(Memory::kObjects, failures);
      code = CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IRecordList::kIid, &made);
    }
    if (Succeeded(code)) {
      static_cast<IRecordList*>(made)->Release();
      break;
    }
    EXPECT_EQ(code, E_OUTOFMEMORY);
    EXPECT_EQ(made, nullptr);
  }
  EXPECT_GT(failures, 0);
}

// The first row needs a store besides its cells, the later ones at most a further chunk.
TEST_F(ScarceList, NewRecordAppendsNothing) {
  AddColumns(list_, 100);
  for (int rows = 0; rows < 5; ++rows) {
    IUnknown* record = nullptr;
    const int failures = FailuresUntilDone(
        [&] {
          record = list_.get();
          return list_->NewRecord(&record);
        },
        [&] {
          EXPECT_EQ(record, nullptr);
          EXPECT_EQ(CountRows(list_), rows);
        });
    EXPECT_GE(failures,
              rows == 0 ? 4 : 1);  // the record; at first the store, a lock and the list of chunks too
    Put(AsRecord(record), 99, Int(rows));
  }
  const IRecordListCursorPtr cursor = Open(list_);
  for (int rows = 0; rows < 5; ++rows) EXPECT_EQ(ValueAt(NextRow(cursor), 99).Data().intVal, rows);
}

TEST_F(ScarceList, AddHeaderAddsNothingAndMovesNoValue) {
  AddColumns(list_, 2);
  for (int i = 0; i < 100; ++i) Put(NewRow(list_), i % 2, Int(i));
  IRecordListHeader* added = nullptr;
  const int failures = FailuresUntilDone(
      [&] {
        added = ColumnAt(list_, 0).get();
        return ColumnsOf(list_)->AddHeader(u"c", kColumnInt, &added);
      },
      [&] {
        EXPECT_EQ(added, nullptr);
        EXPECT_EQ(ColumnCount(list_), 2);
        const IRecordListCursorPtr cursor = Open(list_);
        for (int i = 0; i < 100; ++i)
          EXPECT_EQ(Cells(NextRow(cursor), 2),
                    i % 2 == 0 ? std::to_string(i) + " -" : "- " + std::to_string(i));
      });
  EXPECT_GE(failures, 2);
  added->Release();
  EXPECT_EQ(ColumnCount(list_), 3);
  EXPECT_EQ(Cells(NextRow(Open(list_)), 3), "0 - -");
}

// Columns are kept in pieces: sooner or later one needs a new piece.
TEST_F(ScarceList, ColumnWithoutAPlaceIsNotAdded) {
  const IRecordListHeadersPtr columns = ColumnsOf(list_);
  const WideString name = u"a";
  int failures = 0;
  for (std::int32_t count = 0; count < 100; ++count)
    failures += FailuresUntilDone([&] { return columns->AddHeader(name, kColumnInt, nullptr); },
                                  [&] { EXPECT_EQ(ColumnCount(list_), count); });
  EXPECT_GT(failures, 0);
  EXPECT_EQ(ColumnCount(list_), 100);
}

TEST_F(ScarceList, CursorIsNotOpened) {
  IRecordListCursor* cursor = nullptr;
  const int failures = FailuresUntilDone(
      [&] {
        cursor = reinterpret_cast<IRecordListCursor*>(this);
        return list_->OpenCursor(VARIANT_TRUE, &cursor);
      },
      [&] { EXPECT_EQ(cursor, nullptr); });
  EXPECT_EQ(failures, 1);
  cursor->Release();
}

TEST_F(ScarceList, CursorStaysWhereItIs) {
  AddNumbers(list_, 2);
  const IRecordListCursorPtr cursor = Open(list_);
  IUnknown* record = nullptr;
  const int failures = FailuresUntilDone(
      [&] {
        record = list_.get();
        return cursor->Next(&record);
      },
      [&] { EXPECT_EQ(record, nullptr); });
  EXPECT_EQ(failures, 1);
  EXPECT_EQ(Cells(AsRecord(record), 1), "1");
  EXPECT_EQ(Cells(NextRow(cursor), 1), "2");
}

}  // namespace
}  // namespace qv
