// DownloadFile as a host meets it: result codes and error records.
#include <gtest/gtest.h>

#include <string>

#include "automation/waiting_record.h"
#include "fixtures/environment.h"
#include "fixtures/fake_http.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

class DownloadFileObject : public testing::Test {
 protected:
  DownloadFileObject() : model_(CreateConnectionModel()) { LeaveStaleRecord(); }
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
  // The place of the path keeps what stood there.
  void ExpectFailure(HRESULT code, std::uint32_t expected, const std::string& words) {
    EXPECT_EQ(static_cast<std::uint32_t>(code), expected);
    EXPECT_EQ(TakenWords(), words);
    EXPECT_EQ(Shown(path_), "before");
  }

  FakeHttp http_;
  IConnectionModelPtr model_;
  WideString path_{u"before"};
};

TEST_F(DownloadFileObject, PathComesBackWithoutARecord) {
  AnswerNamed(u"a.txt");
  EXPECT_EQ(Download(), S_OK);
  EXPECT_EQ(Shown(path_), "c:\\tmp\\a.txt");
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(DownloadFileObject, SessionGoesAlong) {
  AnswerNamed(u"a.txt");
  EXPECT_EQ(model_->SetUSID(u"u1"), S_OK);
  EXPECT_EQ(Download(), S_OK);
  EXPECT_EQ(http_.CallsNamed("SetHeader("), std::vector<std::string>{"SetHeader(usid, u1)"});
}

TEST_F(DownloadFileObject, UnreachableServerIsAMissingReferenceWithoutWords) {
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  ExpectFailure(Download(), 0x80004003, "Unknown Error");
}

TEST_F(DownloadFileObject, TextThatIsNoUrlIsAMissingReferenceWithoutWords) {
  ExpectFailure(Download(u"files/f"), 0x80004003, "Unknown Error");
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(DownloadFileObject, BrokenTransferIsAnExceptionWithTheComponentsWords) {
  AnswerNamed(u"a.txt");
  http_.Fail(HttpStep::kReadToFile, HTTP_E_CUT_OFF, u"cut off");
  ExpectFailure(Download(), 0x80020009, "cut off");
}

TEST_F(DownloadFileObject, BrokenTransferWithoutWordsHasEmptyOnes) {
  http_.Fail(HttpStep::kSend, HTTP_E_CUT_OFF);
  ExpectFailure(Download(), 0x80020009, "");
}

TEST_F(DownloadFileObject, AnswerWithoutANameIsAnExceptionWithWords) {
  http_.AnswerFile();
  ExpectFailure(Download(), 0x80020009, "Unknown Http problem.");
}

TEST_F(DownloadFileObject, NameThatLeavesTheDirectoryIsAnExceptionWithWords) {
  AnswerNamed(u"..");
  ExpectFailure(Download(), 0x80020009, "Unknown Http problem.");
}

TEST_F(DownloadFileObject, FailureOfTheCleanUpBringsItsOwnCodeAndWords) {
  http_.Fail(HttpStep::kSend, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseSession, E_INVALIDARG, u"second");
  ExpectFailure(Download(), 0x80070057, "second");
}

TEST_F(DownloadFileObject, NoTemporaryDirectoryIsAnExceptionWithWords) {
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

TEST_F(DownloadFileObject, MissingPlaceForThePathIsRefusedUnsent) {
  EXPECT_EQ(model_->DownloadFile(u"http://files/f", u"/t", nullptr), E_POINTER);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(DownloadFileObject, NullUrlIsForTheComponentToRefuse) {
  http_.Fail(HttpStep::kOpen, E_INVALIDARG, u"no host");
  ExpectFailure(Download(WideString(), u"/t"), 0x80004003, "Unknown Error");
  EXPECT_EQ(http_.CallsNamed("Open(").size(), 1u);
}

}  // namespace
}  // namespace qv
