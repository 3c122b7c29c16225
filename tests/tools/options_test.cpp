#include "tools/options.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

class Options : public testing::OptionsTest {};

TEST_F(Options, RunTakesCodeAndParametersInOrder) {
  const RunOptions run = Run({"run", "--local", "-e", "1+1", "-p", "a=int:2", "-p", "b=string:x y"});
  EXPECT_TRUE(run.local);
  EXPECT_EQ(run.code, "1+1");
  EXPECT_EQ(run.file, "");
  EXPECT_EQ(run.parameters, (std::vector<std::string>{"a=int:2", "b=string:x y"}));
}

TEST_F(Options, DefaultsOfRun) {
  const RunOptions run = Run({"run", "--local", "a.js"});
  EXPECT_EQ(run.file, "a.js");
  EXPECT_EQ(run.language, "JavaScript");
  EXPECT_EQ(run.output, OutputFormat::kText);
  EXPECT_FALSE(run.json);
  EXPECT_EQ(run.timeoutSeconds, 60);
  EXPECT_EQ(run.connectTimeoutSeconds, 30);
  EXPECT_EQ(run.user, "");
}

TEST_F(Options, EveryOptionOfRunIsTaken) {
  const RunOptions run = Run({"run",
                              "-",
                              "--server",
                              "https://h",
                              "--proxy",
                              "p:1",
                              "--user",
                              "u",
                              "--replica",
                              "r",
                              "--language",
                              "VBScript",
                              "--output",
                              "table",
                              "--timeout",
                              "1.5",
                              "--connect-timeout",
                              "0",
                              "--password-file",
                              "pw"});
  EXPECT_EQ(run.file, "-");
  EXPECT_FALSE(run.local);
  EXPECT_EQ(run.server, "https://h");
  EXPECT_EQ(run.proxy, "p:1");
  EXPECT_EQ(run.user, "u");
  EXPECT_EQ(run.replica, "r");
  EXPECT_EQ(run.language, "VBScript");
  EXPECT_EQ(run.output, OutputFormat::kTable);
  EXPECT_EQ(run.timeoutSeconds, 1.5);
  EXPECT_EQ(run.connectTimeoutSeconds, 0);
  EXPECT_EQ(run.passwordFile, "pw");
}

TEST_F(Options, ParameterDoesNotSwallowTheFile) {
  const RunOptions run = Run({"run", "--local", "-p", "a=int:2", "script.js"});
  EXPECT_EQ(run.parameters, std::vector<std::string>{"a=int:2"});
  EXPECT_EQ(run.file, "script.js");
}

TEST_F(Options, ParameterInBracketsStaysWhole) {
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "-p", "[a=string:b,c]"}).parameters,
            std::vector<std::string>{"[a=string:b,c]"});
}

TEST_F(Options, CodeMayBeginWithMinusOrBeEmpty) {
  EXPECT_EQ(Run({"run", "--local", "-e", "-1"}).code, "-1");
  EXPECT_EQ(Run({"run", "--local", "-e", "--x"}).code, "--x");
  EXPECT_EQ(Run({"run", "--local", "-e", ""}).code, "");
}

TEST_F(Options, JsonMeansJsonOutputToo) {
  const RunOptions run = Run({"run", "--local", "-e", "1", "--json"});
  EXPECT_TRUE(run.json);
  EXPECT_EQ(run.output, OutputFormat::kJson);
  EXPECT_FALSE(Run({"run", "--local", "-e", "1", "-o", "json"}).json);
}

TEST_F(Options, JsonAndAnotherOutputExcludeEachOther) {
  for (const char* other : {"text", "table", "csv"})
    EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--json", "-o", other}),
              "give --json or another --output, not both|scriptwells run --help");
  EXPECT_TRUE(Run({"run", "--local", "-e", "1", "--json", "-o", "json"}).json);
}

TEST_F(Options, JsonWinsOverTheVariableOfTheOutput) {
  ::setenv("SCRIPTWELLS_OUTPUT", "table", 1);
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "--json"}).output, OutputFormat::kJson);
  EXPECT_EQ(Run({"run", "--local", "-e", "1"}).output, OutputFormat::kTable);
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "-o", "text"}).output, OutputFormat::kText);
}

TEST_F(Options, NullGoesWithCsv) {
  const RunOptions run = Run({"run", "--local", "-e", "1", "-o", "csv", "--null", "NULL"});
  EXPECT_EQ(run.output, OutputFormat::kCsv);
  EXPECT_EQ(run.csvNull, "NULL");
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "-o", "csv"}).csvNull, "");
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "-o", "csv", "--null", ""}).csvNull, "");
  for (const char* other : {"text", "table", "json"})
    EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "-o", other, "--null", "NULL"}),
              "--null goes with --output csv|scriptwells run --help");
  for (const char* text : {",", "a\"", "a\nb", " a", "\xC3"})
    EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "-o", "csv", "--null", text}),
              "--null has to be UTF-8 without commas, quotes, line ends, and blanks at its ends|"
              "scriptwells run --help");
}

TEST_F(Options, NullGoesWithTheVariableOfTheOutput) {
  ::setenv("SCRIPTWELLS_OUTPUT", "csv", 1);
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "--null", "-"}).csvNull, "-");
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--null", "-", "--json"}),
            "--null goes with --output csv|scriptwells run --help");
}

TEST_F(Options, ScriptHasToBeGivenOnce) {
  EXPECT_EQ(Refusal({"run", "--local"}), "no script given (FILE, - or -e CODE)|scriptwells run --help");
  EXPECT_EQ(Refusal({"run", "--local", "a.js", "-e", "1"}),
            "give the script as FILE or with -e, not both|scriptwells run --help");
}

TEST_F(Options, ServerHasToBeGivenOnce) {
  EXPECT_EQ(Refusal({"run", "-e", "1"}), "no server given (--local or --server URL)|scriptwells run --help");
  EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--server", "http://h"}),
            "give --local or --server, not both|scriptwells run --help");
}

TEST_F(Options, PasswordSourcesExcludeEachOther) {
  EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--password-file", "f", "--password-stdin"}),
            "give --password-file or --password-stdin, not both|scriptwells run --help");
  EXPECT_EQ(Refusal({"run", "-", "--local", "--password-stdin"}),
            "standard input cannot hold both the script and the password|scriptwells run --help");
}

TEST_F(Options, ThereIsNoOptionForThePasswordItself) {
  EXPECT_NE(Refusal({"run", "-e", "1", "--local", "--password", "secret"}), "accepted");
}

TEST_F(Options, WaitsAreChecked) {
  for (const char* wrong : {"-1", "nan", "inf", "86401"}) {
    EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--timeout", wrong}),
              "--timeout has to lie between 0 and 86400 seconds|scriptwells run --help")
        << wrong;
    EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--connect-timeout", wrong}),
              "--connect-timeout has to lie between 0 and 86400 seconds|scriptwells run --help")
        << wrong;
  }
  EXPECT_NE(Refusal({"run", "-e", "1", "--local", "--timeout", "soon"}), "accepted");
}

TEST_F(Options, UnknownWordsAreRefused) {
  EXPECT_NE(Refusal({"run", "-e", "1", "--local", "--output", "yaml"}), "accepted");
  EXPECT_NE(Refusal({"run", "-e", "1", "--local", "--colour"}), "accepted");
  EXPECT_NE(Refusal({"run", "--local", "a.js", "b.js"}), "accepted");
  EXPECT_NE(Refusal({"walk"}), "accepted");
  EXPECT_EQ(Refusal({}), "no command given|scriptwells --help");
}

TEST_F(Options, VariablesStandInForOptions) {
  ::setenv("SCRIPTWELLS_SERVER", "http://usual", 1);
  ::setenv("SCRIPTWELLS_USER", "joe", 1);
  ::setenv("SCRIPTWELLS_PROXY", "px:3128", 1);
  ::setenv("SCRIPTWELLS_OUTPUT", "json", 1);
  ::setenv("SCRIPTWELLS_REPLICA", "r7", 1);
  ::setenv("SCRIPTWELLS_TIMEOUT", "7", 1);
  const RunOptions run = Run({"run", "-e", "1"});
  EXPECT_EQ(run.server, "http://usual");
  EXPECT_EQ(run.user, "joe");
  EXPECT_EQ(run.proxy, "px:3128");
  EXPECT_EQ(run.output, OutputFormat::kJson);
  EXPECT_EQ(run.replica, "r7");
  EXPECT_EQ(run.timeoutSeconds, 7);
}

TEST_F(Options, OptionsWinOverVariables) {
  ::setenv("SCRIPTWELLS_SERVER", "http://usual", 1);
  ::setenv("SCRIPTWELLS_USER", "joe", 1);
  const RunOptions run = Run({"run", "-e", "1", "--server", "http://other", "--user", "ann"});
  EXPECT_EQ(run.server, "http://other");
  EXPECT_EQ(run.user, "ann");
}

TEST_F(Options, LocalWinsOverTheVariablesOfServerAndProxy) {
  ::setenv("SCRIPTWELLS_SERVER", "http://usual", 1);
  ::setenv("SCRIPTWELLS_PROXY", "px:3128", 1);
  const RunOptions run = Run({"run", "-e", "1", "--local"});
  EXPECT_TRUE(run.local);
  EXPECT_EQ(run.server, "");
  EXPECT_EQ(run.proxy, "");
}

TEST_F(Options, BadVariableIsRefused) {
  ::setenv("SCRIPTWELLS_OUTPUT", "yaml", 1);
  EXPECT_EQ(Refusal({"run", "-e", "1", "--local"}),
            "SCRIPTWELLS_OUTPUT has to be text, json, table or csv|scriptwells run --help");
}

TEST_F(Options, ServeTakesItsOptions) {
  const ServeOptions serve = Serve({"serve", "--host", "0.0.0.0", "--port", "8080", "--users-file", "u",
                                    "--script-timeout", "2.5", "--script-memory", "64"});
  EXPECT_EQ(serve.host, "0.0.0.0");
  EXPECT_EQ(serve.port, 8080);
  EXPECT_EQ(serve.usersFile, "u");
  EXPECT_EQ(serve.scriptTimeoutSeconds, 2.5);
  EXPECT_EQ(serve.scriptMemoryMegabytes, 64);
}

TEST_F(Options, ServeTakesNamesOfItsHost) {
  const ServeOptions serve = Serve({"serve", "--name", "Tunnel.example", "--name", "build-box"});
  EXPECT_EQ(serve.names, (std::vector<std::string>{"Tunnel.example", "build-box"}));
  for (const char* name : {"", "http://h", "h:80", "h/", "a b", "::1", "h\n"}) {
    EXPECT_EQ(Refusal({"serve", "--name", name}),
              "--name has to be a host name, without http:// and without a port|scriptwells serve --help")
        << name;
  }
}

TEST_F(Options, DefaultsOfServe) {
  const ServeOptions serve = Serve({"serve"});
  EXPECT_EQ(serve.host, "127.0.0.1");
  EXPECT_EQ(serve.names, std::vector<std::string>());
  EXPECT_EQ(serve.port, 0);
  EXPECT_EQ(serve.scriptTimeoutSeconds, 5);
  EXPECT_EQ(serve.scriptMemoryMegabytes, 256);
}

TEST_F(Options, ServeChecksItsNumbers) {
  EXPECT_NE(Refusal({"serve", "--port", "65536"}), "accepted");
  EXPECT_NE(Refusal({"serve", "--port", "-1"}), "accepted");
  EXPECT_NE(Refusal({"serve", "--script-memory", "0"}), "accepted");
  EXPECT_EQ(Refusal({"serve", "--script-timeout", "0"}),
            "--script-timeout has to lie between 0.001 and 86400 seconds|scriptwells serve --help");
  EXPECT_EQ(Refusal({"serve", "--script-timeout", "nan"}),
            "--script-timeout has to lie between 0.001 and 86400 seconds|scriptwells serve --help");
}

TEST_F(Options, HelpIsTextOfTheCommandThatAsks) {
  const ParsedArguments whole = ParseArguments({"--help"});
  EXPECT_EQ(whole.command, Command::kText);
  EXPECT_NE(whole.text.find("scriptwells serve --port 8080"), std::string::npos);
  EXPECT_NE(whole.text.find("130 interrupted"), std::string::npos);
  EXPECT_EQ(whole.text.find("script-worker"), std::string::npos);
  const ParsedArguments run = ParseArguments({"run", "--help"});
  EXPECT_EQ(run.command, Command::kText);
  EXPECT_NE(run.text.find("-p a=int:2 -p b=int:40"), std::string::npos);
  EXPECT_NE(run.text.find("SCRIPTWELLS_USER"), std::string::npos);
  EXPECT_NE(run.text.find("-p when=datetime:2024-03-05T10:15:30"), std::string::npos);
  const ParsedArguments document = ParseArguments({"run-document", "--help"});
  EXPECT_EQ(document.command, Command::kText);
  EXPECT_NE(document.text.find("-p for=duration:P1DT2H"), std::string::npos);
  EXPECT_NE(document.text.find("<Scriptwell Language="), std::string::npos);
  EXPECT_EQ(document.text.find("--eval"), std::string::npos);
  const ParsedArguments registry = ParseArguments({"registry", "--help"});
  EXPECT_EQ(registry.command, Command::kText);
  EXPECT_NE(registry.text.find("QV_REGISTRY"), std::string::npos);
  EXPECT_NE(ParseArguments({"registry", "set", "--help"}).text.find("VALUE"), std::string::npos);
}

TEST_F(Options, VersionIsOneLine) {
  const ParsedArguments parsed = ParseArguments({"--version"});
  EXPECT_EQ(parsed.command, Command::kText);
  EXPECT_EQ(parsed.text, "scriptwells 0.1.0\n");
}

TEST_F(Options, ScriptWorkerIsKnown) {
  EXPECT_EQ(ParseArguments({"script-worker"}).command, Command::kScriptWorker);
}

TEST_F(Options, JsonIsHeardAlsoWhereTheCommandLineIsWrong) {
  const ParsedArguments parsed = ParseArguments({"run", "--json", "--colour"});
  EXPECT_EQ(parsed.command, Command::kUsageError);
  EXPECT_TRUE(parsed.json);
  EXPECT_FALSE(ParseArguments({"run", "--colour"}).json);
}

}  // namespace
}  // namespace qv::cli
