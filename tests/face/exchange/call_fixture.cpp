#include "tests/face/exchange/call_fixture.h"

#include <utility>

#include "recordlist/register_formaters.h"

namespace scriptwells::test {

namespace {

using qv::FromUtf8;

constexpr char kUploadScript[] =
    "<Scriptwell Language=\"JavaScript\" "
    "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>upload()</Code></"
    "Scriptwell>";

std::string Enveloped(const std::string& body) {
  return "<soap:Envelope><soap:Body>" + body + "</soap:Body></soap:Envelope>";
}

Outcome Failed(const char* name, const Error& error) {
  return {std::string(name) + " " + ToString(error.phase()) + ": " + error.message(), error.details()};
}

std::string Escaped(const std::string& xml) {
  std::string text;
  for (const char c : xml) text += c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
  return text;
}

}  // namespace

Outcome OutcomeOf(const std::function<void()>& act) {
  try {
    act();
    return {"ok"};
  } catch (const ConnectionError& error) {
    return Failed("ConnectionError", error);
  } catch (const TimeoutError& error) {
    return Failed("TimeoutError", error);
  } catch (const SessionError& error) {
    return Failed("SessionError", error);
  } catch (const ScriptError& error) {
    return Failed("ScriptError", error);
  } catch (const CancelledError& error) {
    return Failed("CancelledError", error);
  } catch (const Error& error) {
    return Failed("Error", error);
  }
}

std::string SessionAnswer(const std::string& id) {
  return qv::test::RawAnswerText(Enveloped("<CreateUserSessionResponse><CreateUserSessionResult>" + id +
                                           "</CreateUserSessionResult></CreateUserSessionResponse>"));
}

std::string ScriptAnswer(const std::string& escapedText) {
  return qv::test::RawAnswerText(
      Enveloped("<ExecuteResponse><r xsi:type=\"xsd:string\">" + escapedText + "</r></ExecuteResponse>"));
}

std::string FaultAnswer(const std::string& errorObject) {
  return qv::test::RawAnswerText(Enveloped("<soap:Fault><faultstring>" +
                                           Escaped("<ErrorObject>" + errorObject + "</ErrorObject>") +
                                           "</faultstring></soap:Fault>"));
}

std::string StatusAnswer(const std::string& status, const std::string& body) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string FileAnswer(const std::string& name, const std::string& body) {
  return qv::test::RawAnswerText(body, "Content-Disposition: attachment; filename=" + name + "\r\n");
}

CallTest::CallTest() {
  qv::FillFormaters();
  settings_.http.idleTimeout = 10'000;
  UseServer(server_.Url());
}

CallTest::~CallTest() {
  model_.reset();
  qv::CloseKeptConnections();
}

void CallTest::UseServer(const std::string& url, const std::string& proxy) {
  const qv::IQvClientServicesPtr host = qv::CreateSimpleHost({u"nobody"});
  model_ = qv::CreateConnectionModel(FromUtf8(url), FromUtf8(proxy), host.get());
  EXPECT_EQ(model_->SetUSID(u"session-1"), qv::S_OK);
}

void CallTest::Answer(const std::vector<std::string>& answers) {
  qv::test::RawScript script;
  for (const std::string& answer : answers) script.ReadRequest().Write(answer);
  server_.Expect(script);
}

Outcome CallTest::Observed(Purpose purpose, const std::function<qv::HRESULT()>& act,
                           const std::string& document) {
  return OutcomeOf([&] {
    ObservedCall call(settings_, purpose);
    try {
      qv::ThrowIfFailed(act());
    } catch (const qv::_com_error& error) {
      couldNotConnect_ = call.CouldNotConnect();
      call.Explain(error, document);
    }
    couldNotConnect_ = call.CouldNotConnect();
    call.Finish();
    answerText_ = call.AnswerText();
  });
}

std::function<qv::HRESULT()> CallTest::OpenCall() {
  return [this] { return model_->CreateUserSession(u"Username=joe;Password=secret;"); };
}

std::function<qv::HRESULT()> CallTest::RunCall(const std::vector<std::string>& files) {
  settings_.files = files.size();
  return [this, files] {
    qv::IParametersPtr list;
    if (!files.empty()) list = qv::CreateParameters();
    for (const std::string& file : files)
      qv::ThrowIfFailed(
          list->Add(u"f", qv::Variant::FromObject(qv::CreateAttachedFile(FromUtf8(file)).get()), nullptr));
    qv::Variant answer;
    return model_->Execute(u"JavaScript", u"1", list.get(), &answer);
  };
}

Outcome CallTest::Run(const std::vector<std::string>& files) {
  return Observed(Purpose::kExecute, RunCall(files));
}

Outcome CallTest::Download(const std::string& url) {
  return Observed(Purpose::kDownload, [&] {
    qv::WideString path;
    return model_->DownloadFile(FromUtf8(url), FromUtf8(folder_.Path()), &path);
  });
}

Outcome CallTest::Close() {
  return Observed(Purpose::kCloseSession, [&] { return model_->CloseUserSession(); });
}

void CallTest::Listen() {
  settings_.listener = [this](const Exchange& exchange) { exchanges_.push_back(exchange); };
}

void CallTest::MakeHome() {
  folder_.Write("home/ClientScripts/UploadScript.xml", kUploadScript);
  folder_.Write("home/ClientScripts/UploadScriptWithoutTicketdId.xml", kUploadScript);
  settings_.home = folder_.Path("home");
}

}  // namespace scriptwells::test
