// The entries of the class in the registry, and the source of errors that they give.
#include <gtest/gtest.h>

#include <string>

#include "automation/registration.h"
#include "com/guarded.h"
#include "fixtures/environment.h"
#include "fixtures/ordinary_user.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

const char* followedUp = "";

HRESULT NoteFollowUp(bool adding) noexcept {
  followedUp = adding ? "added" : "removed";
  return S_FALSE;
}

class Registration : public testing::Test {
 protected:
  Registration() { ClearErrorInfo(); }
  ~Registration() override { SetRegistrationFollowUp(nullptr); }

  static std::string WaitingSource() {
    ErrorInfo info;
    return GetErrorInfo(&info) ? Shown(info.source) : "no record";
  }
  static std::string SourceOf(const Guid& classId) {
    try {
      _com_raise_error(E_FAIL);
    } catch (...) {
      EXPECT_EQ(ResultFromCaughtException(classId), E_FAIL);
    }
    return WaitingSource();
  }

  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", directory_.Path("classes.reg").c_str()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path("none").c_str()};
};

TEST_F(Registration, SourceIsTheProgIdOfARegisteredClass) {
  EXPECT_EQ(SourceOf(CLSID_QvScriptwells), "<null>");
  ASSERT_EQ(RegisterClasses(), S_OK);
  EXPECT_EQ(SourceOf(CLSID_QvScriptwells), "QvScriptwells.QvScriptwells.1.0");
  EXPECT_EQ(SourceOf(CLSID_Url), "<null>");
  ASSERT_EQ(UnregisterClasses(), S_OK);
  EXPECT_EQ(SourceOf(CLSID_QvScriptwells), "<null>");
}

TEST_F(Registration, FailedMembersOfTheClientTellIt) {
  ASSERT_EQ(RegisterClasses(), S_OK);
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  IConnectionModel* model = nullptr;
  EXPECT_LT(client->ConnectionModel(&model), 0);
  EXPECT_EQ(WaitingSource(), "QvScriptwells.QvScriptwells.1.0");
}

TEST_F(Registration, DamagedRegistryLeavesTheSourceEmptyAndTheWordsWhole) {
  directory_.Write("classes.reg", "stray\nstray\n");
  try {
    ErrorInfo info;
    info.description = u"words";
    throw _com_error(E_FAIL, info);
  } catch (...) {
    EXPECT_EQ(ResultFromCaughtException(CLSID_QvScriptwells), E_FAIL);
  }
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_TRUE(info.source.IsNull());
  EXPECT_EQ(Shown(info.description), "words");
}

TEST_F(Registration, RegistryThatCannotBeWrittenIsAFailureWithWords) {
  const std::string path = directory_.Write("classes.reg", "stray\nstray\n");
  EXPECT_EQ(RegisterClasses(), E_FAIL);
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(Shown(info.description), path + ": line 2: neither a section nor a value nor a comment");
  EXPECT_EQ(UnregisterClasses(), E_FAIL);
  EXPECT_EQ(directory_.Read("classes.reg"), "stray\nstray\n");
}

TEST_F(Registration, RemovingWhatIsNotThereSucceeds) {
  EXPECT_EQ(UnregisterClasses(), S_OK);
  EXPECT_EQ(directory_.Count(), 0);
}

TEST_F(Registration, FollowUpComesLastAndGivesTheResult) {
  SetRegistrationFollowUp(NoteFollowUp);
  EXPECT_EQ(RegisterClasses(), S_FALSE);
  EXPECT_STREQ(followedUp, "added");
  EXPECT_EQ(UnregisterClasses(), S_FALSE);
  EXPECT_STREQ(followedUp, "removed");
  followedUp = "";
  directory_.Write("classes.reg", "stray\nstray\n");
  EXPECT_EQ(RegisterClasses(), E_FAIL);
  EXPECT_STREQ(followedUp, "");
}

}  // namespace
}  // namespace qv
