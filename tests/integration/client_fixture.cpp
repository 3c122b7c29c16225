#include "client_fixture.h"

#include "recordlist/register_formaters.h"

namespace qv {

std::string OutcomeText(HRESULT code) {
  if (code == S_OK) return "ok";
  ErrorInfo info;
  return ShownCode(code) + (GetErrorInfo(&info) ? " " + Shown(info.description) : " without record");
}

IParametersPtr ParameterList(NamedValues values) {
  IParametersPtr list = CreateParameters();
  for (const auto& [key, value] : values) ThrowIfFailed(list->Add(key, value, nullptr));
  return list;
}

void ClientTest::SetUp() {
  SetThreadHttpOptions(HttpOptions(), nullptr);
  devservice::ServiceOptions options = devservice::testing::TestOptions();
  options.stallTime = std::chrono::seconds(1);
  StartWith(options);
  host_ = CreateSimpleHost({u"nobody"});
  model_ = CreateConnectionModel(FromUtf8(service_->Url()), u"", host_.get());
  FillFormaters();
}

void ClientTest::TearDown() {
  model_.reset();
  CloseKeptConnections();
  SetThreadHttpOptions(HttpOptions(), nullptr);
}

std::string ClientTest::SetServer(const WideString& serverName, const WideString& proxy) {
  const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model_);
  return OutcomeText(raw->SetServer(serverName, proxy));
}

void ClientTest::Use(const std::string& prefix) {
  EXPECT_EQ(SetServer(FromUtf8(service_->Url() + prefix)), "ok");
}

std::string ClientTest::HostKnows() {
  const ISimpleHostPtr host = As<ISimpleHost>(host_);
  SimpleHostSession session;
  EXPECT_EQ(host->GetSession(&session), S_OK);
  return std::string(session.open ? "open " : "closed ") + Shown(session.usid) + " " +
         Shown(session.userName) + " " + Shown(session.databaseId) + " " + Shown(session.replicaId);
}

std::string ClientTest::Open(const WideString& connectionString) {
  return OutcomeText(model_->CreateUserSession(connectionString));
}

std::string ClientTest::Close() {
  return OutcomeText(model_->CloseUserSession());
}

std::string ClientTest::Run(const WideString& script, IParameters* parameters, const WideString& language) {
  Variant result = Variant::FromString(u"untouched");
  const HRESULT code = model_->Execute(language, script, parameters, &result);
  if (code == S_OK) return ShownValue(result);
  EXPECT_EQ(ShownValue(result), "VT_BSTR untouched");
  return OutcomeText(code);
}

std::string ClientTest::Run(const WideString& script, NamedValues values) {
  return Run(script, ParameterList(values).get());
}

void ClientTest::ExpectRuns(std::initializer_list<ScriptRow> rows) {
  for (const ScriptRow& row : rows) {
    std::string outcome = Run(row.script);
    const std::string expected = row.outcome;
    const std::size_t end = expected.rfind("...");
    if (end != std::string::npos) outcome = outcome.substr(0, end) + "...";
    EXPECT_EQ(outcome, expected) << Shown(row.script);
  }
}

void ClientTest::UseLargeService() {
  devservice::ServiceOptions options = devservice::testing::TestOptions();
  options.scriptMemoryLimit = std::size_t{2} << 30;
  options.scriptTimeLimit = std::chrono::seconds(60);
  StartWith(options);
  Use();
  ASSERT_EQ(Open(), "ok");
}

int ClientTest::ScriptsRun() {
  return Stats()["scriptsRun"].get<int>();
}

}  // namespace qv
