// Fetching a file through the model.
#include <gtest/gtest.h>

#include <string>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "session/model_test.h"

namespace qv {
namespace {

constexpr char kUnknownProblem[] = "EQvException 0x00000000 Unknown Http problem.";

class ModelDownloadFile : public ModelTest {
 protected:
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }

  void AnswerNamed(const std::u16string& name) {
    HttpAnswer answer{u"200", u"3", u"abc"};
    answer.headers[u"Content-Disposition"] = u"attachment; filename=" + name;
    http_.AnswerAs(answer);
  }
  std::string Path(const WideString& url, const WideString& target) {
    return Shown(model_.DownloadFile(url, target));
  }
  std::string DownloadThrows(const WideString& url = u"http://files/f") {
    return Thrown([&] { model_.DownloadFile(url, u"/t"); });
  }
  // What Open is given for a model with this proxy.
  std::string OpenFor(const WideString& proxy) {
    model_.SetServer(u"http://srv:8080", proxy);
    AnswerNamed(u"a");
    Path(u"http://files:81/f", u"/t");
    return Plain(http_.CallsNamed("Open(").back());
  }
  // An unset text goes out as an empty one.
  static std::string Plain(std::string call) {
    const std::string null = "<null>";
    while (call.find(null) != std::string::npos) call.erase(call.find(null), null.size());
    return call;
  }
};

TEST_F(ModelDownloadFile, SessionGoesToTheServerOfTheUrl) {
  AdoptSession();
  AnswerNamed(u"a.txt");
  EXPECT_EQ(Path(u"http://files:81/get?id=7", u"c:\\tmp"), "c:\\tmp\\a.txt");
  Lines calls = http_.Calls();
  for (std::string& call : calls) call = Plain(call);
  EXPECT_EQ(calls, (Lines{"CoCreate IUnknown", "Run", "Query IHttpSession", "Open(http, files, 81, , , )",
                          "OpenRequest(GET, /get?id=7, */*, 0)", "SetHeader(usid, u1)", "Send(body, )",
                          "GetHeader(Content-Disposition)", "ReadToFile(c:\\tmp\\a.txt, 0)", "Close request",
                          "Close session"}));
}

TEST_F(ModelDownloadFile, WithoutASessionTheIdIsEmpty) {
  AnswerNamed(u"a.txt");
  EXPECT_EQ(Path(u"http://files/f", u"/t"), "/t\\a.txt");
  ASSERT_EQ(http_.CallsNamed("SetHeader(").size(), 1u);
  EXPECT_EQ(Plain(http_.CallsNamed("SetHeader(")[0]), "SetHeader(usid, )");
}

TEST_F(ModelDownloadFile, NoServerIsNeeded) {
  ConnectionModelImpl model;
  AnswerNamed(u"a.txt");
  EXPECT_EQ(Shown(model.DownloadFile(u"http://files/f", u"/t")), "/t\\a.txt");
}

TEST_F(ModelDownloadFile, ProxyGoesAlongWithItsPort) {
  EXPECT_EQ(OpenFor(u"proxy:3128"), "Open(http, files, 81, , , proxy:3128)");
  EXPECT_EQ(OpenFor(u"proxy"), "Open(http, files, 81, , , proxy:80)");
  EXPECT_EQ(OpenFor(u"proxy:0"), "Open(http, files, 81, , , )");
  EXPECT_EQ(OpenFor(u"proxy:x"), "Open(http, files, 81, , , )");
  EXPECT_EQ(OpenFor(u""), "Open(http, files, 81, , , )");
}

TEST_F(ModelDownloadFile, CookieOfAFreshAndOfAUsedModelMakesNoHeader) {
  AdoptSession();
  AnswerNamed(u"a");
  Path(u"http://files/f", u"/t");
  http_.Answer(kScriptRan);
  EXPECT_EQ(ExecuteThrows(), "nothing");
  AnswerNamed(u"a");
  Path(u"http://files/f", u"/t");
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
}

TEST_F(ModelDownloadFile, NothingOfTheModelChanges) {
  AdoptSession();
  AnswerNamed(u"a");
  Path(u"http://files/f", u"/t");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  EXPECT_EQ(Shown(model_.ServiceUrl().host), "srv");
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelDownloadFile, EmptyTargetIsANewTemporaryDirectory) {
  const TemporaryDirectory files;
  const EnvironmentVariable temp("TEMP", files.Path().c_str());
  AnswerNamed(u"a.txt");
  AnswerNamed(u"a.txt");
  const std::string path = Path(u"http://files/f", u"");
  EXPECT_EQ(path.substr(0, files.Path().size() + 1), files.Path() + "\\");
  EXPECT_EQ(path.size(), files.Path().size() + 1 + 36 + 6);
  EXPECT_EQ(path.substr(path.size() - 6), "/a.txt");
  EXPECT_NE(Path(u"http://files/f", WideString()), path);
  EXPECT_EQ(files.Count(), 2);
}

TEST_F(ModelDownloadFile, UnreachableServerIsAMissingReference) {
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  EXPECT_EQ(DownloadThrows(), "_com_error 0x80004003 <null>");
  EXPECT_EQ(DownloadThrows(u"files"), "_com_error 0x80004003 <null>");
}

TEST_F(ModelDownloadFile, BrokenTransferHasTheComponentsWords) {
  AnswerNamed(u"a");
  http_.Fail(HttpStep::kReadToFile, HTTP_E_DISK_FULL, u"disk full");
  EXPECT_EQ(DownloadThrows(), "EQvException 0x00000000 disk full");
  EXPECT_EQ(http_.CallsNamed("Close "), (Lines{"Close request", "Close session"}));
}

TEST_F(ModelDownloadFile, NameThatLeavesTheDirectoryIsAnUnknownProblem) {
  AnswerNamed(u"../a");
  EXPECT_EQ(DownloadThrows(), kUnknownProblem);
}

TEST_F(ModelDownloadFile, FailureKeepsTheSession) {
  AdoptSession();
  http_.Fail(HttpStep::kSend, E_FAIL, u"reset");
  EXPECT_EQ(DownloadThrows(), "EQvException 0x00000000 reset");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  AnswerNamed(u"a");
  EXPECT_EQ(DownloadThrows(), "nothing");
}

}  // namespace
}  // namespace qv
