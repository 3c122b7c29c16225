// Fetching a file through the model.
#include <string>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/transfer_calls.h"
#include "session/model_test.h"

namespace qv {
namespace {

class ModelDownloadFile : public ModelTest {
 protected:
  std::string Path(const WideString& url = u"http://files/f", const WideString& target = u"/t") {
    return Shown(model_.DownloadFile(url, target));
  }
  std::string DownloadThrows(const WideString& url = u"http://files/f") {
    return Thrown([&] { Path(url); });
  }
  // The path of an answer with this name.
  std::string PathNamed(const std::u16string& name, const WideString& url = u"http://files/f") {
    http_.AnswerNamed(name);
    return Path(url);
  }
};

TEST_F(ModelDownloadFile, SessionIsSentToTheServerOfTheUrl) {
  AdoptSession();
  http_.AnswerNamed(u"a.txt");
  EXPECT_EQ(Path(u"http://files:81/get?id=7", u"c:\\tmp"), "c:\\tmp\\a.txt");
  EXPECT_EQ(http_.PlainCalls(),
            TransferCalls("http, files, 81, , , ", "GET, /get?id=7, */*, 0",
                          {"SetHeader(usid, u1)", "Send(body, )", "GetHeader(Content-Disposition)",
                           "ReadToFile(c:\\tmp\\a.txt, 0)"}));
  ExpectSession(SessionState::kOpen, "u1", "");
  EXPECT_EQ(Shown(model_.ServiceUrl().host), "srv");
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelDownloadFile, WithoutASessionTheIdIsEmptyOrNull) {
  EXPECT_EQ(PathNamed(u"a.txt"), "/t\\a.txt");
  ASSERT_EQ(http_.CallsNamed("SetHeader(").size(), 1U);
  const std::string header = http_.CallsNamed("SetHeader(")[0];
  EXPECT_TRUE(header == "SetHeader(usid, )" || header == "SetHeader(usid, <null>)") << header;
}

TEST_F(ModelDownloadFile, NoServerIsNeeded) {
  ConnectionModelImpl model;
  http_.AnswerNamed(u"a.txt");
  EXPECT_EQ(Shown(model.DownloadFile(u"http://files/f", u"/t")), "/t\\a.txt");
}

TEST_F(ModelDownloadFile, ProxyIsSentWithItsPort) {
  const struct {
    const char16_t* proxy;
    const char* sent;
  } rows[] = {
      {u"proxy:3128", "proxy:3128"}, {u"proxy", "proxy:80"}, {u"proxy:0", ""}, {u"proxy:x", ""}, {u"", ""}};
  for (const auto& row : rows) {
    model_.SetServer(u"http://srv:8080", row.proxy);
    PathNamed(u"a", u"http://files:81/f");
    EXPECT_EQ(http_.Opens().back(), "Open(http, files, 81, , , " + std::string(row.sent) + ")");
  }
}

TEST_F(ModelDownloadFile, CookieOfANewAndOfAUsedModelMakesNoHeader) {
  AdoptSession();
  PathNamed(u"a");
  EXPECT_EQ(ExecuteThrows(nullptr, kScriptDone), "nothing");
  PathNamed(u"a");
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
}

TEST_F(ModelDownloadFile, EmptyTargetIsANewTemporaryDirectory) {
  const TemporaryDirectory files;
  const EnvironmentVariable temp("TEMP", files.Path().c_str());
  http_.AnswerNamed(u"a.txt");
  http_.AnswerNamed(u"a.txt");
  const std::string path = Path(u"http://files/f", u"");
  EXPECT_EQ(path.substr(0, files.Path().size() + 1), files.Path() + "\\");
  EXPECT_EQ(path.size(), files.Path().size() + 1 + 36 + 6);
  EXPECT_EQ(path.substr(path.size() - 6), "/a.txt");
  EXPECT_NE(Path(u"http://files/f", WideString()), path);
  EXPECT_EQ(files.Count(), 2);
}

TEST_F(ModelDownloadFile, FailureKeepsTheSessionAndTheNextDownloadWorks) {
  AdoptSession();
  EXPECT_EQ(DownloadThrows(u"files"), kNoPointer);
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  EXPECT_EQ(DownloadThrows(), kNoPointer);
  EXPECT_EQ(http_.Closes(), "");
  http_.AnswerNamed(u"../a");
  EXPECT_EQ(DownloadThrows(), kUnknownProblem);
  http_.AnswerNamed(u"a");
  http_.Fail(HttpStep::kReadToFile, HTTP_E_DISK_FULL, u"disk full");
  EXPECT_EQ(DownloadThrows(), Refused("disk full"));
  EXPECT_EQ(http_.Closes(), "RSRS");
  http_.Fail(HttpStep::kSend, E_FAIL, u"reset", 3);
  EXPECT_EQ(DownloadThrows(), Refused("reset"));
  ExpectSession(SessionState::kOpen, "u1", "");
  http_.AnswerNamed(u"a");
  EXPECT_EQ(DownloadThrows(), "nothing");
}

}  // namespace
}  // namespace qv
