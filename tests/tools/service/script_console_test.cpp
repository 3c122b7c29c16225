// The console output of scripts that run in a service of this program.
#include "tools/service/script_console.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

std::string Written(bool asJson, const devservice::ConsoleMessage& message) {
  std::ostringstream err;
  WriteConsole(asJson, err)(message);
  return err.str();
}

TEST(ScriptConsole, EveryLineBeginsWithTheLevel) {
  EXPECT_EQ(Written(false, {"log", "a"}), "console.log: a\n");
  EXPECT_EQ(
      Written(false, {"warn", "a\nscriptwells: b\r\n\nc\n"}),
      "console.warn: a\nconsole.warn: scriptwells: b\nconsole.warn: \nconsole.warn: c\nconsole.warn: \n");
  EXPECT_EQ(Written(false, {"error", ""}), "console.error: \n");
  EXPECT_EQ(Written(false, {"log", "\x1b]0;t\x07\xC2\x85\xE2\x80\xAE\rx\ty"}),
            "console.log: \\x1b]0;t\\x07\\xc2\\x85\\u202e\\x0dx\ty\n");
  EXPECT_EQ(Written(true, {"log", "a\n\"\x1b"}), R"({"console":{"level":"log","text":"a\n\"\u001b"}})"
                                                 "\n");
}

TEST(ScriptConsole, RunLocalPrintsIt) {
  const Outcome text = RunTool("run --local -e", {"console.log('x', 1); console.error('y'); 2"});
  EXPECT_EQ(text.out, "2\n");
  EXPECT_EQ(text.err, "console.log: x 1\nconsole.error: y\n");
  RunTool("run --local --json -e", {"console.log('x'); 2"})
      .Succeeds(R"({"type":"int","value":2,"tag":22})"
                "\n",
                R"({"console":{"level":"log","text":"x"}})");
}

TEST(ScriptConsole, ServePrintsIt) {
  ServeProcess service;
  service.Joe("run -e", {"console.log('x'); 2"}).Succeeds("2\n");
  std::string line;
  do line = service.Itself().ReadErrorLine();
  while (StartsWith(line, "scriptwells: note: "));
  EXPECT_EQ(line, "console.log: x");
}

// The service of a run is alive while its answer is written, which nobody reads here.
TEST(ScriptConsole, ServiceOfARunIsOpenToThisRunOnly) {
  Process process(Tool("run --local -e", {"console.log(uploadUrl()); 'x'.repeat(1000000)"}));
  const std::string line = process.ReadErrorLine();
  const std::string start = "console.log: ";
  ASSERT_TRUE(StartsWith(line, start + "http://127.0.0.1:")) << line;
  const std::string url = line.substr(start.size(), line.find("/WebEditor") - start.size());
  RunTool("run -e 1 --user local --server " + url).FailsLike(5, "session refused ");
  EXPECT_EQ(process.Finish().exit, 0);
}

}  // namespace
}  // namespace qv::cli
