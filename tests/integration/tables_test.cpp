// Tables that scripts answer, over real sockets.
#include <string>

#include "value_test.h"

namespace qv {
namespace {

class Tables : public ValueTest {
 protected:
  IRecordListPtr Table(const WideString& script) { return ObjectIn<IRecordList>(Answer(script)); }
  static IRecordListHeadersPtr HeadersOf(const IRecordListPtr& table) {
    IRecordListHeadersPtr headers;
    EXPECT_EQ(table->GetHeaders(Put(headers)), S_OK);
    return headers;
  }
  static std::int32_t ColumnCount(const IRecordListPtr& table) {
    std::int32_t count = -1;
    EXPECT_EQ(HeadersOf(table)->GetCount(&count), S_OK);
    return count;
  }
  // "city:1 people:10"
  static std::string ColumnsOf(const IRecordListPtr& table) {
    std::string text;
    for (std::int32_t i = 0; i < ColumnCount(table); ++i) {
      IRecordListHeaderPtr header;
      EXPECT_EQ(HeadersOf(table)->GetHeader(i, Put(header)), S_OK);
      WideString name;
      std::int32_t type = -1;
      EXPECT_EQ(header->GetName(&name), S_OK);
      EXPECT_EQ(header->GetType(&type), S_OK);
      text += (text.empty() ? "" : " ") + ToUtf8(name) + ":" + std::to_string(type);
    }
    return text;
  }
  // Every cell as ShownValue says, "|" between cells and a line for each row.
  static std::string RowsOf(const IRecordListPtr& table) {
    IRecordListCursorPtr cursor;
    EXPECT_EQ(table->OpenCursor(VARIANT_TRUE, Put(cursor)), S_OK);
    const std::int32_t columns = ColumnCount(table);
    std::string text;
    for (VARIANT_BOOL more = VARIANT_TRUE; cursor->HasMore(&more) == S_OK && more != VARIANT_FALSE;) {
      IUnknownPtr object;
      EXPECT_EQ(cursor->Next(Put(object)), S_OK);
      const IRecordListRecordPtr record = As<IRecordListRecord>(object);
      for (std::int32_t i = 0; i < columns; ++i) {
        Variant value;
        EXPECT_EQ(record->GetValue(i, &value), S_OK);
        text += (i == 0 ? "" : "|") + ShownValue(value);
      }
      text += "\n";
    }
    return text;
  }
  static void ExpectTable(const IRecordListPtr& table, const char* columns, const char* rows) {
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(ColumnsOf(table), columns);
    EXPECT_EQ(RowsOf(table), rows);
  }
};

TEST_F(Tables, ScriptsAnswerTables) {
  const struct {
    const char16_t* script;
    const char* columns;
    const char* rows;
  } rows[] = {
      {u"[{city: 'Rome', people: 2748109}, {city: 'A & \\u00E9', people: -1}]", "city:1 people:10",
       "VT_BSTR Rome|VT_INT 2748109\nVT_BSTR A & \\u00E9|VT_INT -1\n"},
      {u"typed.table({a:'byte',b:'short',c:'int',d:'boolean',e:'double',f:'string',k:'qvdt:Blob',"
       u"l:'qvdt:Money'}, [[-5, 300, 70000, true, 0.5, 'x', 'QUJD', 1.25]])",
       "a:13 b:11 c:10 d:2 e:4 f:1 k:6 l:4",
       "VT_I1 -5|VT_I2 300|VT_INT 70000|VT_BOOL -1|VT_R8 0.5|VT_BSTR x|VT_BSTR QUJD|VT_R8 1.25\n"},
      {u"typed.table({g:'date',h:'time',i:'datetime'}, [['2024-03-05', '10:15:30', '2024-03-05T10:15:30']])",
       "g:18 h:17 i:16", "VT_DATE 45356|VT_DATE 0.42743055555555554|VT_DATE 45356.42743055556\n"},
      {u"typed.table({span:'duration',link:'url'}, [[typed.duration('P1DT2H'), typed.url('http://a/b')]])",
       "span:5 link:23", "VT_UNKNOWN object|VT_UNKNOWN object\n"},
      {u"[{n: 1, s: 'a'}, {n: null}]", "n:10 s:1", "VT_INT 1|VT_BSTR a\nVT_INT 0|VT_BSTR \n"},
      {u"typed.table({name:'string', born:'date'})", "name:1 born:18", ""},
      {u"typed.table({}, [])", "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(ToUtf8(row.script));
    ExpectTable(Table(row.script), row.columns, row.rows);
  }
}

TEST_F(Tables, ThousandRowsArriveWhole) {
  const IRecordListPtr table =
      Table(u"Array.from({length: 1000}, (_, i) => ({i: i, text: 'row ' + i, half: i + 0.5}))");
  const std::string rows = RowsOf(table);
  EXPECT_EQ(ColumnsOf(table), "i:10 text:1 half:4");
  EXPECT_EQ(rows.substr(0, 34), "VT_INT 0|VT_BSTR row 0|VT_R8 0.5\nV");
  EXPECT_NE(rows.find("\nVT_INT 999|VT_BSTR row 999|VT_R8 999.5\n"), std::string::npos);
}

TEST_F(Tables, AnswerIsLockedThroughout) {
  const IRecordListPtr table = Table(u"[{a: 1}]");
  IUnknown* record = nullptr;
  EXPECT_EQ(OutcomeText(table->NewRecord(&record)), "0x80070005 The record list is locked.");
  EXPECT_EQ(record, nullptr);
  EXPECT_EQ(OutcomeText(HeadersOf(table)->AddHeader(u"b", kColumnInt, nullptr)),
            "0x80070005 The record list is locked.");
}

TEST_F(Tables, AnswerOutlivesModelAndSession) {
  const IRecordListPtr table = Table(u"[{a: 'kept'}]");
  EXPECT_EQ(Close(), "ok");
  model_.reset();
  EXPECT_EQ(RowsOf(table), "VT_BSTR kept\n");
}

// A table has no type name as a parameter.
TEST_F(Tables, TableAsParameterIsRefusedBeforeAnythingIsSent) {
  ExpectRefused(Variant::FromObject(Table(u"[{a: 1}]").get()), "0x80020009 Cannot create the xml document.");
}

// The service answers a table of one row in an odd form.
constexpr char16_t kOneRow[] = u"[{a: 1, b: 'x'}]";

TEST_F(Tables, MisshapenOnesAreRefusedAndTheNextCallWorks) {
  for (const char* name : {"table-whitespace", "table-no-headers", "table-no-schema", "table-no-records",
                           "table-no-names", "table-no-types", "table-extra-cell"}) {
    Use(std::string("/odd/") + name);
    EXPECT_EQ(Run(kOneRow), "0x80020009 Cannot create the recordlist") << name;
    Use();
    EXPECT_EQ(Run(u"'next'"), "VT_BSTR next") << name;
  }
  Use("/odd/table-cut");
  EXPECT_EQ(Run(kOneRow).substr(0, 40), "0x80020009 Error at file application/xml");
}

TEST_F(Tables, OddOnesThatServersSendAreRead) {
  const struct {
    const char* name;
    const char* columns;
    const char* rows;
  } rows[] = {{"table-sof", "a:10 b:1", "VT_INT 1|VT_BSTR x\n"},
              {"table-other-type", "a:10 b:1", "VT_INT 1|VT_BSTR x\n"},
              {"table-other-names", "a:10 b:1", "VT_INT 1|VT_BSTR x\n"},
              {"table-unknown-type", "a:0 b:1", "VT_EMPTY|VT_BSTR x\n"},
              {"table-missing-cell", "a:10 b:1", "VT_INT 1|VT_EMPTY\n"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Use(std::string("/odd/") + row.name);
    ExpectTable(Table(kOneRow), row.columns, row.rows);
  }
}

}  // namespace
}  // namespace qv
