#include "tools/options.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

class RunDocumentOptions : public testing::OptionsTest {};

TEST_F(RunDocumentOptions, RunDocumentTakesTheOptionsOfRun) {
  const RunOptions run = Run({"run-document",
                              "a.xml",
                              "--server",
                              "https://h",
                              "--proxy",
                              "p:1",
                              "--user",
                              "u",
                              "--replica",
                              "r",
                              "--password-file",
                              "pw",
                              "--output",
                              "table",
                              "--timeout",
                              "1.5",
                              "--connect-timeout",
                              "2",
                              "-p",
                              "a=int:1",
                              "-p",
                              "b=date:2024-03-05"});
  EXPECT_TRUE(run.document);
  EXPECT_EQ(run.file, "a.xml");
  EXPECT_EQ(run.server, "https://h");
  EXPECT_EQ(run.proxy, "p:1");
  EXPECT_EQ(run.user, "u");
  EXPECT_EQ(run.replica, "r");
  EXPECT_EQ(run.passwordFile, "pw");
  EXPECT_EQ(run.output, OutputFormat::kTable);
  EXPECT_EQ(run.timeoutSeconds, 1.5);
  EXPECT_EQ(run.connectTimeoutSeconds, 2);
  EXPECT_EQ(run.parameters, (std::vector<std::string>{"a=int:1", "b=date:2024-03-05"}));
}

TEST_F(RunDocumentOptions, RunIsNoDocument) {
  EXPECT_FALSE(Run({"run", "--local", "a.xml"}).document);
}

TEST_F(RunDocumentOptions, RunDocumentNeedsAFile) {
  EXPECT_EQ(Refusal({"run-document", "--local"}),
            "no script document given (FILE)|scriptwells run-document --help");
  EXPECT_EQ(Refusal({"run-document", "--local", ""}),
            "no script document given (FILE)|scriptwells run-document --help");
  EXPECT_EQ(Refusal({"run-document", "--local", "-"}),
            "a script document is read by its name and cannot come from standard input|"
            "scriptwells run-document --help");
  EXPECT_NE(Refusal({"run-document", "--local", "a.xml", "b.xml"}), "accepted");
}

TEST_F(RunDocumentOptions, RunDocumentChecksAsRunDoes) {
  EXPECT_EQ(Refusal({"run-document", "a.xml"}),
            "no server given (--local or --server URL)|scriptwells run-document --help");
  EXPECT_EQ(Refusal({"run-document", "a.xml", "--local", "--json", "-o", "text"}),
            "give --json or another --output, not both|scriptwells run-document --help");
  EXPECT_EQ(Refusal({"run-document", "a.xml", "--local", "--timeout", "nan"}),
            "--timeout has to lie between 0 and 86400 seconds|scriptwells run-document --help");
}

// The document tells its language and holds its code.
TEST_F(RunDocumentOptions, RunDocumentTakesNeitherCodeNorLanguage) {
  EXPECT_NE(Refusal({"run-document", "a.xml", "--local", "-e", "1"}), "accepted");
  EXPECT_NE(Refusal({"run-document", "a.xml", "--local", "--language", "VBScript"}), "accepted");
}

TEST_F(RunDocumentOptions, VariablesStandInForOptionsOfRunDocumentToo) {
  ::setenv("SCRIPTWELLS_SERVER", "http://usual", 1);
  ::setenv("SCRIPTWELLS_USER", "joe", 1);
  ::setenv("SCRIPTWELLS_OUTPUT", "json", 1);
  const RunOptions run = Run({"run-document", "a.xml"});
  EXPECT_EQ(run.server, "http://usual");
  EXPECT_EQ(run.user, "joe");
  EXPECT_EQ(run.output, OutputFormat::kJson);
}

}  // namespace
}  // namespace qv::cli
