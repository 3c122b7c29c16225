// Characters that the library does not send as well-formed XML: they are sent, with a note for the user.
#include "tools/values/wire_characters.h"

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

const std::string kFace = "\xF0\x9F\x98\x80";  // U+1F600
const std::string kReason = ", which does not travel as well-formed XML, so most servers refuse it";

TEST(WireCharacters, FirstOneIsNamed) {
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

class RefusedCharacters : public TransferServer {
 protected:
  void SetUp() override { AnswerCalls({ScriptAnswered("xsd:int", "1")}); }
};

TEST_F(RefusedCharacters, OfAParameter) {
  Joe("run -e 1 -p", {"a=string:" + kFace}).Succeeds("1\n", "note: parameter 'a' holds U+1F600" + kReason);
  EXPECT_TRUE(WasSent("\"xsd:string\">&#55357;&#56832;</Value>"));
}

TEST_F(RefusedCharacters, OfAParametersName) {
  Joe("run -e 1 -p a\x01=int:5")
      .Succeeds("1\n", "note: parameter 'a\\x01' has a name that holds U+0001" + kReason);
  EXPECT_TRUE(WasSent("\"xsd:string\">a\x01</Name>"));
}

TEST_F(RefusedCharacters, OfAScript) {
  EXPECT_EQ(Joe("run --json -e", {"'" + kFace + "'"}).Run().err,
            "{\"note\":\"the script holds U+1F600" + kReason + "\"}\n");
  EXPECT_TRUE(WasSent("&amp;apos;&amp;#55357;&amp;#56832;&amp;apos;"));
}

TEST_F(RefusedCharacters, OfCredentials) {
  Tool("run -e 1 --server " + Origin() + " --user j" + kFace)
      .Set("SCRIPTWELLS_PASSWORD", kFace)
      .Succeeds("1\n", "note: the user name holds U+1F600" + kReason +
                           "\nscriptwells: note: the password holds a character that does not travel as "
                           "well-formed XML, so most servers refuse it");
  EXPECT_TRUE(WasSent("Username=j&#55357;&#56832;;Password=&#55357;&#56832;;"));
}

// The library sends a document's bytes, each as a character.
TEST_F(RefusedCharacters, OfADocumentTravelAsXml) {
  const std::string file =
      folder_.Write("d.xml", "<Scriptwell Language=\"JavaScript\"><Code>'" + kFace + "'</Code></Scriptwell>");
  EXPECT_EQ(Joe("run-document " + file).Run().err, "");
  EXPECT_TRUE(WasSent("&#240;&#159;&#152;&#128;"));
}

}  // namespace
}  // namespace qv::cli
