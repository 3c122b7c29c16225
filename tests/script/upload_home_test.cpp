// Where an upload finds its scripts.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "script/upload_fixture.h"

namespace qv {
namespace {

class UploadHome : public UploadFixture {
 protected:
  // The request that goes out for the file.
  std::string Sent() {
    AnswerUpload(u"http://files/up?ticket=t1");
    EXPECT_EQ(UploadThrows(), "nothing");
    return http_.Bodies().empty() ? "nothing" : http_.Bodies().back();
  }
  void ExpectNoScript() {
    EXPECT_EQ(UploadThrows(), kNoDocument);
    EXPECT_TRUE(http_.Calls().empty());
  }
};

TEST_F(UploadHome, DirectoryMayEndInABackslashOrNot) {
  SetHome(home_.Path());
  EXPECT_EQ(Sent(), FreshRequest());
  SetHome(home_.Path() + "\\\\");
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
  EXPECT_EQ(Sent(), FreshRequest());
}

TEST_F(UploadHome, DirectoryMayEndInASlashOrBeWrittenWithBackslashes) {
  SetHome(home_.Path() + "/");
  EXPECT_EQ(Sent(), FreshRequest());
  home_.Write("in ner/ClientScripts/UploadScriptWithoutTicketdId.xml", "<inner/>");
  SetHome(home_.Path() + "\\\\in ner");
  EXPECT_EQ(Sent(), RequestOfFile("&lt;inner/&gt;\\u000A\\u000A",
                                  ParameterArray("1", ParameterElement("fileTicket", "xsd:string", "t1"))));
}

TEST_F(UploadHome, WithoutADirectoryTheScriptsAreBelowTheCurrentOne) {
  SetHome("");
  const CurrentDirectory current(home_.Path());
  EXPECT_EQ(Sent(), FreshRequest());
  EXPECT_EQ(Sent(), AgainRequest("t1"));
}

TEST_F(UploadHome, WithoutADirectoryAndScriptsThereIsNoUpload) {
  SetHome("");
  const TemporaryDirectory elsewhere;
  const CurrentDirectory current(elsewhere.Path());
  ExpectNoScript();
  EXPECT_EQ(TicketOf(file_.get()), "<null>, 0");
}

// 130 units do not fit where the home directory is read.
TEST_F(UploadHome, DirectoryThatIsTooLongIsNone) {
  const std::string path = home_.Path();
  const std::string fill(128 - path.size(), 'd');
  home_.Write(fill + "/ClientScripts/UploadScript.xml", "<longest/>");
  home_.Write(fill + "d/ClientScripts/UploadScript.xml", "<long/>");
  ASSERT_EQ((path + "/" + fill).size(), 129u);
  SetHome(path + "/" + fill);
  EXPECT_EQ(Sent(), RequestOfFile("&lt;longest/&gt;\\u000A\\u000A", kNoParameters));
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
  SetHome(path + "/" + fill + "d");
  const CurrentDirectory current(path);
  EXPECT_EQ(Sent(), FreshRequest());
}

TEST_F(UploadHome, EachUseHasItsOwnScript) {
  std::filesystem::remove(home_.Path("ClientScripts/UploadScriptWithoutTicketdId.xml"));
  EXPECT_EQ(Sent(), FreshRequest());
  EXPECT_EQ(UploadThrows(), kNoDocument);
  // The ticket was read for the nested call, so the next try is a fresh one.
  EXPECT_EQ(Sent(), FreshRequest());
}

TEST_F(UploadHome, MissingScriptKeepsTheTicketAndClearsTheFlag) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  SetHome("/nowhere");
  ExpectNoScript();
  EXPECT_EQ(TicketOf(file_.get()), "t0, 0");
}

TEST_F(UploadHome, BrokenScriptIsNotSent) {
  home_.Write("ClientScripts/UploadScript.xml", "<fresh>");
  ExpectNoScript();
  home_.Write("ClientScripts/UploadScript.xml", "");
  ExpectNoScript();
  EXPECT_EQ(TicketOf(file_.get()), "<null>, 0");
}

TEST_F(UploadHome, ScriptIsReadAfreshForEachFile) {
  EXPECT_EQ(Sent(), FreshRequest());
  home_.Write("ClientScripts/UploadScriptWithoutTicketdId.xml", "<changed/>");
  EXPECT_EQ(Sent(), RequestOfFile("&lt;changed/&gt;\\u000A\\u000A",
                                  ParameterArray("1", ParameterElement("fileTicket", "xsd:string", "t1"))));
}

// What stands before a ":" counts as a scheme, and none is fetched.
TEST_F(UploadHome, DirectoryThatLooksLikeAUrlIsRefused) {
  SetHome("ab:c");
  ExpectNoScript();
}

}  // namespace
}  // namespace qv
