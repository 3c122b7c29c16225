// "Copy as": the texts are run as they are, and do what the page does.
#include "fixtures/output_of.h"
#include "fixtures/secret_forms.h"
#include "tests/tools/page/page_fixture.h"
#include "tools/page/copy_texts.h"

namespace qv::cli {
namespace {

using namespace testing;

// Everything that shells, C++ and Python could take for something else.
const std::string kNasty =
    "-e \"double\" 'single' $HOME ${x} $(id) `id` \\n \\\\ \\' [1,2] {a} !! %s #\tend\n\n  é 😀 \\";

// Shows each parameter with its type.
const std::string kCode =
    "// \"double\" 'single' $HOME $(id) `id` \\n %s é 😀 \\\n"
    "const text = '$x `y` \"z\" \\' \\\\';\n"
    "\n"
    "text + parameterList.map(p => '|' + p.type + '=' +\n"
    "  (p.type === 'FileTicket' ? p.value.text() : p.value instanceof Date ? p.value.toJSON() :\n"
    "  String(p.value))).join('')";

class PageCopy : public PageTest {
 protected:
  void SetUp() override {
    Start({{"joe", "secret 'x"}}, [this](devservice::ServiceOptions&, PagePlace& place) {
      place.registry =
          folder_.Write("serve.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" +
                                         place.home + "\"\n");
    });
    OpenSession("joe", "secret 'x");
  }

  static Json Parameters() {
    Json parameters = Json::array();
    for (const auto& [type, value] : {std::pair<const char*, std::string>("byte", "-5"),
                                      {"short", "-300"},
                                      {"int", "007"},
                                      {"long", "5000000000"},
                                      {"boolean", "true"},
                                      {"boolean", "0"},
                                      {"float", "0.5"},
                                      {"double", "-1.25e3"},
                                      {"string", kNasty},
                                      {"string", ""},
                                      {"date", "2024-03-05"},
                                      {"time", "10:15:30.5"},
                                      {"datetime", "2024-03-05T10:15:30"},
                                      {"duration", "-P1DT2H0.5S"}})
      parameters.push_back(
          {{"name", "p '\"$" + std::to_string(parameters.size())}, {"type", type}, {"value", value}});
    return parameters;
  }

  // The texts for the call, with the password in its place.
  Json Texts(const std::string& code, const Json& parameters, const std::string& quoted) {
    const PageAnswer answer = Post(
        "api/copy", {{"session", 1}, {"code", code}, {"language", "JavaScript"}, {"parameters", parameters}});
    EXPECT_EQ(answer.status, 200) << answer.body;
    Json texts = answer.Parsed();
    for (Json& text : texts) {
      std::string filled = text;
      const std::size_t at = filled.find(quoted);
      if (at != std::string::npos) filled.replace(at, quoted.size(), Filled(quoted));
      text = filled;
    }
    return texts;
  }
  static std::string Filled(const std::string& quoted) {
    if (quoted == "'PASSWORD'") return "'secret '\\''x'";
    return quoted == "\"PASSWORD\"" ? "\"secret 'x\"" : "Password=secret '\\''x;";
  }

  CommandOutput InShell(const std::string& text) const {
    folder_.Write("call.sh", text);
    const std::string program = SCRIPTWELLS_PROGRAM;
    return OutputOf("cd '" + folder_.Path() + "' && PATH='" + program.substr(0, program.rfind('/')) +
                    "':\"$PATH\" sh call.sh 2>&1 </dev/null");
  }
  CommandOutput InPython(const std::string& text) const {
    folder_.Write("call.py", text);
    return OutputOf("cd '" + folder_.Path() +
                    "' && PYTHONPATH='" PYTHON_PACKAGE "' /usr/bin/python3 call.py 2>&1");
  }
  CommandOutput InCpp(const std::string& text) const {
    folder_.Write("call.cpp", text);
    return OutputOf("cd '" + folder_.Path() +
                    "' && " CPP_COMPILER " -std=c++17 " CPP_FLAGS " -I" SOURCE_FOLDER
                    "/include call.cpp -o call " CPP_LIBRARY " -Wl,-rpath,\"$(dirname " CPP_LIBRARY
                    ")\" 2>&1 && ./call 2>&1");
  }

  TemporaryDirectory folder_;
};

const std::string kExpected =
    "$x `y` \"z\" ' "
    "\\|byte=-5|short=-300|int=7|long=5000000000|boolean=true|boolean=false|float=0.5|double=-1250|"
    "string=" +
    kNasty +
    "|string=|date=2024-03-05T00:00:00.000Z|time=1970-01-01T10:15:30.500Z|datetime=2024-03-05T10:15:30.000Z|"
    "duration=-P1DT2H0.5S";

TEST_F(PageCopy, ThePageItselfAnswers) {
  EXPECT_EQ(ValueOf(kCode, Parameters()).at("value"), kExpected);
}

TEST_F(PageCopy, CommandRunsInAShell) {
  const CommandOutput output = InShell(Texts(kCode, Parameters(), "'PASSWORD'").at("command"));
  EXPECT_EQ(output.exit, 0);
  EXPECT_NE(output.text.find(kExpected + "\n"), std::string::npos) << output.text;
}

TEST_F(PageCopy, CurlRunsInAShell) {
  const CommandOutput output = InShell(Texts(kCode, Parameters(), "Password=PASSWORD;").at("curl"));
  EXPECT_EQ(output.exit, 0);
  EXPECT_NE(output.text.find(">" + test::InXml(kExpected) + "<"), std::string::npos) << output.text;
  EXPECT_EQ(Ask("GET", "api/counts").Parsed().at("openSessions"), 1);
}

TEST_F(PageCopy, CppIsCompiledAndRuns) {
  const CommandOutput output = InCpp(Texts(kCode, Parameters(), "\"PASSWORD\"").at("cpp"));
  EXPECT_EQ(output.text, kExpected + "\n");
}

TEST_F(PageCopy, PythonRuns) {
  const std::string text = Texts(kCode, Parameters(), "\"PASSWORD\"").at("python");
  folder_.Write("call.py", text);
  EXPECT_EQ(OutputOf("/usr/bin/python3 -m py_compile '" + folder_.Path("call.py") + "'").exit, 0) << text;
  if (std::string(PYTHON_PACKAGE).empty()) GTEST_SKIP() << "the Python module is not part of this build";
  EXPECT_EQ(InPython(text).text, kExpected + "\n");
}

TEST_F(PageCopy, FilesAreReadFromTheDirectory) {
  const std::string name = "report $x 'y' {1,2} [3-4].txt";
  const int file = Upload("report%20$x%20'y'%20%7B1,2%7D%20%5B3-4%5D.txt", "content é");
  folder_.Write(name, "content é");
  const Json parameters = {{{"name", "f"}, {"type", "file"}, {"file", file}},
                           {{"name", "g"}, {"type", "file"}, {"file", file}},
                           {{"name", "n"}, {"type", "int"}, {"value", "5"}}};
  const std::string code = "parameters.f.text() + parameters.g.size + parameters.n";
  EXPECT_EQ(ValueOf(code, parameters).at("value"), "content é105");
  EXPECT_EQ(InShell(Texts(code, parameters, "'PASSWORD'").at("command")).text, "content é105\n");
  EXPECT_NE(InShell(Texts(code, parameters, "Password=PASSWORD;").at("curl")).text.find(">content é105<"),
            std::string::npos);
  const Json texts = Texts(code, parameters, "\"PASSWORD\"");
  EXPECT_EQ(InCpp(texts.at("cpp")).text, "content é105\n");
  if (!std::string(PYTHON_PACKAGE).empty()) {
    EXPECT_EQ(InPython(texts.at("python")).text, "content é105\n");
  }
}

TEST_F(PageCopy, NoPasswordIsInThem) {
  const Json texts = Post("api/copy", {{"session", 1}, {"code", "1"}}).Parsed();
  EXPECT_EQ(texts.size(), 4U);
  for (const auto& [name, text] : texts.items()) {
    EXPECT_NE(text.get<std::string>().find("PASSWORD"), std::string::npos) << name;
    EXPECT_NE(text.get<std::string>().find("joe"), std::string::npos) << name;
    EXPECT_EQ(text.get<std::string>().find("secret"), std::string::npos) << name;
  }
}

TEST_F(PageCopy, WrongParametersAreNamed) {
  const PageAnswer wrong =
      Post("api/copy", {{"code", "1"}, {"parameters", {{{"name", "a"}, {"type", "int"}, {"value", "x"}}}}});
  EXPECT_EQ(wrong.status, 400);
  EXPECT_EQ(wrong.Message(), "parameter 'a': 'x' is not a whole number");
  const PageAnswer missing =
      Post("api/copy", {{"code", "1"}, {"parameters", {{{"name", "f"}, {"type", "file"}, {"file", 9}}}}});
  EXPECT_EQ(missing.Message(), "parameter 'f': there is no such file");
}

// What no text can say, or what would not be the same call.
TEST_F(PageCopy, CallsThatCannotBeCopiedAreRefused) {
  const auto refusal = [this](const Json& parameters, const std::string& language = "JavaScript") {
    const PageAnswer answer =
        Post("api/copy", {{"code", "1"}, {"language", language}, {"parameters", parameters}});
    EXPECT_EQ(answer.status, 400);
    return answer.Message();
  };
  const auto parameter = [](const std::string& name, const std::string& value) -> Json {
    return {{"name", name}, {"type", "string"}, {"value", value}};
  };
  const std::string null("a\0b", 3);
  EXPECT_EQ(refusal(Json::array({parameter(null, "x")})), "the name of a parameter holds a null character");
  EXPECT_EQ(refusal(Json::array({parameter("a", null)})), "parameter 'a' holds a null character");
  EXPECT_EQ(refusal(Json::array(), null), "the language holds a null character");
  EXPECT_EQ(refusal(Json::array({parameter("", "x")})), "a parameter has no name");
  EXPECT_EQ(refusal(Json::array({parameter("a", "x"), parameter("a", "y")})), "parameter 'a' is given twice");
  EXPECT_EQ(refusal({{{"name", "a\n\x1b"}, {"type", "int"}, {"value", "x"}}}),
            "parameter 'a \\x1b': 'x' is not a whole number");
}

// Only the program itself knows the user of such a service.
TEST(CopyTexts, OwnServiceIsStartedAgain) {
  CopyPlace place;
  place.isOwnService = true;
  place.needsPassword = true;
  place.server = "http://127.0.0.1:8080";
  EXPECT_EQ(MakeCopyTexts({"6 * 7", "JavaScript", {}}, place).command,
            "scriptwells run --local \\\n  --eval='6 * 7'\n");
}

}  // namespace
}  // namespace qv::cli
