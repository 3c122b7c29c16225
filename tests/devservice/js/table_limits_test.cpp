// Large tables.
#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

class TableLimits : public TableTest {
 protected:
  // The defaults. An instrumented worker keeps what it has freed for a while, and takes its time.
  void SetUp() override {
    StartWith([]([[maybe_unused]] ServiceOptions& options) {
#ifdef __SANITIZE_ADDRESS__
      options.scriptMemoryLimit *= 4;
      options.scriptTimeLimit *= 10;
#endif
    });
  }
};

std::size_t CountOf(const std::string& body, const std::string& text) {
  std::size_t count = 0;
  for (std::size_t at = body.find(text); at != std::string::npos; at = body.find(text, at + text.size()))
    ++count;
  return count;
}

constexpr char kManyRows[] =
    "rows = []; for (let i = 0; i < 100000; ++i)"
    " rows.push({a: i, b: i / 3, c: 'text ' + i, d: i % 2 == 0, e: -i, f: 'x', g: i * 2, h: 'yyyyyyyyyy',"
    " i: i, j: null});";

// Its last record, with the text of a boolean.
std::string LastRecord(const std::string& isFalse) {
  return Record("<a>99999</a><b>33333</b><c>text 99999</c><d>" + isFalse +
                "</d><e>-99999</e><f>x</f><g>199998</g><h>yyyyyyyyyy</h><i>99999</i><j/>") +
         "</q1:Records>";
}

TEST_F(TableLimits, AMillionCellsOfPlainObjects) {
  const std::string body = Execute(std::string(kManyRows) + "rows");
  EXPECT_EQ(ColumnsIn(body),
            "a xsd:int, b xsd:double, c xsd:string, d xsd:boolean, e xsd:double, f xsd:string, g xsd:int, "
            "h xsd:string, i xsd:int, j xsd:string")
      << body.substr(0, 1000);
  EXPECT_EQ(CountOf(body, "<q1:Record>"), 100000U);
  EXPECT_EQ(CountOf(body, "<j/></q1:Record>"), 100000U);
  EXPECT_TRUE(Contains(body, LastRecord("false")));
}

TEST_F(TableLimits, AMillionCellsOfATypedTable) {
  const std::string body = Execute(
      std::string(kManyRows) +
      "typed.table({a: 'int', b: 'double', c: 'string', d: 'boolean', e: 'long', f: 'qvdt:Char', g: 'int',"
      " h: 'string', i: 'int', j: 'date'}, rows)");
  EXPECT_EQ(CountOf(body, "<q1:Record>"), 100000U) << body.substr(0, 1000);
  EXPECT_TRUE(Contains(body, LastRecord("0")));
}

TEST_F(TableLimits, ManyColumns) {
  const std::string body =
      Execute("row = {}; for (let i = 0; i < 5000; ++i) row['c' + i] = i; [row, {c4999: 1}]");
  EXPECT_EQ(CountOf(body, "<xsd:element "), 5000U);
  EXPECT_EQ(CountOf(body, "<c4998/><c4999>1</c4999></q1:Record>"), 1U);
}

TEST_F(TableLimits, FewBytesThatMakeManyCellsAreRefused) {
  ExpectFaults(
      {{"columns = {}; for (let i = 0; i < 5000; ++i) columns['c' + i] = 'int';"
        "typed.table(columns, new Array(20000).fill([]))",
        "1012|The script's table of 20000 rows and 5000 columns is too large for an answer.|script"}});
  EXPECT_EQ(Value("1 + 1"), "xsd:int|2");
}

TEST_F(TableLimits, EndlessAndGreedyTablesEndAtTheLimits) {
  StartWith([](ServiceOptions& options) { options.scriptTimeLimit = std::chrono::milliseconds(700); });
  EXPECT_EQ(Fault("[{get a() { while (true) {} }}]"), "1013|The script took longer than 700 ms.|script");
  const std::string code = FaultCode("a = []; for (let i = 0; i < 200000; ++i) a.push({['k' + i]: 1}); a");
  EXPECT_TRUE(code == "1013" || code == "1014") << code;
  EXPECT_EQ(Value("1 + 1"), "xsd:int|2");
}

}  // namespace
}  // namespace qv::devservice::testing
