// `scriptwells run --local`: scripts, answers and failures with the service inside the program.
#include <gtest/gtest.h>

#include "scriptwells/version.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

constexpr char kNoCustomer[] = "throw new ScriptError(5, 'no such customer')";

Outcome Eval(const std::string& code, const std::string& options = "") {
  return RunTool("run --local " + options + " -e", {code});
}

std::string JsonOf(const std::string& code) {
  return Eval(code, "-o json").out;
}

TEST(RunLocal, AnswerIsAllThatIsOnOutput) {
  Eval("parameters.a + parameters.b", "-p a=int:2 -p b=int:40").Succeeds("42\n");
  Eval("'caf\xC3\xA9'", "--output table").Succeeds("NAME   TYPE   VALUE\nanswer string caf\xC3\xA9\n");
}

TEST(RunLocal, EveryTypeArrivesInTheScript) {
  Eval("parameterList.map(p => p.name + ' ' + p.type + ' ' + p.value).join('|')",
       "-p a=byte:-128 -p b=short:32767 -p c=int:-2147483648 -p d=long:9223372036854775807 -p e=boolean:true "
       "-p f=float:0.5 -p g=double:0.1 -p 'h=string:x=y:z <&> \xC3\xA9'")
      .Succeeds(
          "a byte -128|b short 32767|c int -2147483648|d long 9223372036854775807|e boolean true|f float 0.5|"
          "g double 0.1|h string x=y:z <&> \xC3\xA9\n");
  const Outcome face = Eval("parameters.a", "-p a=string:\xF0\x9F\x98\x80");
  EXPECT_EQ(face.out, "\xF0\x9F\x98\x80\n");
}

TEST(RunLocal, AnswersKeepTheirTypes) {
  const std::pair<const char*, const char*> rows[] = {
      {"typed.short(-5)", R"("short","value":-5,"tag":2)"},
      {"7", R"("int","value":7,"tag":22)"},
      {"true", R"("boolean","value":true,"tag":11)"},
      {"typed.float(0.1)", R"("float","value":0.1,"tag":4)"},
      {"0.1 + 0.2", R"("double","value":0.30000000000000004,"tag":5)"},
      {"0 / 0", R"("double","value":"NaN","tag":5)"},
      {"'\\u00e9\"'", "\"string\",\"value\":\"\xC3\xA9\\\"\",\"tag\":8"},
      {"typed.byte(7)", R"("byte","value":0,"tag":16)"},
      {"typed.long(7)", R"("empty","value":null,"tag":0)"}};
  for (const auto& [code, fields] : rows) EXPECT_EQ(JsonOf(code), std::string("{\"type\":") + fields + "}\n");
}

TEST(RunLocal, LossesAreNoted) {
  const std::string empty =
      "the answer arrived as an empty value: a long, a type that the library does not read, or a URL without "
      "text";
  const std::string byte = "the answer arrived as 0, as every answer of the type byte does";
  const std::string digits = "parameter 'pi' travels with 6 significant digits";
  Eval("typed.long(7)").Succeeds("\n", "note: " + empty);
  Eval("typed.byte(7)").Succeeds("0\n", "note: " + byte);
  EXPECT_EQ(Eval("typed.byte(7)", "--json").err, "{\"note\":\"" + byte + "\"}\n");
  Eval("parameters.pi", "-p pi=double:3.14159265").Succeeds("3.14159\n", "note: " + digits);
  EXPECT_EQ(Eval("typed.long(7)", "--json -p pi=double:3.14159265").err,
            "{\"note\":\"" + digits + "\"}\n{\"note\":\"" + empty + "\"}\n");
}

TEST(RunLocal, FaultHasItsNumberAndMessage) {
  Eval(kNoCustomer).Fails(1, "script fault 0x80040005 (5): no such customer");
  Eval(kNoCustomer, "--json")
      .Fails(1, R"({"error":{"kind":"script fault","message":"no such customer","code":"0x80040005",)"
                R"("number":5,"exit":1}})");
  Eval("while (true) {}").FailsLike(1, "script fault 0x800403F5 (1013): ");
  Eval("1", "--language COBOL").FailsLike(1, "script fault 0x800403EF (1007): ");
  for (const char* script : {"null", "undefined", "var a = 1;"})
    Eval(script).Fails(
        7,
        "answer not understood: The respone that arrived is not valid (a script that returns null or "
        "nothing fails like this, too)");
}

TEST(RunLocal, ScriptComesFromAFileOrFromStandardInput) {
  const TemporaryDirectory folder;
  RunTool("run --local", {folder.Write("a.js", "\xEF\xBB\xBFvar a = 40;\na + 2;\n")}).Succeeds("42\n");
  Tool("run --local -").Run("6 * 7\n").Succeeds("42\n");
  Tool("run --local -").Run("'" + std::string(60000, 'x') + "'.length").Succeeds("60000\n");
}

TEST(RunLocal, UnusableScriptOrParameterIsALocalFailure) {
  Eval("").Fails(6, "the script is empty");
  RunTool("run --local -").Fails(6, "the script is empty");
  Tool("run --local -")
      .Run(std::string((std::size_t{64} << 20) + 100000, 'x'))
      .Fails(6, "the script from standard input is longer than 64 MB");
  RunTool("run --local /nonexistent/a.js")
      .Fails(6, "cannot read the script /nonexistent/a.js: No such file or directory");
  Eval("1", "-p a=int:99999999999")
      .Fails(6, "parameter 'a': 99999999999 is out of range for int (-2147483648 to 2147483647)");
  Eval("1", "-p a=int:1 -p a=int:2").Fails(6, "parameter 'a' is given twice");
  RunTool("run --local").Fails(2, "no script given (FILE, - or -e CODE); try 'scriptwells run --help'");
}

TEST(RunLocal, HelpAndVersionAreOnOutput) {
  const Outcome help = RunTool("run --help");
  EXPECT_EQ(help.exit, 0);
  EXPECT_EQ(help.err, "");
  EXPECT_TRUE(Holds(help.out, "--password-stdin"));
  RunTool("--version").Succeeds("scriptwells " SCRIPTWELLS_VERSION "\n");
  Tool("--help").WriteTo("/dev/full").Fails(6, "cannot write to standard output");
  Process process(Tool("run --local -e 1"));
  process.CloseOutput();
  process.Finish().Fails(6, "");
}

TEST(RunLocal, HelloGreetsAndReturnsEveryType) {
  const std::string hello = "run --local " EXAMPLES_FOLDER "/hello.js";
  EXPECT_EQ(RunTool(hello + " -p who=string:World -p times=int:3").out,
            "Hello from the server. You sent:\nwho (string) = World\ntimes (int) = 3\n");
  const std::pair<const char*, const char*> rows[] = {
      {"byte:1", R"("byte","value":0,"tag":16)"},
      {"short:1", R"("short","value":2,"tag":2)"},
      {"int:1", R"("int","value":2,"tag":22)"},
      {"long:1", R"("empty","value":null,"tag":0)"},
      {"boolean:true", R"("boolean","value":false,"tag":11)"},
      {"float:0.125", R"("float","value":0.25,"tag":4)"},
      {"double:0.25", R"("double","value":0.5,"tag":5)"},
      {"string:you", R"("string","value":"Hello, you!","tag":8)"}};
  for (const auto& [value, fields] : rows)
    EXPECT_EQ(RunTool(hello + " -p pick=string:v -o json -p v=" + value).out,
              std::string("{\"type\":") + fields + "}\n");
}

}  // namespace
}  // namespace qv::cli
