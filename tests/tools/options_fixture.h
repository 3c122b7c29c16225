// The command line is read with an environment of its own.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tools/options.h"

namespace qv::cli::testing {

inline constexpr const char* kVariables[] = {
    "SCRIPTWELLS_SERVER",  "SCRIPTWELLS_USER",     "SCRIPTWELLS_PROXY",
    "SCRIPTWELLS_OUTPUT",  "SCRIPTWELLS_REPLICA",  "SCRIPTWELLS_LANGUAGE",
    "SCRIPTWELLS_TIMEOUT", "SCRIPTWELLS_PASSWORD", "SCRIPTWELLS_CONNECT_TIMEOUT",
    "SCRIPTWELLS_USID",    "SCRIPTWELLS_MAX_TIME", "SCRIPTWELLS_CA_FILE",
    "SCRIPTWELLS_CERT",    "SCRIPTWELLS_KEY"};

class OptionsTest : public ::testing::Test {
 protected:
  void SetUp() override { ForgetVariables(); }
  void TearDown() override { ForgetVariables(); }

  static void ForgetVariables() {
    for (const char* name : kVariables) ::unsetenv(name);
  }

  static RunOptions Run(const std::vector<std::string>& arguments) {
    const ParsedArguments parsed = ParseArguments(arguments);
    EXPECT_EQ(parsed.command, Command::kRun) << parsed.text;
    return parsed.run;
  }
  static DownloadOptions Download(const std::vector<std::string>& arguments) {
    const ParsedArguments parsed = ParseArguments(arguments);
    EXPECT_EQ(parsed.command, Command::kDownload) << parsed.text;
    return parsed.download;
  }
  static ServeOptions Serve(const std::vector<std::string>& arguments) {
    const ParsedArguments parsed = ParseArguments(arguments);
    EXPECT_EQ(parsed.command, Command::kServe) << parsed.text;
    return parsed.serve;
  }
  static RegistryOptions Registry(const std::vector<std::string>& arguments) {
    const ParsedArguments parsed = ParseArguments(arguments);
    EXPECT_EQ(parsed.command, Command::kRegistry) << parsed.text;
    return parsed.registry;
  }
  // What is wrong, and the hint behind a bar.
  static std::string Refusal(const std::vector<std::string>& arguments) {
    const ParsedArguments parsed = ParseArguments(arguments);
    return parsed.command == Command::kUsageError ? parsed.text + "|" + parsed.hint : "accepted";
  }
};

}  // namespace qv::cli::testing
