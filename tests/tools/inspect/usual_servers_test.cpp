// Servers made with gSOAP, PHP's SoapServer and npm's soap: `check` names what keeps them from working, and
// after the changes that it names they work.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "fixtures/output_of.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/words.h"

namespace qv::cli {
namespace {

using testing::Holds;
using Json = nlohmann::json;

std::string Sources() {
  return std::string(SOURCE_FOLDER) + "/tests/tools/servers/";
}

bool Has(const std::string& command) {
  return OutputOf("command -v " + command).exit == 0;
}

// A program that prints its port in its first line, as long as this object exists.
class ServerProcess {
 public:
  // NOLINTNEXTLINE(cert-env33-c): the tests' own commands
  explicit ServerProcess(const std::string& command) : pipe_(::popen(("exec " + command).c_str(), "r")) {
    char line[64] = {};
    if (pipe_ != nullptr && std::fgets(line, sizeof line, pipe_) != nullptr)
      pid_ = static_cast<int>(std::strtol(line, nullptr, 10));
    if (pipe_ != nullptr && std::fgets(line, sizeof line, pipe_) != nullptr)
      port_ = static_cast<int>(std::strtol(line, nullptr, 10));
  }
  ~ServerProcess() {
    if (pid_ > 0) static_cast<void>(OutputOf("kill " + std::to_string(pid_)));
    if (pipe_ != nullptr) ::pclose(pipe_);
  }
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  std::string Url() const { return "http://127.0.0.1:" + std::to_string(port_); }

 private:
  std::FILE* pipe_;
  int pid_ = 0;
  int port_ = 0;
};

CommandOutput RunAt(const ServerProcess& server, const std::string& line) {
  return OutputOf("env -i SCRIPTWELLS_PASSWORD=p QV_REGISTRY=/dev/null timeout 60 " SCRIPTWELLS_PROGRAM " " +
                  line + " --user joe --server " + server.Url() + " 2>&1 </dev/null");
}

Json CheckAt(const ServerProcess& server, int exit) {
  const CommandOutput outcome =
      RunAt(server, "check --json --table-script table --upload-script '' --download-script ''");
  EXPECT_EQ(outcome.exit, exit) << outcome.text;
  return Json::parse(outcome.text);
}

// "answer-name|chunked": sorted.
std::string RulesIn(const Json& report) {
  std::vector<std::string> rules;
  for (const Json& finding : report["findings"]) rules.push_back(finding["rule"]);
  std::sort(rules.begin(), rules.end());
  std::string text;
  for (const std::string& rule : rules) text += (text.empty() ? "" : "|") + rule;
  return text;
}

// A session, a value, a table and a fault.
void ExpectWorks(const ServerProcess& server) {
  const Json report = CheckAt(server, 0);
  EXPECT_EQ(RulesIn(report), "references");
  EXPECT_EQ(RunAt(server, "run -e parameters.value -p value=int:5").text, "5\n");
  EXPECT_EQ(RunAt(server, "run -e table -o csv").text, "city,people\r\nRome,2748109\r\n");
  const CommandOutput fault = RunAt(server, "run -e other");
  EXPECT_EQ(fault.exit, 1);
  EXPECT_TRUE(Holds(fault.text, "no such script")) << fault.text;
}

TEST(UsualServers, Php) {
  if (OutputOf("php -r 'exit(class_exists(\"SoapServer\") ? 0 : 1);' 2>&1").exit != 0)
    GTEST_SKIP() << "NOT RUN: there is no PHP with SoapServer (packages php-cli, php-soap)";
  // PHP's server names its port in a log, so a free one is found first.
  const std::string start =
      "sh -c 'port=$(php -r \"\\$s = stream_socket_server(\\\"tcp://127.0.0.1:0\\\"); "
      "echo explode(\\\":\\\", stream_socket_get_name(\\$s, false))[1];\"); echo $$; "
      "(for i in 1 2 3 4 5 6 7 8 9 10; do sleep 0.2; php -r \"exit(@fsockopen(\\\"127.0.0.1\\\", $port) ? 0 "
      ": 1);\" "
      "&& break; done; echo $port) & exec php -S 127.0.0.1:$port " +
      Sources() + "soap_server.php 2>/dev/null'";
  const ServerProcess plain(start);
  EXPECT_EQ(RulesIn(CheckAt(plain, 7)), "answer-name|envelope-prefix|fault-prefix|type-name|value-text");
  const ServerProcess mended("env QV_MENDED=1 " + start);
  ExpectWorks(mended);
}

TEST(UsualServers, Node) {
  if (!Has("node") || OutputOf("test -d " SOAP_MODULES "/soap").exit != 0)
    GTEST_SKIP() << "NOT RUN: there is no node, or no soap in " SOAP_MODULES
                    " (the tests of the development service fetch it)";
  const std::string start = "env NODE_PATH=" SOAP_MODULES " node " + Sources() + "node_server.js";
  const ServerProcess plain(start);
  EXPECT_EQ(RulesIn(CheckAt(plain, 7)), "answer-name|chunked|type-attribute");
  const ServerProcess mended("env QV_MENDED=1 " + start.substr(4));
  ExpectWorks(mended);
}

// Builds gSOAP's server in a directory, and returns the command that starts it; empty with a failure.
std::string BuildGsoap(const TemporaryDirectory& directory, bool isMended) {
  const std::string mend = isMended
                               ? R"(s/\bsw__/NS2__/g; s/^\/\/gsoap sw /\/\/gsoap NS2 /; s/^\/\/mended //)"
                               : "/^\\/\\/mended/d";
  const CommandOutput built =
      OutputOf("cd " + directory.Path() + " && { sed '" + mend + "' " + Sources() +
               "gsoap_server.gsoap > service.h && soapcpp2 -S -L -x -c++11 service.h && g++ -std=c++17 -I. " +
               (isMended ? "-DMENDED " : "") + Sources() +
               "gsoap_server.cpp soapC.cpp soapServer.cpp -lgsoap++ -o server; } 2>&1");
  EXPECT_EQ(built.exit, 0) << built.text;
  return "sh -c 'echo $$; exec " + directory.Path("server") + "'";
}

TEST(UsualServers, Gsoap) {
  if (!Has("soapcpp2") || !Has("g++") || OutputOf("echo '#include <stdsoap2.h>' | g++ -E - 2>&1").exit != 0)
    GTEST_SKIP() << "NOT RUN: there is no gSOAP (packages gsoap, libgsoap-dev)";
  const TemporaryDirectory plainFiles;
  const ServerProcess plain(BuildGsoap(plainFiles, false));
  EXPECT_EQ(RulesIn(CheckAt(plain, 7)),
            "answer-name|envelope-prefix|fault-prefix|type-attribute|type-lost|type-name");
  const TemporaryDirectory mendedFiles;
  const ServerProcess mended(BuildGsoap(mendedFiles, true));
  ExpectWorks(mended);
}

}  // namespace
}  // namespace qv::cli
