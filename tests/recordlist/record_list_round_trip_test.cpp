// What is written is read again: over the component in memory and over the library's own.
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

// The text of every kind of column, as it comes back: byte, boolean and the dates keep their value, strings
// keep one of the two escapes, and what is written "Undefined" comes back empty.
const FakeTable kEveryKind{
    {{u"s", 1, u"String"},
     {u"b", 2, u"Boolean"},
     {u"f", 3, u"Float"},
     {u"d", 4, u"Double"},
     {u"m", 6, u"Blob"},
     {u"u", 8, u"Url"},
     {u"i", 10, u"Int"},
     {u"h", 11, u"Short"},
     {u"l", 12, u"Long"},
     {u"y", 13, u"Byte"},
     {u"dt", 16, u"Date and time"},
     {u"t", 17, u"Time"},
     {u"da", 18, u"Date"},
     {u"x", 23, u"Link"}},
    {{{Text(u"a&b"), Bool(true), R4(1.5F), R8(-2.25), Text(u"AAEC/w=="), Text(u"http://a/b"), Int(-7),
       I2(300), I8(12), I1(-5), Date(45356.75), Date(0.25), Date(45356), Variant()}}}};

class RecordListRoundTrip : public RecordListTest {
 protected:
  Variant ReadBack(const WideString& text) {
    const XmlText xml(text.view());
    return formater_.ReadValue(xml.Root());
  }
  WideString TextOf(const FakeTable& table) {
    return formater_.WriteValue(Variant::FromObject(fake_.MakeList(table).get()));
  }
};

TEST_F(RecordListRoundTrip, EveryKindOfColumnComesBack) {
  ReadBack(TextOf(kEveryKind));
  const FakeTable& read = fake_.Table();
  Lines columns;
  for (const FakeColumn& column : read.columns)
    columns.push_back(Shown(column.name) + " " + std::to_string(column.type) + " " +
                      Shown(column.displayName));
  EXPECT_EQ(columns, (Lines{"s 1 s", "b 2 b", "f 0 f", "d 4 d", "m 6 m", "u 8 u", "i 10 i", "h 11 h", "l 0 l",
                            "y 13 y", "dt 16 dt", "t 17 t", "da 18 da", "x 23 x"}));
  ASSERT_EQ(read.rows.size(), 1U);
  Lines cells;
  for (const Variant& cell : read.rows[0].cells) cells.push_back(ShownValue(cell));
  EXPECT_EQ(cells, (Lines{"VT_BSTR a&amp;b", "VT_BOOL -1", "VT_EMPTY", "VT_R8 -2.25",
                          "VT_BSTR AAEC/w==", "VT_BSTR http://a/b", "VT_INT -7", "VT_I2 300", "VT_EMPTY",
                          "VT_I1 -5", "VT_DATE 45356.75", "VT_DATE 0.25", "VT_DATE 45356", "VT_EMPTY"}));
}

TEST_F(RecordListRoundTrip, EmptyListsComeBack) {
  ReadBack(TextOf(FakeTable{}));
  EXPECT_EQ(fake_.Table().columns.size(), 0U);
  EXPECT_EQ(fake_.Table().rows.size(), 0U);
  ReadBack(TextOf(FakeTable{{}, {FakeRow{}, FakeRow{}, FakeRow{}}}));
  EXPECT_EQ(fake_.Table().rows.size(), 3U);
  ReadBack(TextOf(FakeTable{{{u"a", 10, u"A"}}, {}}));
  EXPECT_EQ(fake_.Table().columns.size(), 1U);
  EXPECT_EQ(fake_.Table().rows.size(), 0U);
}

TEST_F(RecordListRoundTrip, TypeNamesComeBackInTheirOneForm) {
  const struct {
    const char16_t* read;
    const char* written;
  } rows[] = {{u"qvdt:Memo", "xsd:string"},         {u"qvdt:Money", "xsd:double"},
              {u"xsd:dateTime", "xsd:datetime"},    {u"sof:URL", "sof:url"},
              {u"xsd:objectidentifier", "xsd:int"}, {u"made up", "Undefined"}};
  for (const auto& row : rows) {
    const std::string text = Written(Read(TableXml(ColumnXml(u"a", row.read), u"")));
    const std::string piece = R"(xsd:name="a" xsd:type=")" + std::string(row.written) + "\"";
    EXPECT_NE(text.find(piece), std::string::npos) << piece << " in " << text;
  }
}

// The library's own list in place of the fake one.
class OwnRecordList : public FactoryFixture {
 protected:
  static IRecordListPtr ListIn(const Variant& value) { return As<IRecordList>(value.Object()); }
  static Variant Read(const std::u16string& text) {
    const XmlText xml(text);
    return FormaterRecordList().ReadValue(xml.Root());
  }
  static std::string ReadThrows(const std::u16string& content) {
    return Thrown([&content] { Read(u"<v>" + content + u"</v>"); });
  }
  static WideString Written(const IRecordListPtr& list) {
    return FormaterRecordList().WriteValue(Variant::FromObject(list.get()));
  }
  static void AddColumn(const IRecordListPtr& list, const WideString& name, std::int32_t type) {
    IRecordListHeadersPtr headers;
    ThrowIfFailed(list->GetHeaders(Put(headers)));
    ThrowIfFailed(headers->AddHeader(name, type, nullptr));
  }
  static void AddRecord(const IRecordListPtr& list, const std::vector<Variant>& values) {
    IUnknownPtr unknown;
    ThrowIfFailed(list->NewRecord(Put(unknown)));
    const IRecordListRecordPtr record = As<IRecordListRecord>(unknown);
    for (std::size_t i = 0; i < values.size(); ++i)
      ThrowIfFailed(record->SetValue(static_cast<std::int32_t>(i), values[i]));
  }
  // The cells of all records, row by row.
  static Lines CellsOf(const IRecordListPtr& list, std::int32_t columns) {
    Lines cells;
    IRecordListCursorPtr cursor;
    ThrowIfFailed(list->OpenCursor(VARIANT_TRUE, Put(cursor)));
    VARIANT_BOOL more = VARIANT_FALSE;
    while (Succeeded(cursor->HasMore(&more)) && more != VARIANT_FALSE) {
      IUnknownPtr unknown;
      ThrowIfFailed(cursor->Next(Put(unknown)));
      const IRecordListRecordPtr record = As<IRecordListRecord>(unknown);
      for (std::int32_t i = 0; i < columns; ++i) {
        Variant value;
        ThrowIfFailed(record->GetValue(i, &value));
        cells.push_back(ShownValue(value));
      }
    }
    return cells;
  }
};

TEST_F(OwnRecordList, IsWrittenAndReadBack) {
  const IRecordListPtr list = CreateRecordList();
  AddColumn(list, u"i", kColumnInt);
  AddColumn(list, u"s", kColumnString);
  AddColumn(list, u"d", kColumnDate);
  AddRecord(list, {Int(1), Text(u"one"), Date(45356)});
  AddRecord(list, {Int(2), Text(u"<2>"), Date(45357)});
  const Variant back = Read(std::u16string(Written(list).view()));
  EXPECT_EQ(CellsOf(ListIn(back), 3), (Lines{"VT_INT 1", "VT_BSTR one", "VT_DATE 45356", "VT_INT 2",
                                             "VT_BSTR &lt;2&gt;", "VT_DATE 45357"}));
}

TEST_F(OwnRecordList, ReadListRefusesChange) {
  const char denied[] = "_com_error 0x80070005";
  const IRecordListPtr list = ListIn(Read(u"<v>" + OneCellXml(u"xsd:int", u"5") + u"</v>"));
  EXPECT_EQ(CellsOf(list, 1), Lines{"VT_INT 5"});
  EXPECT_EQ(Thrown([&] { AddRecord(list, {}); }).substr(0, 21), denied);
  EXPECT_EQ(Thrown([&] { AddColumn(list, u"b", 1); }).substr(0, 21), denied);
  EXPECT_EQ(list->SetLocked(VARIANT_FALSE), S_OK);
  EXPECT_EQ(Thrown([&] { AddColumn(list, u"b", 1); }).substr(0, 21), denied);
  EXPECT_EQ(Thrown([&] { AddRecord(list, {Int(6)}); }), "nothing");
}

TEST_F(OwnRecordList, MoreCellsThanColumnsFail) {
  EXPECT_EQ(ReadThrows(TableXml(ColumnXml(u"a", u"xsd:int"), u"<i><a>5</a><b>6</b></i>")), kCannotCreate);
}

std::u16string Repeated(const std::u16string& piece, std::size_t times) {
  std::u16string text;
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

// 100 kB of text would take gigabytes: every cell of the table is there, whether or not its record fills it.
TEST_F(OwnRecordList, RecordsThatFillFarTooLittleFail) {
  EXPECT_EQ(kMostMissingCells, 4194304);
  const std::u16string columns = Repeated(ColumnXml(u"a", u"xsd:int"), 2048);
  const std::u16string most = Repeated(u"<i/>", 2048);
  EXPECT_EQ(ReadThrows(TableXml(columns, most)), "nothing");
  EXPECT_EQ(ReadThrows(TableXml(columns, most + u"<i/>")), kCannotCreate);
  EXPECT_EQ(ReadThrows(TableXml(columns, most + u"<i>" + Repeated(u"<a/>", 2048) + u"</i>")), kCannotCreate);
}

TEST_F(OwnRecordList, BadNameOfAColumnIsRefusedOnWriting) {
  const IRecordListPtr list = CreateRecordList();
  AddColumn(list, u"a&b", kColumnInt);
  EXPECT_EQ(Thrown([&] { Written(list); }), kBadHeader);
}

}  // namespace
}  // namespace qv
