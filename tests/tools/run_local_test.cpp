// The program with its own service: nothing else runs.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::RunTool;
using testing::Words;

Outcome Local(const Words& more, const std::string& input = "") {
  Words words{"run", "--local"};
  words.insert(words.end(), more.begin(), more.end());
  return RunTool(words, input);
}

TEST(RunLocal, AnswerIsAllThatStandsOnOutput) {
  const Outcome outcome = Local({"-e", "parameters.a + parameters.b", "-p", "a=int:2", "-p", "b=int:40"});
  EXPECT_EQ(outcome.out, "42\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunLocal, EveryTypeArrivesInTheScript) {
  const Outcome outcome =
      Local({"-e", "parameterList.map(p => p.name + ' ' + p.type + ' ' + p.value).join('|')", "-p",
             "a=byte:-128", "-p", "b=short:32767", "-p", "c=int:-2147483648", "-p",
             "d=long:9223372036854775807", "-p", "e=boolean:true", "-p", "f=float:0.5", "-p", "g=double:0.1",
             "-p", "h=string:x=y:z <&> \xC3\xA9\xF0\x9F\x98\x80"});
  EXPECT_EQ(
      outcome.out,
      "a byte -128|b short 32767|c int -2147483648|d long 9223372036854775807|e boolean true|f float 0.5|"
      "g double 0.1|h string x=y:z <&> \xC3\xA9\xF0\x9F\x98\x80\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunLocal, AnswersKeepTheirTypes) {
  EXPECT_EQ(Local({"-e", "typed.short(-5)", "-o", "json"}).out,
            "{\"type\":\"short\",\"value\":-5,\"tag\":2}\n");
  EXPECT_EQ(Local({"-e", "7", "-o", "json"}).out, "{\"type\":\"int\",\"value\":7,\"tag\":22}\n");
  EXPECT_EQ(Local({"-e", "true", "-o", "json"}).out, "{\"type\":\"boolean\",\"value\":true,\"tag\":11}\n");
  EXPECT_EQ(Local({"-e", "typed.float(0.1)", "-o", "json"}).out,
            "{\"type\":\"float\",\"value\":0.1,\"tag\":4}\n");
  EXPECT_EQ(Local({"-e", "0.1 + 0.2", "-o", "json"}).out,
            "{\"type\":\"double\",\"value\":0.30000000000000004,\"tag\":5}\n");
  EXPECT_EQ(Local({"-e", "0 / 0", "-o", "json"}).out, "{\"type\":\"double\",\"value\":\"NaN\",\"tag\":5}\n");
  EXPECT_EQ(Local({"-e", "'\\u00e9\"'", "-o", "json"}).out,
            "{\"type\":\"string\",\"value\":\"\xC3\xA9\\\"\",\"tag\":8}\n");
}

TEST(RunLocal, AnswersThatTheClientReadsOddlyAreShownAsTheyArrive) {
  EXPECT_EQ(Local({"-e", "typed.byte(7)", "--json"}).out, "{\"type\":\"byte\",\"value\":0,\"tag\":16}\n");
  EXPECT_EQ(Local({"-e", "typed.long(7)", "--json"}).out, "{\"type\":\"empty\",\"value\":null,\"tag\":0}\n");
  const Outcome outcome = Local({"-e", "typed.long(7)"});
  EXPECT_EQ(outcome.out, "\n");
  EXPECT_EQ(
      outcome.err,
      "scriptwells: note: the answer arrived as an empty value: a long, a type that the library does not "
      "read, or a URL without text\n");
}

TEST(RunLocal, ByteAnswerHasANote) {
  const Outcome text = Local({"-e", "typed.byte(7)"});
  EXPECT_EQ(text.out, "0\n");
  EXPECT_EQ(text.err, "scriptwells: note: the answer arrived as 0, as every answer of the type byte does\n");
  EXPECT_EQ(text.exit, 0);
  EXPECT_EQ(Local({"-e", "typed.byte(7)", "--json"}).err,
            "{\"note\":\"the answer arrived as 0, as every answer of the type byte does\"}\n");
}

TEST(RunLocal, NotesAreJsonBesideJson) {
  const Outcome outcome = Local({"-e", "typed.long(7)", "-p", "pi=double:3.14159265", "--json"});
  EXPECT_EQ(
      outcome.err,
      "{\"note\":\"parameter 'pi' travels with 6 significant digits\"}\n"
      "{\"note\":\"the answer arrived as an empty value: a long, a type that the library does not read, "
      "or a URL without text\"}\n");
}

TEST(RunLocal, EmptyScriptIsALocalFailure) {
  for (const Words& words : {Words{"-e", ""}, Words{"-"}}) {
    const Outcome outcome = Local(words);
    EXPECT_EQ(outcome.err, "scriptwells: the script is empty\n");
    EXPECT_EQ(outcome.exit, 6);
  }
}

TEST(RunLocal, EndlessStandardInputIsNamed) {
  const Outcome outcome = Local({"-"}, std::string((std::size_t{64} << 20) + 100000, 'x'));
  EXPECT_EQ(outcome.err, "scriptwells: the script from standard input is longer than 64 MB\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(RunLocal, HelpThatCannotBeWrittenIsALocalFailure) {
  testing::Process process({"--help"}, {}, "/dev/full");
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.err, "scriptwells: cannot write to standard output\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(RunLocal, NullAnswerIsNotUnderstood) {
  for (const char* script : {"null", "undefined", "var a = 1;"}) {
    const Outcome outcome = Local({"-e", script});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "scriptwells: answer not understood: The respone that arrived is not valid "
              "(a script that answers null or nothing ends so, too)\n");
    EXPECT_EQ(outcome.exit, 7);
  }
}

TEST(RunLocal, TableHasNameTypeAndValue) {
  const Outcome outcome = Local({"-e", "'caf\xC3\xA9'", "--output", "table"});
  EXPECT_EQ(outcome.out, "NAME   TYPE   VALUE\nanswer string caf\xC3\xA9\n");
}

TEST(RunLocal, FaultHasItsNumberAndWords) {
  const Outcome outcome = Local({"-e", "throw new ScriptError(5, 'no such customer')"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: script fault 0x80040005 (5): no such customer\n");
  EXPECT_EQ(outcome.exit, 1);
}

TEST(RunLocal, FaultAsJson) {
  const Outcome outcome = Local({"-e", "throw new ScriptError(5, 'no such customer')", "--json"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "{\"error\":{\"kind\":\"script fault\",\"message\":\"no such customer\",\"code\":\"0x80040005\","
            "\"number\":5,\"exit\":1}}\n");
  EXPECT_EQ(outcome.exit, 1);
}

TEST(RunLocal, EndlessScriptIsAFaultOfTheService) {
  const Outcome outcome = Local({"-e", "while (true) {}"});
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(outcome.err.rfind("scriptwells: script fault 0x800403F5 (1013): ", 0), 0u) << outcome.err;
}

TEST(RunLocal, ScriptComesFromAFile) {
  const std::string path = ::testing::TempDir() + "run_local_test." + std::to_string(::getpid()) + ".js";
  std::ofstream(path) << "\xEF\xBB\xBFvar a = 40;\na + 2;\n";
  const Outcome outcome = Local({path});
  std::remove(path.c_str());
  EXPECT_EQ(outcome.out, "42\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunLocal, ScriptComesFromStandardInput) {
  const Outcome outcome = Local({"-"}, "6 * 7\n");
  EXPECT_EQ(outcome.out, "42\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunLocal, LongScriptComesThrough) {
  const Outcome outcome = Local({"-"}, "'" + std::string(60000, 'x') + "'.length");
  EXPECT_EQ(outcome.out, "60000\n");
}

TEST(RunLocal, MissingFileIsALocalFailure) {
  const Outcome outcome = Local({"/nonexistent/a.js"});
  EXPECT_EQ(outcome.err,
            "scriptwells: cannot read the script /nonexistent/a.js: No such file or directory\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(RunLocal, BadParameterIsALocalFailure) {
  const Outcome outcome = Local({"-e", "1", "-p", "a=int:99999999999"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "scriptwells: parameter 'a': 99999999999 is out of range for int (-2147483648 to 2147483647)\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(RunLocal, ParameterGivenTwiceIsALocalFailure) {
  const Outcome outcome = Local({"-e", "1", "-p", "a=int:1", "-p", "a=int:2"});
  EXPECT_EQ(outcome.err, "scriptwells: parameter 'a' is given twice\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(RunLocal, LostDigitsAreTold) {
  const Outcome outcome = Local({"-e", "parameters.pi", "-p", "pi=double:3.14159265"});
  EXPECT_EQ(outcome.out, "3.14159\n");
  EXPECT_EQ(outcome.err, "scriptwells: note: parameter 'pi' travels with 6 significant digits\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunLocal, OtherLanguageIsAFault) {
  const Outcome outcome = Local({"-e", "1", "--language", "COBOL"});
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(outcome.err.rfind("scriptwells: script fault 0x800403EF (1007): ", 0), 0u) << outcome.err;
}

TEST(RunLocal, UsageIsOneLineWithAHint) {
  const Outcome outcome = Local({});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: no script given (FILE, - or -e CODE); try 'scriptwells run --help'\n");
  EXPECT_EQ(outcome.exit, 2);
}

TEST(RunLocal, HelpAndVersionStandOnOutput) {
  const Outcome help = RunTool({"run", "--help"});
  EXPECT_EQ(help.exit, 0);
  EXPECT_EQ(help.err, "");
  EXPECT_NE(help.out.find("--password-stdin"), std::string::npos);
  const Outcome version = RunTool({"--version"});
  EXPECT_EQ(version.out, "scriptwells 0.1.0\n");
  EXPECT_EQ(version.exit, 0);
}

TEST(RunLocal, HelloGreetsAndGivesEveryTypeBack) {
  const std::string script = EXAMPLES_FOLDER "/hello.js";
  EXPECT_EQ(Local({script, "-p", "who=string:World", "-p", "times=int:3"}).out,
            "Hello from the server. You sent:\nwho (string) = World\ntimes (int) = 3\n");
  const auto pick = [&script](const std::string& value) {
    return Local({script, "-p", "pick=string:v", "-p", "v=" + value, "-o", "json"}).out;
  };
  EXPECT_EQ(pick("byte:1"), "{\"type\":\"byte\",\"value\":0,\"tag\":16}\n");
  EXPECT_EQ(pick("short:1"), "{\"type\":\"short\",\"value\":2,\"tag\":2}\n");
  EXPECT_EQ(pick("int:1"), "{\"type\":\"int\",\"value\":2,\"tag\":22}\n");
  EXPECT_EQ(pick("long:1"), "{\"type\":\"empty\",\"value\":null,\"tag\":0}\n");
  EXPECT_EQ(pick("boolean:true"), "{\"type\":\"boolean\",\"value\":false,\"tag\":11}\n");
  EXPECT_EQ(pick("float:0.125"), "{\"type\":\"float\",\"value\":0.25,\"tag\":4}\n");
  EXPECT_EQ(pick("double:0.25"), "{\"type\":\"double\",\"value\":0.5,\"tag\":5}\n");
  EXPECT_EQ(pick("string:you"), "{\"type\":\"string\",\"value\":\"Hello, you!\",\"tag\":8}\n");
}

TEST(RunLocal, ClosedOutputIsASilentLocalFailure) {
  testing::Process process({"run", "--local", "-e", "1"});
  process.CloseOutput();
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 6);
}

}  // namespace
}  // namespace qv::cli
