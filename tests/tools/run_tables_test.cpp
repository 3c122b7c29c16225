// `scriptwells run` with an answer that is a table.
#include <csignal>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::RunOnTerminal;
using testing::RunTool;
using testing::ScriptAnswered;
using testing::SessionClosed;
using testing::SessionOpened;
using testing::Variables;
using testing::Words;

std::string Column(const std::string& name, const std::string& type) {
  return "<xsd:element xsd:name=\"" + name + "\" xsd:type=\"" + type + "\"/>";
}

std::string TableAnswered(const std::string& columns, const std::string& rows) {
  return ScriptAnswered("q1:RecordList", "<q1:Headers><xsd:schema>" + columns +
                                             "</xsd:schema></q1:Headers><q1:Records>" + rows +
                                             "</q1:Records>");
}

std::string Row(const std::string& cells) {
  return "<q1:Record>" + cells + "</q1:Record>";
}

std::string Cities() {
  return TableAnswered(
      Column("city", "xsd:string") + Column("people", "xsd:int") + Column("founded", "xsd:date"),
      Row("<city>Rome</city><people>2748109</people><founded>0001-01-01</founded>") +
          Row("<city>Brasilia, the capital</city><people>2817381</people><founded>1960-04-21</founded>") +
          Row("<city/>"));
}

class RunTables : public testing::TransferServer {
 protected:
  // One run whose call is answered so.
  Outcome Answered(const std::string& answer, const Words& more = {}, const Variables& variables = {}) {
    return RunTool(Prepared(answer, more), "", variables);
  }
  Outcome OnTerminal(const std::string& answer, unsigned short width, const Words& more = {}) {
    return RunOnTerminal(Prepared(answer, more), "Password", "\n", {{"SCRIPTWELLS_PASSWORD", "x"}}, width);
  }

 private:
  Words Prepared(const std::string& answer, const Words& more) {
    Answer({SessionOpened(), answer, SessionClosed()});
    Words words = AsJoe("run", {"-e", "1"});
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
};

TEST_F(RunTables, TextIsATable) {
  const Outcome outcome = Answered(Cities());
  EXPECT_EQ(outcome.out,
            "city                   people founded\n"
            "Rome                  2748109 0001-01-01\n"
            "Brasilia, the capital 2817381 1960-04-21\n"
            "                              \n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Answered(Cities(), {"-o", "table"}).out, outcome.out);
}

TEST_F(RunTables, CsvTellsAnEmptyStringFromNoValue) {
  const Outcome outcome = Answered(Cities(), {"-o", "csv"});
  EXPECT_EQ(outcome.out,
            "city,people,founded\r\n"
            "Rome,2748109,0001-01-01\r\n"
            "\"Brasilia, the capital\",2817381,1960-04-21\r\n"
            "\"\",,\r\n");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Answered(Cities(), {"--null", "\\N"}, {{"SCRIPTWELLS_OUTPUT", "csv"}}).out,
            "city,people,founded\r\n"
            "Rome,2748109,0001-01-01\r\n"
            "\"Brasilia, the capital\",2817381,1960-04-21\r\n"
            ",\\N,\\N\r\n");
}

TEST_F(RunTables, JsonIsOneLine) {
  EXPECT_EQ(Answered(Cities(), {"--json"}).out,
            "{\"type\":\"recordlist\",\"columns\":["
            "{\"name\":\"city\",\"displayName\":\"city\",\"type\":\"string\"},"
            "{\"name\":\"people\",\"displayName\":\"people\",\"type\":\"int\"},"
            "{\"name\":\"founded\",\"displayName\":\"founded\",\"type\":\"date\"}],"
            "\"rows\":[[\"Rome\",2748109,\"0001-01-01\"],[\"Brasilia, the capital\",2817381,\"1960-04-21\"],"
            "[\"\",null,null]]}\n");
}

TEST_F(RunTables, TerminalCutsTextsToItsWidth) {
  for (const Words& more : {Words{}, Words{"-o", "table"}})
    EXPECT_EQ(OnTerminal(Cities(), 30, more).out,
              "city         people founded\r\n"
              "Rome        2748109 0001-01-01\r\n"
              "Brasilia, \xE2\x80\xA6 2817381 1960-04-21\r\n"
              "                    \r\n");
}

TEST_F(RunTables, TerminalWithoutAWidthCutsNothing) {
  EXPECT_EQ(OnTerminal(Cities(), 0).out,
            "city                   people founded\r\n"
            "Rome                  2748109 0001-01-01\r\n"
            "Brasilia, the capital 2817381 1960-04-21\r\n"
            "                              \r\n");
}

TEST_F(RunTables, CsvAndJsonAreNeverCut) {
  EXPECT_EQ(OnTerminal(Cities(), 10, {"-o", "csv"}).out,
            "city,people,founded\r\r\n"
            "Rome,2748109,0001-01-01\r\r\n"
            "\"Brasilia, the capital\",2817381,1960-04-21\r\r\n"
            "\"\",,\r\r\n");
}

TEST_F(RunTables, NotesTellWhatDidNotArrive) {
  const std::string answer = TableAnswered(Column("x", "xsd:gYear"), Row("<x>2024</x>"));
  const Outcome outcome = Answered(answer, {"-o", "csv", "--null", "-"});
  EXPECT_EQ(outcome.out, "x\r\n-\r\n");
  EXPECT_EQ(outcome.err,
            "scriptwells: note: column 'x' has a type that the library does not read; its cells are empty\n");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Answered(answer, {"--json"}).err,
            "{\"note\":\"column 'x' has a type that the library does not read; its cells are empty\"}\n");
}

TEST_F(RunTables, DamagedTableIsNotUnderstood) {
  const Outcome outcome = Answered(TableAnswered(Column("a", "xsd:int"), Row("<a>1</a><b>2</b>")));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: Cannot create the recordlist (the table is damaged, or has "
            "an empty duration)\n");
  EXPECT_EQ(outcome.exit, 7);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(RunTables, EmptyDateEndsTheTable) {
  const Outcome outcome = Answered(TableAnswered(Column("d", "xsd:date"), Row("<d/>")));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(
      outcome.err,
      "scriptwells: answer not understood: Unable to convert a value with the given accuracy (a date or "
      "time that is empty or none, perhaps in a cell of a table)\n");
  EXPECT_EQ(outcome.exit, 7);
}

TEST_F(RunTables, FullDiskIsALocalFailure) {
  for (const char* format : {"csv", "json", "table"}) {
    Answer({SessionOpened(), Cities(), SessionClosed()});
    testing::Process process(AsJoe("run", {"-e", "1", "-o", format}), {}, "/dev/full");
    const Outcome outcome = process.Finish();
    EXPECT_EQ(outcome.err, "scriptwells: cannot write the answer to standard output\n") << format;
    EXPECT_EQ(outcome.exit, 6) << format;
  }
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

// More rows than a pipe holds.
std::string ManyRows() {
  std::string rows;
  for (int i = 0; i < 20000; ++i) rows += Row("<a>0123456789</a>");
  return TableAnswered(Column("a", "xsd:string"), rows);
}

TEST_F(RunTables, InterruptEndsTheRows) {
  Answer({SessionOpened(), ManyRows(), SessionClosed()});
  testing::Process process(AsJoe("run", {"-e", "1", "-o", "csv"}));
  EXPECT_EQ(process.ReadLine(), "a\r");
  process.Signal(SIGINT);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.err, "scriptwells: interrupted\n");
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_LT(outcome.out.size(), 240000u);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(RunTables, ClosedPipeEndsTheRows) {
  Answer({SessionOpened(), ManyRows(), SessionClosed()});
  testing::Process process(AsJoe("run", {"-e", "1", "-o", "csv"}));
  EXPECT_EQ(process.ReadLine(), "a\r");
  process.CloseOutput();
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(RunTables, OutputThatNobodyReadsEndsEveryFormSilently) {
  for (const char* format : {"csv", "json", "table"}) {
    Answer({SessionOpened(), ManyRows(), SessionClosed()});
    testing::Process process(AsJoe("run", {"-e", "1", "-o", format}));
    process.CloseOutput();
    const Outcome outcome = process.Finish();
    EXPECT_EQ(outcome.err, "") << format;
    EXPECT_EQ(outcome.exit, 6) << format;
  }
}

TEST_F(RunTables, TableIsNoAddressToSave) {
  const Outcome outcome = Answered(Cities(), {"--save", folder_.Path()});
  EXPECT_EQ(
      outcome.err,
      "scriptwells: answer not understood: the answer is no address of a file: its type is recordlist\n");
  EXPECT_EQ(outcome.exit, 7);
}

TEST_F(RunTables, TableAsParameterIsRefusedBeforeAnythingIsSent) {
  const Outcome outcome = RunTool(AsJoe("run", {"-e", "1", "-p", "t=table:people.csv"}));
  EXPECT_EQ(
      outcome.err,
      "scriptwells: parameter 't': a table cannot be sent as a parameter; send its text, such as CSV or "
      "JSON, as a string\n");
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_EQ(server_.Connections(), 0u);
}

// Over the service inside the program.
Outcome Local(const std::string& script, const Words& more = {}) {
  Words words{"run", "--local", "-e", script};
  words.insert(words.end(), more.begin(), more.end());
  return RunTool(words);
}

constexpr char kEveryType[] = R"(typed.table(
    {text: "string", yes: "boolean", real: "double", whole: "int", little: "short", tiny: "byte", on: "date",
     at: "time", when: "datetime", span: "duration", blob: "qvdt:Blob", money: "qvdt:Money"},
    [["caf\u00e9, \"x\"", true, 0.1, -7, 8, 9, "2024-03-05", "10:15:30", "2024-03-05T00:00:00", "P1DT2H", "AAEC", 1.5],
     ["", false, 0 / 0, 0, 0, 0, "0001-01-01", "00:00:00", "1960-04-21T10:15:30", "-P1Y", "", -1]]))";

TEST(RunTablesLocal, EveryTypeAsCsv) {
  const Outcome outcome = Local(kEveryType, {"-o", "csv"});
  EXPECT_EQ(
      outcome.out,
      "text,yes,real,whole,little,tiny,on,at,when,span,blob,money\r\n"
      "\"caf\xC3\xA9, \"\"x\"\"\",true,0.1,-7,8,9,2024-03-05,10:15:30,2024-03-05T00:00:00,P1DT2H,AAEC,1.5\r\n"
      "\"\",false,NaN,0,0,0,0001-01-01,00:00:00,1960-04-21T10:15:30,-P1Y,\"\",-1\r\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunTablesLocal, EveryTypeAsJson) {
  const std::string out = Local(kEveryType, {"--json"}).out;
  EXPECT_EQ(out.substr(out.find("\"rows\":")),
            "\"rows\":[[\"caf\xC3\xA9, \\\"x\\\"\",true,0.1,-7,8,9,\"2024-03-05\",\"10:15:30\","
            "\"2024-03-05T00:00:00\",\"P1DT2H\",\"AAEC\",1.5],"
            "[\"\",false,\"NaN\",0,0,0,\"0001-01-01\",\"00:00:00\",\"1960-04-21T10:15:30\",\"-P1Y\",\"\",-1."
            "0]]}\n");
}

TEST(RunTablesLocal, ObjectsAreATable) {
  EXPECT_EQ(Local("[{city: 'Rome', people: 2748109}, {city: 'Bern', people: 134591}]").out,
            "city  people\nRome 2748109\nBern  134591\n");
}

// The library reads an empty cell by its column's type.
TEST(RunTablesLocal, CellsWithoutTextArriveAsTheirTypeReadsThem) {
  EXPECT_EQ(Local("typed.table({n: 'int', b: 'boolean', t: 'string', u: 'url', x: 'long'}, [{}])",
                  {"-o", "csv", "--null", "NULL"})
                .out,
            "n,b,t,u,x\r\n0,false,,NULL,NULL\r\n");
}

TEST(RunTablesLocal, TimesOnTheDayBeforeDayZeroArePointsInTime) {
  const std::string table =
      "typed.table({w: 'datetime'}, [['1899-12-29T05:00:00'], ['1899-12-28T05:00:00']])";
  EXPECT_EQ(Local(table).out, "w\n1899-12-29T05:00:00\n1899-12-28T05:00:00\n");
  EXPECT_EQ(Local(table, {"-o", "csv"}).out, "w\r\n1899-12-29T05:00:00\r\n1899-12-28T05:00:00\r\n");
  EXPECT_EQ(Local("typed.datetime('1899-12-29T05:00:00')").out, "1899-12-29T05:00:00\n");
  const std::string json = Local("typed.datetime('1899-12-29T05:00:00')", {"--json"}).out;
  EXPECT_EQ(json.substr(0, 56), "{\"type\":\"datetime\",\"value\":\"1899-12-29T05:00:00\",\"tag\":7");
}

TEST(RunTablesLocal, EmptyStringAloneInItsLineIsQuoted) {
  EXPECT_EQ(Local("[{a: ''}, {a: 'x'}]", {"-o", "csv", "--null", "NULL"}).out, "a\r\n\"\"\r\nx\r\n");
}

TEST(RunTablesLocal, ManyRowsComeThrough) {
  const Outcome outcome = Local("Array.from({length: 20000}, (_, i) => ({n: i}))", {"-o", "csv"});
  EXPECT_EQ(outcome.out.size(), 3u + 10 * 3 + 90 * 4 + 900 * 5 + 9000 * 6 + 10000 * 7);
  EXPECT_EQ(outcome.out.substr(outcome.out.size() - 14), "19998\r\n19999\r\n");
}

}  // namespace
}  // namespace qv::cli
