// What is said when uploads cannot work.
#include "face/exchange/upload_scripts.h"

#include "tests/face/exchange/call_fixture.h"

namespace scriptwells::test {
namespace {

class UploadScripts : public CallTest {
 protected:
  static std::string Check(const std::string& home) {
    const Outcome outcome = OutcomeOf([&] { CheckUploadScripts(home); });
    EXPECT_EQ(outcome.details.remedy, outcome.shown == "ok" ? Remedy::kNone : Remedy::kHomeDirectory);
    return outcome.shown;
  }
};

TEST_F(UploadScripts, AreFoundInTheHomeDirectory) {
  MakeHome();
  EXPECT_EQ(Check(settings_.home), "ok");
}

TEST_F(UploadScripts, MissingOnesAreNamed) {
  const std::string home = folder_.Path();
  const std::string script = home + "/ClientScripts/UploadScript.xml";
  const std::string start = "Error local file: cannot read the upload script " + script + ": ";
  const std::string end = "; put the server's upload scripts into " + home +
                          "/ClientScripts (UploadScript.xml and UploadScriptWithoutTicketdId.xml)";
  EXPECT_EQ(Check(home), start + "No such file or directory" + end);
  std::filesystem::create_directories(script);
  EXPECT_EQ(Check(home), start + "Is a directory" + end);
}

TEST_F(UploadScripts, PathsThatTheLibraryCannotOpen) {
  for (const char* home : {"/tmp/a#b", "/tmp/a?b", "/tmp/a:b", "/tmp/a\\b"})
    EXPECT_EQ(Check(home), "Error local file: the home directory " + std::string(home) +
                               " holds '#', '?', ':' or '\\', below which the library finds no scripts");
  EXPECT_EQ(Check("/tmp/\xFF"), "Error local file: the home directory's path is not valid UTF-8");
}

TEST_F(UploadScripts, RegistryIsAskedWithoutAHomeOfTheCall) {
  const qv::EnvironmentVariable registry("QV_REGISTRY", folder_.Path("registry.reg").c_str());
  folder_.Write("registry.reg", "");
  EXPECT_EQ(Check(""),
            "Error local file: a file cannot be uploaded, since no home directory is known; put the "
            "server's upload scripts into DIR/ClientScripts (UploadScript.xml and "
            "UploadScriptWithoutTicketdId.xml)");
  folder_.Write("registry.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" +
                                    folder_.Path("home") + "\"\n");
  MakeHome();
  EXPECT_EQ(Check(""), "ok");
}

}  // namespace
}  // namespace scriptwells::test
