// DownloadFile as a host meets it: result codes and error records.
#include <gtest/gtest.h>

#include "fixtures/environment.h"
#include "fixtures/fake_http.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

class DownloadFileObject : public testing::Test {
 protected:
  DownloadFileObject() { LeaveStaleRecord(); }
  void TearDown() override {
    model_.reset();
    EXPECT_EQ(http_.LiveObjects(), 0);
    ClearErrorInfo();
  }

  void AnswerNamed(const std::u16string& name) {
    HttpAnswer answer{u"200", u"3", u"abc"};
    answer.headers[u"Content-Disposition"] = u"attachment; filename=" + name;
    http_.AnswerAs(answer);
  }
  HRESULT Download(const WideString& url = u"http://files/f", const WideString& target = u"c:\\tmp") {
    return model_->DownloadFile(url, target, &path_);
  }
  // The path keeps what it was before.
  void ExpectFailure(HRESULT code, std::uint32_t expected, const std::string& message) {
    EXPECT_EQ(static_cast<std::uint32_t>(code), expected);
    EXPECT_EQ(TakenWords(), message);
    EXPECT_EQ(Shown(path_), "before");
  }

  FakeHttp http_;
  IConnectionModelPtr model_ = CreateConnectionModel();
  WideString path_{u"before"};
};

TEST_F(DownloadFileObject, ReturnsThePathAndSendsTheSession) {
  AnswerNamed(u"a.txt");
  EXPECT_EQ(model_->SetUSID(u"u1"), S_OK);
  LeaveStaleRecord();
  EXPECT_EQ(Download(), S_OK);
  EXPECT_EQ(Shown(path_), "c:\\tmp\\a.txt");
  EXPECT_EQ(TakenWords(), "no record");
  EXPECT_EQ(http_.CallsNamed("SetHeader("), std::vector<std::string>{"SetHeader(usid, u1)"});
}

TEST_F(DownloadFileObject, TextThatIsNotAUrlIsANullReference) {
  ExpectFailure(Download(u"files/f"), 0x80004003, "Unknown Error");
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_EQ(model_->DownloadFile(u"http://files/f", u"/t", nullptr), E_POINTER);
  EXPECT_TRUE(http_.Calls().empty());
}

// Null is for the component to refuse.
TEST_F(DownloadFileObject, UnreachableServerIsANullReference) {
  for (const WideString& url : {WideString(u"http://files/f"), WideString()}) {
    http_.Fail(HttpStep::kOpen, E_FAIL, u"no route", static_cast<int>(http_.CallsNamed("Open(").size()) + 1);
    ExpectFailure(Download(url), 0x80004003, "Unknown Error");
  }
  EXPECT_EQ(http_.CallsNamed("Open(").size(), 2U);
}

TEST_F(DownloadFileObject, BrokenTransferBringsTheComponentsMessage) {
  AnswerNamed(u"a.txt");
  http_.Fail(HttpStep::kReadToFile, HTTP_E_CUT_OFF, u"cut off");
  ExpectFailure(Download(), 0x80020009, "cut off");
  http_.Fail(HttpStep::kSend, HTTP_E_CUT_OFF, WideString(), 2);
  ExpectFailure(Download(), 0x80020009, "");
}

TEST_F(DownloadFileObject, AnswerWithoutAUsableNameIsAnException) {
  http_.AnswerFile();
  ExpectFailure(Download(), 0x80020009, "Unknown Http problem.");
  AnswerNamed(u"..");  // which would leave the directory
  ExpectFailure(Download(), 0x80020009, "Unknown Http problem.");
}

TEST_F(DownloadFileObject, FailureOfTheCleanUpBringsItsOwnCodeAndMessage) {
  http_.Fail(HttpStep::kSend, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseSession, E_INVALIDARG, u"second");
  ExpectFailure(Download(), 0x80070057, "second");
}

TEST_F(DownloadFileObject, MissingTemporaryDirectoryIsAnException) {
  const EnvironmentVariable temp("TEMP", nullptr);
  const EnvironmentVariable tmp("TMP", nullptr);
  AnswerNamed(u"a.txt");
  ExpectFailure(Download(u"http://files/f", WideString()), 0x80020009, "Unknown Http problem.");
}

TEST_F(DownloadFileObject, EmptyTargetIsANewTemporaryDirectory) {
  const TemporaryDirectory files;
  const EnvironmentVariable temp("TEMP", files.Path().c_str());
  AnswerNamed(u"a.txt");
  EXPECT_EQ(Download(u"http://files/f", WideString()), S_OK);
  EXPECT_EQ(Shown(path_).size(), files.Path().size() + 1 + 36 + 6);
  EXPECT_EQ(files.Count(), 1);
}

}  // namespace
}  // namespace qv
