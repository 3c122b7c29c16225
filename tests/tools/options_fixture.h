// The parser of the command line, in an environment without SCRIPTWELLS_ variables and with its own profiles.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/words.h"
#include "tools/options/options.h"

namespace qv::cli::testing {

class OptionsTest : public ::testing::Test {
 protected:
  void SetUp() override { ForgetVariables(); }
  void TearDown() override { ForgetVariables(); }

  // Sets SCRIPTWELLS_`name`.
  static void Set(const std::string& name, const std::string& value) {
    ::setenv(("SCRIPTWELLS_" + name).c_str(), value.c_str(), 1);
  }

  static ParsedArguments Parsed(Command command, const std::string& line, const Words& more = {}) {
    ParsedArguments parsed = ParseArguments(Line(line, more));
    EXPECT_EQ(parsed.command, command) << line << "\n" << parsed.text;
    return parsed;
  }
  static RunOptions Run(const std::string& line, const Words& more = {}) {
    return Parsed(Command::kRun, line, more).run;
  }
  static ShellOptions Shell(const std::string& line) { return Parsed(Command::kShell, line).shell; }
  static DownloadOptions Download(const std::string& line) {
    return Parsed(Command::kDownload, line).download;
  }
  static SessionCommandOptions Session(const std::string& line) {
    return Parsed(Command::kSession, line).session;
  }
  static ServeOptions Serve(const std::string& line) { return Parsed(Command::kServe, line).serve; }
  static RegistryOptions Registry(const std::string& line) {
    return Parsed(Command::kRegistry, line).registry;
  }
  static ConfigOptions Config(const std::string& line, const Words& more = {}) {
    return Parsed(Command::kConfig, line, more).config;
  }
  // Writes the file of profiles; returns its path.
  std::string WriteProfiles(const std::string& text) const {
    return config_.Write("scriptwells/config.toml", text);
  }
  // Help and version.
  static std::string TextOf(const std::string& line) { return Parsed(Command::kText, line).text; }

  // The error message and, after a bar, the hint; or "accepted".
  static std::string Refusal(const std::string& line, const Words& more = {}) {
    const ParsedArguments parsed = ParseArguments(Line(line, more));
    return parsed.command == Command::kUsageError ? parsed.text + "|" + parsed.hint : "accepted";
  }

 private:
  TemporaryDirectory config_;
  EnvironmentVariable place_{"XDG_CONFIG_HOME", config_.Path().c_str()};

  static void ForgetVariables() {
    for (const std::string& name :
         Each("SERVER|USER|PROXY|OUTPUT|REPLICA|LANGUAGE|TIMEOUT|PASSWORD|"
              "CONNECT_TIMEOUT|USID|MAX_TIME|CA_FILE|CERT|KEY|PROFILE|RECORD|REPLAY"))
      ::unsetenv(("SCRIPTWELLS_" + name).c_str());
  }
};

}  // namespace qv::cli::testing
