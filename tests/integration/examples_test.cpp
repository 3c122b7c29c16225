// The examples as their readers run them, against the development service.
#include <dlfcn.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "devservice/files/upload_scripts.h"
#include "fixtures/environment.h"
#include "fixtures/output_of.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/registry.h"
#include "qvscriptwells/result_codes.h"
#include "service_fixture.h"
#include "tests/documents/markdown.h"

namespace qv {
namespace {

class Examples : public devservice::testing::ServiceTest {
 protected:
  void SetUp() override { StartWith(devservice::testing::TestOptions()); }
  CommandOutput Example(const std::string& program) {
    return OutputOf(program + " " + service_->Url() + " 2>&1");
  }
  void ExpectSays(const std::string& program, const char* out) {
    const CommandOutput said = Example(program);
    EXPECT_EQ(said.text, out);
    EXPECT_EQ(said.exit, 0);
  }
};

TEST_F(Examples, ExactBindingAddsAndWalkTableShowsColumnsAndRows) {
  ExpectSays(EXACT_BINDING, "42\n");
  ExpectSays(WALK_TABLE,
             "city (string)\npeople (int)\nRome 2748109\nBern 134591\nRome is large\n2882700 in all\n"
             "city,people\r\nRome,2748109\r\nBern,134591\r\n");
}

// The program reads report.pdf and writes into results/, with upload scripts in the home directory.
class FirstCalls : public Examples {
 protected:
  void SetUp() override {
    Examples::SetUp();
    devservice::InstallUploadScripts(directory_.Path("home"), "http://quorvane.example");
    WriteRegistryValue(kHomeDirectoryKey, FromUtf8(directory_.Path("home")));
    directory_.Write("report.pdf", "a report");
    std::filesystem::create_directory(directory_.Path("results"));
  }

  const TemporaryDirectory directory_;
  const EnvironmentVariable registry_{"QV_REGISTRY", directory_.Path("registry.reg").c_str()};
};

TEST_F(FirstCalls, UploadAndDownload) {
  ExpectSays("cd " + directory_.Path() + " && " FIRST_CALL, "42\nRome 2748109\n");
  EXPECT_EQ(directory_.Read("results/out.txt"), "text");
}

// The README's first code, as it stands but for the port: its includes, and the rest as a program.
std::string ProgramOfTheReadme(const std::string& url) {
  const std::string code = documents::BlocksOf(documents::ReadFile(README), "cpp").at(0);
  std::string includes = "#include <iostream>\n";
  std::string body;
  std::istringstream lines(code);
  for (std::string line; std::getline(lines, line);)
    (line.rfind("#include", 0) == 0 ? includes : body) += line + "\n";
  return includes + "int main() {\n" + devservice::testing::Replaced(body, "http://127.0.0.1:8080", url) +
         "}\n";
}

TEST_F(FirstCalls, OfTheReadmeCompileAsTheyStand) {
  const std::string source = directory_.Write("readme.cpp", ProgramOfTheReadme(service_->Url()));
  const CommandOutput built =
      OutputOf(CXX_COMPILER " -std=c++17 -Wall -Wextra -Wno-unused-variable " SANITIZE " -I" HEADERS " " +
               source + " -o " + directory_.Path("readme") + " " SCRIPTWELLS_LIBRARY " 2>&1");
  ASSERT_EQ(built.exit, 0) << built.text;
  EXPECT_EQ(built.text, "");
  const std::string folder = std::filesystem::path(SCRIPTWELLS_LIBRARY).parent_path();
  const CommandOutput said =
      OutputOf("cd " + directory_.Path() + " && LD_LIBRARY_PATH=" + folder + " ./readme 2>&1");
  EXPECT_EQ(said.text, "Rome 2748109\n");
  EXPECT_EQ(said.exit, 0);
  EXPECT_EQ(directory_.Read("results/out.txt"), "text");
}

// Lets the shared library write itself into the test's registry, as an installation does.
void RegisterLibrary() {
  void* const library = ::dlopen(SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << ::dlerror();
  using Entry = HRESULT (*)();
  const auto registerServer = reinterpret_cast<Entry>(::dlsym(library, "DllRegisterServer"));
  ASSERT_NE(registerServer, nullptr);
  EXPECT_EQ(registerServer(), S_OK);
  ::dlclose(library);
}

TEST_F(Examples, OwnTestsPassOnAServiceOfTheirOwn) {
  const EnvironmentVariable program("SCRIPTWELLS_PROGRAM", SCRIPTWELLS_PROGRAM);
  const CommandOutput said = OutputOf(OWN_TESTS " 2>&1");
  EXPECT_EQ(said.text, "all tests passed\n");
  EXPECT_EQ(said.exit, 0);
}

TEST_F(Examples, LateBindingFindsTheLibraryThroughTheRegistry) {
  const TemporaryDirectory directory;
  const EnvironmentVariable registry("QV_REGISTRY", directory.Path("registry.reg").c_str());
  RegisterLibrary();
  ExpectSays(LATE_BINDING, "42\n");
}

TEST_F(Examples, LateBindingWithoutRegistrationFails) {
  const TemporaryDirectory directory;
  const EnvironmentVariable registry("QV_REGISTRY", directory.Path("registry.reg").c_str());
  const EnvironmentVariable config("XDG_CONFIG_HOME", directory.Path().c_str());
  const CommandOutput said = Example(LATE_BINDING);
  EXPECT_EQ(said.exit, 1);
  const std::string start =
      "failed: The registry knows no class named \"QvScriptwells.QvScriptwells\"; looked in ";
  EXPECT_EQ(said.text.rfind(start + directory.Path("registry.reg") + " (not there), ", 0), 0U) << said.text;
}

TEST_F(Examples, ServerThatIsNotThereIsReported) {
  const CommandOutput said = OutputOf(FIRST_CALL " http://127.0.0.1:1 2>&1");
  EXPECT_EQ(said.text.rfind("failed: cannot reach http://127.0.0.1:1: ", 0), 0U) << said.text;
  EXPECT_EQ(said.exit, 1);
  EXPECT_EQ(OutputOf(EXACT_BINDING " http://127.0.0.1:1 2>&1").text, "failed: Cannot create a soap call.\n");
}

}  // namespace
}  // namespace qv
