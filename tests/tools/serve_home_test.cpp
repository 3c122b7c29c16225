// The home directory that `scriptwells serve` looks after.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/tools/fresh_directory.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::Process;
using testing::RunTool;
using testing::Words;

class ServeHome : public ::testing::Test {
 protected:
  // What a service with these words says until it is stopped.
  Outcome Serve(const Words& more = {}) const {
    Words words{"serve"};
    words.insert(words.end(), more.begin(), more.end());
    Process process(words, {{"QV_REGISTRY", registry_}});
    EXPECT_EQ(process.ReadLine().rfind("http://127.0.0.1:", 0), 0u);
    process.Signal(SIGTERM);
    return process.Finish();
  }
  void Name(const std::string& home) const {
    std::ofstream(registry_) << "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" << home
                             << "\"\n";
  }
  static std::string Read(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  testing::FreshDirectory folder_;
  std::string registry_ = folder_.Path() + "/registry.reg";
  std::string home_ = folder_.Path() + "/home";
  std::string script_ = home_ + "/ClientScripts/UploadScript.xml";
  std::string other_ = home_ + "/ClientScripts/UploadScriptWithoutTicketdId.xml";
};

TEST_F(ServeHome, IsHintedAtWhereNoneIsKnown) {
  Name("");
  const Outcome outcome = Serve();
  EXPECT_EQ(outcome.err,
            "scriptwells: note: no home directory is known, so that clients on this machine cannot upload "
            "files; serve --home DIR sets one\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(ServeHome, MissingScriptsAreWrittenAndToldOnce) {
  Name(home_);
  EXPECT_EQ(Serve().err,
            "scriptwells: note: wrote the upload scripts into the home directory " + home_ + "\n");
  EXPECT_TRUE(std::filesystem::is_regular_file(script_));
  EXPECT_TRUE(std::filesystem::is_regular_file(other_));
  EXPECT_EQ(Serve().err, "");
}

TEST_F(ServeHome, ScriptsThatAreThereStay) {
  Name(home_);
  std::filesystem::create_directories(home_ + "/ClientScripts");
  std::ofstream(script_) << "mine";
  std::ofstream(other_) << "mine too";
  EXPECT_EQ(Serve().err, "");
  EXPECT_EQ(Read(script_), "mine");
  EXPECT_EQ(Read(other_), "mine too");
}

TEST_F(ServeHome, HomeThatCannotBeWrittenIsAWarning) {
  Name("/proc/self");
  const Outcome outcome = Serve();
  EXPECT_EQ(outcome.err.rfind("scriptwells: warning: the upload scripts are not in place: ", 0), 0u)
      << outcome.err;
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(ServeHome, OptionSetsIt) {
  EXPECT_EQ(Serve({"--home", home_}).err,
            "scriptwells: note: the home directory is " + home_ + " now, as " + registry_ + " tells\n");
  EXPECT_TRUE(std::filesystem::is_regular_file(script_));
  EXPECT_EQ(RunTool({"registry", "get", "home"}, "", {{"QV_REGISTRY", registry_}}).out, home_ + "\n");
}

TEST_F(ServeHome, OptionThatCannotBeSetEndsTheService) {
  const Outcome place = RunTool({"serve", "--home", "/proc/self/x"}, "", {{"QV_REGISTRY", registry_}});
  EXPECT_EQ(place.out, "");
  EXPECT_EQ(place.err.rfind("scriptwells: the upload scripts are not in place: ", 0), 0u) << place.err;
  EXPECT_EQ(place.exit, 6);
  const Outcome name = RunTool({"serve", "--home", "/tmp/a:b"}, "", {{"QV_REGISTRY", registry_}});
  EXPECT_EQ(name.err,
            "scriptwells: the home directory /tmp/a:b holds '#', '?', ':' or '\\', below which the library "
            "finds no scripts\n");
  EXPECT_EQ(name.exit, 6);
  EXPECT_FALSE(std::filesystem::exists(registry_));
}

}  // namespace
}  // namespace qv::cli
