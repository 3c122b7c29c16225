// For tests of what only the plain scanner does: a build without it (QV_PLAIN_SCANNER=OFF) skips them.
#pragma once

#include <gtest/gtest.h>

#ifndef QV_PLAIN_SCANNER
#error "QV_PLAIN_SCANNER comes from the build"
#endif

// A macro, since GTEST_SKIP returns from the function.
#define NEEDS_PLAIN_SCANNER() \
  if (QV_PLAIN_SCANNER == 0) GTEST_SKIP() << "built without the plain scanner"
