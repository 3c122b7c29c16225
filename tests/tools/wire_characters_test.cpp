#include "tools/wire_characters.h"

#include <fstream>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::RunTool;
using testing::ScriptAnswered;
using testing::SessionClosed;
using testing::SessionOpened;
using testing::Words;

constexpr char kFace[] = "\xF0\x9F\x98\x80";  // U+1F600
constexpr char kTail[] = ", which does not travel as well-formed XML, so most servers refuse it\n";

TEST(WireCharacters, FirstOneThatXmlDoesNotCarryIsNamed) {
  const std::pair<std::string, const char*> rows[] = {
      {"", ""},
      {"a\t\r\n\x7F \xC2\x85 \xC3\xA9 \xEF\xBF\xBD \xEE\x80\x80", ""},
      {std::string("a\0b", 3), "U+0000"},
      {"a\x01\x02", "U+0001"},
      {"\x1B[0m", "U+001B"},
      {"\xEF\xBF\xBE", "U+FFFE"},
      {"\xEF\xBF\xBF", "U+FFFF"},
      {"\xF0\x90\x80\x80", "U+10000"},
      {kFace, "U+1F600"},
      {"\xF4\x8F\xBF\xBF", "U+10FFFF"},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(FirstRefusedCharacter(text), expected) << text;
}

class RefusedCharacters : public testing::TransferServer {
 protected:
  Outcome Run(const Words& more, const testing::Variables& variables = {}) {
    Answer({SessionOpened(), ScriptAnswered("xsd:int", "1"), SessionClosed()});
    return RunTool(AsJoe("run", more), "", variables);
  }
};

TEST_F(RefusedCharacters, OfAParameterAreTold) {
  const Outcome value = Run({"-e", "1", "-p", std::string("a=string:") + kFace});
  EXPECT_EQ(value.err, std::string("scriptwells: note: parameter 'a' holds U+1F600") + kTail);
  EXPECT_EQ(value.out, "1\n");
  EXPECT_EQ(value.exit, 0);
  EXPECT_TRUE(WasSent("\"xsd:string\">&#55357;&#56832;</Value>"));
}

TEST_F(RefusedCharacters, OfAParametersNameAreTold) {
  const Outcome outcome = Run({"-e", "1", "-p", "a\x01=int:5"});
  EXPECT_EQ(outcome.err,
            std::string("scriptwells: note: parameter 'a\\x01' has a name that holds U+0001") + kTail);
  EXPECT_TRUE(WasSent("\"xsd:string\">a\x01</Name>"));
}

TEST_F(RefusedCharacters, OfAScriptAreTold) {
  const Outcome outcome = Run({"-e", std::string("'") + kFace + "'", "--json"});
  EXPECT_EQ(outcome.err,
            "{\"note\":\"the script holds U+1F600, which does not travel as well-formed XML, so most servers "
            "refuse it\"}\n");
  EXPECT_TRUE(WasSent("&amp;apos;&amp;#55357;&amp;#56832;&amp;apos;"));
}

TEST_F(RefusedCharacters, OfCredentialsAreToldAndThePasswordsNotNamed) {
  Answer({SessionOpened(), ScriptAnswered("xsd:int", "1"), SessionClosed()});
  const Outcome outcome =
      RunTool({"run", "--server", Origin(), "--user", std::string("j") + kFace, "-e", "1"}, "",
              {{"SCRIPTWELLS_PASSWORD", kFace}});
  EXPECT_EQ(outcome.err, std::string("scriptwells: note: the user name holds U+1F600") + kTail +
                             "scriptwells: note: the password holds a character that does not travel as "
                             "well-formed XML, so most "
                             "servers refuse it\n");
  EXPECT_TRUE(WasSent("Username=j&#55357;&#56832;;Password=&#55357;&#56832;;"));
}

// The library sends a document's bytes, each as a character of its own.
TEST_F(RefusedCharacters, DocumentTravelsAsXmlWhateverItHolds) {
  const std::string file = folder_.Path() + "/d.xml";
  std::ofstream(file) << "<Scriptwell Language=\"JavaScript\"><Code>'" << kFace << "'</Code></Scriptwell>";
  Answer({SessionOpened(), ScriptAnswered("xsd:int", "1"), SessionClosed()});
  const Outcome outcome = RunTool(AsJoe("run-document", {file}));
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(WasSent("&#240;&#159;&#152;&#128;"));
}

}  // namespace
}  // namespace qv::cli
