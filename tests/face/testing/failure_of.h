// The error that an action throws.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include "scriptwells/error.h"

namespace scriptwells::testing {

// Its message; checks its class, which has to be Class itself, and its phase. "nothing" without an error.
template <typename Class = Error, typename Action>
std::string FailureOf(Phase phase, const Action& action) {
  try {
    action();
    return "nothing";
  } catch (const Error& error) {
    EXPECT_EQ(typeid(error).name(), typeid(Class).name()) << error.what();
    EXPECT_EQ(error.phase(), phase) << error.what();
    return error.message();
  }
}

}  // namespace scriptwells::testing
