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
  void WriteScripts() const {
    std::filesystem::create_directories(home_ + "/ClientScripts");
    std::ofstream(script_) << "mine";
    std::ofstream(other_) << "mine too";
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

TEST_F(ServeHome, WithoutOneTheServiceTellsWhatWorks) {
  Name("");
  const Outcome outcome = Serve();
  EXPECT_EQ(outcome.err,
            "scriptwells: note: scripts and downloads work; clients on this machine cannot upload files: no "
            "home directory is known (serve --home DIR lends one, with --install-home for good)\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(ServeHome, NothingIsWrittenUnasked) {
  Name(home_);
  const std::string before = Read(registry_);
  EXPECT_EQ(Serve().err,
            "scriptwells: note: scripts and downloads work; clients on this machine cannot upload files: the "
            "home directory " +
                home_ +
                " has no upload scripts (serve --install-home writes them, serve --home DIR lends another "
                "home)\n");
  EXPECT_FALSE(std::filesystem::exists(home_));
  EXPECT_EQ(Read(registry_), before);
}

TEST_F(ServeHome, ScriptsThatAreThereAreTold) {
  Name(home_);
  WriteScripts();
  EXPECT_EQ(Serve().err,
            "scriptwells: note: scripts, downloads and uploads work; the upload scripts are those of " +
                home_ + "\n");
}

TEST_F(ServeHome, IsLentWhileTheServiceRuns) {
  Name("/elsewhere");
  const std::string before = Read(registry_);
  const std::string lent = home_ + "/serve.reg";
  Process service({"serve", "--home", home_}, {{"QV_REGISTRY", registry_}});
  EXPECT_EQ(service.ReadLine().rfind("http://127.0.0.1:", 0), 0u);
  EXPECT_TRUE(std::filesystem::is_regular_file(script_));
  EXPECT_TRUE(std::filesystem::is_regular_file(other_));
  EXPECT_EQ(RunTool({"registry", "get", "home"}, "", {{"QV_REGISTRY", lent}}).out, home_ + "\n");
  EXPECT_EQ(Read(registry_), before);
  service.Signal(SIGTERM);
  const Outcome outcome = service.Finish();
  EXPECT_EQ(
      outcome.err,
      "scriptwells: note: scripts and downloads work; uploads work for clients on this machine that run "
      "with QV_REGISTRY=" +
          lent + ", until the service stops\n");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_FALSE(std::filesystem::exists(lent));
  EXPECT_TRUE(std::filesystem::is_regular_file(script_));
  EXPECT_EQ(Read(registry_), before);
}

TEST_F(ServeHome, UserRegistryStaysWithoutTheVariable) {
  const testing::Variables user{{"QV_REGISTRY", ""}, {"XDG_CONFIG_HOME", folder_.Path()}};
  Process service({"serve", "--home", home_}, user);
  EXPECT_NE(service.ReadLine(), "");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() + "/quorvane"));
  service.Signal(SIGTERM);
  EXPECT_EQ(service.Finish().exit, 0);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() + "/quorvane"));
}

TEST_F(ServeHome, InstallHomeKeepsIt) {
  EXPECT_EQ(Serve({"--home", home_, "--install-home"}).err,
            "scriptwells: note: the home directory is " + home_ + " now, as " + registry_ + " tells\n");
  EXPECT_TRUE(std::filesystem::is_regular_file(script_));
  EXPECT_FALSE(std::filesystem::exists(home_ + "/serve.reg"));
  EXPECT_EQ(RunTool({"registry", "get", "home"}, "", {{"QV_REGISTRY", registry_}}).out, home_ + "\n");
}

TEST_F(ServeHome, InstallHomeCompletesTheOneThatIsKnown) {
  Name(home_);
  EXPECT_EQ(Serve({"--install-home"}).err,
            "scriptwells: note: wrote the upload scripts into the home directory " + home_ + "\n");
  EXPECT_TRUE(std::filesystem::is_regular_file(script_));
  EXPECT_TRUE(std::filesystem::is_regular_file(other_));
  EXPECT_EQ(Serve({"--install-home"}).err,
            "scriptwells: note: the home directory " + home_ + " has its upload scripts\n");
}

TEST_F(ServeHome, ScriptsThatAreThereStay) {
  Name(home_);
  WriteScripts();
  EXPECT_EQ(Serve({"--install-home"}).exit, 0);
  EXPECT_EQ(Serve({"--home", home_}).exit, 0);
  EXPECT_EQ(Read(script_), "mine");
  EXPECT_EQ(Read(other_), "mine too");
}

TEST_F(ServeHome, InstallHomeThatCannotBeDoneEndsTheService) {
  Name("");
  const Outcome none = RunTool({"serve", "--install-home"}, "", {{"QV_REGISTRY", registry_}});
  EXPECT_EQ(none.err, "scriptwells: no home directory is known; --install-home needs --home DIR\n");
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(none.exit, 6);
  Name("/proc/self");
  const Outcome unwritable = RunTool({"serve", "--install-home"}, "", {{"QV_REGISTRY", registry_}});
  EXPECT_EQ(unwritable.err.rfind("scriptwells: the upload scripts are not in place: ", 0), 0u)
      << unwritable.err;
  EXPECT_EQ(unwritable.exit, 6);
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
