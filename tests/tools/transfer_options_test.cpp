// The options of everything that has to do with files.
#include <gtest/gtest.h>

#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

class TransferOptions : public testing::OptionsTest {};

TEST_F(TransferOptions, DownloadTakesUrlAndDirectory) {
  const DownloadOptions download = Download({"download", "http://srv/a", "/tmp"});
  EXPECT_EQ(download.url, "http://srv/a");
  EXPECT_EQ(download.directory, "/tmp");
  EXPECT_EQ(download.usid, "");
  EXPECT_EQ(download.server, "");
  EXPECT_FALSE(download.json);
  EXPECT_EQ(Download({"download", "http://srv/a"}).directory, "");
}

TEST_F(TransferOptions, DownloadTakesTheOptionsOfASession) {
  const DownloadOptions download =
      Download({"download", "u", "--server", "https://h", "--proxy", "p:1", "--user", "u", "--replica", "r",
                "--timeout", "1.5", "--connect-timeout", "0", "--password-file", "pw", "--json"});
  EXPECT_EQ(download.server, "https://h");
  EXPECT_EQ(download.proxy, "p:1");
  EXPECT_EQ(download.user, "u");
  EXPECT_EQ(download.replica, "r");
  EXPECT_EQ(download.timeoutSeconds, 1.5);
  EXPECT_EQ(download.connectTimeoutSeconds, 0);
  EXPECT_EQ(download.passwordFile, "pw");
  EXPECT_TRUE(download.json);
  EXPECT_TRUE(ParseArguments({"download", "u", "--json"}).json);
}

TEST_F(TransferOptions, DownloadTakesVariables) {
  ::setenv("SCRIPTWELLS_SERVER", "http://usual", 1);
  ::setenv("SCRIPTWELLS_USID", "abc", 1);
  const DownloadOptions download = Download({"download", "u"});
  EXPECT_EQ(download.server, "http://usual");
  EXPECT_EQ(download.usid, "abc");
  EXPECT_EQ(Download({"download", "u", "--usid", "x"}).usid, "x");
}

TEST_F(TransferOptions, WrongWordsBehindDownloadAreRefused) {
  EXPECT_EQ(Refusal({"download"}), "no file given (URL)|scriptwells download --help");
  EXPECT_EQ(Refusal({"download", "u", ""}), "DIR is empty; . is the current one|scriptwells download --help");
  EXPECT_EQ(Refusal({"download", "u", "--usid", ""}),
            "--usid has to name a session|scriptwells download --help");
  EXPECT_EQ(Refusal({"download", "u", "--usid", "x", "--password-stdin"}),
            "a session that is open already takes no password (--usid)|scriptwells download --help");
  EXPECT_EQ(Refusal({"download", "u", "--timeout", "-1"}),
            "--timeout has to lie between 0 and 86400 seconds|scriptwells download --help");
  EXPECT_NE(Refusal({"download", "u", "d", "e"}), "accepted");
  EXPECT_NE(Refusal({"download", "u", "--local"}), "accepted");
}

TEST_F(TransferOptions, RunSavesIntoADirectory) {
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "--save", "/tmp"}).saveDirectory, "/tmp");
  EXPECT_EQ(Run({"run-document", "--local", "a.xml", "--save", "."}).saveDirectory, ".");
  EXPECT_EQ(Run({"run", "--local", "-e", "1"}).saveDirectory, "");
}

TEST_F(TransferOptions, SaveIsChecked) {
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--save", ""}),
            "--save has to name a directory|scriptwells run --help");
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--save", "/tmp", "-o", "table"}),
            "--save prints a path, for which there is no table|scriptwells run --help");
  ::setenv("SCRIPTWELLS_OUTPUT", "table", 1);
  EXPECT_EQ(Run({"run", "--local", "-e", "1", "--save", "/tmp"}).saveDirectory, "/tmp");
}

TEST_F(TransferOptions, ForceGoesWithAFileThatIsSaved) {
  EXPECT_FALSE(Download({"download", "u"}).force);
  EXPECT_TRUE(Download({"download", "u", "--force"}).force);
  EXPECT_FALSE(Run({"run", "--local", "-e", "1", "--save", "."}).force);
  EXPECT_TRUE(Run({"run", "--local", "-e", "1", "--save", ".", "--force"}).force);
  EXPECT_TRUE(Run({"run-document", "--local", "a.xml", "--save", ".", "--force"}).force);
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--force"}),
            "--force goes with --save|scriptwells run --help");
  EXPECT_EQ(Refusal({"run-document", "--local", "a.xml", "--force"}),
            "--force goes with --save|scriptwells run-document --help");
}

TEST_F(TransferOptions, ServeTakesAHome) {
  EXPECT_EQ(Serve({"serve", "--home", "/srv/home"}).home, "/srv/home");
  EXPECT_FALSE(Serve({"serve", "--home", "/srv/home"}).installHome);
  EXPECT_TRUE(Serve({"serve", "--install-home"}).installHome);
  EXPECT_EQ(Serve({"serve"}).home, "");
  EXPECT_EQ(Refusal({"serve", "--home", ""}), "--home has to name a directory|scriptwells serve --help");
}

TEST_F(TransferOptions, HelpTellsOfFiles) {
  const ParsedArguments download = ParseArguments({"download", "--help"});
  EXPECT_EQ(download.command, Command::kText);
  EXPECT_NE(download.text.find("--usid"), std::string::npos);
  EXPECT_NE(download.text.find("run --save"), std::string::npos);
  const std::string run = ParseArguments({"run", "--help"}).text;
  EXPECT_NE(run.find("-p doc=file:report.pdf"), std::string::npos);
  EXPECT_NE(run.find("--save"), std::string::npos);
  EXPECT_NE(ParseArguments({"--help"}).text.find("scriptwells download"), std::string::npos);
}

}  // namespace
}  // namespace qv::cli
