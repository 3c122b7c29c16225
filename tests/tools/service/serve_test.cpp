// `scriptwells serve`: its users, its address, its end, and the home directory that it lends, installs, or
// finds.
#include "tools/service/users_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>

#include "tests/tools/process.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using namespace testing;

TEST(UsersFile, HoldsAUserPerLine) {
  const auto users = ParseUsers("# who may come\n\njoe:secret\r\nann:a:b\nguest:");
  const std::pair<const char*, const char*> expected[] = {{"joe", "secret"}, {"ann", "a:b"}, {"guest", ""}};
  ASSERT_EQ(users.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(users[i].name, expected[i].first);
    EXPECT_EQ(users[i].password, expected[i].second);
  }
  const std::pair<const char*, const char*> rows[] = {
      {"joe:x\nann\n", "users file, line 2: not of the form name:password"},
      {":x\n", "users file, line 1: not of the form name:password"},
      {"joe:a;b\n",
       "users file, line 1: the password holds ';' or '=', which a connection string cannot carry"},
      {"", "the users file names no user"},
      {"# nobody\n\n", "the users file names no user"}};
  for (const auto& [text, message] : rows)
    EXPECT_EQ(testing::RefusalOf([file = text] { ParseUsers(file); }), message);
}

constexpr char kEndless[] = "run -e 'while (true) {}'";

TEST(Serve, AddressIsPrintedAtOnce) {
  Process process(Tool("serve"));
  const std::string url = process.ReadLine();
  EXPECT_TRUE(StartsWith(url, "http://127.0.0.1:")) << url;
  process.Signal(SIGTERM);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.out, "");
  EXPECT_TRUE(StartsWith(outcome.err, "scriptwells: note: scripts and downloads work; ")) << outcome.err;
  const Outcome full = Tool("serve").WriteTo("/dev/full").Run();
  const std::string last = "\nscriptwells: cannot write the address to standard output\n";
  ASSERT_GT(full.err.size(), last.size());
  EXPECT_EQ(full.err.substr(full.err.size() - last.size()), last);
  EXPECT_EQ(full.exit, 6);
}

TEST(Serve, SignalsStopItAlsoWhileAScriptRuns) {
  for (const int signal : {SIGINT, SIGTERM}) {
    ServeProcess service;
    service.Itself().Signal(signal);
    EXPECT_EQ(service.Itself().Finish().exit, 0);
  }
  ServeProcess service("--script-timeout 60");
  Process client(service.Joe(kEndless));
  ASSERT_TRUE(service.Reaches("Execute", 1));
  const auto before = std::chrono::steady_clock::now();
  service.Itself().Signal(SIGTERM);
  EXPECT_EQ(service.Itself().Finish().exit, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4));
}

TEST(Serve, OddAnswersMeetTheFirstRequests) {
  const ServeProcess service("--odd spoil,n=2,action=Execute");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(service.Joe("run -e 1").Run().exit, 7);
  EXPECT_EQ(service.Joe("run -e 1").Run().out, "1\n");
}

TEST(Serve, OddAnswersAreChecked) {
  const std::pair<const char*, const char*> rows[] = {
      {"frob", "There is no odd answer of the name \"frob\". Names: ns2, "},
      {",n=1", "It has no name of an odd answer"},
      {"cut,n=x", "The value of n is not a number"},
      {"cut,p=0.5x", "The value of p is not a number"},
      {"cut,p=2", "The chance of the order is not above 0 and up to 1"},
      {"cut,p=0.5,n=2", "An order has a number of requests or a chance"},
      {"cut,often", "After the names there are n=, p=, seed= and action= only"},
      {"cut,action=Frob", "The action of the order is none of the service"}};
  for (const auto& [text, reason] : rows)
    RunTool("serve --odd " + std::string(text)).FailsLike(2, "--odd " + std::string(text) + ": " + reason);
}

TEST(Serve, ScriptTimeoutIsSetByItsOption) {
  const ServeProcess service("--script-timeout 0.2");
  service.Joe(kEndless).FailsLike(1, "script fault 0x800403F5 (1013): ");
}

TEST(Serve, WrongOptionsAndTheTimeoutOfScripts) {
  const ServeProcess first;
  const std::string port = first.Url().substr(first.Url().rfind(':') + 1);
  RunTool("serve --port " + port).FailsLike(6, "cannot start the service: ");
  RunTool("serve --users-file /nonexistent/users")
      .Fails(6, "cannot read the users file /nonexistent/users: No such file or directory");
}

class ServeHome : public ::testing::Test {
 protected:
  Tool Command(const std::string& line) const { return Tool(line).Set("QV_REGISTRY", registry_); }
  // The messages of a service until it is stopped.
  void ExpectNote(const std::string& options, const std::string& note) const {
    Process process(Command("serve " + options));
    EXPECT_TRUE(StartsWith(process.ReadLine(), "http://127.0.0.1:"));
    process.Signal(SIGTERM);
    process.Finish().Succeeds("", "note: " + note);
  }
  void Name(const std::string& home) const {
    folder_.Write("registry.reg",
                  "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + home + "\"\n");
  }
  void WriteScripts() const {
    folder_.Write(kScript, "mine");
    folder_.Write(kOther, "mine too");
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder_.Path(name)); }
  void ExpectScripts() const {
    for (const char* name : {kScript, kOther})
      EXPECT_TRUE(std::filesystem::is_regular_file(folder_.Path(name))) << name;
  }

  static constexpr char kScript[] = "home/ClientScripts/UploadScript.xml";
  static constexpr char kOther[] = "home/ClientScripts/UploadScriptWithoutTicketdId.xml";
  TemporaryDirectory folder_;
  std::string registry_ = folder_.Path("registry.reg");
  std::string home_ = folder_.Path("home");
  std::string lent_ = home_ + "/serve.reg";
};

TEST_F(ServeHome, NoteTellsWhatWorks) {
  const std::string without = "scripts and downloads work; clients on this machine cannot upload files: ";
  Name("");
  ExpectNote(
      "",
      without + "no home directory is known (serve --home DIR lends one, with --install-home permanently)");
  Name(home_);
  const std::string before = folder_.Read("registry.reg");
  ExpectNote(
      "",
      without + "the home directory " + home_ +
          " has no upload scripts (serve --install-home writes them, serve --home DIR lends another home)");
  EXPECT_FALSE(Exists("home"));
  EXPECT_EQ(folder_.Read("registry.reg"), before);
  WriteScripts();
  ExpectNote("", "scripts, downloads and uploads work; the upload scripts are those of " + home_);
}

TEST_F(ServeHome, IsLentWhileTheServiceRuns) {
  Name("/elsewhere");
  const std::string before = folder_.Read("registry.reg");
  Process service(Command("serve --home " + home_));
  EXPECT_TRUE(StartsWith(service.ReadLine(), "http://127.0.0.1:"));
  ExpectScripts();
  EXPECT_EQ(Tool("registry get home").Set("QV_REGISTRY", lent_).Run().out, home_ + "\n");
  EXPECT_EQ(folder_.Read("registry.reg"), before);
  service.Signal(SIGTERM);
  service.Finish().Succeeds("",
                            "note: scripts and downloads work; uploads work for clients on this machine that "
                            "run with QV_REGISTRY=" +
                                lent_ + ", until the service stops");
  EXPECT_FALSE(std::filesystem::exists(lent_));
  ExpectScripts();
  EXPECT_EQ(folder_.Read("registry.reg"), before);
}

TEST_F(ServeHome, RegistryOfTheUserIsNotChanged) {
  Process service(
      Tool("serve --home " + home_).Set("QV_REGISTRY", "").Set("XDG_CONFIG_HOME", folder_.Path()));
  EXPECT_NE(service.ReadLine(), "");
  EXPECT_FALSE(Exists("quorvane"));
  service.Signal(SIGTERM);
  EXPECT_EQ(service.Finish().exit, 0);
  EXPECT_FALSE(Exists("quorvane"));
}

TEST_F(ServeHome, InstallHomeChangesTheRegistry) {
  ExpectNote("--install-home --home " + home_,
             "the home directory is now " + home_ + ", set in " + registry_);
  ExpectScripts();
  EXPECT_FALSE(std::filesystem::exists(lent_));
  EXPECT_EQ(Command("registry get home").Run().out, home_ + "\n");
}

TEST_F(ServeHome, InstallHomeCompletesTheHomeOfTheRegistry) {
  Name(home_);
  ExpectNote("--install-home", "wrote the upload scripts into the home directory " + home_);
  ExpectScripts();
  ExpectNote("--install-home", "the home directory " + home_ + " has its upload scripts");
}

TEST_F(ServeHome, ExistingScriptsAreKept) {
  Name(home_);
  WriteScripts();
  ExpectNote("--install-home", "the home directory " + home_ + " has its upload scripts");
  ExpectNote(
      "--home " + home_,
      "scripts and downloads work; uploads work for clients on this machine that run with QV_REGISTRY=" +
          lent_ + ", until the service stops");
  EXPECT_EQ(folder_.Read(kScript), "mine");
  EXPECT_EQ(folder_.Read(kOther), "mine too");
}

TEST_F(ServeHome, UnusableHomeEndsTheService) {
  Command("serve --home /proc/self/x").FailsLike(6, "the upload scripts are not in place: ");
  Command("serve --home /tmp/a:b")
      .Fails(6,
             "the home directory /tmp/a:b holds '#', '?', ':' or '\\', below which the library finds no "
             "scripts");
  EXPECT_FALSE(std::filesystem::exists(registry_));
  Name("");
  Command("serve --install-home").Fails(6, "no home directory is known; --install-home needs --home DIR");
  Name("/proc/self");
  Command("serve --install-home").FailsLike(6, "the upload scripts are not in place: ");
}

class ServeForPrograms : public ServeHome {
 protected:
  // The line of --json, with the port and the token as "PORT" and "TOKEN".
  static std::string Hidden(const std::string& line) {
    return std::regex_replace(std::regex_replace(line, std::regex(R"(1:\d+)"), "1:PORT"),
                              std::regex("[0-9a-f]{32}"), "TOKEN");
  }
  static std::string HomeIn(const std::string& line) {
    return nlohmann::json::parse(line).at("home").get<std::string>();
  }
};

TEST_F(ServeForPrograms, JsonHasAddressAndHome) {
  Name("");
  Process plain(Command("serve --json"));
  EXPECT_EQ(Hidden(plain.ReadLine()), R"({"url":"http://127.0.0.1:PORT","home":null})");
  plain.Signal(SIGTERM);
  plain.Finish().Succeeds("",
                          "{\"note\":\"scripts and downloads work; clients on this machine cannot upload "
                          "files: no home directory is known (serve --home DIR lends one, with "
                          "--install-home permanently)\"}");
  Process lent(Command("serve --json --home " + home_));
  EXPECT_EQ(Hidden(lent.ReadLine()), R"({"url":"http://127.0.0.1:PORT","home":")" + home_ + "\"}");
  lent.Signal(SIGTERM);
  EXPECT_EQ(lent.Finish().exit, 0);
  Command("serve --json --users-file /nonexistent/users")
      .Fails(6, R"({"error":{"kind":"not run","message":"cannot read the users file )"
                R"(/nonexistent/users: No such file or directory","exit":6}})");
}

TEST_F(ServeForPrograms, ControlComesWithAHomeOfItsOwn) {
  Name("/elsewhere");
  Process service(Command("serve --json --control").Set("TMP", folder_.Path()).Set("TEMP", ""));
  const std::string line = service.ReadLine();
  const std::string home = HomeIn(line);
  EXPECT_EQ(Hidden(line), R"({"url":"http://127.0.0.1:PORT","home":")" + home +
                              R"(","control":"http://127.0.0.1:PORT/control/TOKEN"})");
  EXPECT_TRUE(StartsWith(home, folder_.Path())) << home;
  EXPECT_TRUE(std::filesystem::exists(home + "/ClientScripts/UploadScript.xml"));
  service.Signal(SIGTERM);
  EXPECT_EQ(service.Finish().exit, 0);
  EXPECT_FALSE(std::filesystem::exists(home));
}

TEST_F(ServeForPrograms, ControlLeavesAGivenHomeInPlace) {
  Process service(Command("serve --json --control --home " + home_));
  EXPECT_EQ(HomeIn(service.ReadLine()), home_);
  service.Signal(SIGTERM);
  EXPECT_EQ(service.Finish().exit, 0);
  ExpectScripts();
}

TEST_F(ServeForPrograms, EndOfInputEndsTheServiceIfAsked) {
  Process service(Command("serve --json --control --until-eof"));
  const std::string home = HomeIn(service.ReadLine());
  EXPECT_EQ(service.Finish("this is dropped").exit, 0);
  EXPECT_FALSE(std::filesystem::exists(home));
  Command("serve --until-eof").Close({0}).Run();  // returns
}

}  // namespace
}  // namespace qv::cli
