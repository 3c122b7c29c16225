// Tables in answers: what is read from where, and which calls the list gets for it.
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

using RecordListReader = RecordListTest;

std::vector<std::string> NamesOf(const FakeTable& table) {
  std::vector<std::string> names;
  for (const FakeColumn& column : table.columns)
    names.push_back(Shown(column.name) + ":" + std::to_string(column.type));
  return names;
}
Lines CellsOf(const FakeRow& row) {
  Lines cells;
  for (const Variant& cell : row.cells) cells.push_back(ShownValue(cell));
  return cells;
}

TEST_F(RecordListReader, CallsComeInOneOrder) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:int") + ColumnXml(u"b", u"xsd:string"),
                    u"<i><a>5</a><b>x</b></i><i><a>6</a><b>y</b></i>"));
  EXPECT_EQ(fake_.Calls(), (Lines{"CoCreate IUnknown",
                                  "Run",
                                  "List.Query",
                                  "List.SetLocked(0)",
                                  "List.GetHeaders",
                                  "Headers.SetLocked(0)",
                                  "Headers.AddHeader(a, 10)",
                                  "Header(0).SetDisplayName(a)",
                                  "Headers.AddHeader(b, 1)",
                                  "Header(1).SetDisplayName(b)",
                                  "List.NewRecord",
                                  "Record(0).Query",
                                  "Record(0).SetLocked(0)",
                                  "Headers.GetHeader(0)",
                                  "Header(0).GetType",
                                  "Record(0).SetValue(0, VT_INT 5)",
                                  "Headers.GetHeader(1)",
                                  "Header(1).GetType",
                                  "Record(0).SetValue(1, VT_BSTR x)",
                                  "Record(0).SetLocked(-1)",
                                  "List.NewRecord",
                                  "Record(1).Query",
                                  "Record(1).SetLocked(0)",
                                  "Headers.GetHeader(0)",
                                  "Header(0).GetType",
                                  "Record(1).SetValue(0, VT_INT 6)",
                                  "Headers.GetHeader(1)",
                                  "Header(1).GetType",
                                  "Record(1).SetValue(1, VT_BSTR y)",
                                  "Record(1).SetLocked(-1)",
                                  "List.SetLocked(-1)",
                                  "Headers.SetLocked(-1)"}));
}

TEST_F(RecordListReader, ListIsLockedThroughout) {
  ReadAway(OneCellXml(u"xsd:int", u"5"));
  EXPECT_TRUE(fake_.Table().locked);
  EXPECT_TRUE(fake_.Table().headersLocked);
  EXPECT_TRUE(fake_.Table().rows.at(0).locked);
}

TEST_F(RecordListReader, ValueIsTheOnlyOwnerOfTheList) {
  const Variant value = Read(OneCellXml(u"xsd:int", u"5"));
  ASSERT_EQ(value.Tag(), VT_UNKNOWN);
  ASSERT_NE(value.Object(), nullptr);
  EXPECT_EQ(fake_.LiveObjects(), 1);
  EXPECT_EQ(value.Object()->AddRef(), 2u);
  EXPECT_EQ(value.Object()->Release(), 1u);
}

TEST_F(RecordListReader, ValueHoldsTheInterfaceOfTheList) {
  const Variant value = Read(OneCellXml(u"xsd:int", u"5"));
  void* raw = nullptr;
  ASSERT_EQ(value.Object()->QueryInterface(IRecordList::kIid, &raw), S_OK);
  const IRecordListPtr list(static_cast<IRecordList*>(raw), false);
  EXPECT_EQ(static_cast<IUnknown*>(list.get()), value.Object());
}

TEST_F(RecordListReader, EachReadMakesANewList) {
  const Variant first = Read(OneCellXml(u"xsd:int", u"5"));
  const Variant second = Read(OneCellXml(u"xsd:int", u"6"));
  EXPECT_NE(first.Object(), second.Object());
  EXPECT_EQ(fake_.TableCount(), 2u);
}

TEST_F(RecordListReader, ListWithoutStartOfItsOwnIsUsedAllTheSame) {
  fake_.OfferNoRunnable();
  ReadAway(OneCellXml(u"xsd:int", u"5"));
  EXPECT_EQ(fake_.Calls()[1], "List.Query");
}

TEST_F(RecordListReader, ColumnsKeepTheirOrder) {
  ReadAway(TableXml(ColumnXml(u"z", u"xsd:string") + ColumnXml(u"a", u"xsd:int") +
                        ColumnXml(u"m", u"qvdt:Blob") + ColumnXml(u"a", u"sof:URL"),
                    u""));
  EXPECT_EQ(NamesOf(fake_.Table()), (Lines{"z:1", "a:10", "m:6", "a:23"}));
}

TEST_F(RecordListReader, EachTypeNameGivesItsColumnType) {
  const struct {
    const char16_t* name;
    const char* column;
  } rows[] = {{u"xsd:byte", "a:13"},
              {u"qvdt:Char", "a:1"},
              {u"qvdt:Money", "a:4"},
              {u"xsd:datetime", "a:16"},
              {u"xsd:dateTime", "a:16"},
              {u"xsd:DateTime", "a:0"},
              {u"qvdt:EffectiveDateUntil", "a:18"},
              {u"xsd:float", "a:0"},
              {u"Undefined", "a:0"},
              {u"", "a:0"},
              {u" xsd:int", "a:0"}};
  for (const auto& row : rows) {
    ReadAway(TableXml(ColumnXml(u"a", row.name), u""));
    EXPECT_EQ(NamesOf(fake_.Table()), Lines{row.column}) << Shown(row.name);
  }
}

TEST_F(RecordListReader, DisplayNameIsTheName) {
  ReadAway(
      TableXml(u"<c xsd:name='n&amp;\u00E9' xsd:type='xsd:int' xsd:displayName='Shown' "
               u"qvrl:valueSize='7' qvrl:valueSize2='8'/>",
               u""));
  EXPECT_EQ(Shown(fake_.Table().columns.at(0).name), "n&\\u00E9");
  EXPECT_EQ(Shown(fake_.Table().columns.at(0).displayName), "n&\\u00E9");
}

TEST_F(RecordListReader, EmptyNameIsAName) {
  ReadAway(TableXml(ColumnXml(u"", u"xsd:int"), u"<i><a>5</a></i>"));
  EXPECT_EQ(NamesOf(fake_.Table()), Lines{":10"});
  EXPECT_EQ(CellsOf(fake_.Table().rows.at(0)), Lines{"VT_INT 5"});
}

TEST_F(RecordListReader, AttributesMayStandInAnyOrderAmongOthers) {
  ReadAway(TableXml(u"<c name='x' type='xsd:string' xsd:type='xsd:int' other='y' xsd:name='a'/>", u""));
  EXPECT_EQ(NamesOf(fake_.Table()), Lines{"a:10"});
}

TEST_F(RecordListReader, ContentOfAColumnIsNotLookedAt) {
  ReadAway(TableXml(u"<c xsd:name='a' xsd:type='xsd:int'>text<b xsd:name='c'/></c>", u""));
  EXPECT_EQ(NamesOf(fake_.Table()), Lines{"a:10"});
}

TEST_F(RecordListReader, NoRecordsGiveColumnsOnly) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:int"), u""));
  EXPECT_EQ(fake_.Table().columns.size(), 1u);
  EXPECT_EQ(fake_.Table().rows.size(), 0u);
  EXPECT_TRUE(fake_.Table().locked);
  EXPECT_TRUE(fake_.Table().headersLocked);
}

TEST_F(RecordListReader, EmptySchemaGivesNoColumns) {
  ReadAway(u"<h><s/></h><d/>");
  EXPECT_EQ(fake_.Calls(),
            (Lines{"CoCreate IUnknown", "Run", "List.Query", "List.SetLocked(0)", "List.GetHeaders",
                   "Headers.SetLocked(0)", "List.SetLocked(-1)", "Headers.SetLocked(-1)"}));
}

TEST_F(RecordListReader, EmptySchemaMayHaveRecordsWithoutCells) {
  ReadAway(TableXml(u"", u"<i/><i></i>"));
  EXPECT_EQ(fake_.Table().columns.size(), 0u);
  EXPECT_EQ(fake_.Table().rows.size(), 2u);
}

TEST_F(RecordListReader, RecordWithoutCellsHasNoValuesSet) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:int"), u"<i/>"));
  EXPECT_EQ(fake_.CallsWith("Record("),
            (Lines{"Record(0).Query", "Record(0).SetLocked(0)", "Record(0).SetLocked(-1)"}));
  EXPECT_EQ(fake_.CallsWith("GetHeader("), Lines{});
}

TEST_F(RecordListReader, RecordMayHaveFewerCellsThanColumns) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:int") + ColumnXml(u"b", u"xsd:string"), u"<i><a>5</a></i>"));
  EXPECT_EQ(fake_.CallsWith("SetValue"), Lines{"Record(0).SetValue(0, VT_INT 5)"});
  EXPECT_EQ(CellsOf(fake_.Table().rows.at(0)), (Lines{"VT_INT 5", "VT_EMPTY"}));
}

TEST_F(RecordListReader, CellsBelongToColumnsByPosition) {
  ReadAway(
      TableXml(ColumnXml(u"a", u"xsd:int") + ColumnXml(u"b", u"xsd:string"), u"<i><b>5</b><a>6</a></i>"));
  EXPECT_EQ(CellsOf(fake_.Table().rows.at(0)), (Lines{"VT_INT 5", "VT_BSTR 6"}));
}

TEST_F(RecordListReader, ElementNamesDoNotMatter) {
  ReadAway(u"<x><x><x xsd:name='a' xsd:type='xsd:int'/></x></x><x><x><x>5</x></x></x>");
  EXPECT_EQ(NamesOf(fake_.Table()), Lines{"a:10"});
  EXPECT_EQ(CellsOf(fake_.Table().rows.at(0)), Lines{"VT_INT 5"});
}

TEST_F(RecordListReader, FirstBlockIsTheHeadersWhateverItsName) {
  ReadAway(u"<q1:Records><o/></q1:Records><q1:Headers><one/><two/></q1:Headers>");
  EXPECT_EQ(fake_.Table().columns.size(), 0u);
  EXPECT_EQ(fake_.Table().rows.size(), 2u);
}

TEST_F(RecordListReader, ElementNamesOfTheWireRead) {
  ReadAway(
      u"<q1:Headers><xsd:schema targetNamespace='uuid:x'><xsd:element xsd:name='a' xsd:type='xsd:int' "
      u"xsd:displayName='A' qvrl:valueSize='' qvrl:valueSize2=''/></xsd:schema></q1:Headers>"
      u"<q1:Records><q1:Record><a>5</a></q1:Record></q1:Records>");
  EXPECT_EQ(NamesOf(fake_.Table()), Lines{"a:10"});
  EXPECT_EQ(CellsOf(fake_.Table().rows.at(0)), Lines{"VT_INT 5"});
}

TEST_F(RecordListReader, OnlyTheFirstSchemaAndTheSecondBlockCount) {
  ReadAway(u"<h><s>" + ColumnXml(u"a", u"xsd:int") + u"</s><s>" + ColumnXml(u"b", u"xsd:int") +
           u"</s></h><d><i><a>5</a></i></d><d><i><a>6</a></i></d>");
  EXPECT_EQ(NamesOf(fake_.Table()), Lines{"a:10"});
  ASSERT_EQ(fake_.Table().rows.size(), 1u);
  EXPECT_EQ(CellsOf(fake_.Table().rows[0]), Lines{"VT_INT 5"});
}

// The wire form has no white space between its elements. Where there is some it counts as what should stand
// there.
TEST_F(RecordListReader, TextBetweenRecordsIsARecordWithoutCells) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:int"), u"\n<i><a>5</a></i> <i/>"));
  ASSERT_EQ(fake_.Table().rows.size(), 4u);
  EXPECT_EQ(fake_.CallsWith("SetValue"), Lines{"Record(1).SetValue(0, VT_INT 5)"});
}

TEST_F(RecordListReader, TextBetweenCellsIsACellWithoutText) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:string") + ColumnXml(u"b", u"xsd:int"), u"<i> <b>5</b></i>"));
  EXPECT_EQ(fake_.CallsWith("SetValue"),
            (Lines{"Record(0).SetValue(0, VT_BSTR )", "Record(0).SetValue(1, VT_INT 5)"}));
}

TEST_F(RecordListReader, CommentsCountAsRecordsAndCells) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:int") + ColumnXml(u"b", u"xsd:int"),
                    u"<!--r--><i><!--c--><b>5</b></i>"));
  EXPECT_EQ(fake_.Table().rows.size(), 2u);
  EXPECT_EQ(fake_.CallsWith("SetValue"),
            (Lines{"Record(1).SetValue(0, VT_INT 0)", "Record(1).SetValue(1, VT_INT 5)"}));
}

TEST_F(RecordListReader, ManyColumnsAndRecordsAreRead) {
  std::u16string columns;
  std::u16string cells;
  for (int i = 0; i < 60; ++i) {
    columns += ColumnXml(u"a", u"xsd:int");
    cells += u"<a>7</a>";
  }
  std::u16string records;
  for (int i = 0; i < 100; ++i) records += u"<i>" + cells + u"</i>";
  ReadAway(TableXml(columns, records));
  ASSERT_EQ(fake_.Table().rows.size(), 100u);
  ASSERT_EQ(fake_.Table().rows.back().cells.size(), 60u);
  EXPECT_EQ(ShownValue(fake_.Table().rows.back().cells.back()), "VT_INT 7");
  EXPECT_EQ(fake_.CallsWith("SetValue").size(), 6000u);
}

}  // namespace
}  // namespace qv
