#include "devservice/files/upload_scripts.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "devservice/soap/script_document.h"
#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

namespace fs = std::filesystem;

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

class UploadScripts : public ::testing::Test {
 protected:
  std::string First() const { return home_.Path() + "/ClientScripts/UploadScript.xml"; }
  std::string Second() const { return home_.Path() + "/ClientScripts/UploadScriptWithoutTicketdId.xml"; }
  FreshDirectory home_;
};

TEST_F(UploadScripts, BothAreWritten) {
  EXPECT_EQ(InstallUploadScripts(home_.Path()), (std::vector<std::string>{First(), Second()}));
  EXPECT_EQ(home_.CountFiles(), 2u);
  const Namespaces spaces("http://quorvane.example");
  EXPECT_EQ(ReadScriptDocument(Content(First()), spaces), "uploadUrl()");
  EXPECT_EQ(ReadScriptDocument(Content(Second()), spaces), "uploadUrl(parameters.fileTicket)");
}

TEST_F(UploadScripts, CanBeReadByEveryone) {
  InstallUploadScripts(home_.Path());
  EXPECT_EQ(fs::status(First()).permissions(), static_cast<fs::perms>(0644));
}

TEST_F(UploadScripts, NamespaceHostIsTheGivenOne) {
  InstallUploadScripts(home_.Path(), "http://a&b.example");
  EXPECT_EQ(ReadScriptDocument(Content(First()), Namespaces("http://a&b.example")), "uploadUrl()");
}

TEST_F(UploadScripts, ExistingFileIsLeftAlone) {
  fs::create_directory(home_.Path() + "/ClientScripts");
  std::ofstream(First()) << "mine";
  EXPECT_EQ(InstallUploadScripts(home_.Path()), (std::vector<std::string>{Second()}));
  EXPECT_EQ(Content(First()), "mine");
  EXPECT_TRUE(InstallUploadScripts(home_.Path()).empty());
}

TEST_F(UploadScripts, LinkToNothingIsLeftAlone) {
  fs::create_directory(home_.Path() + "/ClientScripts");
  fs::create_symlink(home_.Path() + "/elsewhere", First());
  EXPECT_EQ(InstallUploadScripts(home_.Path()), (std::vector<std::string>{Second()}));
  EXPECT_FALSE(fs::exists(home_.Path() + "/elsewhere"));
}

TEST_F(UploadScripts, MissingDirectoriesAreMade) {
  EXPECT_EQ(InstallUploadScripts(home_.Path() + "/a/b").size(), 2u);
}

TEST_F(UploadScripts, FailureHasWords) {
  std::ofstream(home_.Path() + "/file") << "x";
  for (const std::string& directory : {home_.Path() + "/file", std::string("/proc/none")}) {
    try {
      InstallUploadScripts(directory);
      ADD_FAILURE() << directory;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(std::string(error.what()).substr(0, 23), "Cannot make the directo") << directory;
    }
  }
}

class InstalledScripts : public TransferTest {};

TEST_F(InstalledScripts, RunOnTheService) {
  const FreshDirectory home;
  InstallUploadScripts(home.Path());
  std::vector<std::string> urls;
  for (const char* name : {"UploadScript.xml", "UploadScriptWithoutTicketdId.xml"}) {
    const std::string document = Content(home.Path() + "/ClientScripts/" + name);
    // The envelope of a script is taken apart again to put the file's document in.
    std::string envelope = ExecuteEnvelope(
        session_, "CODE",
        urls.empty() ? NilParameters()
                     : ArrayOf(1, ParameterElement("fileTicket", "xsd:string", TicketIn(urls[0]))));
    const std::size_t start = envelope.find("&lt;Scriptwell ");
    const std::size_t end = envelope.find("</Script>");
    envelope.replace(start, end - start, Escape(document));
    urls.push_back(ValueIn(Post("", "Execute", envelope).body).substr(11));
  }
  EXPECT_EQ(TicketIn(urls[0]).size(), 32u);
  EXPECT_EQ(urls[1], urls[0]);
}

}  // namespace
}  // namespace qv::devservice::testing
