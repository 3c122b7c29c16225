// The message of a call that fails.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "scriptwells/error.h"

namespace scriptwells::test {

// The message of the Error that the call throws, whose phase is checked; "accepted" if it throws nothing.
template <class Call>
std::string RefusalOf(Phase phase, const Call& call) {
  try {
    call();
    return "accepted";
  } catch (const Error& error) {
    EXPECT_STREQ(ToString(error.phase()), ToString(phase)) << error.what();
    return error.message();
  }
}

}  // namespace scriptwells::test
