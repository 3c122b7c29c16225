// Sessions, scripts and faults through the public headers, against the development service.
#include "client_fixture.h"
#include "fixtures/thrown.h"

namespace qv {
namespace {

constexpr char kNoSoapCall[] = "0x80020009 Cannot create a soap call.";
constexpr char kNoSession[] = "0x80020009 Session does not exist.";
constexpr char kNoSuchSession[] = "0x800403EC The session does not exist on this service.";

class ServiceCalls : public ClientTest {
 protected:
  // What the service counted, as "connections requests creates closes executes faults scripts". The
  // connection and the request that ask are not counted.
  std::string Counts() {
    ++asked_;
    const nlohmann::json stats = Stats();
    const nlohmann::json& actions = stats["actions"];
    return std::to_string(stats["connections"].get<int>() - asked_) + " " +
           std::to_string(stats["requests"].get<int>() - asked_) + " " + actions["CreateUserSession"].dump() +
           " " + actions["CloseUserSession"].dump() + " " + actions["Execute"].dump() + " " +
           stats["faults"].dump() + " " + stats["scriptsRun"].dump();
  }

  int asked_ = 0;
};

TEST_F(ServiceCalls, SessionOpensRunsAndCloses) {
  EXPECT_EQ(Open(u"DbReplicationId=r7;Username=joe;Password=secret;"), "ok");
  EXPECT_EQ(Stats()["openSessions"], 1);
  EXPECT_EQ(Run(u"6 * 7"), "VT_INT 42");
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(Stats()["openSessions"], 0);
}

TEST_F(ServiceCalls, HostHearsOfTheSession) {
  EXPECT_EQ(HostKnows(), "closed <null> <null> <null> <null>");
  ASSERT_EQ(Open(u"DbReplicationId=r7;Username=joe;Password=secret;"), "ok");
  const std::string known = HostKnows();
  ASSERT_EQ(known.size(), std::string("open  joe <null> r7").size() + 32) << known;
  EXPECT_EQ(known.substr(0, 5), "open ");
  EXPECT_EQ(known.substr(5, 32).find_first_not_of("0123456789abcdef"), std::string::npos) << known;
  EXPECT_EQ(known.substr(37), " joe <null> r7");
  ASSERT_EQ(Close(), "ok");
  EXPECT_EQ(HostKnows().substr(0, 7), "closed ");
}

TEST_F(ServiceCalls, ScriptWithoutSessionSendsNothing) {
  EXPECT_EQ(Run(u"1"), kNoSession);
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(Counts(), "0 0 0 0 0 0 0");
}

TEST_F(ServiceCalls, ClosedSessionIsNoSessionAndCanBeOpenedAgain) {
  ASSERT_EQ(Open(), "ok");
  ASSERT_EQ(Close(), "ok");
  EXPECT_EQ(Run(u"1"), kNoSession);
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(Counts(), "1 2 1 1 0 0 0");
  ASSERT_EQ(Open(), "ok");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

// The earlier one is not closed.
TEST_F(ServiceCalls, SecondSessionTakesThePlaceOfTheFirst) {
  ASSERT_EQ(Open(), "ok");
  const std::string first = HostKnows();
  ASSERT_EQ(Open(), "ok");
  EXPECT_NE(HostKnows(), first);
  EXPECT_EQ(Stats()["openSessions"], 2);
  ASSERT_EQ(Close(), "ok");
  EXPECT_EQ(Stats()["openSessions"], 1);
}

TEST_F(ServiceCalls, EachCallIsOneRequestOnOneConnection) {
  ASSERT_EQ(Open(), "ok");
  for (int i = 0; i < 50; ++i) ASSERT_EQ(Run(u"7"), "VT_INT 7");
  ASSERT_EQ(Close(), "ok");
  EXPECT_EQ(Counts(), "1 52 1 1 50 0 50");
}

TEST_F(ServiceCalls, ConnectionOutlivesFaults) {
  ASSERT_EQ(Open(), "ok");
  for (int i = 0; i < 5; ++i) ASSERT_EQ(Run(u"throw 'no'"), "0x800403F2 no");
  EXPECT_EQ(Run(u"7"), "VT_INT 7");
  EXPECT_EQ(Counts(), "1 7 1 0 6 5 6");
}

TEST_F(ServiceCalls, WrongPasswordIsAFault) {
  devservice::ServiceOptions options = devservice::testing::TestOptions();
  options.users = {{"joe", "secret"}};
  StartWith(options);
  Use();
  EXPECT_EQ(Open(u"Username=joe;Password=wrong;"), "0x800403EB The user name or the password is wrong.");
  EXPECT_EQ(HostKnows(), "closed <null> <null> <null> <null>");
  EXPECT_EQ(Run(u"1"), kNoSession);
  EXPECT_EQ(Open(u"Username=joe;Password=secret;"), "ok");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(ServiceCalls, FailedOpeningKeepsTheSessionThatIsThere) {
  ASSERT_EQ(Open(), "ok");
  const std::string known = HostKnows();
  EXPECT_EQ(Open(u"Password=no name;").substr(0, 11), "0x800403EB ");
  EXPECT_EQ(HostKnows(), known);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(ServiceCalls, OpeningWithoutHostServicesFailsButHasASession) {
  const IConnectionModelPtr alone = CreateConnectionModel(FromUtf8(service_->Url()), u"", nullptr);
  EXPECT_EQ(OutcomeText(alone->CreateUserSession(u"Username=joe;")).substr(0, 10), "0x80004003");
  Variant result;
  EXPECT_EQ(OutcomeText(alone->Execute(u"JavaScript", u"5", nullptr, &result)), "ok");
  EXPECT_EQ(ShownValue(result), "VT_INT 5");
  EXPECT_EQ(OutcomeText(alone->CloseUserSession()).substr(0, 10), "0x80004003");
  EXPECT_EQ(OutcomeText(alone->CloseUserSession()), "ok");
  EXPECT_EQ(Counts(), "1 3 1 1 1 0 1");
}

TEST_F(ServiceCalls, AdoptedSessionRuns) {
  ASSERT_EQ(Open(), "ok");
  const WideString id = FromUtf8(HostKnows().substr(5, 32));
  const IConnectionModelPtr other = CreateConnectionModel(FromUtf8(service_->Url()), u"", host_.get());
  ASSERT_EQ(other->SetUSID(id), S_OK);
  Variant result;
  EXPECT_EQ(OutcomeText(other->Execute(u"JavaScript", u"5", nullptr, &result)), "ok");
  EXPECT_EQ(ShownValue(result), "VT_INT 5");
}

TEST_F(ServiceCalls, UnknownSessionIsAFault) {
  ASSERT_EQ(model_->SetUSID(u"bogus"), S_OK);
  EXPECT_EQ(Run(u"1"), kNoSuchSession);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Close(), kNoSuchSession) << "a close can be repeated";
  EXPECT_EQ(Counts(), "1 3 0 2 1 3 0");
}

TEST_F(ServiceCalls, LineEndsInASessionIdStayInsideTheBody) {
  for (const char16_t* id : {u"a\r\nX-Injected: 1\r\n\r\n", u"</usid><b&\"'"}) {
    ASSERT_EQ(model_->SetUSID(id), S_OK);
    EXPECT_EQ(Run(u"1"), kNoSuchSession);
  }
  EXPECT_EQ(Counts(), "1 2 0 0 2 2 0");
}

TEST_F(ServiceCalls, FaultOfAScriptComesWithItsCodeAndMessage) {
  ASSERT_EQ(Open(), "ok");
  ExpectRuns({
      {u"throw new ScriptError(5, 'five')", "0x80040005 five"},
      {u"throw new ScriptError(65536, 'many bits')", "0x80050000 many bits"},
      {u"throw new ScriptError(0, 'no number')", "0x80020009 no number"},
      {u"throw new Error('a<b>&amp;\"c\"')", "0x800403F2 a<b>&amp;\"c\" (line 1)"},
      {u"throw '\\u00e9\\ud83d\\ude00'", R"(0x800403F2 \u00E9\uD83D\uDE00)"},
      {u"throw '</description><errorCode>7</errorCode></ErrorObject>'",
       "0x800403F2 </description><errorCode>7</errorCode></ErrorObject>"},
      {u"1 +", "0x800403F3 ..."},
      {u"({})", "0x800403F4 ..."},
  });
}

TEST_F(ServiceCalls, UnknownLanguageIsAFault) {
  ASSERT_EQ(Open(), "ok");
  EXPECT_EQ(Run(u"1", nullptr, u"VBScript"),
            "0x800403EF The script language \"VBScript\" is not known; \"JavaScript\" is.");
  EXPECT_EQ(Run(u"1", nullptr, u"").substr(0, 11), "0x800403EF ");
  EXPECT_EQ(Run(u"1", nullptr, u"javascript"), "VT_INT 1");
}

// A language is not escaped inside the script document, so that this one reaches the service broken.
TEST_F(ServiceCalls, QuoteInALanguageBreaksTheScriptDocument) {
  ASSERT_EQ(Open(), "ok");
  EXPECT_EQ(Run(u"1", nullptr, u"Java\"Script").substr(0, 11), "0x800403EE ");
  EXPECT_EQ(ScriptsRun(), 0);
}

TEST_F(ServiceCalls, MarkupInAScriptStaysText) {
  ASSERT_EQ(Open(), "ok");
  ExpectRuns({
      {u"'</Code></Scriptwell>'", "VT_BSTR </Code></Scriptwell>"},
      {u"']]>' + \"<![CDATA[\"", "VT_BSTR ]]><![CDATA["},
      {u"'&lt;&#65;&amp;amp;'", "VT_BSTR &lt;&#65;&amp;amp;"},
      {u"1 < 2 && 3 > 2", "VT_BOOL -1"},
      {u"'\u00E9\U0001F600\uFFFD'", R"(VT_BSTR \u00E9\uD83D\uDE00\uFFFD)"},
      {u"// a comment\r\n'line two'", "VT_BSTR line two"},
      // A script ends at its first null unit.
      {WideString(std::u16string_view(u"1 + 1\0 + 40", 11)), "VT_INT 2"},
  });
}

TEST_F(ServiceCalls, ScriptOfTwentyMegabytesRuns) {
  UseLargeService();
  // NOLINTNEXTLINE(bugprone-string-constructor): it is that long
  const std::u16string script = u"'" + std::u16string(20'000'000, u'x') + u"'.length";
  EXPECT_EQ(Run(WideString(script)), "VT_INT 20000000");
}

// Each "<" takes eight bytes on its way: more than the service reads, which answers with a status and no
// body.
TEST_F(ServiceCalls, ScriptBeyondTheServicesLimitIsAnHttpProblem) {
  ASSERT_EQ(Open(), "ok");
  // NOLINTNEXTLINE(bugprone-string-constructor): it is that long
  const std::u16string script = u"'" + std::u16string(20'000'000, u'<') + u"'.length";
  EXPECT_EQ(Run(WideString(script)), "0x80020009 Unknown Http problem.");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
  EXPECT_EQ(ScriptsRun(), 1);
}

TEST_F(ServiceCalls, AnswerOfTwentyMegabytesArrives) {
  ASSERT_EQ(Open(), "ok");
  Variant result;
  ASSERT_EQ(OutcomeText(model_->Execute(u"JavaScript", u"'<'.repeat(20000000)", nullptr, &result)), "ok");
  EXPECT_EQ(result.Tag(), VT_BSTR);
  const WideString text = result.Text();
  EXPECT_EQ(text.size(), 20'000'000U);
  EXPECT_EQ(text.view().find_first_not_of(u'<'), std::u16string_view::npos);
}

TEST_F(ServiceCalls, ServerThatIsNotThereIsACallThatCannotBeMade) {
  ASSERT_EQ(Open(), "ok");
  service_->Stop();
  EXPECT_EQ(Run(u"1"), kNoSoapCall);
  EXPECT_EQ(Close(), kNoSoapCall);
  EXPECT_EQ(Open(), kNoSoapCall);
  EXPECT_EQ(HostKnows().substr(0, 5), "open ");
}

TEST_F(ServiceCalls, RestartedServerIsReachedAgain) {
  ASSERT_EQ(Open(), "ok");
  service_->Stop();
  service_->Start();
  Use();
  EXPECT_EQ(Run(u"1"), kNoSuchSession);
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(ServiceCalls, UnknownHostAndSchemeAreCallsThatCannotBeMade) {
  for (const char16_t* server : {u"http://no-such-host.invalid", u"gopher://127.0.0.1", u"http://"}) {
    EXPECT_EQ(SetServer(server), "ok");
    EXPECT_EQ(Open(), kNoSoapCall);
  }
}

TEST_F(ServiceCalls, ServerNameThatIsNoUrlIsRefusedAtOnce) {
  const std::string words = "Cannot parse url, expecting 'http://' after protocol name.";
  EXPECT_EQ(SetServer(u"127.0.0.1:80"), "0x80020009 " + words);
  EXPECT_EQ(SetServer(u""), "0x80020009 " + words);
  EXPECT_EQ(Thrown([&] { CreateConnectionModel(u"no url", u"", host_.get()); }),
            "_com_error 0x80020009 " + words);
}

TEST_F(ServiceCalls, WrongPathIsAnInvalidAnswer) {
  ASSERT_EQ(Open(), "ok");
  Use("/odd/unheard-of");
  EXPECT_EQ(Run(u"1"), "0x80020009 The respone that arrived is not valid");
  Use("/any/prefix");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(ServiceCalls, MissingScriptFileSendsNothing) {
  ASSERT_EQ(Open(), "ok");
  Variant result;
  EXPECT_EQ(OutcomeText(model_->ExecuteFile(u"/nowhere/script.xml", nullptr, &result)),
            "0x80020009 Cannot create the xml document.");
  EXPECT_EQ(Counts(), "1 1 1 0 0 0 0");
}

}  // namespace
}  // namespace qv
