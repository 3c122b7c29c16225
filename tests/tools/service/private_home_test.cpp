// The temporary home directory: what it holds, and that nothing is left of it.
#include "tools/service/private_home.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "fixtures/environment.h"
#include "tests/tools/process.h"
#include "tools/service/home_directory.h"
#include "tools/system/interrupt.h"

namespace qv::cli {
namespace {

class PrivateHomeTest : public ::testing::Test {
 protected:
  bool IsInFolder(const PrivateHome& home) const {
    return testing::StartsWith(home.Path(), folder_.Path() + "/scriptwells-");
  }

  TemporaryDirectory folder_;
  EnvironmentVariable temp_{"TEMP", folder_.Path().c_str()};
};

TEST_F(PrivateHomeTest, HoldsTheUploadScriptsDuringItsLifetime) {
  {
    const PrivateHome home;
    EXPECT_TRUE(IsInFolder(home)) << home.Path();
    EXPECT_TRUE(HasUploadScripts(home.Path()));
    for (const char* script : {"UploadScript.xml", "UploadScriptWithoutTicketdId.xml"})
      EXPECT_TRUE(std::filesystem::is_regular_file(home.Path() + "/ClientScripts/" + script));
    struct stat facts = {};
    ASSERT_EQ(::stat(home.Path().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0700U);
  }
  EXPECT_EQ(folder_.Count(), 0);
}

TEST_F(PrivateHomeTest, IsNotInATemporaryDirectoryThatTheLibraryCannotRead) {
  const std::string odd = folder_.Path("a#b");
  std::filesystem::create_directory(odd);
  temp_.Set(odd.c_str());
  const EnvironmentVariable other("TMP", folder_.Path().c_str());
  const PrivateHome home;
  EXPECT_TRUE(IsInFolder(home)) << home.Path();
}

// In its own process, which the second signal ends at once.
TEST_F(PrivateHomeTest, IsRemovedWhenTheProgramEndsAtOnce) {
  EXPECT_EXIT(
      {
        WatchForInterrupt();
        const PrivateHome home;
        static_cast<void>(::raise(SIGINT));
        if (folder_.Count() == 0) std::_Exit(1);
        static_cast<void>(::raise(SIGINT));
      },
      ::testing::ExitedWithCode(130), "");
  EXPECT_EQ(folder_.Count(), 0);
}

}  // namespace
}  // namespace qv::cli
