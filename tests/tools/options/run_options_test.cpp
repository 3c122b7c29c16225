// The options of `run` and `run-document`: values, defaults, variables, and which exclude each other.
#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

using testing::Words;

constexpr char kOne[] = "run --local -e 1 ";

// One command line and the message for it.
struct RefusalRow {
  const char* line;
  const char* message;
};

class RunOptionsTest : public testing::OptionsTest {
 protected:
  static void ExpectRefusals(const std::string& command, const std::vector<RefusalRow>& rows) {
    for (const RefusalRow& row : rows)
      EXPECT_EQ(Refusal(command + " " + row.line),
                std::string(row.message) + "|scriptwells " + command + " --help")
          << row.line;
  }
  static void ExpectConnection(const RunOptions& run) {
    EXPECT_FALSE(run.local);
    EXPECT_EQ(run.server, "https://h");
    EXPECT_EQ(run.proxy, "p:1");
    EXPECT_EQ(run.user, "u");
    EXPECT_EQ(run.replica, "r");
    EXPECT_EQ(run.output, OutputFormat::kTable);
    EXPECT_EQ(run.timeoutSeconds, 1.5);
    EXPECT_EQ(run.connectTimeoutSeconds, 0);
    EXPECT_EQ(run.passwordFile, "pw");
  }
  static constexpr char kConnection[] =
      " --server https://h --proxy p:1 --user u --replica r --output table --timeout 1.5 --connect-timeout 0 "
      "--password-file pw";
};

TEST_F(RunOptionsTest, EveryOptionIsTaken) {
  const RunOptions script = Run(std::string("run - --language VBScript") + kConnection);
  ExpectConnection(script);
  EXPECT_EQ(script.file, "-");
  EXPECT_EQ(script.language, "VBScript");
  const RunOptions document =
      Run(std::string("run-document a.xml -p a=int:1 -p b=date:2024-03-05") + kConnection);
  ExpectConnection(document);
  EXPECT_TRUE(document.document);
  EXPECT_EQ(document.file, "a.xml");
  EXPECT_EQ(document.parameters, (Words{"a=int:1", "b=date:2024-03-05"}));
  EXPECT_EQ(Run("run -e 1 --server http://h --usid x").usid, "x");
  EXPECT_EQ(Run("run-document a.xml --server http://h --usid x").usid, "x");
  const RunOptions run = Run("run -e 1 --server https://h --ca-file ca.pem --cert me.pem --key key.pem");
  EXPECT_EQ(run.caFile, "ca.pem");
  EXPECT_EQ(run.certificateFile, "me.pem");
  EXPECT_EQ(run.keyFile, "key.pem");
  EXPECT_EQ(run.traceFile, "");
  const RunOptions traced = Run("run -e 1 --local --trace - --trace-secrets");
  const RunOptions taped = Run("run -e 1 --record r --replay p");
  EXPECT_EQ(taped.recordFile, "r");
  EXPECT_EQ(taped.replayFile, "p");
  EXPECT_EQ(taped.server, "http://localhost");
  EXPECT_EQ(traced.traceFile, "-");
  EXPECT_TRUE(traced.traceSecrets);
  EXPECT_EQ(Download("download u --trace t").traceFile, "t");
  EXPECT_EQ(Session("session open --server http://h --trace t").traceFile, "t");
  EXPECT_EQ(Session("session close --server http://h --usid x --trace t").traceFile, "t");
}

TEST_F(RunOptionsTest, Defaults) {
  const RunOptions run = Run("run --local a.js");
  EXPECT_EQ(run.file, "a.js");
  EXPECT_EQ(run.language, "JavaScript");
  EXPECT_EQ(run.output, OutputFormat::kText);
  EXPECT_FALSE(run.json);
  EXPECT_FALSE(run.document);
  EXPECT_EQ(run.timeoutSeconds, 60);
  EXPECT_EQ(run.connectTimeoutSeconds, 30);
  EXPECT_EQ(run.maxTimeSeconds, 0);
  EXPECT_EQ(run.user, "");
  EXPECT_EQ(run.saveDirectory, "");
}

TEST_F(RunOptionsTest, CodeAndParametersKeepTheirText) {
  for (const char* code : {"1+1", "-1", "--x", ""}) EXPECT_EQ(Run("run --local -e", {code}).code, code);
  EXPECT_EQ(Run("run --local -e 1").file, "");
  EXPECT_EQ(Run("run --local -e 1 -p a=int:2 -p 'b=string:x y'").parameters,
            (Words{"a=int:2", "b=string:x y"}));
  EXPECT_EQ(Run("run --local -e 1 -p [a=string:b,c]").parameters, Words{"[a=string:b,c]"});
  const RunOptions run = Run("run --local -p a=int:2 script.js");
  EXPECT_TRUE(run.local);
  EXPECT_EQ(run.parameters, Words{"a=int:2"});
  EXPECT_EQ(run.file, "script.js");
}

TEST_F(RunOptionsTest, JsonIsAlsoAnOutput) {
  const RunOptions run = Run("run --local -e 1 --json");
  EXPECT_TRUE(run.json);
  EXPECT_EQ(run.output, OutputFormat::kJson);
  EXPECT_FALSE(Run("run --local -e 1 -o json").json);
  EXPECT_TRUE(Run("run --local -e 1 --json -o json").json);
  EXPECT_TRUE(Parsed(Command::kUsageError, "run --json --colour").json);
  EXPECT_FALSE(Parsed(Command::kUsageError, "run --colour").json);
  Set("OUTPUT", "table");
  EXPECT_EQ(Run("run --local -e 1 --json").output, OutputFormat::kJson);
  EXPECT_EQ(Run("run --local -e 1").output, OutputFormat::kTable);
  EXPECT_EQ(Run("run --local -e 1 -o text").output, OutputFormat::kText);
  Set("OUTPUT", "yaml");
  EXPECT_EQ(Refusal(kOne), "SCRIPTWELLS_OUTPUT must be text, json, table or csv|scriptwells run --help");
}

TEST_F(RunOptionsTest, NullNeedsCsv) {
  const RunOptions run = Run("run --local -e 1 -o csv --null NULL");
  EXPECT_EQ(run.output, OutputFormat::kCsv);
  EXPECT_EQ(run.csvNull, "NULL");
  EXPECT_EQ(Run("run --local -e 1 -o csv").csvNull, "");
  EXPECT_EQ(Run("run --local -e 1 -o csv --null ''").csvNull, "");
  Set("OUTPUT", "csv");
  EXPECT_EQ(Run("run --local -e 1 --null -").csvNull, "-");
  for (const char* other : {"-o text", "-o table", "-o json", "--json"})
    EXPECT_EQ(Refusal(std::string(kOne) + "--null NULL " + other),
              "--null needs --output csv|scriptwells run --help");
  for (const char* text : {",", "a\"", "a\nb", " a", "\xC3"})
    EXPECT_EQ(Refusal("run --local -e 1 -o csv --null", {text}),
              "--null must be UTF-8 without commas, quotes, line ends, and blanks at its ends|"
              "scriptwells run --help");
}

TEST_F(RunOptionsTest, ContradictionsAreRefused) {
  ExpectRefusals(
      "run", {{"--local", "no script given (FILE, - or -e CODE)"},
              {"--local a.js -e 1", "give the script as FILE or with -e, not both"},
              {"-e 1", "no server given (--local or --server URL)"},
              {"-e 1 --local --server http://h", "give --local or --server, not both"},
              {"-e 1 --local --password-file f --password-stdin",
               "give one of --password-command, --password-file and --password-stdin"},
              {"-e 1 --local --password-file f --password-command c",
               "give one of --password-command, --password-file and --password-stdin"},
              {"- --local --password-stdin", "standard input cannot hold both the script and the password"},
              {"-e 1 --local --key key.pem", "--key needs --cert, whose key it is"},
              {"-e 1 --local --trace-secrets", "--trace-secrets needs --trace"},
              {"-e 1 --local --usid x", "a session of --local ends with it; use --usid with --server"},
              {"-e 1 --local --json -o text", "give --json or another --output, not both"},
              {"-e 1 --local --json -o table", "give --json or another --output, not both"},
              {"-e 1 --local --json -o csv", "give --json or another --output, not both"},
              {"-e 1 --local --force", "--force needs --save"},
              {"-e 1 --local --save ''", "--save must name a directory"},
              {"-e 1 --local --save /tmp -o table", "--save prints a path, for which there is no table"}});
  ExpectRefusals("run-document",
                 {{"--local", "no script document given (FILE)"},
                  {"--local ''", "no script document given (FILE)"},
                  {"--local -", "a script document is read by its name and cannot come from standard input"},
                  {"a.xml", "no server given (--local or --server URL)"},
                  {"a.xml --local --json -o text", "give --json or another --output, not both"},
                  {"a.xml --local --timeout nan", "--timeout must be between 0 and 86400 seconds"},
                  {"a.xml --local --force", "--force needs --save"}});
}

TEST_F(RunOptionsTest, WrongValuesAreRefused) {
  for (const char* option : {"--timeout", "--connect-timeout"})
    for (const char* wrong : {" -1", " nan", " inf", " 86401"})
      EXPECT_EQ(Refusal(std::string(kOne) + option + wrong),
                std::string(option) + " must be between 0 and 86400 seconds|scriptwells run --help")
          << wrong;
  EXPECT_NE(Refusal("run -e 1 --local --timeout soon"), "accepted");
  for (const char* line :
       {"run -e 1 --local --password secret", "run -e 1 --local --output yaml", "run -e 1 --local --colour",
        "run --local a.js b.js", "walk", "run-document --local a.xml b.xml",
        "run-document a.xml --local -e 1", "run-document a.xml --local --language VBScript"})
    EXPECT_NE(Refusal(line), "accepted") << line;
  EXPECT_EQ(Refusal(""), "no command given|scriptwells --help");
}

TEST_F(RunOptionsTest, VariablesAreDefaults) {
  Set("SERVER", "http://usual");
  Set("USER", "joe");
  Set("PROXY", "px:3128");
  Set("OUTPUT", "json");
  Set("REPLICA", "r7");
  Set("TIMEOUT", "7");
  Set("USID", "abc");
  Set("CA_FILE", "ca.pem");
  Set("CERT", "me.pem");
  Set("KEY", "key.pem");
  for (const char* line : {"run -e 1", "run-document a.xml"}) {
    const RunOptions run = Run(line);
    EXPECT_EQ(run.server, "http://usual");
    EXPECT_EQ(run.user, "joe");
    EXPECT_EQ(run.proxy, "px:3128");
    EXPECT_EQ(run.output, OutputFormat::kJson);
    EXPECT_EQ(run.replica, "r7");
    EXPECT_EQ(run.timeoutSeconds, 7);
    EXPECT_EQ(run.usid, "abc");
    EXPECT_EQ(run.caFile + run.certificateFile + run.keyFile, "ca.pemme.pemkey.pem");
  }
  const RunOptions run = Run("run -e 1 --server http://other --user ann");
  EXPECT_EQ(run.server, "http://other");
  EXPECT_EQ(run.user, "ann");
  const RunOptions local = Run("run -e 1 --local");
  EXPECT_TRUE(local.local);
  EXPECT_EQ(local.server, "");
  EXPECT_EQ(local.proxy, "");
  EXPECT_EQ(local.usid, "");
}

TEST_F(RunOptionsTest, WatchNeedsAFile) {
  EXPECT_FALSE(Run("run --local a.js").watch);
  EXPECT_TRUE(Run("run --local a.js --watch").watch);
  EXPECT_TRUE(Run("run-document --local a.xml --watch").watch);
  ExpectRefusals("run", {{"--local --watch -e 1", "--watch needs a script with a name (FILE)"},
                         {"--local --watch -", "--watch needs a script with a name (FILE)"}});
}

TEST_F(RunOptionsTest, ShellSharesThem) {
  const ShellOptions shell = Shell(
      "shell --server https://h --user u -p a=int:1 -p b=int:2 --language VBScript -o table --max-time 2 "
      "--trace t "
      "--no-history");
  EXPECT_EQ(shell.server, "https://h");
  EXPECT_EQ(shell.parameters, (Words{"a=int:1", "b=int:2"}));
  EXPECT_EQ(shell.language, "VBScript");
  EXPECT_EQ(shell.output, OutputFormat::kTable);
  EXPECT_EQ(shell.maxTimeSeconds, 2);
  EXPECT_EQ(shell.traceFile, "t");
  EXPECT_FALSE(shell.history);
  EXPECT_TRUE(Shell("shell --local").history);
  EXPECT_EQ(Shell("shell --local --json").output, OutputFormat::kJson);
  EXPECT_EQ(Shell("shell --server http://h --usid x").usid, "x");
  ExpectRefusals("shell",
                 {{"", "no server given (--local or --server URL)"},
                  {"--local --server http://h", "give --local or --server, not both"},
                  {"--local --usid x", "a session of --local ends with it; use --usid with --server"},
                  {"--local --json -o csv", "give --json or another --output, not both"}});
  EXPECT_NE(Refusal("shell --local a.js"), "accepted");
  Set("OUTPUT", "csv");
  Set("USID", "abc");
  EXPECT_EQ(Shell("shell --local").output, OutputFormat::kCsv);
  EXPECT_EQ(Shell("shell --local").usid, "");
}

TEST_F(RunOptionsTest, SaveNamesADirectory) {
  EXPECT_EQ(Run("run --local -e 1 --save /tmp").saveDirectory, "/tmp");
  EXPECT_EQ(Run("run-document --local a.xml --save .").saveDirectory, ".");
  EXPECT_FALSE(Run("run --local -e 1 --save .").force);
  EXPECT_TRUE(Run("run --local -e 1 --save . --force").force);
  EXPECT_TRUE(Run("run-document --local a.xml --save . --force").force);
  Set("OUTPUT", "table");
  EXPECT_EQ(Run("run --local -e 1 --save /tmp").saveDirectory, "/tmp");
}

}  // namespace
}  // namespace qv::cli
