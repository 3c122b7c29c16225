// Calls of the interfaces below, observed, with servers that do what a test says.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "face/exchange/observed_call.h"
#include "fixtures/environment.h"
#include "fixtures/raw_server.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/qvscriptwells.h"
#include "scriptwells/error.h"

namespace scriptwells::test {

// How a call ended.
struct Outcome {
  std::string shown;  // "ok", or "TimeoutError wait: message"
  ErrorDetails details{};
};
Outcome OutcomeOf(const std::function<void()>& act);

// Answers of a server.
std::string SessionAnswer(const std::string& id);
std::string ScriptAnswer(const std::string& escapedText);
// "<errorCode>5</errorCode><description>why</description>" and so on.
std::string FaultAnswer(const std::string& errorObject);
std::string StatusAnswer(const std::string& status, const std::string& body = "");
std::string FileAnswer(const std::string& name, const std::string& body);

class CallTest : public ::testing::Test {
 protected:
  CallTest();
  ~CallTest() override;

  // The calls go to this server from now on; at first to server_.
  void UseServer(const std::string& url, const std::string& proxy = "");
  // One connection that gives these answers, in order.
  void Answer(const std::vector<std::string>& answers);

  Outcome Open() { return Observed(Purpose::kOpenSession, OpenCall()); }
  // A script with these files as parameters "f".
  Outcome Run(const std::vector<std::string>& files = {});
  Outcome Download(const std::string& url);
  Outcome Close();
  Outcome Observed(Purpose purpose, const std::function<qv::HRESULT()>& act,
                   const std::string& document = "");
  std::function<qv::HRESULT()> OpenCall();
  std::function<qv::HRESULT()> RunCall(const std::vector<std::string>& files = {});

  // A listener that collects in `exchanges_`.
  void Listen();
  // Both upload scripts below a new home directory, which is used.
  void MakeHome();

  CallSettings settings_;
  std::vector<Exchange> exchanges_;
  bool couldNotConnect_ = false;
  std::string answerText_;
  qv::TemporaryDirectory folder_;
  qv::IConnectionModelPtr model_;
  qv::EnvironmentVariable store_{"SSL_CERT_FILE", nullptr};
  qv::EnvironmentVariable bundle_{"CURL_CA_BUNDLE", nullptr};
  qv::test::RawServer server_;  // last, so that it ends first
};

}  // namespace scriptwells::test
