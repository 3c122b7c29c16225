// Tables that no server should send.
#include <pugixml.hpp>

#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

class OddTable : public TableTest {
 protected:
  std::string Run(const std::string& names, const std::string& script = "[{a: 1, b: 'x'}, {a: 2, b: 'y'}]") {
    return TableTest::Run("/odd/" + names, script).body;
  }
};

bool IsWellFormed(const std::string& xml) {
  return pugi::xml_document().load_buffer(xml.data(), xml.size());
}

constexpr char kEnd[] = "</ExecuteResult></ExecuteResponse></soap:Body></soap:Envelope>";

TEST_F(OddTable, PartsOfTheElement) {
  constexpr const char* kRows[][2] = {
      {"table-sof",
       "<ExecuteResponse xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\" "
       "xmlns:sof=\"http://quorvane.example/dev/ns/SOF/2.0\"><ExecuteResult xsi:type=\"sof:RecordList\" "},
      {"table-other-type", "<ExecuteResult xsi:type=\"any:MyRECORDLIST2\" "},
      {"table-other-names", "/SOF/2.0\"><a><b targetNamespace="},
      {"table-other-names", "<c xsd:name=\"a\" xsd:type=\"xsd:int\" xsd:displayName=\"a\" "},
      {"table-other-names",
       "/></b></a><d><e><f>1</f><f>x</f></e><e><f>2</f><f>y</f></e></d></ExecuteResult>"},
      {"table-whitespace", "/SOF/2.0\">\n  <q1:Headers>\n  <xsd:schema targetNamespace="},
      {"table-whitespace", "\">\n  <xsd:element xsd:name=\"a\" "},
      {"table-whitespace", "/>\n  <xsd:element xsd:name=\"b\" "},
      {"table-whitespace",
       "/>\n  </xsd:schema>\n  </q1:Headers>\n  <q1:Records>\n  <q1:Record>\n  <a>1</a>\n  <b>x</b>\n  "
       "</q1:Record>\n  <q1:Record>\n  <a>2</a>\n  <b>y</b>\n  </q1:Record>\n  </q1:Records>\n  "
       "</ExecuteResult>"},
      {"table-no-headers", "/SOF/2.0\"><q1:Records><q1:Record><a>1</a>"},
      {"table-no-schema", "/SOF/2.0\"><q1:Headers></q1:Headers><q1:Records><q1:Record>"},
      {"table-no-records", "</xsd:schema></q1:Headers></ExecuteResult>"},
      {"table-no-headers+table-no-records",
       "xmlns:q1=\"http://quorvane.example/dev/ns/SOF/2.0\"></ExecuteResult>"},
      {"table-no-names", "<xsd:element xsd:type=\"xsd:int\" xsd:displayName=\"a\" "},
      {"table-no-types", "<xsd:element xsd:name=\"a\" xsd:displayName=\"a\" "},
      {"table-x", "table-sof, table-other-type, table-other-names, table-whitespace, "},
  };
  for (const auto& [names, part] : kRows) EXPECT_TRUE(Contains(Run(names), part)) << names;
  const std::string plain = Record("<a>1</a><b>x</b>") + Record("<a>2</a><b>y</b>");
  for (const char* name : {"table-sof", "table-other-type", "table-unknown-type"})
    EXPECT_EQ(RecordsIn(Run(name)), plain) << name;
  EXPECT_EQ(ColumnsIn(Run("table-unknown-type")), "a xsd:decimal, b xsd:string");
}

TEST_F(OddTable, RecordsCanHaveMoreOrFewerCells) {
  EXPECT_EQ(RecordsIn(Run("table-extra-cell")),
            Record("<a>1</a><b>x</b><extra>1</extra>") + Record("<a>2</a><b>y</b><extra>1</extra>"));
  EXPECT_EQ(RecordsIn(Run("table-missing-cell")), Record("<a>1</a>") + Record("<a>2</a>"));
  EXPECT_EQ(RecordsIn(Run("table-missing-cell", "[{}]")), Record(""));
}

TEST_F(OddTable, CutBreaksOffInsideTheRecords) {
  const std::string body = Run("table-cut");
  EXPECT_FALSE(IsWellFormed(body));
  EXPECT_TRUE(IsWellFormed(Run("table-sof")));
  EXPECT_TRUE(Contains(body, "</q1:Headers><q1:Records><q1:Record><a>1</a><b>x</b></"));
  EXPECT_TRUE(Contains(body, kEnd));
  EXPECT_FALSE(Contains(body, "</q1:Records>"));
  EXPECT_FALSE(IsWellFormed(Run("table-cut", "typed.table({a: 'int'})")));
}

TEST_F(OddTable, CutLeavesCharactersWhole) {
  std::string wide;
  for (const char c : std::string(kEnd)) wide += std::string(1, c) + '\0';
  for (const char* more : {"", "-", "--"}) {
    const std::string script = std::string("[{a: '\xE2\x82\xAC") + more + "'.repeat(50)}]";
    const std::string encoded = Run("table-cut+utf16", script);
    EXPECT_EQ(encoded.size() % 2, 0u);
    EXPECT_EQ(encoded.substr(encoded.size() - wide.size()), wide);
  }
}

TEST_F(OddTable, OtherValuesStayAsTheyAre) {
  EXPECT_EQ(ValueIn(Run("table-no-records+table-cut", "5")), "xsd:int|5");
  EXPECT_EQ(ValueIn(Run("table-cut+bad-date")), "xsd:date|2024-02-30");
}

}  // namespace
}  // namespace qv::devservice::testing
