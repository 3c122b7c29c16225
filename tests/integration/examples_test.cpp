// The examples as their readers run them, against the development service.
#include <dlfcn.h>

#include <filesystem>
#include <string>

#include "devservice/files/upload_scripts.h"
#include "fixtures/environment.h"
#include "fixtures/output_of.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/registry.h"
#include "qvscriptwells/result_codes.h"
#include "service_fixture.h"

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

TEST_F(Examples, FirstCallUploadsAndDownloads) {
  const TemporaryDirectory directory;
  const EnvironmentVariable registry("QV_REGISTRY", directory.Path("registry.reg").c_str());
  devservice::InstallUploadScripts(directory.Path("home"), "http://quorvane.example");
  WriteRegistryValue(kHomeDirectoryKey, FromUtf8(directory.Path("home")));
  directory.Write("report.pdf", "a report");
  std::filesystem::create_directory(directory.Path("results"));
  ExpectSays("cd " + directory.Path() + " && " FIRST_CALL, "42\nRome 2748109\n");
  EXPECT_EQ(directory.Read("results/out.txt"), "text");
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
  EXPECT_EQ(said.text, "failed: cannot reach http://127.0.0.1:1: Connection refused\n");
  EXPECT_EQ(said.exit, 1);
  EXPECT_EQ(OutputOf(EXACT_BINDING " http://127.0.0.1:1 2>&1").text, "failed: Cannot create a soap call.\n");
}

}  // namespace
}  // namespace qv
