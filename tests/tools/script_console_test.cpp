#include "tools/script_console.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::Process;
using testing::RunTool;
using testing::ServeProcess;

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
}

TEST(ScriptConsole, UnsafeCharactersAreEscaped) {
  EXPECT_EQ(Written(false, {"log", "\x1b]0;t\x07\xC2\x85\xE2\x80\xAE\rx\ty"}),
            "console.log: \\x1b]0;t\\x07\\xc2\\x85\\u202e\\x0dx\ty\n");
}

TEST(ScriptConsole, JsonHasLevelAndText) {
  EXPECT_EQ(Written(true, {"log", "a\n\"\x1b"}),
            "{\"console\":{\"level\":\"log\",\"text\":\"a\\n\\\"\\u001b\"}}\n");
}

TEST(ScriptConsole, RunLocalShowsIt) {
  const Outcome text = RunTool({"run", "--local", "-e", "console.log('x', 1); console.error('y'); 2"});
  EXPECT_EQ(text.out, "2\n");
  EXPECT_EQ(text.err, "console.log: x 1\nconsole.error: y\n");
  const Outcome json = RunTool({"run", "--local", "--json", "-e", "console.log('x'); 2"});
  EXPECT_EQ(json.err, "{\"console\":{\"level\":\"log\",\"text\":\"x\"}}\n");
}

TEST(ScriptConsole, ServeShowsIt) {
  ServeProcess service;
  EXPECT_EQ(RunTool({"run", "--server", service.Url(), "--user", "joe", "-e", "console.log('x'); 2"}).err,
            "");
  std::string line;
  do line = service.Itself().ReadErrorLine();
  while (line.rfind("scriptwells: note: ", 0) == 0);
  EXPECT_EQ(line, "console.log: x");
}

// The service of a run is alive while its answer is written, which nobody reads here.
TEST(RunLocal, ServiceIsOpenToThisRunOnly) {
  Process process({"run", "--local", "-e", "console.log(uploadUrl()); 'x'.repeat(1000000)"});
  const std::string line = process.ReadErrorLine();
  const std::string start = "console.log: ";
  ASSERT_EQ(line.rfind(start + "http://127.0.0.1:", 0), 0u) << line;
  const std::string url = line.substr(start.size(), line.find("/WebEditor") - start.size());
  const Outcome other = RunTool({"run", "--server", url, "--user", "local", "-e", "1"});
  EXPECT_EQ(other.out, "");
  EXPECT_EQ(other.exit, 5) << other.err;
  EXPECT_EQ(process.Finish().exit, 0);
}

}  // namespace
}  // namespace qv::cli
