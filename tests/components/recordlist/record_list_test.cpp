// A record list of the built-in class as a host fills and reads it.
#include "components/recordlist/record_list_fixture.h"

#include "fixtures/shown_value.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"

namespace qv {
namespace {

TEST_F(RecordList, NewListIsStartedAndEmpty) {
  EXPECT_EQ(OleRun(list_.get()), S_OK);
  EXPECT_EQ(ColumnCount(list_), 0);
  EXPECT_EQ(CountRows(list_), 0);
}

TEST_F(RecordList, ColumnsAreInTheOrderOfAdding) {
  const struct {
    const char16_t* name;
    std::int32_t type;
    std::int32_t number;
  } rows[] = {{u"name", kColumnString, 1},
              {u"age", kColumnInt, 10},
              {u"born", kColumnDate, 18},
              {u"second", kColumnDouble, 4}};
  for (const auto& row : rows) {
    const IRecordListHeaderPtr added = AddColumn(list_, row.name, row.type);
    EXPECT_EQ(NameOf(added), Shown(row.name));
    EXPECT_EQ(TypeOf(added), row.number);
  }
  ASSERT_EQ(ColumnCount(list_), 4);
  for (std::int32_t i = 0; i < 4; ++i) {
    EXPECT_EQ(NameOf(ColumnAt(list_, i)), Shown(rows[i].name));
    EXPECT_EQ(TypeOf(ColumnAt(list_, i)), rows[i].number);
  }
}

TEST_F(RecordList, AddHeaderNeedsNoOutputParameter) {
  EXPECT_EQ(ColumnsOf(list_)->AddHeader(u"a", kColumnInt, nullptr), S_OK);
  EXPECT_EQ(ColumnCount(list_), 1);
}

TEST_F(RecordList, EachTypeOfAColumnIsKept) {
  for (const std::int32_t type : {0, 1, 2, 7, 23, 24, -1, 2147483647, -2147483647 - 1})
    EXPECT_EQ(TypeOf(AddColumn(list_, u"t", type)), type);
}

TEST_F(RecordList, NamesMayRepeatAndBeNullOrEmptyOrHoldNullUnits) {
  const WideString names[] = {u"a", u"a", WideString(), u"", WideString(std::u16string_view(u"x\0y", 3))};
  const char* shown[] = {"a", "a", "<null>", "", "x\\u0000y"};
  for (const WideString& name : names) AddColumn(list_, name);
  for (std::int32_t i = 0; i < 5; ++i) EXPECT_EQ(NameOf(ColumnAt(list_, i)), shown[i]) << i;
}

TEST_F(RecordList, DisplayNameIsNullUntilItIsSet) {
  AddColumn(list_, u"a");
  AddColumn(list_, u"b");
  EXPECT_EQ(DisplayNameOf(ColumnAt(list_, 0)), "<null>");
  EXPECT_EQ(ColumnAt(list_, 0)->SetDisplayName(std::u16string_view(u"Full\0 name", 10)), S_OK);
  EXPECT_EQ(DisplayNameOf(ColumnAt(list_, 0)), "Full\\u0000 name");
  EXPECT_EQ(NameOf(ColumnAt(list_, 0)), "a");
  EXPECT_EQ(DisplayNameOf(ColumnAt(list_, 1)), "<null>");
}

TEST_F(RecordList, DisplayNameIsReplacedAndMayBecomeNullAgain) {
  const IRecordListHeaderPtr column = AddColumn(list_, u"a");
  for (const WideString& name : {WideString(u"one"), WideString(u""), WideString()}) {
    EXPECT_EQ(column->SetDisplayName(name), S_OK);
    EXPECT_EQ(DisplayNameOf(column), Shown(name));
  }
}

TEST_F(RecordList, IndexesWithoutAColumnAreRefused) {
  EXPECT_EQ(GetHeaderFails(0, DISP_E_BADINDEX), "There is no column 0; the list has 0.");
  AddColumns(list_, 3);
  EXPECT_EQ(GetHeaderFails(3, DISP_E_BADINDEX), "There is no column 3; the list has 3.");
  EXPECT_EQ(GetHeaderFails(-1, DISP_E_BADINDEX), "There is no column -1; the list has 3.");
  EXPECT_EQ(GetHeaderFails(2147483647, DISP_E_BADINDEX), "There is no column 2147483647; the list has 3.");
  EXPECT_EQ(GetHeaderFails(-2147483647 - 1, DISP_E_BADINDEX),
            "There is no column -2147483648; the list has 3.");
}

TEST_F(RecordList, ValuesAreInTheirOwnCells) {
  const IRecordListRecordPtr first = NewRow(list_, 3);
  EXPECT_EQ(Cells(first, 3), "- - -");
  EXPECT_EQ(CountRows(list_), 1);
  const IRecordListRecordPtr second = NewRow(list_);
  Put(first, 0, Int(10));
  Put(first, 2, Int(12));
  Put(second, 1, Int(21));
  EXPECT_EQ(Cells(first, 3), "10 - 12");
  EXPECT_EQ(Cells(second, 3), "- 21 -");
  Put(first, 0, Int(2));
  EXPECT_EQ(Cells(first, 3), "2 - 12");
  Put(first, 0, Variant());
  EXPECT_EQ(Cells(first, 3), "- - 12");
}

TEST_F(RecordList, ValueIsKeptAsItIsWhateverTheColumnsType) {
  AddColumn(list_, u"number", kColumnInt);
  AddColumn(list_, u"unknown", kColumnUnknown);
  const IRecordListRecordPtr row = NewRow(list_);
  for (const Variant& value : {Text({u"a\0b", 3}), Variant::Null(), R8(-0.5), I8(1234567890123)}) {
    for (const std::int32_t column : {0, 1}) {
      Put(row, column, value);
      EXPECT_EQ(ShownValue(ValueAt(row, column)), ShownValue(value));
    }
  }
  EXPECT_EQ(ShownValue(ValueAt(row, 1)), "tag 20 1234567890123");
}

TEST_F(RecordList, NullTextAndNullObjectAreKept) {
  const IRecordListRecordPtr row = NewRow(list_, 2);
  Put(row, 0, NullText());
  Put(row, 1, Variant::FromObject(nullptr));
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_BSTR);
  EXPECT_TRUE(ValueAt(row, 0).Text().IsNull());
  EXPECT_EQ(ValueAt(row, 1).Tag(), VT_UNKNOWN);
  EXPECT_EQ(ValueAt(row, 1).Object(), nullptr);
}

TEST_F(RecordList, ObjectIsHeldOnceForTheCellAndGivenUpWithTheValue) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  const CountingObjectPtr object(new CountingObject);
  Put(row, 0, Variant::FromObject(object.get()));
  EXPECT_EQ(object->References(), 2U);
  EXPECT_EQ(ValueAt(row, 0).Object(), object.get());
  EXPECT_EQ(object->References(), 2U);
  Put(row, 0, Int(1));
  EXPECT_EQ(object->References(), 1U);
}

TEST_F(RecordList, ReadingOverAnObjectGivesItUp) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  Put(row, 0, Int(4));
  const CountingObjectPtr object(new CountingObject);
  Variant place = Variant::FromObject(object.get());
  EXPECT_EQ(row->GetValue(0, &place), S_OK);
  EXPECT_EQ(place.Data().intVal, 4);
  EXPECT_EQ(object->References(), 1U);
}

TEST_F(RecordList, ValueOfTheSameCellMayBePutBack) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  Put(row, 0, Variant::FromObject(CountingObjectPtr(new CountingObject).get()));
  Put(row, 0, ValueAt(row, 0));
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_UNKNOWN);
  EXPECT_NE(ValueAt(row, 0).Object(), nullptr);
  EXPECT_EQ(CountingObject::Live(), 1);
}

TEST_F(RecordList, PointersAndUnknownTagsAreNotStored) {
  const IRecordListRecordPtr row = NewRow(list_, 1);
  Put(row, 0, Int(5));
  std::int32_t target = 9;
  const std::pair<Variant, const char*> values[] = {
      {Pointer(VT_I4, &target), "A value of tag 16387 cannot be stored."},
      {Pointer(VT_VARIANT, &target), "A value of tag 16396 cannot be stored."}};
  for (const auto& [value, message] : values)
    EXPECT_EQ(SetValueFails(row, 0, value, DISP_E_BADVARTYPE), message);
  EXPECT_EQ(SetValueFails(row, 0, Raw(0x77, 0), DISP_E_BADVARTYPE), "A value of tag 119 cannot be stored.");
  EXPECT_EQ(SetValueFails(row, 0, Raw(0x2008, 0), DISP_E_BADVARTYPE),
            "A value of tag 8200 cannot be stored.");
  EXPECT_EQ(Cells(row, 1), "5");
}

TEST_F(RecordList, IndexesWithoutACellAreRefused) {
  const IRecordListRecordPtr row = NewRow(list_, 2);
  NewRow(list_);  // whose cells come next
  const Variant one = Int(1);
  EXPECT_EQ(GetValueFails(row, 2), "There is no column 2; the list has 2.");
  EXPECT_EQ(GetValueFails(row, -1), "There is no column -1; the list has 2.");
  EXPECT_EQ(SetValueFails(row, 2, one, DISP_E_BADINDEX), "There is no column 2; the list has 2.");
  EXPECT_EQ(SetValueFails(row, -2147483647 - 1, one, DISP_E_BADINDEX),
            "There is no column -2147483648; the list has 2.");
  const IRecordListCursorPtr cursor = Open(list_);
  EXPECT_EQ(Cells(NextRow(cursor), 2), "- -");
  EXPECT_EQ(Cells(NextRow(cursor), 2), "- -");
}

TEST_F(RecordList, RowsWithoutColumnsAreCounted) {
  const IRecordListRecordPtr row = NewRow(list_);
  NewRow(list_);
  NewRow(list_);
  EXPECT_EQ(CountRows(list_), 3);
  EXPECT_EQ(GetValueFails(row, 0), "There is no column 0; the list has 0.");
}

TEST_F(RecordList, RowsGetAnEmptyCellForEachLaterColumn) {
  const IRecordListRecordPtr first = NewRow(list_);
  AddColumns(list_, 1);
  EXPECT_EQ(Cells(first, 1), "-");
  Put(first, 0, Int(1));
  const IRecordListRecordPtr second = NewRow(list_);
  Put(second, 0, Int(2));
  AddColumns(list_, 2);
  EXPECT_EQ(Cells(first, 3), "1 - -");
  EXPECT_EQ(Cells(second, 3), "2 - -");
  Put(first, 2, Int(13));
  EXPECT_EQ(Cells(first, 3), "1 - 13");
  EXPECT_EQ(Cells(second, 3), "2 - -");
}

TEST_F(RecordList, LaterColumnMovesTextsAndObjectsUnharmed) {
  AddColumns(list_, 1);
  for (int i = 0; i < 100; ++i) {
    const IRecordListRecordPtr row = NewRow(list_);
    Put(row, 0,
        i % 2 == 0 ? Text(u"text") : Variant::FromObject(CountingObjectPtr(new CountingObject).get()));
  }
  AddColumns(list_, 1);
  EXPECT_EQ(CountingObject::Live(), 50);
  const IRecordListCursorPtr cursor = Open(list_);
  for (int i = 0; i < 100; ++i) {
    const IRecordListRecordPtr row = NextRow(cursor);
    EXPECT_EQ(ValueAt(row, 0).Tag(), i % 2 == 0 ? VT_BSTR : VT_UNKNOWN);
    EXPECT_EQ(ValueAt(row, 1).Tag(), VT_EMPTY);
  }
}

TEST_F(RecordList, RecordShowsTheColumnsOfItsList) {
  AddColumns(list_, 1);
  IRecordListHeadersPtr columns;
  ASSERT_EQ(NewRow(list_)->GetHeaders(Put(columns)), S_OK);
  std::int32_t count = -1;
  EXPECT_EQ(columns->GetCount(&count), S_OK);
  EXPECT_EQ(count, 1);
  AddColumns(list_, 1);
  EXPECT_EQ(columns->GetCount(&count), S_OK);
  EXPECT_EQ(count, 2);
}

TEST_F(RecordList, CursorGoesOverTheRowsOnceFromTheFirstToTheLast) {
  AddNumbers(list_, 3);
  const IRecordListCursorPtr cursor = Open(list_);
  for (const char* expected : {"1", "2", "3"}) {
    EXPECT_TRUE(HasMore(cursor));
    EXPECT_TRUE(HasMore(cursor));
    EXPECT_EQ(Cells(NextRow(cursor), 1), expected);
  }
  EXPECT_FALSE(HasMore(cursor));
  EXPECT_EQ(NextFails(cursor), "There are no more records.");
  EXPECT_EQ(NextFails(cursor), "There are no more records.");
}

TEST_F(RecordList, MoreIsABooleanOfScripts) {
  const IRecordListCursorPtr cursor = Open(list_);
  VARIANT_BOOL more = 1;
  EXPECT_EQ(cursor->HasMore(&more), S_OK);
  EXPECT_EQ(more, 0);
  NewRow(list_);
  EXPECT_EQ(cursor->HasMore(&more), S_OK);
  EXPECT_EQ(more, -1);
}

TEST_F(RecordList, CursorMeetsRowsThatAreAddedMeanwhile) {
  AddColumns(list_, 1);
  const IRecordListCursorPtr cursor = Open(list_);
  EXPECT_EQ(NextFails(cursor), "There are no more records.");
  Put(NewRow(list_), 0, Int(1));
  EXPECT_EQ(Cells(NextRow(cursor), 1), "1");
  EXPECT_FALSE(HasMore(cursor));
  Put(NewRow(list_), 0, Int(2));
  EXPECT_TRUE(HasMore(cursor));
  EXPECT_EQ(Cells(NextRow(cursor), 1), "2");
}

TEST_F(RecordList, ColumnMayBeAddedWhileACursorIsOpen) {
  AddNumbers(list_, 3);
  const IRecordListCursorPtr cursor = Open(list_);
  const IRecordListRecordPtr first = NextRow(cursor);
  AddColumns(list_, 1);
  Put(first, 1, Int(11));
  EXPECT_EQ(Cells(first, 2), "1 11");
  EXPECT_EQ(Cells(NextRow(cursor), 2), "2 -");
  EXPECT_EQ(Cells(NextRow(cursor), 2), "3 -");
}

TEST_F(RecordList, CursorsAreIndependent) {
  AddNumbers(list_, 2);
  const IRecordListCursorPtr one = Open(list_);
  EXPECT_EQ(Cells(NextRow(one), 1), "1");
  const IRecordListCursorPtr other = Open(list_);
  EXPECT_EQ(Cells(NextRow(other), 1), "1");
  EXPECT_EQ(Cells(NextRow(one), 1), "2");
  EXPECT_TRUE(HasMore(other));
}

TEST_F(RecordList, AllOptionsOfACursorDoTheSame) {
  AddNumbers(list_, 1);
  for (const VARIANT_BOOL option : {VARIANT_TRUE, VARIANT_FALSE, VARIANT_BOOL{1}, VARIANT_BOOL{-32768}}) {
    IRecordListCursorPtr cursor;
    ASSERT_EQ(list_->OpenCursor(option, Put(cursor)), S_OK);
    EXPECT_EQ(Cells(NextRow(cursor), 1), "1");
  }
}

TEST_F(RecordList, TwoObjectsForOneRowShareItsContent) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr made = NewRow(list_);
  const IRecordListRecordPtr met = NextRow(Open(list_));
  Put(met, 0, Int(8));
  EXPECT_EQ(Cells(made, 1), "8");
}

TEST_F(RecordList, ListMayBeInACellOfAnother) {
  const IRecordListPtr inner = NewList();
  AddNumbers(inner, 3);
  AddColumns(list_, 1);
  Put(NewRow(list_), 0, Variant::FromObject(inner.get()));
  EXPECT_EQ(ValueAt(NextRow(Open(list_)), 0).Object(), inner.get());
}

}  // namespace
}  // namespace qv
