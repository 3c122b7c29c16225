// `scriptwells check` against the development service, whose odd answers each break one rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "fixtures/temporary_directory.h"
#include "fixtures/tls_server.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;
using Json = nlohmann::json;

// "chunked|type-lost": in the order in which they are found.
std::string RulesIn(const Json& report) {
  std::string rules;
  for (const Json& finding : report["findings"])
    rules += (rules.empty() ? "" : "|") + finding["rule"].get<std::string>();
  return rules;
}

Json StepIn(const Json& report, const std::string& name) {
  for (const Json& step : report["steps"])
    if (step["step"] == name) return step;
  ADD_FAILURE() << "no step " << name << " in " << report;
  return {};
}

std::string ResultOf(const Json& report, const std::string& step) {
  return StepIn(report, step)["result"].get<std::string>();
}

class Check : public ::testing::Test {
 protected:
  Outcome At(const std::string& odd, const std::string& options = "") const {
    return Tool("check " + service_.Url() + (odd.empty() ? "" : "/odd/" + odd) + " --user joe --json " +
                options)
        .Set("QV_REGISTRY", home_.Path("home/serve.reg"))
        .Run();
  }

  TemporaryDirectory home_;
  ServeProcess service_{"--home " + home_.Path("home")};
};

TEST_F(Check, EveryStepOfASoundServerWorks) {
  const Outcome outcome = At("");
  EXPECT_EQ(outcome.exit, 0) << outcome.err;
  const Json report = Json::parse(outcome.out);
  EXPECT_TRUE(report["usable"].get<bool>());
  EXPECT_EQ(RulesIn(report), "");
  EXPECT_EQ(report["steps"].size(), 24U);
  for (const Json& step : report["steps"])
    EXPECT_EQ(step["result"], step["step"] == "TLS" ? "not tried" : "ok") << step;
  EXPECT_EQ(service_.Count("openSessions"), 0);
}

TEST_F(Check, EachOddAnswerIsNamedByItsRule) {
  const std::pair<const char*, const char*> rows[] = {
      {"nolength", "content-length"},
      {"chunked", "chunked"},
      {"cut", "whole-body"},
      {"stall", "in-time"},
      {"stallhead", "in-time"},
      {"whitespace", "white-space"},
      {"html", "service-path"},
      {"spoil", "well-formed"},
      {"refuse2", "http-answer"},
      {"zero", "content-length"},
      {"unknown-type", "type-name|same-value"},
      {"bad-date", "value-text|same-value"},
      {"short-date", "value-text"},
      {"empty-date", "value-text"},
      {"bad-time", "value-text"},
      {"bad-duration", "value-text"},
      {"url-no-marks", "value-text"},
      {"table-whitespace", "white-space"},
      {"table-no-headers", "table-blocks"},
      {"table-no-schema", "table-blocks"},
      {"table-no-records", "table-blocks"},
      {"table-no-names", "column-names"},
      {"table-no-types", "column-names"},
      {"table-extra-cell", "cell-count"},
      {"table-missing-cell", "cell-count"},
      {"table-cut", "well-formed"},
      {"url-file", "upload-address"},
      {"upload-refused", "upload-status"},
      {"upload-drop", "http-answer"},
      {"download-no-name", "download-name"},
      {"download-name-dotdot", "download-name"},
  };
  for (const auto& [odd, rules] : rows) {
    const Outcome outcome = At(odd, "--timeout 0.5");
    EXPECT_EQ(outcome.exit, 7) << odd << outcome.out << outcome.err;
    const std::string first = rules;
    EXPECT_EQ(RulesIn(Json::parse(outcome.out)).substr(0, first.find('|')), first.substr(0, first.find('|')))
        << odd << "\n"
        << outcome.out;
  }
}

TEST_F(Check, FormsThatClientsReadBreakNoRule) {
  for (const char* odd :
       {"ns2", "status500", "latin1", "utf16", "table-sof", "table-other-type", "table-other-names"}) {
    const Outcome outcome = At(odd);
    EXPECT_EQ(outcome.exit, 0) << odd << "\n" << outcome.out;
    EXPECT_EQ(RulesIn(Json::parse(outcome.out)), "") << odd;
  }
}

TEST_F(Check, LossesAreNamedAndStopNobody) {
  const std::pair<const char*, const char*> rows[] = {{"strictxml", "references"},
                                                      {"table-unknown-type", "column-types"}};
  for (const auto& [odd, rule] : rows) {
    const Outcome outcome = At(odd);
    EXPECT_EQ(outcome.exit, 0) << odd << "\n" << outcome.out;
    EXPECT_EQ(RulesIn(Json::parse(outcome.out)), rule) << odd;
  }
}

TEST_F(Check, LaterStepsAreTriedWithASessionThatClientsDoNotGet) {
  const Json report = Json::parse(At("chunked").out);
  EXPECT_EQ(ResultOf(report, "HTTP form"), "broken");
  EXPECT_EQ(ResultOf(report, "answer form"), "ok");
  EXPECT_EQ(ResultOf(report, "value string"), "broken");
  const Json finding = report["findings"][0];
  EXPECT_EQ(finding["part"], "head");
  EXPECT_EQ(finding["found"], "\"Transfer-Encoding: chunked\"");
  EXPECT_GT(finding["offset"].get<int>(), 0);
  EXPECT_GT(finding["count"].get<int>(), 10);
  EXPECT_TRUE(finding["servers"]["node"].is_string());
}

TEST_F(Check, StepsWithoutAScriptAreNotTried) {
  const Outcome outcome =
      At("", "--fault-script '' --table-script '' --upload-script '' --download-script ''");
  EXPECT_EQ(outcome.exit, 0);
  for (const char* step : {"fault", "table", "upload", "download"})
    EXPECT_EQ(ResultOf(Json::parse(outcome.out), step), "not tried");
}

TEST_F(Check, ScriptThatServersRefuseIsAFailureAndNoRule) {
  const Outcome outcome = At("", "--language Pascal");
  EXPECT_EQ(outcome.exit, 7);
  const Json report = Json::parse(outcome.out);
  EXPECT_EQ(RulesIn(report), "");
  EXPECT_EQ(ResultOf(report, "value int"), "failed");
}

TEST_F(Check, TextForPeople) {
  const Outcome outcome = RunTool("check " + service_.Url() + "/odd/chunked --user joe");
  EXPECT_EQ(outcome.exit, 7);
  for (const char* part :
       {"HTTP form          BROKEN", "\nchunked: Answers are not sent in chunks.\n  found   Create",
        "\n  node    soap.listen(", "A client cannot work with this server: 1 rule is broken.\n"})
    EXPECT_TRUE(Holds(outcome.out, part)) << part << "\n" << outcome.out;
}

TEST_F(Check, SecretsAreNotShown) {
  for (const char* odd : {"", "whitespace", "spoil", "chunked", "strictxml", "url-file", "upload-refused"}) {
    const Outcome outcome =
        Tool("check " + service_.Url() + "/odd/" + (*odd == '\0' ? "ns2" : odd) + " --user joe")
            .Set("SCRIPTWELLS_PASSWORD", "canary<17>")
            .Set("QV_REGISTRY", home_.Path("home/serve.reg"))
            .Run();
    const std::string shown = outcome.out + outcome.err;
    EXPECT_FALSE(Holds(shown, "canary")) << shown;
    // Session ids and tickets of the service have 32 hexadecimal digits.
    std::size_t digits = 0;
    for (const char c : shown) {
      digits = std::isxdigit(static_cast<unsigned char>(c)) != 0 ? digits + 1 : 0;
      ASSERT_LT(digits, 32U) << odd << "\n" << shown;
    }
  }
}

TEST(CheckWithoutServer, SaysHowFarItGot) {
  const Outcome refused = RunTool("check http://127.0.0.1:1 --user joe --json");
  EXPECT_EQ(refused.exit, 3);
  EXPECT_EQ(ResultOf(Json::parse(refused.out), "connection"), "failed");
  const Outcome unknown = RunTool("check http://no-such-host.invalid --user joe --json");
  EXPECT_EQ(unknown.exit, 3);
  EXPECT_EQ(ResultOf(Json::parse(unknown.out), "name"), "failed");
  RunTool("check --user joe")
      .Fails(2, "no server given (URL or --server URL); try 'scriptwells check --help'");
  EXPECT_EQ(RunTool("check http://127.0.0.1:1 --trace -").exit, 2);
  EXPECT_EQ(RunTool("check --help").out.find("--trace"), std::string::npos);
}

TEST(CheckWithoutServer, CertificateIsShownAndJudged) {
  const test::TlsServer server("127.0.0.1");
  const Outcome outcome =
      RunTool("check https://127.0.0.1:" + std::to_string(server.Port()) + " --user joe --json");
  EXPECT_EQ(outcome.exit, 3);
  const Json report = Json::parse(outcome.out);
  EXPECT_EQ(RulesIn(report), "certificate");
  EXPECT_EQ(ResultOf(report, "connection"), "ok");
  EXPECT_EQ(ResultOf(report, "TLS"), "broken");
  EXPECT_TRUE(Holds(report["findings"][0]["what"].get<std::string>(), "; the server sent: "));
}

}  // namespace
}  // namespace qv::cli
