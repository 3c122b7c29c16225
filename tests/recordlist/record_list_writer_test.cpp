// Tables as text: the whole document, and which calls the list gets for it.
#include "fixtures/guid_shape.h"
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
  // The text of this table or list with the schema's id as "ID".
  template <class List>
  std::string Plain(const List& list) {
    return WithoutId(Written(list));
  }
  static std::string WithoutId(std::string text) {
    const std::string id = IdOf(text);
    if (id.empty()) return "no id in: " + text;
    for (std::size_t at = text.find(id); at != std::string::npos; at = text.find(id))
      text.replace(at, id.size(), "ID");
    return text;
  }
  // "uuid:" and the 36 characters after it.
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
           R"(" qvrl:valueSize="" qvrl:valueSize2=""/>)";
  }
  // The columns of TwoByTwo, and its records.
  static std::string TwoColumns() { return Column("a", "xsd:int", "A") + Column("b", "xsd:string", "B"); }
  static constexpr char kFirst[] = "<q1:Record><a>5</a><b>x</b></q1:Record>";
  static constexpr char kSecond[] = "<q1:Record><a>6</a><b>y</b></q1:Record>";
};

TEST_F(RecordListWriter, DocumentHasNoSpaceBetweenItsPieces) {
  EXPECT_EQ(Plain(TwoByTwo()), Document(TwoColumns(), std::string(kFirst) + kSecond));
}

TEST_F(RecordListWriter, TextHasNoNullUnits) {
  const Variant list = Variant::FromObject(fake_.MakeList(TwoByTwo()).get());
  const WideString text = formater_.WriteValue(list);
  EXPECT_EQ(text.view().find(u'\0'), std::u16string_view::npos);
  EXPECT_EQ(text.view().back(), u'>');
}

// The calls for one cell.
Lines CellCalls(const std::string& record, const std::string& place) {
  return {record + "GetHeaders", "Headers.GetHeader(" + place + ")", "Header(" + place + ").GetType",
          record + "GetValue(" + place + ")", "Header(" + place + ").GetName"};
}

TEST_F(RecordListWriter, CallsComeInOneOrder) {
  Written(TwoByTwo());
  Lines expected{"List.Query",        "List.GetHeaders",   "Headers.GetCount",         "Headers.GetHeader(0)",
                 "Header(0).GetType", "Header(0).GetName", "Header(0).GetDisplayName", "Headers.GetHeader(1)",
                 "Header(1).GetType", "Header(1).GetName", "Header(1).GetDisplayName", "List.OpenCursor(-1)"};
  for (const std::string record : {"Record(0).", "Record(1)."})
    for (const Lines& more : {Lines{"Cursor.HasMore", "Cursor.Next", record + "Query"},
                              CellCalls(record, "0"), CellCalls(record, "1")})
      expected.insert(expected.end(), more.begin(), more.end());
  expected.push_back("Cursor.HasMore");
  EXPECT_EQ(fake_.Calls(), expected);
}

TEST_F(RecordListWriter, ReferencesAreGivenBack) {
  const IRecordListPtr list = fake_.MakeList(TwoByTwo());
  Written(Variant::FromObject(list.get()));
  EXPECT_EQ(fake_.LiveObjects(), 1);
  EXPECT_EQ(list->AddRef(), 2U);
  EXPECT_EQ(list->Release(), 1U);
}

TEST_F(RecordListWriter, IdIsAGuidAfterItsMark) {
  const std::string text = Written(FakeTable{});
  const std::string id = IdOf(text);
  ASSERT_EQ(id.size(), 41U) << text;
  EXPECT_TRUE(IsGuid(id.substr(5))) << id;
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
    EXPECT_EQ(Plain(FakeTable{{{u"a", row.type, u"A"}}, {}}), Document(Column("a", row.name, "A"), ""));
}

TEST_F(RecordListWriter, TablesAreWrittenLikeThis) {
  const Variant five = Int(5);
  const std::string undefined = Column("b", "Undefined", "");
  const struct {
    const char* name;
    FakeTable table;
    std::string columns;
    const char* records;
  } rows[] = {
      {"neither columns nor records", FakeTable{}, "", ""},
      {"no columns", FakeTable{{}, {FakeRow{}, FakeRow{}}}, "",
       "<q1:Record></q1:Record><q1:Record></q1:Record>"},
      {"no records", FakeTable{{{u"a", 13, u"A"}}, {}}, Column("a", "xsd:byte", "A"), ""},
      {"escaped display name", FakeTable{{{u"a", 1, u"A & \"B\" <c> 'd' \u00E9"}}, {}},
       Column("a", "xsd:string", "A &amp; &quot;B&quot; &lt;c&gt; &apos;d&apos; &#233;"), ""},
      {"null names", FakeTable{{{WideString(), 10, WideString()}}, {{{five}}}}, Column("", "xsd:int", ""),
       "<q1:Record><>5</></q1:Record>"},
      {"name that XML forbids", FakeTable{{{u"a b/1", 10, u"A"}}, {{{five}}}},
       Column("a b/1", "xsd:int", "A"), "<q1:Record><a b/1>5</a b/1></q1:Record>"},
      {"cells without text", FakeTable{{{u"a", 1}, {u"b", 0}, {u"b", 14}}, {{{Variant(), five, five}}}},
       Column("a", "xsd:string", "") + undefined + undefined, "<q1:Record><a/><b/><b/></q1:Record>"},
      {"undefined columns", FakeTable{{{u"b", 3}, {u"b", 12}}, {{{R4(1.5F), I8(1LL << 40)}}}},
       undefined + undefined, "<q1:Record><b>1.5</b><b>1099511627776</b></q1:Record>"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Plain(row.table), Document(row.columns, row.records)) << row.name;
    EXPECT_EQ(fake_.Calls().back(), "Cursor.HasMore");
  }
}

TEST_F(RecordListWriter, TagOfTheValueIsNotLookedAt) {
  VariantData data;
  data.punkVal = fake_.MakeList(TwoByTwo()).detach();
  const Variant list = Variant::FromRaw(VT_DISPATCH, data);
  EXPECT_EQ(Plain(list), Document(TwoColumns(), std::string(kFirst) + kSecond));
}

TEST_F(RecordListWriter, OtherObjectsThanRecordsAreSkipped) {
  fake_.Fail(ListStep::kQueryRecord, E_NOINTERFACE);
  EXPECT_EQ(Plain(TwoByTwo()), Document(TwoColumns(), kSecond));
}

TEST_F(RecordListWriter, NullRecordsAreSkipped) {
  fake_.GiveNull(ListStep::kNext, 2);
  EXPECT_EQ(Plain(TwoByTwo()), Document(TwoColumns(), kFirst));
  EXPECT_EQ(fake_.Calls().back(), "Cursor.HasMore");
}

TEST_F(RecordListWriter, CountOfColumnsIsTakenOnce) {
  fake_.SayCount(1);
  EXPECT_EQ(Plain(TwoByTwo()), Document(Column("a", "xsd:int", "A"),
                                        "<q1:Record><a>5</a></q1:Record><q1:Record><a>6</a></q1:Record>"));
  EXPECT_EQ(fake_.CallsWith("GetCount").size(), 1U);
}

TEST_F(RecordListWriter, NegativeCountIsNoColumns) {
  fake_.SayCount(-1);
  EXPECT_EQ(Plain(TwoByTwo()), Document("", "<q1:Record></q1:Record><q1:Record></q1:Record>"));
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
    table.rows.push_back({{Int(7)}});
    records += "<q1:Record><a>7</a></q1:Record>";
  }
  EXPECT_EQ(Plain(table), Document(Column("a", "xsd:int", "A"), records));
}

}  // namespace
}  // namespace qv
