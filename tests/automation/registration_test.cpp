// The entries of the class in the registry, and the source of errors that they give.
#include <gtest/gtest.h>

#include <string>

#include "automation/registration.h"
#include "com/guarded.h"
#include "fixtures/environment.h"
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

constexpr char kDamaged[] = "stray\nstray\n";

class Registration : public testing::Test {
 protected:
  Registration() { ClearErrorInfo(); }
  ~Registration() override { SetRegistrationFollowUp(nullptr); }

  static ErrorInfo Waiting() {
    ErrorInfo info;
    EXPECT_TRUE(GetErrorInfo(&info));
    return info;
  }
  // The record of a failed operation of this class.
  static ErrorInfo FailureOf(const Guid& classId) {
    const auto report = [&] { return ResultFromCaughtException(classId); };
    EXPECT_EQ(GuardedBy(report, [] { RaiseWithWords(E_FAIL, "words"); }), E_FAIL);
    return Waiting();
  }
  static std::string SourceOf(const Guid& classId) { return Shown(FailureOf(classId).source); }

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

TEST_F(Registration, IsTheSourceOfFailedMembersOfTheClient) {
  ASSERT_EQ(RegisterClasses(), S_OK);
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  IConnectionModelPtr model;
  EXPECT_LT(client->ConnectionModel(Put(model)), 0);
  EXPECT_EQ(Shown(Waiting().source), "QvScriptwells.QvScriptwells.1.0");
}

TEST_F(Registration, DamagedRegistryLeavesTheSourceEmptyAndTheMessageWhole) {
  directory_.Write("classes.reg", kDamaged);
  const ErrorInfo info = FailureOf(CLSID_QvScriptwells);
  EXPECT_TRUE(info.source.IsNull());
  EXPECT_EQ(Shown(info.description), "words");
}

TEST_F(Registration, RegistryThatCannotBeWrittenIsAFailureWithAMessage) {
  const std::string path = directory_.Write("classes.reg", kDamaged);
  EXPECT_EQ(RegisterClasses(), E_FAIL);
  EXPECT_EQ(Shown(Waiting().description), path + ": line 2: neither a section nor a value nor a comment");
  EXPECT_EQ(UnregisterClasses(), E_FAIL);
  EXPECT_EQ(directory_.Read("classes.reg"), kDamaged);
}

TEST_F(Registration, RemovingMissingEntriesSucceeds) {
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
  directory_.Write("classes.reg", kDamaged);
  EXPECT_EQ(RegisterClasses(), E_FAIL);
  EXPECT_STREQ(followedUp, "");
}

}  // namespace
}  // namespace qv
