// Where an upload finds its scripts.
#include <filesystem>
#include <string>

#include "fixtures/current_directory.h"
#include "script/upload_fixture.h"

namespace qv {
namespace {

class UploadHome : public UploadFixture {
 protected:
  // The request that is sent for the file.
  std::string Sent() {
    AnswerUpload();
    EXPECT_EQ(UploadThrows(), "nothing");
    return http_.Bodies().empty() ? "nothing" : http_.Bodies().back();
  }
  std::string SentFrom(const std::string& home) {
    SetHome(home);
    return Sent();
  }
  void ExpectNoScript() {
    EXPECT_EQ(UploadThrows(), kNoDocument);
    EXPECT_TRUE(http_.Calls().empty());
  }
};

TEST_F(UploadHome, DirectoryMayEndInASeparatorOrNotAndBeWrittenWithBackslashes) {
  for (const char* end : {"", "\\\\", "/"}) {
    EXPECT_EQ(SentFrom(home_.Path() + end), FreshRequest());
    EXPECT_EQ(TicketOf(file_), "t1, -1");
  }
  home_.Write("in ner/ClientScripts/UploadScript.xml", "<inner/>");
  EXPECT_EQ(SentFrom(home_.Path() + "\\\\in ner"),
            RequestOfFile("&lt;inner/&gt;\\u000A\\u000A", kNoParameters));
}

TEST_F(UploadHome, WithoutADirectoryTheScriptsAreBelowTheCurrentOne) {
  const CurrentDirectory current(home_.Path());
  EXPECT_EQ(SentFrom(""), FreshRequest());
  EXPECT_EQ(Sent(), AgainRequest("t1"));
}

TEST_F(UploadHome, WithoutADirectoryAndScriptsThereIsNoUpload) {
  SetHome("");
  const TemporaryDirectory elsewhere;
  const CurrentDirectory current(elsewhere.Path());
  ExpectNoScript();
  EXPECT_EQ(TicketOf(file_), "<null>, 0");
}

// 130 units are too many for the place that the home directory is read into.
TEST_F(UploadHome, DirectoryThatIsTooLongCountsAsNone) {
  const std::string path = home_.Path();
  const std::string fill(128 - path.size(), 'd');
  home_.Write(fill + "/ClientScripts/UploadScript.xml", "<longest/>");
  home_.Write(fill + "d/ClientScripts/UploadScript.xml", "<long/>");
  ASSERT_EQ((path + "/" + fill).size(), 129U);
  EXPECT_EQ(SentFrom(path + "/" + fill), RequestOfFile("&lt;longest/&gt;\\u000A\\u000A", kNoParameters));
  EXPECT_EQ(TicketOf(file_), "t1, -1");
  const CurrentDirectory current(path);
  EXPECT_EQ(SentFrom(path + "/" + fill + "d"), FreshRequest());
}

TEST_F(UploadHome, EachUseHasItsOwnScript) {
  std::filesystem::remove(home_.Path("ClientScripts/UploadScriptWithoutTicketdId.xml"));
  EXPECT_EQ(Sent(), FreshRequest());
  EXPECT_EQ(UploadThrows(), kNoDocument);
  // The ticket was read for the nested call, so the next try is a fresh one.
  EXPECT_EQ(Sent(), FreshRequest());
}

TEST_F(UploadHome, ScriptIsReadAgainForEachFile) {
  EXPECT_EQ(Sent(), FreshRequest());
  home_.Write("ClientScripts/UploadScriptWithoutTicketdId.xml", "<changed/>");
  EXPECT_EQ(Sent(), AgainRequest("t1", "changed"));
}

TEST_F(UploadHome, MissingScriptKeepsTheTicketAndClearsTheFlag) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  SetHome("/nowhere");
  ExpectNoScript();
  EXPECT_EQ(TicketOf(file_), "t0, 0");
}

TEST_F(UploadHome, BrokenScriptIsNotSent) {
  for (const char* script : {"<fresh>", ""}) {
    home_.Write("ClientScripts/UploadScript.xml", script);
    ExpectNoScript();
  }
  EXPECT_EQ(TicketOf(file_), "<null>, 0");
}

// The text before a ":" counts as a scheme, and nothing is fetched.
TEST_F(UploadHome, DirectoryThatLooksLikeAUrlIsRefused) {
  SetHome("ab:c");
  ExpectNoScript();
}

}  // namespace
}  // namespace qv
