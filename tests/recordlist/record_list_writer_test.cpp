// Tables as text: the whole document, and which calls the list gets for it.
#include "format/probe_formater.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

constexpr char kListStart[] = "<RecordList xmlns:q1=\"" QV_NAMESPACE_HOST
                              "/dev/ns/SOF/2.0\" "
                              "xsi:type=\"q1:RecordList\" "
                              "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">"
                              "<q1:Headers>";

class RecordListWriter : public RecordListTest {
 protected:
  // The text with the schema's id, wherever it stands, as "ID".
  static std::string WithoutId(std::string text) {
    const std::string id = IdOf(text);
    if (id.empty()) return "no id in: " + text;
    for (std::size_t at = text.find(id); at != std::string::npos; at = text.find(id))
      text.replace(at, id.size(), "ID");
    return text;
  }
  // "uuid:" and the 36 characters behind it.
  static std::string IdOf(const std::string& text) {
    const std::size_t at = text.find("uuid:");
    return at == std::string::npos ? std::string() : text.substr(at, 41);
  }
  // The whole text around these column definitions and records.
  static std::string Document(const std::string& columns, const std::string& records) {
    return kListStart +
           std::string(
               "<xsd:schema targetNamespace=\"ID\" "
               "xmlns:qvrl=\"" QV_NAMESPACE_HOST
               "/dev/ns/SOF/2.0\" "
               "xmlns:qvdt=\"" QV_NAMESPACE_HOST
               "/ns/core/DataTypes/1.0\" "
               "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
               "xmlns:tns=\"ID\">") +
           columns + "</xsd:schema></q1:Headers><q1:Records>" + records + "</q1:Records></RecordList>";
  }
  static std::string Column(const std::string& name, const std::string& type, const std::string& shown) {
    return "<xsd:element xsd:name=\"" + name + "\" xsd:type=\"" + type + "\" xsd:displayName=\"" + shown +
           "\" qvrl:valueSize=\"\" qvrl:valueSize2=\"\"/>";
  }
  // Two columns, two records.
  static FakeTable TwoByTwo() {
    return FakeTable{{{u"a", 10, u"A"}, {u"b", 1, u"B"}},
                     {{{Variant::FromInt(5), Variant::FromString(u"x")}},
                      {{Variant::FromInt(6), Variant::FromString(u"y")}}}};
  }
};

TEST_F(RecordListWriter, DocumentHasNoSpaceBetweenItsPieces) {
  EXPECT_EQ(WithoutId(Written(TwoByTwo())),
            Document(Column("a", "xsd:int", "A") + Column("b", "xsd:string", "B"),
                     "<q1:Record><a>5</a><b>x</b></q1:Record><q1:Record><a>6</a><b>y</b></q1:Record>"));
}

TEST_F(RecordListWriter, TextHasNoNullUnits) {
  const Variant list = Variant::FromObject(fake_.MakeList(TwoByTwo()).get());
  const WideString text = formater_.WriteValue(list);
  EXPECT_EQ(text.view().find(u'\0'), std::u16string_view::npos);
  EXPECT_EQ(text.view().back(), u'>');
}

TEST_F(RecordListWriter, CallsComeInOneOrder) {
  Written(TwoByTwo());
  EXPECT_EQ(fake_.Calls(), (Lines{"List.Query",
                                  "List.GetHeaders",
                                  "Headers.GetCount",
                                  "Headers.GetHeader(0)",
                                  "Header(0).GetType",
                                  "Header(0).GetName",
                                  "Header(0).GetDisplayName",
                                  "Headers.GetHeader(1)",
                                  "Header(1).GetType",
                                  "Header(1).GetName",
                                  "Header(1).GetDisplayName",
                                  "List.OpenCursor(-1)",
                                  "Cursor.HasMore",
                                  "Cursor.Next",
                                  "Record(0).Query",
                                  "Record(0).GetHeaders",
                                  "Headers.GetHeader(0)",
                                  "Header(0).GetType",
                                  "Record(0).GetValue(0)",
                                  "Header(0).GetName",
                                  "Record(0).GetHeaders",
                                  "Headers.GetHeader(1)",
                                  "Header(1).GetType",
                                  "Record(0).GetValue(1)",
                                  "Header(1).GetName",
                                  "Cursor.HasMore",
                                  "Cursor.Next",
                                  "Record(1).Query",
                                  "Record(1).GetHeaders",
                                  "Headers.GetHeader(0)",
                                  "Header(0).GetType",
                                  "Record(1).GetValue(0)",
                                  "Header(0).GetName",
                                  "Record(1).GetHeaders",
                                  "Headers.GetHeader(1)",
                                  "Header(1).GetType",
                                  "Record(1).GetValue(1)",
                                  "Header(1).GetName",
                                  "Cursor.HasMore"}));
}

TEST_F(RecordListWriter, ReferencesAreGivenBack) {
  const IRecordListPtr list = fake_.MakeList(TwoByTwo());
  Written(Variant::FromObject(list.get()));
  EXPECT_EQ(fake_.LiveObjects(), 1);
  EXPECT_EQ(list->AddRef(), 2u);
  EXPECT_EQ(list->Release(), 1u);
}

TEST_F(RecordListWriter, IdIsAGuidBehindItsMark) {
  const std::string text = Written(FakeTable{});
  const std::string id = IdOf(text);
  ASSERT_EQ(id.size(), 41u) << text;
  for (std::size_t i = 5; i < id.size(); ++i) {
    const bool dash = i == 13 || i == 18 || i == 23 || i == 28;
    EXPECT_TRUE(dash ? id[i] == '-' : std::string("0123456789ABCDEF").find(id[i]) != std::string::npos) << id;
  }
  EXPECT_NE(text.find("targetNamespace=\"" + id + "\""), std::string::npos);
  EXPECT_NE(text.find("xmlns:tns=\"" + id + "\""), std::string::npos);
}

TEST_F(RecordListWriter, EachCallHasAnIdOfItsOwn) {
  const Variant list = Variant::FromObject(fake_.MakeList(TwoByTwo()).get());
  const std::string first = Written(list);
  const std::string second = Written(list);
  EXPECT_NE(IdOf(first), IdOf(second));
  EXPECT_EQ(WithoutId(first), WithoutId(second));
}

TEST_F(RecordListWriter, ListWithoutColumnsHasEmptyRecords) {
  EXPECT_EQ(WithoutId(Written(FakeTable{})), Document("", ""));
  EXPECT_EQ(WithoutId(Written(FakeTable{{}, {FakeRow{}, FakeRow{}}})),
            Document("", "<q1:Record></q1:Record><q1:Record></q1:Record>"));
}

TEST_F(RecordListWriter, ListWithoutRecordsHasColumnsOnly) {
  EXPECT_EQ(WithoutId(Written(FakeTable{{{u"a", 13, u"A"}}, {}})),
            Document(Column("a", "xsd:byte", "A"), ""));
  EXPECT_EQ(fake_.Calls().back(), "Cursor.HasMore");
}

TEST_F(RecordListWriter, EachColumnTypeHasItsName) {
  const struct {
    std::int32_t type;
    const char* name;
  } rows[] = {{1, "xsd:string"},    {2, "xsd:boolean"}, {3, "Undefined"},  {4, "xsd:double"},
              {5, "xsd:duration"},  {6, "qvdt:Blob"},   {8, "qvdt:URL"},   {10, "xsd:int"},
              {11, "xsd:short"},    {12, "Undefined"},  {13, "xsd:byte"},  {14, "Undefined"},
              {16, "xsd:datetime"}, {17, "xsd:time"},   {18, "xsd:date"},  {23, "sof:url"},
              {0, "Undefined"},     {7, "Undefined"},   {-1, "Undefined"}, {1000, "Undefined"}};
  for (const auto& row : rows)
    EXPECT_EQ(WithoutId(Written(FakeTable{{{u"a", row.type, u"A"}}, {}})),
              Document(Column("a", row.name, "A"), ""));
}

TEST_F(RecordListWriter, DisplayNameIsEscaped) {
  EXPECT_EQ(WithoutId(Written(FakeTable{{{u"a", 1, u"A & \"B\" <c> 'd' \u00E9"}}, {}})),
            Document(Column("a", "xsd:string", "A &amp; &quot;B&quot; &lt;c&gt; &apos;d&apos; &#233;"), ""));
}

TEST_F(RecordListWriter, NullNamesAreEmpty) {
  EXPECT_EQ(WithoutId(Written(FakeTable{{{WideString(), 10, WideString()}}, {{{Variant::FromInt(5)}}}})),
            Document(Column("", "xsd:int", ""), "<q1:Record><>5</></q1:Record>"));
}

TEST_F(RecordListWriter, NameThatXmlForbidsOtherwiseStandsAsItIs) {
  EXPECT_EQ(WithoutId(Written(FakeTable{{{u"a b/1", 10, u"A"}}, {{{Variant::FromInt(5)}}}})),
            Document(Column("a b/1", "xsd:int", "A"), "<q1:Record><a b/1>5</a b/1></q1:Record>"));
}

TEST_F(RecordListWriter, CellsWithoutTextAreEmptyElements) {
  EXPECT_EQ(
      WithoutId(Written(FakeTable{{{u"a", 1}, {u"b", 0}, {u"c", 14}},
                                  {{{Variant(), Variant::FromInt(5), Variant::FromInt(6)}}}})),
      Document(Column("a", "xsd:string", "") + Column("b", "Undefined", "") + Column("c", "Undefined", ""),
               "<q1:Record><a/><b/><c/></q1:Record>"));
}

TEST_F(RecordListWriter, UndefinedColumnsWriteTheirCellsAllTheSame) {
  EXPECT_EQ(WithoutId(Written(FakeTable{{{u"a", 3}, {u"b", 12}},
                                        {{{Variant::FromFloat(1.5F), Variant::FromLong(1LL << 40)}}}})),
            Document(Column("a", "Undefined", "") + Column("b", "Undefined", ""),
                     "<q1:Record><a>1.5</a><b>1099511627776</b></q1:Record>"));
}

TEST_F(RecordListWriter, TagOfTheValueIsNotLookedAt) {
  VariantData data;
  data.punkVal = fake_.MakeList(TwoByTwo()).detach();
  const Variant list = Variant::FromRaw(VT_DISPATCH, data);
  EXPECT_EQ(WithoutId(Written(list)),
            Document(Column("a", "xsd:int", "A") + Column("b", "xsd:string", "B"),
                     "<q1:Record><a>5</a><b>x</b></q1:Record><q1:Record><a>6</a><b>y</b></q1:Record>"));
}

TEST_F(RecordListWriter, RecordsThatAreNoneAreSkipped) {
  fake_.Fail(ListStep::kQueryRecord, E_NOINTERFACE);
  EXPECT_EQ(WithoutId(Written(TwoByTwo())),
            Document(Column("a", "xsd:int", "A") + Column("b", "xsd:string", "B"),
                     "<q1:Record><a>6</a><b>y</b></q1:Record>"));
}

TEST_F(RecordListWriter, NullRecordsAreSkipped) {
  fake_.GiveNull(ListStep::kNext, 2);
  EXPECT_EQ(WithoutId(Written(TwoByTwo())),
            Document(Column("a", "xsd:int", "A") + Column("b", "xsd:string", "B"),
                     "<q1:Record><a>5</a><b>x</b></q1:Record>"));
  EXPECT_EQ(fake_.Calls().back(), "Cursor.HasMore");
}

TEST_F(RecordListWriter, CountOfColumnsIsTakenOnce) {
  fake_.SayCount(1);
  EXPECT_EQ(WithoutId(Written(TwoByTwo())),
            Document(Column("a", "xsd:int", "A"),
                     "<q1:Record><a>5</a></q1:Record><q1:Record><a>6</a></q1:Record>"));
  EXPECT_EQ(fake_.CallsWith("GetCount").size(), 1u);
}

TEST_F(RecordListWriter, NegativeCountIsNoColumns) {
  fake_.SayCount(-1);
  EXPECT_EQ(WithoutId(Written(TwoByTwo())), Document("", "<q1:Record></q1:Record><q1:Record></q1:Record>"));
}

TEST_F(RecordListWriter, ListIsNotChanged) {
  const IRecordListPtr list = fake_.MakeList(TwoByTwo());
  Written(Variant::FromObject(list.get()));
  EXPECT_EQ(fake_.CallsWith("SetLocked"), Lines{});
  EXPECT_EQ(fake_.CallsWith("CoCreate"), Lines{});
  EXPECT_EQ(fake_.CallsWith("Run"), Lines{});
}

TEST_F(RecordListWriter, ManyRecordsAreWritten) {
  FakeTable table{{{u"a", 10, u"A"}}, {}};
  std::string records;
  for (int i = 0; i < 2000; ++i) {
    table.rows.push_back({{Variant::FromInt(7)}});
    records += "<q1:Record><a>7</a></q1:Record>";
  }
  EXPECT_EQ(WithoutId(Written(table)), Document(Column("a", "xsd:int", "A"), records));
}

}  // namespace
}  // namespace qv
