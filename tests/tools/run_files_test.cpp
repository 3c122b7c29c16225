// Files to and from the service inside the program, and one in another process.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/tools/fresh_directory.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::Process;
using testing::RunTool;
using testing::ServeProcess;
using testing::Words;

class RunFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(temp_);
    std::filesystem::create_directory(target_);
  }
  std::string Write(const std::string& name, const std::string& content) const {
    const std::string path = folder_.Path() + "/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }
  static std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  Outcome Local(const Words& more) const {
    Words words{"run", "--local"};
    words.insert(words.end(), more.begin(), more.end());
    return RunTool(words, "", {{"TEMP", temp_}});
  }
  bool NothingIsLeft() const { return std::filesystem::is_empty(temp_); }

  testing::FreshDirectory folder_;
  std::string temp_ = folder_.Path() + "/temp";
  std::string target_ = folder_.Path() + "/target";
};

TEST_F(RunFiles, ScriptReadsAFileThatWasUploaded) {
  const std::string file = Write("a b.txt", "W\xC3\xB6rld");
  const Outcome outcome =
      Local({"-e", "parameters.doc.size + ' ' + parameters.doc.text()", "-p", "doc=file:" + file});
  EXPECT_EQ(outcome.out, "6 W\xC3\xB6rld\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_TRUE(NothingIsLeft());
}

TEST_F(RunFiles, SeveralFilesTravelWithOtherParameters) {
  const std::string first = Write("1", std::string(300000, 'x'));
  const std::string second = Write("2", "");
  const Outcome outcome = Local({"-e", "[parameters.a.size, parameters.n, parameters.b.size].join()", "-p",
                                 "a=file:" + first, "-p", "n=int:7", "-p", "b=file:" + second});
  EXPECT_EQ(outcome.out, "300000,7,0\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(RunFiles, DocumentsTakeFilesToo) {
  const std::string file = Write("a.txt", "12345");
  const std::string document =
      Write("a.xml", "<Scriptwell Language=\"JavaScript\" xmlns=\"" QV_NAMESPACE_HOST
                     "/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>parameters.doc.size</Code></Scriptwell>");
  const Outcome outcome =
      RunTool({"run-document", "--local", document, "-p", "doc=file:" + file}, "", {{"TEMP", temp_}});
  EXPECT_EQ(outcome.out, "5\n");
  EXPECT_TRUE(NothingIsLeft());
}

TEST_F(RunFiles, FaultLeavesNothingBehind) {
  const std::string file = Write("a.txt", "12345");
  const Outcome outcome =
      Local({"-e", "throw new ScriptError(5, 'no such customer')", "-p", "doc=file:" + file});
  EXPECT_EQ(outcome.err, "scriptwells: script fault 0x80040005 (5): no such customer\n");
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_TRUE(NothingIsLeft());
}

TEST_F(RunFiles, PublishedFileIsSaved) {
  const Outcome outcome = Local({"-e", "publish('out.txt', 'W\xC3\xB6rld')", "--save", target_});
  EXPECT_EQ(outcome.out, target_ + "/out.txt\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Read(target_ + "/out.txt"), "W\xC3\xB6rld");
}

TEST_F(RunFiles, FileGoesThereAndBack) {
  const std::string file = Write("a.txt", "line\n");
  const Outcome outcome = Local({"-e", "publish('twice.txt', parameters.doc.text().repeat(2))", "-p",
                                 "doc=file:" + file, "--save", target_, "--json"});
  EXPECT_EQ(outcome.out, "{\"path\":\"" + target_ + "/twice.txt\",\"bytes\":10}\n");
  EXPECT_EQ(Read(target_ + "/twice.txt"), "line\nline\n");
  EXPECT_TRUE(NothingIsLeft());
}

TEST_F(RunFiles, ServiceWithAHomeTakesUploadsOfOtherProcesses) {
  ServeProcess service({"--home", folder_.Path() + "/home"});
  const testing::Variables registry{{"QV_REGISTRY", folder_.Path() + "/home/serve.reg"}};
  const std::string file = Write("a.txt", "12345");
  const Outcome outcome = RunTool({"run", "--server", service.Url(), "--user", "joe", "-e",
                                   "parameters.doc.size", "-p", "doc=file:" + file},
                                  "", registry);
  EXPECT_EQ(outcome.out, "5\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(RunFiles, FileThatIsNotThereIsRefusedByTheService) {
  ServeProcess service;
  const Outcome outcome =
      RunTool({"download", service.Url() + "/Quorvane/nothing?ticket=1", target_, "--user", "joe"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(
      outcome.err.rfind("scriptwells: " + service.Url() + " answered the download with the status 4", 0), 0u)
      << outcome.err;
  EXPECT_EQ(service.Count("openSessions"), 0);
}

TEST_F(RunFiles, InterruptRemovesThePrivateHome) {
  const std::string file = Write("a.txt", "12345");
  Process process(
      {"run", "--local", "-e", "while (true) {}", "-p", "doc=file:" + file, "-p", "n=double:3.14159265"},
      {{"TEMP", temp_}});
  process.ReadErrorLine();
  for (int i = 0; i < 400 && NothingIsLeft(); ++i) ::usleep(25000);
  ASSERT_FALSE(NothingIsLeft());
  process.Signal(SIGINT);
  EXPECT_EQ(process.Finish().exit, 130);
  EXPECT_TRUE(NothingIsLeft());
}

}  // namespace
}  // namespace qv::cli
