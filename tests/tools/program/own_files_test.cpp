// The program without a file that belongs to it. Each test has its own folder with a copy of the program,
// since the program looks around its own file.
#include <gtest/gtest.h>

#include <filesystem>

#include "fixtures/output_of.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/process.h"

namespace qv::cli::testing {
namespace {

// A command that calls a server.
constexpr char kCall[] = "session close --server http://127.0.0.1:1 --usid 1";
constexpr char kDocument[] = R"(<Scriptwell Language="JavaScript"><Code>1</Code></Scriptwell>)";

class OwnFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(folder_.Path("tools"));
    std::filesystem::copy_file(SCRIPTWELLS_PROGRAM, Program());
  }
  std::string Program() const { return folder_.Path("tools/scriptwells"); }
  void PutLibrary(const char* name, const char* file) const {
    std::filesystem::create_symlink(file, folder_.Path(name));
  }
  // The copy can then run a script.
  void PutService() const {
    PutLibrary("tools/scriptwells-service.so", SERVICE_LIBRARY);
    std::filesystem::create_directory(folder_.Path("devservice"));
    PutLibrary("devservice/scriptwells-script-worker", SCRIPT_WORKER_PATH);
  }
  // What the copy prints on both streams.
  std::string Says(const std::string& arguments) const {
    return OutputOf("env -i QV_REGISTRY=/dev/null " + Program() + " " + arguments + " 2>&1; echo \"exit $?\"")
        .text;
  }

  TemporaryDirectory folder_;
};

TEST_F(OwnFiles, WhatMakesNoCallNeedsNone) {
  EXPECT_EQ(Says("--version"), RunTool("--version").out + "exit 0\n");
  EXPECT_EQ(Says("run"),
            "scriptwells: no script given (FILE, - or -e CODE); try 'scriptwells run --help'\nexit 2\n");
  EXPECT_EQ(Says("registry get nothing").substr(0, 12), "scriptwells:");
  EXPECT_EQ(Says("describe Url"), RunTool("describe Url").out + "exit 0\n");
}

TEST_F(OwnFiles, MissingLibraryIsNamed) {
  const std::string said = Says(kCall);
  const std::string start =
      "scriptwells: cannot load the library of this program's commands: " + folder_.Path();
  EXPECT_EQ(said.substr(0, start.size()), start);
  EXPECT_NE(said.find("/scriptwells-commands.so: cannot open shared object file"), std::string::npos) << said;
  EXPECT_NE(said.find("exit 6\n"), std::string::npos) << said;
  EXPECT_EQ(Says(std::string(kCall) + " --json").substr(0, 10), "{\"error\":{");
}

TEST_F(OwnFiles, MissingServiceIsAPackageToInstall) {
  for (const char* command : {"run --local -e 1", "serve"}) {
    const std::string said = Says(command);
    const std::string start = "scriptwells: there is no service on this machine (" + folder_.Path();
    EXPECT_EQ(said.substr(0, start.size()), start);
    const std::string end =
        "/scriptwells-service.so is missing): install the package scriptwells-service\nexit 6\n";
    EXPECT_NE(said.find(end), std::string::npos) << said;
  }
  EXPECT_EQ(Says(kCall).find("install the package"), std::string::npos);
  PutLibrary("tools/scriptwells-service.so", "/dev/null");
  EXPECT_EQ(Says("serve").find("install the package"), std::string::npos);
}

TEST_F(OwnFiles, LibraryOfAnotherVersionIsRefused) {
  PutLibrary("tools/scriptwells-commands.so", OTHER_COMMANDS_LIBRARY);
  EXPECT_EQ(Says(kCall), "scriptwells: the library " + folder_.Path("tools/scriptwells-commands.so") +
                             " belongs to another version of this program\nexit 6\n");
}

TEST_F(OwnFiles, MissingWorkerIsNamed) {
  PutLibrary("tools/scriptwells-service.so", SERVICE_LIBRARY);
  for (const char* command : {"run --local -e 1", "serve"}) {
    const std::string said = Says(command);
    const std::string start = "scriptwells: cannot start the service: The script worker \"" + folder_.Path();
    EXPECT_EQ(said.substr(0, start.size()), start);
    EXPECT_NE(said.find("scriptwells-script-worker\" is no program that can be run"), std::string::npos)
        << said;
    EXPECT_NE(said.find("exit 6\n"), std::string::npos) << said;
  }
}

// The parser of script documents, and of answers that are not plain.
TEST_F(OwnFiles, OnlyWhatIsParsedNeedsTheXmlLibrary) {
  PutService();
  EXPECT_EQ(Says("run --local -e 1"), "1\nexit 0\n");
  const std::string loads = OutputOf("env -i LD_DEBUG=files " + Program() + " run --local -e 1 2>&1").text;
  EXPECT_NE(loads.find("libcurl"), std::string::npos) << loads;
  EXPECT_EQ(loads.find("libxerces"), std::string::npos) << loads;
  const std::string document = folder_.Write("document.xml", kDocument);
  const std::string said = Says("run-document " + document + " --local");
  const std::string start = "scriptwells: cannot load the XML library of this program: " + folder_.Path();
  EXPECT_EQ(said.substr(0, start.size()), start);
  EXPECT_NE(said.find("/scriptwells-xml.so: cannot open shared object file"), std::string::npos) << said;
  EXPECT_NE(said.find("exit 6\n"), std::string::npos) << said;
}

TEST_F(OwnFiles, XmlLibraryOfAnotherVersionIsRefused) {
  PutService();
  PutLibrary("tools/scriptwells-xml.so", OTHER_COMMANDS_LIBRARY);
  const std::string document = folder_.Write("document.xml", kDocument);
  EXPECT_EQ(Says("run-document " + document + " --local"),
            "scriptwells: the library " + folder_.Path("tools/scriptwells-xml.so") +
                " belongs to another version of this program\nexit 6\n");
}

}  // namespace
}  // namespace qv::cli::testing
