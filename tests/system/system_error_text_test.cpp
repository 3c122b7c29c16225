#include "system/system_error_text.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace qv {
namespace {

TEST(SystemErrorText, KnownErrorsHaveTheirWords) {
  EXPECT_EQ(SystemErrorText(ENOENT), "No such file or directory");
  EXPECT_EQ(SystemErrorText(EACCES), "Permission denied");
}

TEST(SystemErrorText, UnknownErrorsHaveTheirNumber) {
  EXPECT_EQ(SystemErrorText(4711), "Unknown error 4711");
  EXPECT_EQ(SystemErrorText(-1), "Unknown error -1");
}

}  // namespace
}  // namespace qv
