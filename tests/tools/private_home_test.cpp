#include "tools/private_home.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "fixtures/environment.h"
#include "tests/tools/fresh_directory.h"
#include "tools/home_directory.h"
#include "tools/interrupt.h"

namespace qv::cli {
namespace {

class PrivateHomeTest : public ::testing::Test {
 protected:
  testing::FreshDirectory folder_;
  EnvironmentVariable temp_{"TEMP", folder_.Path().c_str()};
  EnvironmentVariable registry_{"QV_REGISTRY", NO_HOME_REGISTRY};
};

TEST_F(PrivateHomeTest, IsTheHomeDirectoryForAsLongAsItLives) {
  EXPECT_EQ(HomeDirectory(), "");
  {
    const PrivateHome home;
    EXPECT_EQ(home.Path().rfind(folder_.Path() + "/scriptwells-", 0), 0u) << home.Path();
    EXPECT_EQ(HomeDirectory(), home.Path());
    EXPECT_NO_THROW(CheckUploadScripts());
    EXPECT_TRUE(std::filesystem::is_regular_file(home.Path() + "/ClientScripts/UploadScript.xml"));
    EXPECT_TRUE(
        std::filesystem::is_regular_file(home.Path() + "/ClientScripts/UploadScriptWithoutTicketdId.xml"));
    struct stat facts = {};
    ASSERT_EQ(::stat(home.Path().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0700u);
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
  EXPECT_EQ(HomeDirectory(), "");
  EXPECT_STREQ(std::getenv("QV_REGISTRY"), NO_HOME_REGISTRY);
}

TEST_F(PrivateHomeTest, VariableThatWasNotThereGoes) {
  registry_.Set(nullptr);
  {
    const PrivateHome home;
    EXPECT_EQ(std::string(std::getenv("QV_REGISTRY")), home.Path() + "/registry.reg");
  }
  EXPECT_EQ(std::getenv("QV_REGISTRY"), nullptr);
}

TEST_F(PrivateHomeTest, TemporaryDirectoryThatTheLibraryCannotReadIsPassedOver) {
  const std::string odd = folder_.Path() + "/a#b";
  std::filesystem::create_directory(odd);
  temp_.Set(odd.c_str());
  const EnvironmentVariable other("TMP", folder_.Path().c_str());
  const PrivateHome home;
  EXPECT_EQ(home.Path().rfind(folder_.Path() + "/scriptwells-", 0), 0u) << home.Path();
}

// In a process of its own, which the second signal ends at once.
TEST_F(PrivateHomeTest, GoesAlsoWhenTheProgramIsEndedAtOnce) {
  EXPECT_EXIT(
      {
        WatchForInterrupt();
        const PrivateHome home;
        ::raise(SIGINT);
        if (std::filesystem::is_empty(folder_.Path())) std::_Exit(1);
        ::raise(SIGINT);
      },
      ::testing::ExitedWithCode(130), "");
  EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

}  // namespace
}  // namespace qv::cli
