// Tables that no server should send.
#include <pugixml.hpp>

#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

class OddTable : public TableTest {
 protected:
  std::string Run(const std::string& names, const std::string& script = "[{a: 1, b: 'x'}, {a: 2, b: 'y'}]") {
    if (!service_) StartWith(TestOptions());
    if (session_.empty()) session_ = Login();
    return Post("/odd/" + names, "Execute", ExecuteEnvelope(session_, script, NilParameters())).body;
  }
};

bool IsWellFormed(const std::string& xml) {
  return pugi::xml_document().load_buffer(xml.data(), xml.size());
}

constexpr char kPlainRecords[] =
    "<q1:Record><a>1</a><b>x</b></q1:Record><q1:Record><a>2</a><b>y</b></q1:Record>";

TEST_F(OddTable, TypeAttributesThatReadersKnowToo) {
  const std::string sof = Run("table-sof");
  EXPECT_NE(sof.find("<ExecuteResponse xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\" "
                     "xmlns:sof=\"http://quorvane.example/dev/ns/SOF/2.0\">"
                     "<ExecuteResult xsi:type=\"sof:RecordList\" "),
            std::string::npos)
      << sof;
  EXPECT_EQ(RecordsIn(sof), kPlainRecords);
  const std::string other = Run("table-other-type");
  EXPECT_NE(other.find("<ExecuteResult xsi:type=\"any:MyRECORDLIST2\" "), std::string::npos) << other;
  EXPECT_EQ(RecordsIn(other), kPlainRecords);
}

TEST_F(OddTable, OtherElementNames) {
  const std::string element = ResultElementIn(Run("table-other-names"));
  EXPECT_NE(element.find("/SOF/2.0\"><a><b targetNamespace="), std::string::npos) << element;
  EXPECT_NE(element.find("<c xsd:name=\"a\" xsd:type=\"xsd:int\" xsd:displayName=\"a\" "), std::string::npos);
  EXPECT_NE(element.find("/></b></a><d><e><f>1</f><f>x</f></e><e><f>2</f><f>y</f></e></d></ExecuteResult>"),
            std::string::npos)
      << element;
}

TEST_F(OddTable, WhitespaceStandsInFrontOfEveryTag) {
  const std::string element = ResultElementIn(Run("table-whitespace"));
  EXPECT_NE(element.find("/SOF/2.0\">\n  <q1:Headers>\n  <xsd:schema targetNamespace="), std::string::npos);
  EXPECT_NE(element.find("\">\n  <xsd:element xsd:name=\"a\" "), std::string::npos) << element;
  EXPECT_NE(element.find("/>\n  <xsd:element xsd:name=\"b\" "), std::string::npos) << element;
  EXPECT_NE(element.find("/>\n  </xsd:schema>\n  </q1:Headers>\n  <q1:Records>\n  <q1:Record>\n  <a>1</a>\n  "
                         "<b>x</b>\n  </q1:Record>\n  <q1:Record>\n  <a>2</a>\n  <b>y</b>\n  </q1:Record>\n  "
                         "</q1:Records>\n  </ExecuteResult>"),
            std::string::npos)
      << element;
}

TEST_F(OddTable, UnknownTypeIsThatOfTheFirstColumn) {
  const std::string body = Run("table-unknown-type");
  EXPECT_EQ(ColumnsIn(body), "a xsd:decimal, b xsd:string");
  EXPECT_EQ(RecordsIn(body), kPlainRecords);
}

TEST_F(OddTable, BlocksCanBeMissing) {
  const std::string noHeaders = ResultElementIn(Run("table-no-headers"));
  EXPECT_NE(noHeaders.find("/SOF/2.0\"><q1:Records><q1:Record><a>1</a>"), std::string::npos) << noHeaders;
  const std::string noSchema = ResultElementIn(Run("table-no-schema"));
  EXPECT_NE(noSchema.find("/SOF/2.0\"><q1:Headers></q1:Headers><q1:Records><q1:Record>"), std::string::npos)
      << noSchema;
  const std::string noRecords = ResultElementIn(Run("table-no-records"));
  EXPECT_NE(noRecords.find("</xsd:schema></q1:Headers></ExecuteResult>"), std::string::npos) << noRecords;
  EXPECT_NE(ResultElementIn(Run("table-no-headers+table-no-records"))
                .find("xmlns:q1=\"http://quorvane.example/dev/ns/SOF/2.0\"></ExecuteResult>"),
            std::string::npos);
}

TEST_F(OddTable, AttributesOfColumnsCanBeMissing) {
  EXPECT_NE(Run("table-no-names").find("<xsd:element xsd:type=\"xsd:int\" xsd:displayName=\"a\" "),
            std::string::npos);
  EXPECT_NE(Run("table-no-types").find("<xsd:element xsd:name=\"a\" xsd:displayName=\"a\" "),
            std::string::npos);
}

TEST_F(OddTable, RecordsCanHaveMoreOrFewerCells) {
  EXPECT_EQ(RecordsIn(Run("table-extra-cell")),
            "<q1:Record><a>1</a><b>x</b><extra>1</extra></q1:Record>"
            "<q1:Record><a>2</a><b>y</b><extra>1</extra></q1:Record>");
  EXPECT_EQ(RecordsIn(Run("table-missing-cell")),
            "<q1:Record><a>1</a></q1:Record><q1:Record><a>2</a></q1:Record>");
  EXPECT_EQ(RecordsIn(Run("table-missing-cell", "[{}]")), "<q1:Record></q1:Record>");
}

TEST_F(OddTable, CutBreaksOffAmidTheRecords) {
  const std::string body = Run("table-cut");
  EXPECT_FALSE(IsWellFormed(body));
  EXPECT_TRUE(IsWellFormed(Run("table-sof")));
  EXPECT_NE(body.find("</q1:Headers><q1:Records><q1:Record><a>1</a><b>x</b></"), std::string::npos) << body;
  EXPECT_NE(body.find("</ExecuteResult></ExecuteResponse></soap:Body></soap:Envelope>"), std::string::npos);
  EXPECT_EQ(body.find("</q1:Records>"), std::string::npos);
  EXPECT_FALSE(IsWellFormed(Run("table-cut", "typed.table({a: 'int'})")));
}

TEST_F(OddTable, CutLeavesCharactersWhole) {
  for (const char* text : {"\xE2\x82\xAC",
                           "\xE2\x82\xAC"
                           "a",
                           "\xE2\x82\xAC"
                           "ab"}) {
    const std::string body = Run("table-cut+utf16", std::string("[{a: '") + text + "'.repeat(50)}]");
    EXPECT_EQ(body.size() % 2, 0u);
    const std::string end = "</ExecuteResult></ExecuteResponse></soap:Body></soap:Envelope>";
    std::string wide;
    for (const char c : end) wide += std::string(1, c) + '\0';
    EXPECT_EQ(body.substr(body.size() - wide.size()), wide);
  }
}

TEST_F(OddTable, OtherValuesStayAsTheyAre) {
  EXPECT_EQ(ValueIn(Run("table-no-records+table-cut", "5")), "xsd:int|5");
  EXPECT_EQ(ValueIn(Run("table-cut+bad-date")), "xsd:date|2024-02-30");
  EXPECT_NE(Run("table-x").find("table-sof, table-other-type, table-other-names, table-whitespace, "),
            std::string::npos);
}

}  // namespace
}  // namespace qv::devservice::testing
