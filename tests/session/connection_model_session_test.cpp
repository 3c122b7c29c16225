// Opening and closing a session, and the calls of the host that belong to it.
#include <string>

#include "fixtures/speaking_host.h"
#include "fixtures/transfer_calls.h"
#include "session/model_test.h"

namespace qv {
namespace {

using ModelSession = ModelTest;

TEST_F(ModelSession, OpenMakesTheseCallsInThisOrder) {
  EXPECT_EQ(CreateThrows(kSessionOpened), "nothing");
  EXPECT_EQ(http_.Calls(), ExchangeCalls("srv", "80", "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx",
                                         "CreateUserSession", 162));
  ExpectSession(SessionState::kOpen, "u1", "<null>");
}

TEST_F(ModelSession, OpenSendsTheConnectionStringAndTellsTheHost) {
  const struct {
    WideString connectionString;
    const char* sent;
    const char* user;
    const char* replica;
  } rows[] = {{u"DbReplicationId=r;Username=a&b;Password=p;",
               "DbReplicationId=r;Username=a&amp;b;Password=p;", "a&b", "r"},
              {u"Username=joe", "Username=joe", "<null>", "<null>"},
              {u"Username=;", "Username=;", "", "<null>"},
              {WideString(), "", "<null>", "<null>"}};
  for (const auto& row : rows) {
    http_.Answer(kSessionOpened);
    model_.CreateUserSession(row.connectionString);
    EXPECT_EQ(http_.Bodies().back(), CreateSessionRequest(row.sent));
    EXPECT_EQ(host_->TakeCalls(), (Lines{"SetUsid(u1)", "SetUserName(" + std::string(row.user) + ")",
                                         "SetDatabaseIds(<null>, " + std::string(row.replica) + ")"}));
    ExpectSession(SessionState::kOpen, "u1", "<null>");
  }
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
}

TEST_F(ModelSession, ProxyIsSentAsABareNameAndThePlaceholderAsNone) {
  const struct {
    const char16_t* proxy;
    const char* open;
  } rows[] = {{u"proxy:8080", "Open(http, srv, 80, , , proxy)"}, {u"@PROXY@", "Open(http, srv, 80, , , )"}};
  for (const auto& row : rows) {
    model_.SetServer(u"http://srv", row.proxy);
    EXPECT_EQ(CreateThrows(kSessionOpened), "nothing");
    EXPECT_EQ(http_.CallsNamed("Open(").back(), row.open);
    EXPECT_EQ(CloseThrows(kSessionClosed), "nothing");
    EXPECT_EQ(http_.CallsNamed("Open(").back(), row.open);
  }
}

TEST_F(ModelSession, AnswerWithoutTextSucceedsAndKeepsTheHandle) {
  EXPECT_EQ(CreateThrows(kNoAnswerElement), "nothing");
  ExpectSession(SessionState::kOpen, "<null>", "<null>");
  EXPECT_EQ(ExecuteThrows(), kNoSession);
  AdoptSession();
  model_.SetClientServices(nullptr);  // there is nothing to report
  EXPECT_EQ(CreateThrows(kNoAnswerElement), "nothing");
  ExpectSession(SessionState::kOpen, "u1", "<null>");
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelSession, AnswerWithEmptyIdIsTakenAndReported) {
  AdoptSession();
  EXPECT_EQ(CreateThrows(kSessionWithoutId), "nothing");
  ExpectSession(SessionState::kOpen, "", "<null>");
  EXPECT_EQ(host_->Calls().front(), "SetUsid()");
}

TEST_F(ModelSession, SecondOpenOverwritesTheHandleAndClosesNothing) {
  EXPECT_EQ(CreateThrows(kSessionOpened), "nothing");
  EXPECT_EQ(CreateThrows(kSessionOpenedAgain), "nothing");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u2");
  EXPECT_EQ(http_.Bodies().size(), 2U);
}

TEST_F(ModelSession, HostThatFailsEndsTheOpenAtItsCall) {
  const Lines calls{"SetUsid(u1)", "SetUserName(joe)", "SetDatabaseIds(<null>, <null>)"};
  const char* const operations[] = {"SetUsid", "SetUserName", "SetDatabaseIds"};
  for (std::ptrdiff_t i = 0; i < 3; ++i) {
    host_->Fail(operations[i], E_FAIL, u"host words");
    EXPECT_EQ(CreateThrows(kSessionOpened), "_com_error 0x80004005 host words");
    EXPECT_EQ(host_->TakeCalls(), Lines(calls.begin(), calls.begin() + i + 1));
    ExpectSession(SessionState::kNew, "u1", "<null>");
    host_->Fail(operations[i], S_OK);
  }
}

TEST_F(ModelSession, WithoutSinkOrServicesTheCallFailsAfterItsWork) {
  for (const bool sinkAlone : {true, false}) {
    SCOPED_TRACE(sinkAlone ? "no sink" : "no services");
    ConnectionModelImpl model;
    model.SetServer(u"http://srv", u"");
    if (sinkAlone) host_->LackSink();
    model.SetClientServices(sinkAlone ? host_->Unknown() : nullptr);
    http_.Answer(kSessionOpened);
    EXPECT_EQ(Thrown([&] { model.CreateUserSession(u""); }), kNoPointer);
    EXPECT_EQ(Shown(model.ContextHandle()), "u1");
    EXPECT_EQ(model.State(), SessionState::kNew);
    EXPECT_TRUE(model.CookieHandle().IsNull());
    http_.Answer(kSessionClosed);
    EXPECT_EQ(Thrown([&] { model.CloseUserSession(); }), kNoPointer);
    EXPECT_EQ(Shown(model.ContextHandle()), "");
    EXPECT_EQ(Shown(model.CookieHandle()), "");
    EXPECT_EQ(model.State(), SessionState::kClosed);
  }
}

TEST_F(ModelSession, RefusedOpenChangesNothingAndTheNextOneWorks) {
  EXPECT_EQ(CreateThrows(kFaultFive), kServerFault);
  ExpectSession(SessionState::kNew, "<null>", "");
  EXPECT_TRUE(host_->Calls().empty());
  EXPECT_EQ(CreateThrows(kSessionOpened), "nothing");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
}

TEST_F(ModelSession, OpenThatCannotReachTheServerKeepsAnEarlierSession) {
  AdoptSession();
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  EXPECT_EQ(CreateThrows(), kNoSoapCall);
  ExpectSession(SessionState::kOpen, "u1", "");
}

// Closing.

TEST_F(ModelSession, CloseWithoutSessionSendsNothing) {
  EXPECT_EQ(CloseThrows(), "nothing");
  ExpectSession(SessionState::kNew, "<null>", "");
  model_.SetUSID(u"");
  EXPECT_EQ(CloseThrows(), "nothing");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelSession, CloseSendsTheHandleAndTellsTheHost) {
  AdoptSession();
  EXPECT_EQ(CloseThrows(kSessionClosed), "nothing");
  EXPECT_EQ(http_.Bodies(), Lines{CloseSessionRequest("u1")});
  EXPECT_EQ(http_.CallsNamed("SetHeader(SOAPAction"), Lines{ActionHeader("CloseUserSession")});
  EXPECT_EQ(host_->Calls(), Lines{"ClearSession()"});
  ExpectSession(SessionState::kClosed, "", "");
  EXPECT_EQ(CloseThrows(), "nothing");
  EXPECT_EQ(http_.Bodies().size(), 1U);
  EXPECT_EQ(CreateThrows(kSessionOpenedAgain), "nothing");
  ExpectSession(SessionState::kOpen, "u2", "<null>");
}

TEST_F(ModelSession, HandlesAreEmptyBeforeTheHostIsTold) {
  AdoptSession();
  int calls = 0;
  host_->OnSinkCall([&] {
    ExpectSession(SessionState::kClosed, "", "");
    ++calls;
  });
  EXPECT_EQ(CloseThrows(kSessionClosed), "nothing");
  EXPECT_EQ(calls, 1);
}

TEST_F(ModelSession, RefusedCloseKeepsTheSessionAndMayBeRepeated) {
  AdoptSession();
  EXPECT_EQ(CloseThrows(kFaultFive), kServerFault);
  ExpectSession(SessionState::kOpen, "u1", "");
  EXPECT_TRUE(host_->Calls().empty());
  EXPECT_EQ(CloseThrows(kSessionClosed), "nothing");
  EXPECT_EQ(model_.State(), SessionState::kClosed);
}

TEST_F(ModelSession, HostThatFailsToClearFailsTheCloseAfterTheLocalReset) {
  AdoptSession();
  host_->Fail("ClearSession", E_FAIL, u"host words");
  EXPECT_EQ(CloseThrows(kSessionClosed), "_com_error 0x80004005 host words");
  ExpectSession(SessionState::kClosed, "", "");
}

TEST_F(ModelSession, HostThatAdoptsAnotherSessionInTheCallKeepsItsArgument) {
  http_.Answer(kSessionOpened);
  host_->OnSinkCall([this] { model_.SetUSID(u"another"); });
  EXPECT_EQ(CreateThrows(), "nothing");
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
  EXPECT_EQ(CreateThrows(kSessionOpened), "nothing");
  EXPECT_EQ(host_->References(), 2U);
  EXPECT_EQ(CloseThrows(kSessionClosed), "nothing");
  EXPECT_EQ(host_->References(), 2U);
}

}  // namespace
}  // namespace qv
