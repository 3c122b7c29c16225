// The message of a call that fails.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tools/report/failure.h"

namespace qv::cli::testing {

// The message of the Failure that the call throws, whose status is checked; "accepted" if it throws nothing.
template <typename Call>
std::string RefusalOf(const Call& call, ExitStatus status = ExitStatus::kLocal) {
  try {
    call();
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), status) << failure.Message();
    return failure.Message();
  }
}

}  // namespace qv::cli::testing
