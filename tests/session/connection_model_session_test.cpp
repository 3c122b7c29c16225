// Opening and closing a session, and what the host hears of it.
#include <gtest/gtest.h>

#include <ostream>

#include "fixtures/speaking_host.h"
#include "session/model_test.h"

namespace qv {
namespace {

constexpr char kNoServices[] = "_com_error 0x80004003 <null>";

class ModelSession : public ModelTest {
 protected:
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }
};

TEST_F(ModelSession, OpenSendsTheConnectionString) {
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(u"DbReplicationId=r;Username=a&b;Password=p;");
  EXPECT_EQ(http_.Bodies(),
            Lines{"<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
                  "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                  "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
                  "<SOAP-ENV:Body>"
                  "<CreateUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                  "<ConnectionString xsi:type=\"xsd:string\">DbReplicationId=r;Username=a&amp;b;Password=p;"
                  "</ConnectionString></CreateUserSession></SOAP-ENV:Body></SOAP-ENV:Envelope>"});
}

TEST_F(ModelSession, OpenMakesTheseCallsInThisOrder) {
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(u"Username=joe;");
  EXPECT_EQ(http_.Calls(),
            (Lines{"CoCreate IUnknown", "Run", "Query IHttpSession", "Open(http, srv, 80, , , )",
                   "OpenRequest(POST, /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx, text/xml, 0)",
                   "SetHeader(Host, srv:80)", "SetHeader(Content-Type, text/xml)",
                   "SetHeader(SOAPAction, "
                   "http://quorvane.example/dev/ns/ivarnel/scriptwells#CreateUserSession)",
                   "Send(body, )", "GetHeader(StatusCode)", "GetHeader(Content-Length)", "Read(162)",
                   "Close request", "Close session"}));
}

TEST_F(ModelSession, OpenTellsTheHostIdThenUserThenDatabase) {
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(u"DbReplicationId=r;Username=joe;Password=p;");
  EXPECT_EQ(host_->Calls(), (Lines{"SetUsid(u1)", "SetUserName(joe)", "SetDatabaseIds(<null>, r)"}));
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelSession, ConnectionStringWithoutPairsTellsNullUser) {
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(u"Username=joe");
  EXPECT_EQ(host_->Calls(), (Lines{"SetUsid(u1)", "SetUserName(<null>)", "SetDatabaseIds(<null>, <null>)"}));
}

TEST_F(ModelSession, EmptyUserInTheConnectionStringIsTold) {
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(u"Username=;");
  EXPECT_EQ(host_->Calls()[1], "SetUserName()");
}

TEST_F(ModelSession, NullConnectionStringIsSentEmpty) {
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(WideString());
  EXPECT_NE(http_.Bodies().back().find("<ConnectionString xsi:type=\"xsd:string\"></ConnectionString>"),
            std::string::npos);
}

TEST_F(ModelSession, CookieHandleIsNullAfterAnExchange) {
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(u"");
  EXPECT_TRUE(model_.CookieHandle().IsNull());
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
}

TEST_F(ModelSession, ProxyTravelsAsBareName) {
  model_.SetServer(u"http://srv", u"proxy:8080");
  http_.Answer(kSessionOpened);
  http_.Answer(kSessionClosed);
  model_.CreateUserSession(u"");
  model_.CloseUserSession();
  EXPECT_EQ(http_.CallsNamed("Open("),
            (Lines{"Open(http, srv, 80, , , proxy)", "Open(http, srv, 80, , , proxy)"}));
}

TEST_F(ModelSession, ProxyPlaceholderTravelsAsNone) {
  model_.SetServer(u"http://srv", u"@PROXY@");
  http_.Answer(kSessionOpened);
  model_.CreateUserSession(u"");
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, , , )"});
}

TEST_F(ModelSession, AnswerWithoutTextSucceedsAndKeepsTheHandle) {
  http_.Answer(kNoAnswerElement);
  EXPECT_EQ(CreateThrows(), "nothing");
  EXPECT_TRUE(model_.ContextHandle().IsNull());
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_TRUE(host_->Calls().empty());
  EXPECT_EQ(ExecuteThrows(), "EQvException 0x00000000 Session does not exist.");
}

TEST_F(ModelSession, AnswerWithoutTextKeepsAnEarlierSession) {
  AdoptSession();
  http_.Answer(kNoAnswerElement);
  EXPECT_EQ(CreateThrows(), "nothing");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
}

TEST_F(ModelSession, AnswerWithEmptyIdIsTakenAndTold) {
  AdoptSession();
  http_.Answer(kSessionWithoutId);
  EXPECT_EQ(CreateThrows(), "nothing");
  EXPECT_EQ(Shown(model_.ContextHandle()), "");
  EXPECT_EQ(host_->Calls().front(), "SetUsid()");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelSession, SecondOpenOverwritesTheHandleAndClosesNothing) {
  http_.Answer(kSessionOpened);
  http_.Answer(kSessionOpenedAgain);
  model_.CreateUserSession(u"");
  model_.CreateUserSession(u"");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u2");
  EXPECT_EQ(http_.Bodies().size(), 2u);
}

TEST_F(ModelSession, OpenWithoutServicesFailsWithTheHandleSet) {
  model_.SetClientServices(nullptr);
  http_.Answer(kSessionOpened);
  EXPECT_EQ(CreateThrows(), kNoServices);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kNew);
  EXPECT_TRUE(model_.CookieHandle().IsNull());
}

TEST_F(ModelSession, OpenWithoutSinkFailsWithTheHandleSet) {
  host_->LackSink();
  http_.Answer(kSessionOpened);
  EXPECT_EQ(CreateThrows(), kNoServices);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kNew);
}

TEST_F(ModelSession, OpenWithoutServicesSucceedsWhenThereIsNothingToTell) {
  model_.SetClientServices(nullptr);
  http_.Answer(kNoAnswerElement);
  EXPECT_EQ(CreateThrows(), "nothing");
}

struct FailingTell {
  const char* operation;
  Lines calls;
};
void PrintTo(const FailingTell& row, std::ostream* out) {
  *out << row.operation;
}

class FailingHost : public ModelSession, public testing::WithParamInterface<FailingTell> {};

TEST_P(FailingHost, EndsTheOpenAtItsCall) {
  host_->Fail(GetParam().operation, E_FAIL, u"host words");
  http_.Answer(kSessionOpened);
  EXPECT_EQ(CreateThrows(), "_com_error 0x80004005 host words");
  EXPECT_EQ(host_->Calls(), GetParam().calls);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kNew);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, FailingHost,
    testing::Values(FailingTell{"SetUsid", {"SetUsid(u1)"}},
                    FailingTell{"SetUserName", {"SetUsid(u1)", "SetUserName(joe)"}},
                    FailingTell{"SetDatabaseIds",
                                {"SetUsid(u1)", "SetUserName(joe)", "SetDatabaseIds(<null>, <null>)"}}),
    [](const testing::TestParamInfo<FailingTell>& row) { return std::string(row.param.operation); });

TEST_F(ModelSession, RefusedOpenChangesNothing) {
  http_.Answer(kFaultFive);
  EXPECT_EQ(CreateThrows(), "EQvException 0x80040005 server words");
  EXPECT_TRUE(model_.ContextHandle().IsNull());
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  EXPECT_EQ(model_.State(), SessionState::kNew);
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelSession, OpenThatCannotReachTheServerKeepsAnEarlierSession) {
  AdoptSession();
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  EXPECT_EQ(CreateThrows(), "EQvException 0x00000000 Cannot create a soap call.");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelSession, OpenAfterARefusedOneWorks) {
  http_.Answer(kFaultFive);
  http_.Answer(kSessionOpened);
  CreateThrows();
  EXPECT_EQ(CreateThrows(), "nothing");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
}

// Closing.

TEST_F(ModelSession, CloseWithoutSessionSendsNothing) {
  EXPECT_EQ(CloseThrows(), "nothing");
  EXPECT_EQ(model_.State(), SessionState::kNew);
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  model_.SetUSID(u"");
  EXPECT_EQ(CloseThrows(), "nothing");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelSession, CloseSendsTheHandleAndTellsTheHost) {
  AdoptSession();
  http_.Answer(kSessionClosed);
  model_.CloseUserSession();
  EXPECT_EQ(http_.Bodies(),
            Lines{"<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
                  "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                  "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
                  "<SOAP-ENV:Body>"
                  "<CloseUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                  "<usid xsi:type=\"xsd:string\">u1</usid>"
                  "</CloseUserSession></SOAP-ENV:Body></SOAP-ENV:Envelope>"});
  EXPECT_EQ(
      http_.CallsNamed("SetHeader(SOAPAction"),
      Lines{"SetHeader(SOAPAction, http://quorvane.example/dev/ns/ivarnel/scriptwells#CloseUserSession)"});
  EXPECT_EQ(host_->Calls(), Lines{"ClearSession()"});
}

TEST_F(ModelSession, CloseLeavesEmptyHandlesThatAreNotNull) {
  AdoptSession();
  http_.Answer(kSessionClosed);
  model_.CloseUserSession();
  EXPECT_EQ(Shown(model_.ContextHandle()), "");
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  EXPECT_EQ(model_.State(), SessionState::kClosed);
}

TEST_F(ModelSession, HandlesAreEmptyBeforeTheHostHears) {
  AdoptSession();
  std::string seen;
  host_->OnSinkCall([&] {
    seen = Shown(model_.ContextHandle()) + "|" + Shown(model_.CookieHandle()) + "|" +
           (model_.State() == SessionState::kClosed ? "closed" : "not closed");
  });
  http_.Answer(kSessionClosed);
  model_.CloseUserSession();
  EXPECT_EQ(seen, "||closed");
}

TEST_F(ModelSession, SecondCloseSendsNothing) {
  AdoptSession();
  http_.Answer(kSessionClosed);
  model_.CloseUserSession();
  EXPECT_EQ(CloseThrows(), "nothing");
  EXPECT_EQ(http_.Bodies().size(), 1u);
}

TEST_F(ModelSession, SessionMayBeOpenedAgainAfterAClose) {
  AdoptSession();
  http_.Answer(kSessionClosed);
  http_.Answer(kSessionOpenedAgain);
  model_.CloseUserSession();
  model_.CreateUserSession(u"");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u2");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelSession, RefusedCloseKeepsTheSessionAndMayBeRepeated) {
  AdoptSession();
  http_.Answer(kFaultFive);
  EXPECT_EQ(CloseThrows(), "EQvException 0x80040005 server words");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_TRUE(host_->Calls().empty());
  http_.Answer(kSessionClosed);
  EXPECT_EQ(CloseThrows(), "nothing");
  EXPECT_EQ(model_.State(), SessionState::kClosed);
}

TEST_F(ModelSession, CloseWithoutServicesFailsAfterTheLocalReset) {
  AdoptSession();
  model_.SetClientServices(nullptr);
  http_.Answer(kSessionClosed);
  EXPECT_EQ(CloseThrows(), kNoServices);
  EXPECT_EQ(Shown(model_.ContextHandle()), "");
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  EXPECT_EQ(model_.State(), SessionState::kClosed);
}

TEST_F(ModelSession, CloseWithoutSinkFailsAfterTheLocalReset) {
  AdoptSession();
  host_->LackSink();
  http_.Answer(kSessionClosed);
  EXPECT_EQ(CloseThrows(), kNoServices);
  EXPECT_EQ(Shown(model_.ContextHandle()), "");
  EXPECT_EQ(model_.State(), SessionState::kClosed);
}

TEST_F(ModelSession, HostThatFailsToClearFailsTheCloseAfterTheLocalReset) {
  AdoptSession();
  host_->Fail("ClearSession", E_FAIL, u"host words");
  http_.Answer(kSessionClosed);
  EXPECT_EQ(CloseThrows(), "_com_error 0x80004005 host words");
  EXPECT_EQ(Shown(model_.ContextHandle()), "");
  EXPECT_EQ(model_.State(), SessionState::kClosed);
}

TEST_F(ModelSession, HostThatAdoptsAnotherSessionWhileItIsToldKeepsWhatItWasTold) {
  http_.Answer(kSessionOpened);
  host_->OnSinkCall([this] { model_.SetUSID(u"another"); });
  model_.CreateUserSession(u"Username=joe;");
  EXPECT_EQ(host_->LastUsid(), "u1");
  EXPECT_EQ(host_->Calls().front(), "SetUsid(u1)");
  EXPECT_EQ(Shown(model_.ContextHandle()), "another");
}

TEST_F(ModelSession, ServicesOutliveTheQueryInWhichTheirHostTakesThemAway) {
  HostLog log;
  SpeakingServicesPtr services(new SpeakingServices(&log));
  model_.SetClientServices(services->Unknown());
  AdoptSession();
  http_.Answer(kSessionClosed);
  services->OnQuery([&] {
    model_.SetClientServices(nullptr);
    services.reset();
    EXPECT_EQ(SpeakingServices::Live(), 1) << "the services are gone in the middle of their answer";
  });
  model_.CloseUserSession();
  EXPECT_EQ(log, HostLog{"ClearSession"});
  EXPECT_EQ(SpeakingServices::Live(), 0);
}

TEST_F(ModelSession, ReferencesToTheHostAreGivenBackAfterEachCall) {
  http_.Answer(kSessionOpened);
  http_.Answer(kSessionClosed);
  model_.CreateUserSession(u"");
  EXPECT_EQ(host_->References(), 2u);
  model_.CloseUserSession();
  EXPECT_EQ(host_->References(), 2u);
}

}  // namespace
}  // namespace qv
