// The message of a conversion that is refused.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "scriptwells/error.h"

namespace scriptwells::testing {

// The message of the ConversionError that the call throws; "accepted" if it throws nothing.
template <typename Call>
std::string RefusalOf(const Call& call) {
  try {
    call();
    return "accepted";
  } catch (const ConversionError& error) {
    EXPECT_EQ(error.phase(), Phase::kConversion);
    EXPECT_EQ(error.what(), error.message());
    return error.message();
  }
}

}  // namespace scriptwells::testing
