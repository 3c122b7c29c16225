// A record list of the built-in class as a host fills and reads it.
#include "components/recordlist/record_list_fixture.h"

#include <functional>

#include "qvscriptwells/class_registry.h"

namespace qv {
namespace {

TEST_F(RecordList, NewListHasNeitherColumnsNorRows) {
  EXPECT_EQ(ColumnCount(list_), 0);
  EXPECT_EQ(CountRows(list_), 0);
}

TEST_F(RecordList, ComponentIsStartedWithoutAWordOfItsOwn) {
  EXPECT_EQ(OleRun(list_.get()), S_OK);
}

TEST_F(RecordList, ColumnsStandInTheOrderOfAdding) {
  AddColumn(list_, u"name", kColumnString);
  AddColumn(list_, u"age", kColumnInt);
  AddColumn(list_, u"born", kColumnDate);
  ASSERT_EQ(ColumnCount(list_), 3);
  const char* names[] = {"name", "age", "born"};
  const std::int32_t types[] = {1, 10, 18};
  for (std::int32_t i = 0; i < 3; ++i) {
    WideString name;
    std::int32_t type = -1;
    EXPECT_EQ(ColumnAt(list_, i)->GetName(&name), S_OK);
    EXPECT_EQ(ColumnAt(list_, i)->GetType(&type), S_OK);
    EXPECT_EQ(Shown(name), names[i]);
    EXPECT_EQ(type, types[i]);
  }
}

TEST_F(RecordList, AddHeaderGivesTheColumnThatItAdded) {
  AddColumn(list_, u"first");
  const IRecordListHeaderPtr added = AddColumn(list_, u"second", kColumnDouble);
  WideString name;
  std::int32_t type = -1;
  EXPECT_EQ(added->GetName(&name), S_OK);
  EXPECT_EQ(added->GetType(&type), S_OK);
  EXPECT_EQ(Shown(name), "second");
  EXPECT_EQ(type, 4);
}

TEST_F(RecordList, AddHeaderNeedsNoPlaceForTheColumn) {
  EXPECT_EQ(ColumnsOf(list_)->AddHeader(u"a", kColumnInt, nullptr), S_OK);
  EXPECT_EQ(ColumnCount(list_), 1);
}

TEST_F(RecordList, EachTypeOfAColumnIsKept) {
  const std::int32_t types[] = {0, 1, 2, 7, 23, 24, -1, 2147483647, -2147483647 - 1};
  for (const std::int32_t type : types) {
    std::int32_t kept = 55;
    EXPECT_EQ(AddColumn(list_, u"t", type)->GetType(&kept), S_OK);
    EXPECT_EQ(kept, type);
  }
}

TEST_F(RecordList, NamesMayRepeatAndBeNullOrEmptyOrHoldNullUnits) {
  const WideString names[] = {u"a", u"a", WideString(), u"", WideString(std::u16string_view(u"x\0y", 3))};
  const char* shown[] = {"a", "a", "<null>", "", "x\\u0000y"};
  for (const WideString& name : names) AddColumn(list_, name);
  for (std::int32_t i = 0; i < 5; ++i) {
    WideString name = u"before";
    EXPECT_EQ(ColumnAt(list_, i)->GetName(&name), S_OK);
    EXPECT_EQ(Shown(name), shown[i]) << i;
  }
}

TEST_F(RecordList, DisplayNameIsNullUntilItIsSet) {
  AddColumn(list_, u"a");
  AddColumn(list_, u"b");
  WideString display = u"before";
  EXPECT_EQ(ColumnAt(list_, 0)->GetDisplayName(&display), S_OK);
  EXPECT_EQ(Shown(display), "<null>");
  EXPECT_EQ(ColumnAt(list_, 0)->SetDisplayName(std::u16string_view(u"Full\0 name", 10)), S_OK);
  EXPECT_EQ(ColumnAt(list_, 0)->GetDisplayName(&display), S_OK);
  EXPECT_EQ(Shown(display), "Full\\u0000 name");
  WideString name;
  EXPECT_EQ(ColumnAt(list_, 0)->GetName(&name), S_OK);
  EXPECT_EQ(Shown(name), "a");
  EXPECT_EQ(ColumnAt(list_, 1)->GetDisplayName(&display), S_OK);
  EXPECT_EQ(Shown(display), "<null>");
}

TEST_F(RecordList, DisplayNameIsReplacedAndMayBecomeNullAgain) {
  const IRecordListHeaderPtr column = AddColumn(list_, u"a");
  EXPECT_EQ(column->SetDisplayName(u"one"), S_OK);
  EXPECT_EQ(column->SetDisplayName(u""), S_OK);
  WideString display;
  EXPECT_EQ(column->GetDisplayName(&display), S_OK);
  EXPECT_FALSE(display.IsNull());
  EXPECT_EQ(Shown(display), "");
  EXPECT_EQ(column->SetDisplayName(WideString()), S_OK);
  EXPECT_EQ(column->GetDisplayName(&display), S_OK);
  EXPECT_EQ(Shown(display), "<null>");
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

TEST_F(RecordList, NewRowIsAppendedWithEmptyCells) {
  AddColumns(list_, 2);
  const IRecordListRecordPtr row = NewRow(list_);
  EXPECT_EQ(Cells(row, 2), "- -");
  EXPECT_EQ(CountRows(list_), 1);
}

TEST_F(RecordList, ValuesStandInTheirOwnCells) {
  AddColumns(list_, 3);
  const IRecordListRecordPtr first = NewRow(list_);
  const IRecordListRecordPtr second = NewRow(list_);
  Put(first, 0, Variant::FromInt(10));
  Put(first, 2, Variant::FromInt(12));
  Put(second, 1, Variant::FromInt(21));
  EXPECT_EQ(Cells(first, 3), "10 - 12");
  EXPECT_EQ(Cells(second, 3), "- 21 -");
}

TEST_F(RecordList, ValueIsReplaced) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Variant::FromInt(1));
  Put(row, 0, Variant::FromInt(2));
  EXPECT_EQ(Cells(row, 1), "2");
  Put(row, 0, Variant());
  EXPECT_EQ(Cells(row, 1), "-");
}

TEST_F(RecordList, ValueIsKeptAsItIsWhateverTheColumnsType) {
  AddColumn(list_, u"number", kColumnInt);
  AddColumn(list_, u"unknown", kColumnUnknown);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Variant::FromString(std::u16string_view(u"a\0b", 3)));
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_BSTR);
  EXPECT_EQ(Shown(ValueAt(row, 0).Text()), "a\\u0000b");
  Put(row, 0, Variant::Null());
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_NULL);
  Put(row, 1, Variant::FromDouble(-0.5));
  EXPECT_EQ(ValueAt(row, 1).Tag(), VT_R8);
  EXPECT_EQ(ValueAt(row, 1).Data().dblVal, -0.5);
  Put(row, 1, Variant::FromLong(1234567890123));
  EXPECT_EQ(ValueAt(row, 1).Tag(), VT_I8);
  EXPECT_EQ(ValueAt(row, 1).Data().llVal, 1234567890123);
}

TEST_F(RecordList, NullTextAndNullObjectAreKept) {
  AddColumns(list_, 2);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Variant::FromString(WideString()));
  Put(row, 1, Variant::FromObject(nullptr));
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_BSTR);
  EXPECT_TRUE(ValueAt(row, 0).Text().IsNull());
  EXPECT_EQ(ValueAt(row, 1).Tag(), VT_UNKNOWN);
  EXPECT_EQ(ValueAt(row, 1).Object(), nullptr);
}

TEST_F(RecordList, ObjectIsHeldOnceForTheCellAndGivenUpWithTheValue) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  const CountingObjectPtr object(new CountingObject);
  Put(row, 0, Variant::FromObject(object.get()));
  EXPECT_EQ(object->References(), 2u);
  EXPECT_EQ(ValueAt(row, 0).Object(), object.get());
  EXPECT_EQ(object->References(), 2u);
  Put(row, 0, Variant::FromInt(1));
  EXPECT_EQ(object->References(), 1u);
}

TEST_F(RecordList, ReadingOverAnObjectGivesItUp) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Variant::FromInt(4));
  const CountingObjectPtr object(new CountingObject);
  Variant place = Variant::FromObject(object.get());
  EXPECT_EQ(row->GetValue(0, &place), S_OK);
  EXPECT_EQ(place.Data().intVal, 4);
  EXPECT_EQ(object->References(), 1u);
}

TEST_F(RecordList, ValueOfTheSameCellMayBePutBack) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Variant::FromObject(CountingObjectPtr(new CountingObject).get()));
  Put(row, 0, ValueAt(row, 0));
  EXPECT_EQ(ValueAt(row, 0).Tag(), VT_UNKNOWN);
  EXPECT_NE(ValueAt(row, 0).Object(), nullptr);
  EXPECT_EQ(CountingObject::Live(), 1);
}

TEST_F(RecordList, PointersAndUnknownTagsAreNotStored) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr row = NewRow(list_);
  Put(row, 0, Variant::FromInt(5));
  std::int32_t target = 9;
  VariantData pointer;
  pointer.byref = &target;
  EXPECT_EQ(SetValueFails(row, 0, Variant::FromRaw(VT_BYREF | VT_I4, pointer), DISP_E_BADVARTYPE),
            "A value of tag 16387 cannot be stored.");
  EXPECT_EQ(SetValueFails(row, 0, Variant::FromRaw(VT_BYREF | VT_VARIANT, pointer), DISP_E_BADVARTYPE),
            "A value of tag 16396 cannot be stored.");
  EXPECT_EQ(SetValueFails(row, 0, Variant::FromRaw(0x77, VariantData()), DISP_E_BADVARTYPE),
            "A value of tag 119 cannot be stored.");
  EXPECT_EQ(SetValueFails(row, 0, Variant::FromRaw(0x2008, VariantData()), DISP_E_BADVARTYPE),
            "A value of tag 8200 cannot be stored.");
  EXPECT_EQ(Cells(row, 1), "5");
}

TEST_F(RecordList, IndexesWithoutACellAreRefused) {
  AddColumns(list_, 2);
  const IRecordListRecordPtr row = NewRow(list_);
  NewRow(list_);  // whose cells come right behind
  const Variant one = Variant::FromInt(1);
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
  Put(first, 0, Variant::FromInt(1));
  const IRecordListRecordPtr second = NewRow(list_);
  Put(second, 0, Variant::FromInt(2));
  AddColumns(list_, 2);
  EXPECT_EQ(Cells(first, 3), "1 - -");
  EXPECT_EQ(Cells(second, 3), "2 - -");
  Put(first, 2, Variant::FromInt(13));
  EXPECT_EQ(Cells(first, 3), "1 - 13");
  EXPECT_EQ(Cells(second, 3), "2 - -");
}

TEST_F(RecordList, LaterColumnMovesTextsAndObjectsUnharmed) {
  AddColumns(list_, 1);
  for (int i = 0; i < 100; ++i) {
    const IRecordListRecordPtr row = NewRow(list_);
    Put(row, 0,
        i % 2 == 0 ? Variant::FromString(u"text")
                   : Variant::FromObject(CountingObjectPtr(new CountingObject).get()));
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
  IRecordListHeaders* columns = nullptr;
  ASSERT_EQ(NewRow(list_)->GetHeaders(&columns), S_OK);
  const IRecordListHeadersPtr owned(columns, false);
  std::int32_t count = -1;
  EXPECT_EQ(columns->GetCount(&count), S_OK);
  EXPECT_EQ(count, 1);
  AddColumns(list_, 1);
  EXPECT_EQ(columns->GetCount(&count), S_OK);
  EXPECT_EQ(count, 2);
}

TEST_F(RecordList, CursorGoesOverTheRowsOnceFromTheFirstToTheLast) {
  AddColumns(list_, 1);
  for (int i = 1; i <= 3; ++i) Put(NewRow(list_), 0, Variant::FromInt(i));
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

TEST_F(RecordList, MoreIsToldAsTheBooleanOfScripts) {
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
  Put(NewRow(list_), 0, Variant::FromInt(1));
  EXPECT_EQ(Cells(NextRow(cursor), 1), "1");
  EXPECT_FALSE(HasMore(cursor));
  Put(NewRow(list_), 0, Variant::FromInt(2));
  EXPECT_TRUE(HasMore(cursor));
  EXPECT_EQ(Cells(NextRow(cursor), 1), "2");
}

TEST_F(RecordList, ColumnMayBeAddedWhileACursorIsOpen) {
  AddColumns(list_, 1);
  for (int i = 1; i <= 3; ++i) Put(NewRow(list_), 0, Variant::FromInt(i));
  const IRecordListCursorPtr cursor = Open(list_);
  const IRecordListRecordPtr first = NextRow(cursor);
  AddColumns(list_, 1);
  Put(first, 1, Variant::FromInt(11));
  EXPECT_EQ(Cells(first, 2), "1 11");
  EXPECT_EQ(Cells(NextRow(cursor), 2), "2 -");
  EXPECT_EQ(Cells(NextRow(cursor), 2), "3 -");
}

TEST_F(RecordList, CursorsAreIndependent) {
  AddColumns(list_, 1);
  for (int i = 1; i <= 2; ++i) Put(NewRow(list_), 0, Variant::FromInt(i));
  const IRecordListCursorPtr one = Open(list_);
  EXPECT_EQ(Cells(NextRow(one), 1), "1");
  const IRecordListCursorPtr other = Open(list_);
  EXPECT_EQ(Cells(NextRow(other), 1), "1");
  EXPECT_EQ(Cells(NextRow(one), 1), "2");
  EXPECT_TRUE(HasMore(other));
}

TEST_F(RecordList, AllOptionsOfACursorDoTheSame) {
  AddColumns(list_, 1);
  Put(NewRow(list_), 0, Variant::FromInt(6));
  for (const VARIANT_BOOL option : {VARIANT_TRUE, VARIANT_FALSE, VARIANT_BOOL{1}, VARIANT_BOOL{-32768}}) {
    IRecordListCursor* cursor = nullptr;
    ASSERT_EQ(list_->OpenCursor(option, &cursor), S_OK);
    EXPECT_EQ(Cells(NextRow(IRecordListCursorPtr(cursor, false)), 1), "6");
  }
}

TEST_F(RecordList, TwoObjectsForOneRowShareItsContent) {
  AddColumns(list_, 1);
  const IRecordListRecordPtr made = NewRow(list_);
  const IRecordListRecordPtr met = NextRow(Open(list_));
  Put(met, 0, Variant::FromInt(8));
  EXPECT_EQ(Cells(made, 1), "8");
}

TEST_F(RecordList, ListMayStandInACellOfAnother) {
  const IRecordListPtr inner = NewList();
  AddColumns(inner, 1);
  Put(NewRow(inner), 0, Variant::FromInt(3));
  AddColumns(list_, 1);
  Put(NewRow(list_), 0, Variant::FromObject(inner.get()));
  EXPECT_EQ(ValueAt(NextRow(Open(list_)), 0).Object(), inner.get());
}

}  // namespace
}  // namespace qv
