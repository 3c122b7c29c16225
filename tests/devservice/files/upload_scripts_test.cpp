// The installed script documents that clients run before an upload.
#include "devservice/files/upload_scripts.h"

#include "devservice/soap/script_document.h"
#include "fixtures/temporary_directory.h"
#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

namespace fs = std::filesystem;

constexpr char kFirst[] = "ClientScripts/UploadScript.xml";
constexpr char kSecond[] = "ClientScripts/UploadScriptWithoutTicketdId.xml";

class UploadScripts : public TransferTest {
 protected:
  std::vector<std::string> Install() const { return InstallUploadScripts(home_.Path()); }
  std::string Code(const char* file, const std::string& namespaceHost = "http://quorvane.example") const {
    return ReadScriptDocument(home_.Read(file), Namespaces(namespaceHost));
  }
  TemporaryDirectory home_;
};

TEST_F(UploadScripts, BothAreWrittenForEveryone) {
  EXPECT_EQ(Install(), (std::vector<std::string>{home_.Path(kFirst), home_.Path(kSecond)}));
  EXPECT_EQ(home_.CountFiles(), 2);
  EXPECT_EQ(Code(kFirst), "uploadUrl()");
  EXPECT_EQ(Code(kSecond), "uploadUrl(parameters.fileTicket)");
  EXPECT_EQ(fs::status(home_.Path(kFirst)).permissions(), static_cast<fs::perms>(0644));
  EXPECT_EQ(InstallUploadScripts(home_.Path("a/b")).size(), 2U);
}

TEST_F(UploadScripts, NamespaceHostIsTheGivenOne) {
  InstallUploadScripts(home_.Path(), "http://a&b.example");
  EXPECT_EQ(Code(kFirst, "http://a&b.example"), "uploadUrl()");
}

TEST_F(UploadScripts, ExistingFileIsNotReplaced) {
  home_.Write(kFirst, "mine");
  EXPECT_EQ(Install(), (std::vector<std::string>{home_.Path(kSecond)}));
  EXPECT_EQ(home_.Read(kFirst), "mine");
  EXPECT_TRUE(Install().empty());
}

TEST_F(UploadScripts, LinkToNothingIsNotReplaced) {
  fs::create_directory(home_.Path("ClientScripts"));
  fs::create_symlink(home_.Path("elsewhere"), home_.Path(kFirst));
  EXPECT_EQ(Install(), (std::vector<std::string>{home_.Path(kSecond)}));
  EXPECT_FALSE(fs::exists(home_.Path("elsewhere")));
}

TEST_F(UploadScripts, FailureHasAMessage) {
  for (const std::string& directory : {home_.Write("file", "x"), std::string("/proc/none")}) {
    try {
      InstallUploadScripts(directory);
      ADD_FAILURE() << directory;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(std::string(error.what()).substr(0, 23), "Cannot make the directo") << directory;
    }
  }
}

TEST_F(UploadScripts, RunOnTheService) {
  Install();
  const auto run = [this](const char* file, const std::string& parameters) {
    const std::string envelope = DocumentEnvelope(Session(), Escape(home_.Read(file)), parameters);
    return ValueIn(Post("", "Execute", envelope).body).substr(11);
  };
  const std::string url = run(kFirst, NilParameters());
  EXPECT_EQ(TicketIn(url).size(), 32U);
  EXPECT_EQ(run(kSecond, ArrayOf(1, ParameterElement("fileTicket", "xsd:string", TicketIn(url)))), url);
}

}  // namespace
}  // namespace qv::devservice::testing
