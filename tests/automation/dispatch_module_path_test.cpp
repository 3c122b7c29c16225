// Type information is searched at the module's path, which must fit into 260 units with its null. The system
// reports the path with which a program was started, so the test starts this program under names of each
// length.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "fixtures/environment.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

constexpr char kVariable[] = "QV_TEST_LONG_PATH";

// Runs the test below in a program of this name and returns its exit status.
int RunUnderName(const std::string& name, const char* expectation) {
  const EnvironmentVariable expected(kVariable, expectation);
  const pid_t child = fork();
  if (child == 0) {
    execl("/proc/self/exe", name.c_str(), "--gtest_brief=1", "--gtest_filter=ModulePath.AnswersByItsLength",
          static_cast<char*>(nullptr));
    _exit(99);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(ModulePath, FitsWith259Units) {
  EXPECT_EQ(RunUnderName("/" + std::string(258, 'x'), "fits"), 0);
}

TEST(ModulePath, DoesNotFitWith260Units) {
  EXPECT_EQ(RunUnderName("/" + std::string(259, 'x'), "too long"), 0);
  EXPECT_EQ(RunUnderName("/" + std::string(3000, 'x'), "too long"), 0);
}

// The two tests above start it under special names; else the name is ordinary.
TEST(ModulePath, AnswersByItsLength) {
  const char* told = std::getenv(kVariable);
  const bool fits = told == nullptr || std::string(told) == "fits";
  const IUrlPtr link = CreateUrl();
  std::uint32_t count = 7;
  EXPECT_EQ(link->GetTypeInfoCount(&count), fits ? S_OK : E_FAIL);
  if (fits) {
    EXPECT_EQ(count, 0U);
  }
  int stranger = 0;
  for (const std::uint32_t index : {0U, 1U}) {
    ITypeInfo* info = reinterpret_cast<ITypeInfo*>(&stranger);
    const HRESULT code = link->GetTypeInfo(index, 0, &info);
    if (!fits) {
      EXPECT_EQ(code, E_FAIL);
    }
    EXPECT_EQ(info, nullptr);
  }
}

}  // namespace
}  // namespace qv
