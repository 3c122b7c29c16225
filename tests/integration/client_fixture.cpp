#include "client_fixture.h"

#include <cstdio>

#include "fixtures/formaters.h"
#include "fixtures/shown_text.h"

namespace qv {
namespace {

std::string Printed(const char* format, double number) {
  char text[64];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

std::string BoolText(VARIANT_BOOL value) {
  if (value == VARIANT_TRUE) return "true";
  return value == VARIANT_FALSE ? "false" : "neither";
}

}  // namespace

std::string ValueText(const Variant& value) {
  const VariantData& data = value.Data();
  switch (value.Tag()) {
    case VT_EMPTY:
      return "VT_EMPTY";
    case VT_NULL:
      return "VT_NULL";
    case VT_I1:
      return "VT_I1 " + std::to_string(data.cVal);
    case VT_I2:
      return "VT_I2 " + std::to_string(data.iVal);
    case VT_INT:
      return "VT_INT " + std::to_string(data.intVal);
    case VT_BOOL:
      return "VT_BOOL " + BoolText(data.boolVal);
    case VT_R4:
      return "VT_R4 " + Printed("%.9g", static_cast<double>(data.fltVal));
    case VT_R8:
      return "VT_R8 " + Printed("%.17g", data.dblVal);
    case VT_BSTR:
      return "VT_BSTR " + Shown(value.Text());
    default:
      return "tag " + std::to_string(value.Tag());
  }
}

std::string OutcomeText(HRESULT code) {
  if (code == S_OK) return "ok";
  char number[16];
  std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned>(code));
  ErrorInfo info;
  if (!GetErrorInfo(&info)) return std::string(number) + " without record";
  return std::string(number) + " " + Shown(info.description);
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
  EnsureFormaters();
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
  if (code == S_OK) return ValueText(result);
  EXPECT_EQ(ValueText(result), "VT_BSTR untouched");
  return OutcomeText(code);
}

std::string ClientTest::Run(const WideString& script, NamedValues values) {
  return Run(script, ParameterList(values).get());
}

int ClientTest::ScriptsRun() {
  return Stats()["scriptsRun"].get<int>();
}

}  // namespace qv
