// Uploads and downloads.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "face/session/refusal.h"
#include "face/session/session_fixture.h"

namespace scriptwells {
namespace {

using test::RefusalOf;
using test::SessionTest;

TEST_F(SessionTest, UploadsFiles) {
  const std::string path = directory_.Write("report.txt", "to be sent");
  Session session = Open();
  EXPECT_EQ(session.Run("parameters.doc.size", {{"doc", File{path}}}).As<int>(), 10);
  EXPECT_EQ(session
                .Run("parameters.one.text() + parameters.n + parameters.two.text()",
                     {{"one", File{path}}, {"n", 1}, {"two", File{path}}})
                .As<std::string>(),
            "to be sent1to be sent");
}

TEST_F(SessionTest, DownloadsFiles) {
  Session session = Open();
  std::filesystem::create_directory(directory_.Path("results"));
  const std::filesystem::path saved = session.Download(
      session.Run("publish('out.txt', 'text')").As<std::string>(), directory_.Path("results"));
  EXPECT_EQ(saved, directory_.Path("results/out.txt"));
  EXPECT_EQ(directory_.Read("results/out.txt"), "text");
}

TEST_F(SessionTest, RefusesToReplaceAFileIfAsked) {
  Options options;
  options.replaceFiles = false;
  Session session = Open(options);
  directory_.Write("out.txt", "precious");
  const std::string url = session.Run("publish('out.txt', 'text')").As<std::string>();
  try {
    session.Download(url, directory_.Path());
    ADD_FAILURE() << "saved";
  } catch (const Error& error) {
    EXPECT_EQ(error.phase(), Phase::kLocalFile);
    EXPECT_EQ(error.remedy(), Remedy::kReplaceFiles);
  }
  EXPECT_EQ(directory_.Read("out.txt"), "precious");
}

TEST_F(SessionTest, NamesAMissingFile) {
  Session session = Open();
  EXPECT_EQ(RefusalOf(Phase::kLocalFile,
                      [&] {
                        session.Run("1", {{"doc", File{"/none.pdf"}}});
                      }),
            "cannot read the file /none.pdf: No such file or directory");
  EXPECT_EQ(Seen("Execute"), 0);
}

TEST_F(SessionTest, NamesMissingUploadScripts) {
  const std::string path = directory_.Write("report.txt", "to be sent");
  Options options;
  options.homeDirectory = directory_.Path("empty");
  std::filesystem::create_directory(options.homeDirectory);
  Session session = Open(options);
  const std::string reason = RefusalOf(Phase::kLocalFile, [&] { session.Run("1", {{"doc", File{path}}}); });
  EXPECT_NE(reason.find("UploadScript.xml"), std::string::npos) << reason;
  EXPECT_NE(reason.find("UploadScriptWithoutTicketdId.xml"), std::string::npos) << reason;
  EXPECT_EQ(Seen("Execute"), 0);
}

TEST_F(SessionTest, RefusesADirectoryThatIsNotThere) {
  Session session = Open();
  EXPECT_EQ(RefusalOf(Phase::kLocalFile, [&] { session.Download(Url() + "/x", "/none"); }),
            "cannot save into /none: No such file or directory");
}

TEST_F(SessionTest, ReportsProgressOfFiles) {
  const std::string path = directory_.Write("report.txt", std::string(300'000, 'x'));
  std::vector<std::string> seen;
  Options options;
  options.progress = [&seen](const Progress& progress) {
    if (!progress.file.empty() && progress.sending && progress.done == progress.total)
      seen.emplace_back(progress.file);
  };
  Session session = Open(options);
  session.Run("1", {{"doc", File{path}}});
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.front(), path);
}

}  // namespace
}  // namespace scriptwells
