// Tables in answers: what is read from where, and which calls the list gets for it.
#include "qvscriptwells/com_call.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

using RecordListReader = RecordListTest;

// "a:10 b:1"
std::string ColumnsOf(const FakeTable& table) {
  std::string columns;
  for (const FakeColumn& column : table.columns)
    columns += (columns.empty() ? "" : " ") + Shown(column.name) + ":" + std::to_string(column.type);
  return columns;
}
// "0.1 VT_INT 5; 1.0 VT_BSTR x": each SetValue with the numbers of record and column.
std::string ValuesSet(const FakeRecordList& fake) {
  std::string values;
  for (const std::string& call : fake.CallsWith("SetValue")) {
    const std::size_t comma = call.find(", ");
    const std::string column = call.substr(call.find("SetValue(") + 9, comma - call.find("SetValue(") - 9);
    values += (values.empty() ? "" : "; ") + call.substr(7, call.find(')') - 7) + "." + column + " " +
              call.substr(comma + 2, call.size() - comma - 3);
  }
  return values;
}

// The calls for one record of two columns.
Lines RecordCalls(int number, const std::string& first, const std::string& second) {
  const std::string record = "Record(" + std::to_string(number) + ").";
  return {"List.NewRecord",        record + "Query",    record + "SetLocked(0)",
          "Headers.GetHeader(0)",  "Header(0).GetType", record + "SetValue(0, " + first + ")",
          "Headers.GetHeader(1)",  "Header(1).GetType", record + "SetValue(1, " + second + ")",
          record + "SetLocked(-1)"};
}

TEST_F(RecordListReader, CallsComeInOneOrder) {
  ReadAway(TwoByTwoXml());
  Lines expected{"CoCreate IUnknown",
                 "Run",
                 "List.Query",
                 "List.SetLocked(0)",
                 "List.GetHeaders",
                 "Headers.SetLocked(0)",
                 "Headers.AddHeader(a, 10)",
                 "Header(0).SetDisplayName(a)",
                 "Headers.AddHeader(b, 1)",
                 "Header(1).SetDisplayName(b)"};
  for (const Lines& more : {RecordCalls(0, "VT_INT 5", "VT_BSTR x"), RecordCalls(1, "VT_INT 6", "VT_BSTR y"),
                            Lines{"List.SetLocked(-1)", "Headers.SetLocked(-1)"}})
    expected.insert(expected.end(), more.begin(), more.end());
  EXPECT_EQ(fake_.Calls(), expected);
}

TEST_F(RecordListReader, ListIsLockedThroughout) {
  ReadAway(OneCellXml(u"xsd:int", u"5"));
  EXPECT_TRUE(fake_.Table().locked);
  EXPECT_TRUE(fake_.Table().headersLocked);
  EXPECT_TRUE(fake_.Table().rows.at(0).locked);
}

TEST_F(RecordListReader, ValueIsTheInterfaceOfANewListAndItsOnlyOwner) {
  const Variant value = Read(OneCellXml(u"xsd:int", u"5"));
  ASSERT_EQ(value.Tag(), VT_UNKNOWN);
  ASSERT_NE(value.Object(), nullptr);
  EXPECT_EQ(fake_.LiveObjects(), 1);
  EXPECT_EQ(value.Object()->AddRef(), 2U);
  EXPECT_EQ(value.Object()->Release(), 1U);
  EXPECT_EQ(static_cast<IUnknown*>(As<IRecordList>(value.Object()).get()), value.Object());
  EXPECT_NE(Read(OneCellXml(u"xsd:int", u"6")).Object(), value.Object());
  EXPECT_EQ(fake_.TableCount(), 2U);
}

TEST_F(RecordListReader, ListThatNeedsNoStartIsUsedAllTheSame) {
  fake_.OfferNoRunnable();
  ReadAway(OneCellXml(u"xsd:int", u"5"));
  EXPECT_EQ(fake_.Calls()[1], "List.Query");
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
    EXPECT_EQ(ColumnsOf(fake_.Table()), row.column) << Shown(row.name);
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

TEST_F(RecordListReader, EmptySchemaGivesNoColumns) {
  ReadAway(u"<h><s/></h><d/>");
  EXPECT_EQ(fake_.Calls(),
            (Lines{"CoCreate IUnknown", "Run", "List.Query", "List.SetLocked(0)", "List.GetHeaders",
                   "Headers.SetLocked(0)", "List.SetLocked(-1)", "Headers.SetLocked(-1)"}));
}

TEST_F(RecordListReader, RecordWithoutCellsHasNoValuesSet) {
  ReadAway(TableXml(ColumnXml(u"a", u"xsd:int"), u"<i/>"));
  EXPECT_EQ(fake_.CallsWith("Record("),
            (Lines{"Record(0).Query", "Record(0).SetLocked(0)", "Record(0).SetLocked(-1)"}));
  EXPECT_EQ(fake_.CallsWith("GetHeader("), Lines{});
}

// Elements count by their places, not by their names. The wire form has no white space between its elements;
// a text or a comment there counts as the element that is expected in its place.
TEST_F(RecordListReader, ElementsAreReadByTheirPlaces) {
  const std::u16string a = ColumnXml(u"a", u"xsd:int");
  const struct {
    const char* name;
    std::u16string content;
    const char* columns;
    std::size_t records;
    const char* values;
  } rows[] = {
      {"columns keep their order",
       TableXml(ColumnXml(u"z", u"xsd:string") + a + ColumnXml(u"a", u"sof:URL"), u""), "z:1 a:10 a:23", 0,
       ""},
      {"empty name", TableXml(ColumnXml(u"", u"xsd:int"), u"<i><a>5</a></i>"), ":10", 1, "0.0 VT_INT 5"},
      {"attributes in any order",
       TableXml(u"<c name='x' type='xsd:string' xsd:type='xsd:int' other='y' xsd:name='a'/>", u""), "a:10", 0,
       ""},
      {"content of a column", TableXml(u"<c xsd:name='a' xsd:type='xsd:int'>text<b xsd:name='c'/></c>", u""),
       "a:10", 0, ""},
      {"no records", TableXml(a, u""), "a:10", 0, ""},
      {"records without columns", TableXml(u"", u"<i/><i></i>"), "", 2, ""},
      {"fewer cells than columns", TableXml(TwoColumnsXml(), u"<i><a>5</a></i>"), "a:10 b:1", 1,
       "0.0 VT_INT 5"},
      {"cells in another order", TableXml(TwoColumnsXml(), u"<i><b>5</b><a>6</a></i>"), "a:10 b:1", 1,
       "0.0 VT_INT 5; 0.1 VT_BSTR 6"},
      {"any names", u"<x><x><x xsd:name='a' xsd:type='xsd:int'/></x></x><x><x><x>5</x></x></x>", "a:10", 1,
       "0.0 VT_INT 5"},
      {"records named like headers", u"<q1:Records><o/></q1:Records><q1:Headers><one/><two/></q1:Headers>",
       "", 2, ""},
      {"names of the wire",
       u"<q1:Headers><xsd:schema targetNamespace='uuid:x'><xsd:element xsd:name='a' xsd:type='xsd:int' "
       u"xsd:displayName='A' qvrl:valueSize='' qvrl:valueSize2=''/></xsd:schema></q1:Headers>"
       u"<q1:Records><q1:Record><a>5</a></q1:Record></q1:Records>",
       "a:10", 1, "0.0 VT_INT 5"},
      {"first schema and second block",
       u"<h><s>" + a + u"</s><s><c/></s></h><d><i><a>5</a></i></d><d><i><a>6</a></i></d>", "a:10", 1,
       "0.0 VT_INT 5"},
      {"text between records", TableXml(a, u"\n<i><a>5</a></i> <i/>"), "a:10", 4, "1.0 VT_INT 5"},
      {"text between cells", TableXml(ColumnXml(u"a", u"xsd:string") + a, u"<i> <b>5</b></i>"), "a:1 a:10", 1,
       "0.0 VT_BSTR ; 0.1 VT_INT 5"},
      {"comments", TableXml(a + a, u"<!--r--><i><!--c--><b>5</b></i>"), "a:10 a:10", 2,
       "1.0 VT_INT 0; 1.1 VT_INT 5"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    FakeRecordList fake;
    ReadAway(row.content);
    EXPECT_EQ(ColumnsOf(fake.Table()), row.columns);
    EXPECT_EQ(fake.Table().rows.size(), row.records);
    EXPECT_EQ(ValuesSet(fake), row.values);
    EXPECT_TRUE(fake.Table().locked);
    EXPECT_TRUE(fake.Table().headersLocked);
    EXPECT_EQ(fake.LiveObjects(), 0);
  }
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
  ASSERT_EQ(fake_.Table().rows.size(), 100U);
  ASSERT_EQ(fake_.Table().rows.back().cells.size(), 60U);
  EXPECT_EQ(ShownValue(fake_.Table().rows.back().cells.back()), "VT_INT 7");
  EXPECT_EQ(fake_.CallsWith("SetValue").size(), 6000U);
}

}  // namespace
}  // namespace qv
