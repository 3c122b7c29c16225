// `scriptwells run` with an answer that is a table.
#include <csignal>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

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

// More rows than a pipe holds.
std::string ManyRows() {
  std::string rows;
  for (int i = 0; i < 20000; ++i) rows += Row("<a>0123456789</a>");
  return TableAnswered(Column("a", "xsd:string"), rows);
}

// The lines as a terminal receives them, and as a file or pipe does.
std::string Lines(const std::vector<std::string>& lines, const char* end = "\n") {
  std::string text;
  for (const std::string& line : lines) text += line + end;
  return text;
}

const std::vector<std::string> kTable = {
    "city                   people founded", "Rome                  2748109 0001-01-01",
    "Brasilia, the capital 2817381 1960-04-21", "                              "};
const std::vector<std::string> kCsv = {"city,people,founded", "Rome,2748109,0001-01-01",
                                       "\"Brasilia, the capital\",2817381,1960-04-21"};

class RunTables : public TransferServer {
 protected:
  // A run whose call is answered like this.
  Tool Answered(const std::string& answer, const std::string& options = "") {
    AnswerCalls({answer});
    return Joe("run -e 1 " + options);
  }
};

TEST_F(RunTables, EveryOutputHasTheTable) {
  for (const char* options : {"", "-o table"}) Answered(Cities(), options).Succeeds(Lines(kTable));
  Answered(Cities(), "-o csv").Succeeds(Lines(kCsv, "\r\n") + "\"\",,\r\n");
  EXPECT_EQ(Answered(Cities(), "--null \\N").Set("SCRIPTWELLS_OUTPUT", "csv").Run().out,
            Lines(kCsv, "\r\n") + ",\\N,\\N\r\n");
  EXPECT_EQ(Answered(Cities(), "--json").Run().out,
            R"({"type":"recordlist","columns":[)"
            R"({"name":"city","displayName":"city","type":"string"},)"
            R"({"name":"people","displayName":"people","type":"int"},)"
            R"({"name":"founded","displayName":"founded","type":"date"}],)"
            R"("rows":[["Rome",2748109,"0001-01-01"],["Brasilia, the capital",2817381,"1960-04-21"],)"
            R"(["",null,null]]})"
            "\n");
}

TEST_F(RunTables, TerminalCutsTheTable) {
  for (const char* options : {"", "-o table"})
    EXPECT_EQ(Answered(Cities(), options).OnTerminal("", "", 30).out,
              Lines({"city         people founded", "Rome        2748109 0001-01-01",
                     "Brasilia, \xE2\x80\xA6 2817381 1960-04-21", "                    "},
                    "\r\n"));
  EXPECT_EQ(Answered(Cities()).OnTerminal("", "", 0).out, Lines(kTable, "\r\n"));
  EXPECT_EQ(Answered(Cities(), "-o csv").OnTerminal("", "", 10).out, Lines(kCsv, "\r\r\n") + "\"\",,\r\r\n");
}

TEST_F(RunTables, LossesAreNoted) {
  const std::string answer = TableAnswered(Column("x", "xsd:gYear"), Row("<x>2024</x>"));
  const std::string note = "column 'x' has a type that the library does not read; its cells are empty";
  Answered(answer, "-o csv --null -").Succeeds("x\r\n-\r\n", "note: " + note);
  EXPECT_EQ(Answered(answer, "--json").Run().err, "{\"note\":\"" + note + "\"}\n");
}

TEST_F(RunTables, DamagedTableIsNotUnderstood) {
  Answered(TableAnswered(Column("a", "xsd:int"), Row("<a>1</a><b>2</b>")))
      .Fails(7,
             "answer not understood: Cannot create the recordlist (the table is damaged, or has an empty "
             "duration)");
  EXPECT_TRUE(WasClosed());
  Answered(TableAnswered(Column("d", "xsd:date"), Row("<d/>")))
      .Fails(7,
             "answer not understood: Unable to convert a value with the given accuracy (a date or time that "
             "is empty "
             "or none, perhaps in a cell of a table)");
}

TEST_F(RunTables, OutputThatCannotBeWrittenEndsTheRows) {
  for (const char* format : {"csv", "json", "table"})
    Answered(Cities(), std::string("-o ") + format)
        .WriteTo("/dev/full")
        .Fails(6, "cannot write the answer to standard output");
  EXPECT_TRUE(WasClosed());
  Process process(Answered(ManyRows(), "-o csv"));
  EXPECT_EQ(process.ReadLine(), "a\r");
  process.CloseOutput();
  process.Finish().Fails(6, "");
  EXPECT_TRUE(WasClosed());
  for (const char* format : {"csv", "json", "table"}) {
    Process other(Answered(ManyRows(), std::string("-o ") + format));
    other.CloseOutput();
    other.Finish().Fails(6, "");
  }
}

TEST_F(RunTables, InterruptEndsTheRows) {
  Process process(Answered(ManyRows(), "-o csv"));
  EXPECT_EQ(process.ReadLine(), "a\r");
  process.Signal(SIGINT);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.err, "scriptwells: interrupted\n");
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_LT(outcome.out.size(), 240000U);
  EXPECT_TRUE(WasClosed());
}

TEST_F(RunTables, TableIsNeitherAddressNorParameter) {
  Answered(Cities(), "--save " + folder_.Path())
      .Fails(7, "answer not understood: the answer is not the address of a file: its type is recordlist");
  Joe("run -e 1 -p t=table:people.csv")
      .Fails(6,
             "parameter 't': a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a "
             "string");
  EXPECT_EQ(server_.Connections(), 1U);  // of the first run
}

// With the service inside the program.
Outcome Local(const std::string& script, const std::string& options = "") {
  return RunTool("run --local " + options + " -e", {script});
}

constexpr char kEveryType[] = R"(typed.table(
    {text: "string", yes: "boolean", real: "double", whole: "int", little: "short", tiny: "byte", on: "date",
     at: "time", when: "datetime", span: "duration", blob: "qvdt:Blob", money: "qvdt:Money"},
    [["caf\u00e9, \"x\"", true, 0.1, -7, 8, 9, "2024-03-05", "10:15:30", "2024-03-05T00:00:00", "P1DT2H", "AAEC", 1.5],
     ["", false, 0 / 0, 0, 0, 0, "0001-01-01", "00:00:00", "1960-04-21T10:15:30", "-P1Y", "", -1]]))";

TEST(RunTablesLocal, EveryTypeArrives) {
  Local(kEveryType, "-o csv")
      .Succeeds(
          Lines({"text,yes,real,whole,little,tiny,on,at,when,span,blob,money",
                 "\"caf\xC3\xA9, \"\"x\"\"\",true,0.1,-7,8,9,2024-03-05,10:15:30,2024-03-05T00:00:00,P1DT2H,"
                 "AAEC,1.5",
                 R"("",false,NaN,0,0,0,0001-01-01,00:00:00,1960-04-21T10:15:30,-P1Y,"",-1)"},
                "\r\n"));
  const std::string json = Local(kEveryType, "--json").out;
  EXPECT_EQ(json.substr(json.find("\"rows\":")),
            "\"rows\":[[\"caf\xC3\xA9, \\\"x\\\"\",true,0.1,-7,8,9,\"2024-03-05\",\"10:15:30\","
            "\"2024-03-05T00:00:00\",\"P1DT2H\",\"AAEC\",1.5],"
            "[\"\",false,\"NaN\",0,0,0,\"0001-01-01\",\"00:00:00\",\"1960-04-21T10:15:30\",\"-P1Y\",\"\",-1."
            "0]]}\n");
}

TEST(RunTablesLocal, ArraysOfObjectsAreTables) {
  EXPECT_EQ(Local("[{city: 'Rome', people: 2748109}, {city: 'Bern', people: 134591}]").out,
            "city  people\nRome 2748109\nBern  134591\n");
  EXPECT_EQ(Local("[{a: ''}, {a: 'x'}]", "-o csv --null NULL").out, "a\r\n\"\"\r\nx\r\n");
  // The library reads an empty cell by its column's type.
  EXPECT_EQ(Local("typed.table({n: 'int', b: 'boolean', t: 'string', u: 'url', x: 'long'}, [{}])",
                  "-o csv --null NULL")
                .out,
            "n,b,t,u,x\r\n0,false,,NULL,NULL\r\n");
  const std::string out = Local("Array.from({length: 20000}, (_, i) => ({n: i}))", "-o csv").out;
  EXPECT_EQ(out.size(), 3U + 10 * 3 + 90 * 4 + 900 * 5 + 9000 * 6 + 10000 * 7);
  EXPECT_EQ(out.substr(out.size() - 14), "19998\r\n19999\r\n");
}

TEST(RunTablesLocal, TimesOnTheDayBeforeDayZeroArePointsInTime) {
  const std::string table =
      "typed.table({w: 'datetime'}, [['1899-12-29T05:00:00'], ['1899-12-28T05:00:00']])";
  const std::string single = "typed.datetime('1899-12-29T05:00:00')";
  EXPECT_EQ(Local(table).out, "w\n1899-12-29T05:00:00\n1899-12-28T05:00:00\n");
  EXPECT_EQ(Local(table, "-o csv").out, "w\r\n1899-12-29T05:00:00\r\n1899-12-28T05:00:00\r\n");
  EXPECT_EQ(Local(single).out, "1899-12-29T05:00:00\n");
  EXPECT_EQ(Local(single, "--json").out.substr(0, 56),
            "{\"type\":\"datetime\",\"value\":\"1899-12-29T05:00:00\",\"tag\":7");
}

}  // namespace
}  // namespace qv::cli
