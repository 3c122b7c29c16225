// The messages of calls that fail.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/tools/words.h"
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

// Each of the texts of "a|b|c" is refused with this reason, after its own text in quotes.
template <typename Parse>
void ExpectRefusals(const Parse& parse, const std::string& texts, const std::string& reason) {
  for (const std::string& text : Each(texts))
    EXPECT_EQ(RefusalOf([&] { parse(text); }), std::string("'").append(text).append("' ").append(reason));
}

}  // namespace qv::cli::testing
