// Tables that scripts answer, over real sockets.
#include <string>

#include "value_test.h"

namespace qv {
namespace {

class Tables : public ValueTest {
 protected:
  IRecordListPtr Table(const WideString& script, NamedValues values = {}) {
    return AsTable(Answer(script, values));
  }
  static IRecordListPtr AsTable(const Variant& answer) {
    EXPECT_EQ(answer.Tag(), VT_UNKNOWN);
    return As<IRecordList>(answer.Object());
  }
};

IRecordListHeadersPtr HeadersOf(IRecordList* table) {
  IRecordListHeaders* raw = nullptr;
  EXPECT_EQ(table->GetHeaders(&raw), S_OK);
  return IRecordListHeadersPtr(raw, false);
}

std::int32_t ColumnCount(IRecordList* table) {
  std::int32_t count = -1;
  EXPECT_EQ(HeadersOf(table)->GetCount(&count), S_OK);
  return count;
}

// "city:1 people:10"
std::string ColumnsOf(IRecordList* table) {
  std::string text;
  for (std::int32_t i = 0; i < ColumnCount(table); ++i) {
    IRecordListHeader* raw = nullptr;
    EXPECT_EQ(HeadersOf(table)->GetHeader(i, &raw), S_OK);
    const IRecordListHeaderPtr header(raw, false);
    WideString name;
    std::int32_t type = -1;
    EXPECT_EQ(header->GetName(&name), S_OK);
    EXPECT_EQ(header->GetType(&type), S_OK);
    text += (text.empty() ? "" : " ") + ToUtf8(name) + ":" + std::to_string(type);
  }
  return text;
}

// Every cell as ShownValue says, "|" between cells and a line for each row.
std::string RowsOf(IRecordList* table) {
  IRecordListCursor* rawCursor = nullptr;
  EXPECT_EQ(table->OpenCursor(VARIANT_TRUE, &rawCursor), S_OK);
  const IRecordListCursorPtr cursor(rawCursor, false);
  const std::int32_t columns = ColumnCount(table);
  std::string text;
  for (VARIANT_BOOL more = VARIANT_TRUE; cursor->HasMore(&more) == S_OK && more != VARIANT_FALSE;) {
    IUnknown* raw = nullptr;
    EXPECT_EQ(cursor->Next(&raw), S_OK);
    const IUnknownPtr object(raw, false);
    const IRecordListRecordPtr record = As<IRecordListRecord>(raw);
    for (std::int32_t i = 0; i < columns; ++i) {
      Variant value;
      EXPECT_EQ(record->GetValue(i, &value), S_OK);
      text += (i == 0 ? "" : "|") + ShownValue(value);
    }
    text += "\n";
  }
  return text;
}

TEST_F(Tables, ArrayOfObjectsArrivesWithColumnsAndRows) {
  const IRecordListPtr table = Table(u"[{city: 'Rome', people: 2748109}, {city: 'A & \\u00E9', people: -1}]");
  EXPECT_EQ(ColumnsOf(table.get()), "city:1 people:10");
  EXPECT_EQ(RowsOf(table.get()), "VT_BSTR Rome|VT_INT 2748109\nVT_BSTR A & \\u00E9|VT_INT -1\n");
}

TEST_F(Tables, EveryColumnTypeArrives) {
  const IRecordListPtr table = Table(
      u"typed.table({a:'byte',b:'short',c:'int',d:'boolean',e:'double',f:'string',g:'date',h:'time',"
      u"i:'datetime',k:'qvdt:Blob',l:'qvdt:Money'},"
      u"[[-5, 300, 70000, true, 0.5, 'x', '2024-03-05', '10:15:30', '2024-03-05T10:15:30', 'QUJD', 1.25]])");
  EXPECT_EQ(ColumnsOf(table.get()), "a:13 b:11 c:10 d:2 e:4 f:1 g:18 h:17 i:16 k:6 l:4");
  EXPECT_EQ(RowsOf(table.get()),
            "VT_I1 -5|VT_I2 300|VT_INT 70000|VT_BOOL -1|VT_R8 0.5|VT_BSTR x|VT_DATE 45356|"
            "VT_DATE 0.42743055555555554|VT_DATE 45356.42743055556|VT_BSTR QUJD|VT_R8 1.25\n");
}

TEST_F(Tables, DurationsAndUrlsAreObjects) {
  const IRecordListPtr table = Table(
      u"typed.table({span:'duration',link:'url'}, [[typed.duration('P1DT2H'), typed.url('http://a/b')]])");
  EXPECT_EQ(ColumnsOf(table.get()), "span:5 link:23");
  EXPECT_EQ(RowsOf(table.get()), "VT_UNKNOWN object|VT_UNKNOWN object\n");
}

TEST_F(Tables, EmptyCellsReadAsTheirTypeSays) {
  const IRecordListPtr table = Table(u"[{n: 1, s: 'a'}, {n: null}]");
  EXPECT_EQ(RowsOf(table.get()), "VT_INT 1|VT_BSTR a\nVT_INT 0|VT_BSTR \n");
}

TEST_F(Tables, TableWithoutRowsHasItsColumns) {
  const IRecordListPtr table = Table(u"typed.table({name:'string', born:'date'})");
  EXPECT_EQ(ColumnsOf(table.get()), "name:1 born:18");
  EXPECT_EQ(RowsOf(table.get()), "");
}

TEST_F(Tables, TableWithoutColumnsIsOne) {
  const IRecordListPtr table = Table(u"typed.table({}, [])");
  EXPECT_EQ(ColumnsOf(table.get()), "");
}

TEST_F(Tables, ThousandRowsArriveWhole) {
  const IRecordListPtr table =
      Table(u"Array.from({length: 1000}, (_, i) => ({i: i, text: 'row ' + i, half: i + 0.5}))");
  const std::string rows = RowsOf(table.get());
  EXPECT_EQ(ColumnsOf(table.get()), "i:10 text:1 half:4");
  EXPECT_EQ(rows.substr(0, 34), "VT_INT 0|VT_BSTR row 0|VT_R8 0.5\nV");
  EXPECT_NE(rows.find("\nVT_INT 999|VT_BSTR row 999|VT_R8 999.5\n"), std::string::npos);
}

TEST_F(Tables, AnswerIsLockedThroughout) {
  const IRecordListPtr table = Table(u"[{a: 1}]");
  IUnknown* record = nullptr;
  EXPECT_EQ(OutcomeText(table->NewRecord(&record)), "0x80070005 The record list is locked.");
  EXPECT_EQ(record, nullptr);
  EXPECT_EQ(OutcomeText(HeadersOf(table.get())->AddHeader(u"b", kColumnInt, nullptr)),
            "0x80070005 The record list is locked.");
}

TEST_F(Tables, AnswerOutlivesModelAndSession) {
  const IRecordListPtr table = Table(u"[{a: 'kept'}]");
  EXPECT_EQ(Close(), "ok");
  model_.reset();
  EXPECT_EQ(RowsOf(table.get()), "VT_BSTR kept\n");
}

// A table has no type name as a parameter.
TEST_F(Tables, TableAsParameterIsRefusedBeforeAnythingIsSent) {
  ExpectRefused(Variant::FromObject(Table(u"[{a: 1}]").get()), "0x80020009 Cannot create the xml document.");
}

struct OddTable {
  const char* name;
  const char* outcome;
};

// Outcomes of a table of one row, {a: 1, b: 'x'}.
constexpr OddTable kRefused[] = {
    {"table-whitespace", "0x80020009 Cannot create the recordlist"},
    {"table-no-headers", "0x80020009 Cannot create the recordlist"},
    {"table-no-schema", "0x80020009 Cannot create the recordlist"},
    {"table-no-records", "0x80020009 Cannot create the recordlist"},
    {"table-no-names", "0x80020009 Cannot create the recordlist"},
    {"table-no-types", "0x80020009 Cannot create the recordlist"},
    {"table-extra-cell", "0x80020009 Cannot create the recordlist"},
};

TEST_F(Tables, MisshapenOnesAreRefusedAndTheNextCallWorks) {
  for (const OddTable& odd : kRefused) {
    Use(std::string("/odd/") + odd.name);
    EXPECT_EQ(Run(u"[{a: 1, b: 'x'}]"), odd.outcome) << odd.name;
    Use("");
    EXPECT_EQ(Run(u"'next'"), "VT_BSTR next") << odd.name;
  }
}

TEST_F(Tables, CutMarkupIsAParseFault) {
  Use("/odd/table-cut");
  EXPECT_EQ(Run(u"[{a: 1, b: 'x'}]").substr(0, 40), "0x80020009 Error at file application/xml");
}

struct OddShape {
  const char* name;
  const char* columns;
  const char* rows;
};

constexpr OddShape kAccepted[] = {
    {"table-sof", "a:10 b:1", "VT_INT 1|VT_BSTR x\n"},
    {"table-other-type", "a:10 b:1", "VT_INT 1|VT_BSTR x\n"},
    {"table-other-names", "a:10 b:1", "VT_INT 1|VT_BSTR x\n"},
    {"table-unknown-type", "a:0 b:1", "VT_EMPTY|VT_BSTR x\n"},
    {"table-missing-cell", "a:10 b:1", "VT_INT 1|VT_EMPTY\n"},
};

TEST_F(Tables, OddOnesThatServersSendAreRead) {
  for (const OddShape& odd : kAccepted) {
    Use(std::string("/odd/") + odd.name);
    const IRecordListPtr table = Table(u"[{a: 1, b: 'x'}]");
    Use("");
    ASSERT_NE(table, nullptr) << odd.name;
    EXPECT_EQ(ColumnsOf(table.get()), odd.columns) << odd.name;
    EXPECT_EQ(RowsOf(table.get()), odd.rows) << odd.name;
  }
}

}  // namespace
}  // namespace qv
