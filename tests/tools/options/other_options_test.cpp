// The options of `download`, `session`, `serve`, `registry` and `describe`.
#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

using testing::Each;

class OtherOptions : public testing::OptionsTest {
 protected:
  static void ExpectRefused(const std::vector<const char*>& lines) {
    for (const char* line : lines) EXPECT_NE(Refusal(line), "accepted") << line;
  }
};

TEST_F(OtherOptions, DownloadTakesUrlDirectoryAndSession) {
  const DownloadOptions plain = Download("download http://srv/a /tmp");
  EXPECT_EQ(plain.url, "http://srv/a");
  EXPECT_EQ(plain.directory, "/tmp");
  EXPECT_EQ(plain.usid, "");
  EXPECT_EQ(plain.server, "");
  EXPECT_FALSE(plain.json);
  EXPECT_FALSE(plain.force);
  EXPECT_EQ(Download("download http://srv/a").directory, "");
  EXPECT_TRUE(Download("download u --force").force);
  const DownloadOptions download = Download(
      "download u --server https://h --proxy p:1 --user u --replica r --timeout 1.5 --connect-timeout 0 "
      "--password-file pw --ca-file ca.pem --json");
  EXPECT_EQ(download.server, "https://h");
  EXPECT_EQ(download.proxy, "p:1");
  EXPECT_EQ(download.user, "u");
  EXPECT_EQ(download.replica, "r");
  EXPECT_EQ(download.timeoutSeconds, 1.5);
  EXPECT_EQ(download.connectTimeoutSeconds, 0);
  EXPECT_EQ(download.passwordFile, "pw");
  EXPECT_EQ(download.caFile, "ca.pem");
  EXPECT_TRUE(download.json);
  EXPECT_TRUE(Parsed(Command::kDownload, "download u --json").json);
  Set("SERVER", "http://usual");
  Set("USID", "abc");
  EXPECT_EQ(Download("download u").server, "http://usual");
  EXPECT_EQ(Download("download u").usid, "abc");
  EXPECT_EQ(Download("download u --usid x").usid, "x");
}

TEST_F(OtherOptions, DownloadIsChecked) {
  const std::pair<const char*, const char*> rows[] = {
      {"download", "no file given (URL)"},
      {"download u ''", "DIR is empty; . is the current one"},
      {"download u --usid ''", "--usid must name a session"},
      {"download u --usid x --password-stdin", "a session that is open already takes no password (--usid)"},
      {"download u --timeout -1", "--timeout must be between 0 and 86400 seconds"}};
  for (const auto& [line, message] : rows)
    EXPECT_EQ(Refusal(line), std::string(message) + "|scriptwells download --help");
  ExpectRefused({"download u d e", "download u --local"});
}

TEST_F(OtherOptions, SessionTakesWhatItsVerbNeeds) {
  EXPECT_EQ(Refusal("session"), "no session command given (open or close)|scriptwells session --help");
  EXPECT_EQ(Refusal("session open"), "no server given (--server URL)|scriptwells session open --help");
  EXPECT_EQ(Refusal("session close --server h"),
            "no session given (--usid ID or SCRIPTWELLS_USID)|scriptwells session close --help");
  Set("USID", "abc");
  const SessionCommandOptions open =
      Session("session open --server http://h --user u --password-stdin --json");
  EXPECT_EQ(open.verb, SessionVerb::kOpen);
  EXPECT_EQ(open.server, "http://h");
  EXPECT_EQ(open.user, "u");
  EXPECT_TRUE(open.passwordFromInput);
  EXPECT_TRUE(open.json);
  EXPECT_EQ(open.usid, "");
  ExpectRefused({"session open --server http://h --usid x"});
  const SessionCommandOptions close = Session("session close --server http://h --usid x");
  EXPECT_EQ(close.verb, SessionVerb::kClose);
  EXPECT_EQ(close.usid, "x");
  Set("SERVER", "http://usual");
  EXPECT_EQ(Session("session close").usid, "abc");
  EXPECT_EQ(Session("session close").server, "http://usual");
  ExpectRefused({"session close --user x"});
}

TEST_F(OtherOptions, ServeTakesItsOptions) {
  const ServeOptions serve = Serve(
      "serve --host 0.0.0.0 --port 8080 --users-file u --script-timeout 2.5 --script-memory 64 "
      "--name Tunnel.example --name build-box --home /srv/home");
  EXPECT_EQ(serve.host, "0.0.0.0");
  EXPECT_EQ(serve.port, 8080);
  EXPECT_EQ(serve.usersFile, "u");
  EXPECT_EQ(serve.scriptTimeoutSeconds, 2.5);
  EXPECT_EQ(serve.scriptMemoryMegabytes, 64);
  EXPECT_EQ(serve.names, (testing::Words{"Tunnel.example", "build-box"}));
  EXPECT_EQ(serve.home, "/srv/home");
  EXPECT_FALSE(serve.installHome);
  EXPECT_TRUE(Serve("serve --install-home").installHome);
  const ServeOptions usual = Serve("serve");
  EXPECT_EQ(usual.host, "127.0.0.1");
  EXPECT_EQ(usual.names, testing::Words());
  EXPECT_EQ(usual.port, 0);
  EXPECT_EQ(usual.scriptTimeoutSeconds, 5);
  EXPECT_EQ(usual.scriptMemoryMegabytes, 256);
  EXPECT_EQ(usual.home, "");
  EXPECT_FALSE(usual.json || usual.control || usual.untilEof);
}

TEST_F(OtherOptions, ServeTakesWhatTestsNeed) {
  const ParsedArguments parsed = Parsed(Command::kServe, "serve --json --control --until-eof");
  EXPECT_TRUE(parsed.json && parsed.serve.json && parsed.serve.control && parsed.serve.untilEof);
  EXPECT_FALSE(Serve("serve --json").control);
  EXPECT_EQ(Refusal("serve --control"),
            "--control needs --json, which prints the secret address|scriptwells serve --help");
}

TEST_F(OtherOptions, ServeTakesOddAnswers) {
  EXPECT_EQ(Serve("serve --odd cut,n=2 --odd stall,p=0.1,seed=7").odds,
            (testing::Words{"cut,n=2", "stall,p=0.1,seed=7"}));
}

TEST_F(OtherOptions, ServeIsChecked) {
  for (const std::string& name : Each("|http://h|h:80|h/|a b|::1|h\n"))
    EXPECT_EQ(Refusal("serve --name", {name}),
              "--name must be a host name, without http:// and without a port|scriptwells serve --help")
        << name;
  for (const char* time : {"0", "nan"})
    EXPECT_EQ(Refusal("serve --script-timeout", {time}),
              "--script-timeout must be between 0.001 and 86400 seconds|scriptwells serve --help");
  EXPECT_EQ(Refusal("serve --home ''"), "--home must name a directory|scriptwells serve --help");
  ExpectRefused({"serve --port 65536", "serve --port -1", "serve --script-memory 0"});
}

TEST_F(OtherOptions, RegistryTakesKeyAndValue) {
  const RegistryOptions get = Registry("registry get home");
  EXPECT_EQ(get.verb, RegistryVerb::kGet);
  EXPECT_EQ(get.key, "home");
  EXPECT_FALSE(get.json);
  const RegistryOptions set = Registry("registry set A\\B '/a b' --json");
  EXPECT_EQ(set.verb, RegistryVerb::kSet);
  EXPECT_EQ(set.key, "A\\B");
  EXPECT_EQ(set.value, "/a b");
  EXPECT_TRUE(set.json);
  EXPECT_EQ(Registry("registry remove x").verb, RegistryVerb::kRemove);
  EXPECT_EQ(Registry("registry remove x").key, "x");
  EXPECT_EQ(Registry("registry list").verb, RegistryVerb::kList);
  EXPECT_EQ(Registry("registry --json list").verb, RegistryVerb::kList);
  EXPECT_TRUE(Registry("registry --json list").json);
  EXPECT_TRUE(Registry("registry --json get a").json);
  EXPECT_FALSE(Registry("registry list").json);
  EXPECT_EQ(Registry("registry set a ''").value, "");
  EXPECT_EQ(Registry("registry set a [b,c]").value, "[b,c]");
  EXPECT_EQ(Registry("registry set -- a -b").value, "-b");
  EXPECT_EQ(Registry("registry set --json -- A\\B -5").value, "-5");
}

TEST_F(OtherOptions, WrongVariableFailsOnlyCommandsThatReadIt) {
  Set("TIMEOUT", "soon");
  EXPECT_EQ(Registry("registry list").verb, RegistryVerb::kList);
  EXPECT_EQ(Config("config path").verb, ConfigVerb::kPath);
  EXPECT_EQ(Serve("serve").port, 0);
  for (const char* line : {"run --local -e 1", "session open --server http://h"})
    EXPECT_NE(Refusal(line), "accepted") << line;
}

TEST_F(OtherOptions, RegistryIsChecked) {
  EXPECT_EQ(Refusal("registry"),
            "no registry command given (get, set, remove or list)|scriptwells registry --help");
  ExpectRefused({"registry get", "registry get a b", "registry set a", "registry set a b c",
                 "registry remove", "registry list a", "registry walk", "registry get a --colour",
                 "registry get a list"});
  const std::pair<const char*, const char*> rows[] = {{"registry get", "registry get"},
                                                      {"registry set a", "registry set"},
                                                      {"registry remove --colour", "registry remove"},
                                                      {"registry list a", "registry list"},
                                                      {"registry --colour", "registry"}};
  for (const auto& [line, command] : rows)
    EXPECT_EQ(Parsed(Command::kUsageError, line).hint, std::string("scriptwells ") + command + " --help");
}

TEST_F(OtherOptions, DescribeTakesAnObject) {
  const ParsedArguments parsed = Parsed(Command::kDescribe, "describe Parameters.Add --json");
  EXPECT_EQ(parsed.describe.object, "Parameters.Add");
  EXPECT_TRUE(parsed.describe.json);
  EXPECT_TRUE(parsed.json);
  EXPECT_FALSE(parsed.describe.markdown);
  EXPECT_EQ(Parsed(Command::kDescribe, "describe").describe.object, "");
  EXPECT_TRUE(Parsed(Command::kDescribe, "describe --markdown").describe.markdown);
  ExpectRefused({"describe --markdown --json", "describe a b"});
  const std::pair<const char*, const char*> rows[] = {
      {"''", "OBJECT is empty; leave it out to see all objects"},
      {".Add", "OBJECT names no object before its '.'"},
      {".", "OBJECT names no object before its '.'"},
      {"Parameters.", "OBJECT names no member after its '.'"}};
  for (const auto& [object, message] : rows)
    EXPECT_EQ(Refusal(std::string("describe ") + object),
              std::string(message) + "|scriptwells describe --help");
}

}  // namespace
}  // namespace qv::cli
