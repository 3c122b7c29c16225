// How observation begins and ends: exceptions and cancellation of the host, threads, nesting, kept answers.
#include <atomic>
#include <stdexcept>
#include <thread>

#include "fixtures/progress_listener.h"
#include "qvscriptwells/com_call.h"
#include "tests/face/exchange/call_fixture.h"

namespace scriptwells::test {
namespace {

using qv::test::ProgressListener;
using qv::test::RawScript;

class ObservedCallTest : public CallTest {};

std::string Thrown(const std::function<void()>& act) {
  try {
    act();
    return "nothing";
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

TEST_F(ObservedCallTest, ExceptionOfAListenerEndsTheCallAndArrives) {
  MakeHome();
  const std::string file = folder_.Write("a.txt", "x");
  settings_.listener = [](const Exchange&) { throw std::runtime_error("from the listener"); };
  Answer({ScriptAnswer(server_.Url() + "/up?ticket=T1"), StatusAnswer("200 OK"), ScriptAnswer("done")});
  EXPECT_EQ(Thrown([&] { Run({file}); }), "from the listener");
  // The second exchange was not begun.
  EXPECT_EQ(server_.AllReceived().find("POST /up"), std::string::npos);
  // The listener is called at the end of a success.
  Answer({ScriptAnswer("done")});
  EXPECT_EQ(Thrown([&] { Run(); }), "from the listener");
}

TEST_F(ObservedCallTest, ExceptionOfAProgressListenerEndsTheCallAndArrives) {
  server_.Expect(RawScript().ReadRequest().Stall());
  int calls = 0;
  settings_.progress = [&](const Progress& progress) {
    ++calls;
    if (progress.sending && progress.done > 0) throw std::runtime_error("enough");
  };
  EXPECT_EQ(Thrown([&] { Run(); }), "enough");
  const int before = calls;
  Answer({ScriptAnswer("done")});
  EXPECT_EQ(Thrown([&] { Run(); }), "enough");
  EXPECT_GT(calls, before);
}

TEST_F(ObservedCallTest, CancelledCallSendsNothing) {
  settings_.cancel.emplace();
  settings_.cancel->Cancel();
  EXPECT_EQ(Run().shown, "CancelledError cancelled: the call was cancelled");
  EXPECT_FALSE(couldNotConnect_);
  EXPECT_EQ(server_.Connections(), 0U);
  settings_.cancel->Reset();
  Answer({ScriptAnswer("done")});
  EXPECT_EQ(Run().shown, "ok");
}

TEST_F(ObservedCallTest, CancelFromAnotherThreadEndsTheWait) {
  server_.Expect(RawScript().ReadRequest().Stall());
  settings_.cancel.emplace();
  CancelToken copy = *settings_.cancel;
  const auto start = std::chrono::steady_clock::now();
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    copy.Cancel();
  });
  EXPECT_EQ(Run().shown, "CancelledError cancelled: the call was cancelled");
  other.join();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(ObservedCallTest, KeptAnswerIsTheWholeBodyInUtf8) {
  settings_.keepAnswer = true;
  const std::string text(100'000, 'x');
  Answer({ScriptAnswer(text),
          qv::test::RawAnswerText("<?xml version=\"1.0\"?><soap:Envelope><soap:Body><ExecuteResponse>"
                                  "<r xsi:type=\"xsd:string\">\xE9</r></ExecuteResponse>"
                                  "</soap:Body></soap:Envelope>",
                                  "Content-Type: text/xml; charset=iso-8859-1\r\n")});
  EXPECT_EQ(Run().shown, "ok");
  EXPECT_NE(answerText_.find(text + "</r>"), std::string::npos);
  EXPECT_EQ(Run().shown, "ok");
  EXPECT_NE(answerText_.find(">\xC3\xA9</r>"), std::string::npos);
  settings_.keepAnswer = false;
  Answer({ScriptAnswer(text)});
  qv::CloseKeptConnections();
  EXPECT_EQ(Run().shown, "ok");
  EXPECT_EQ(answerText_, "");
}

// Calls through the interfaces before, after and within are those of the host.
TEST_F(ObservedCallTest, OptionsOfTheThreadAreTheHosts) {
  int seen = 0;
  ProgressListener own([&](bool, std::int64_t, std::int64_t) {
    ++seen;
    return qv::S_OK;
  });
  qv::HttpOptions options;
  options.maxBodyBytes = 10;
  qv::SetThreadHttpOptions(options, &own);
  Listen();
  Answer({ScriptAnswer("done"), ScriptAnswer("done")});
  EXPECT_EQ(Run().shown, "ok");  // 10 bytes would not do
  EXPECT_EQ(seen, 0);
  qv::Variant answer;
  EXPECT_NE(model_->Execute(u"JavaScript", u"1", nullptr, &answer), qv::S_OK);
  EXPECT_GT(seen, 0);
  EXPECT_EQ(exchanges_.size(), 1U);
  qv::SetThreadHttpOptions(qv::HttpOptions(), nullptr);
}

TEST_F(ObservedCallTest, CallsOfAListenerAreNotObserved) {
  Answer({ScriptAnswer("one"), ScriptAnswer("two")});
  std::string told;
  settings_.listener = [&](const Exchange& exchange) {
    told += exchange.answerBody.find("one") != std::string::npos ? "one;" : "two;";
    if (told != "one;") return;
    qv::Variant answer;
    EXPECT_EQ(model_->Execute(u"JavaScript", u"2", nullptr, &answer), qv::S_OK);
  };
  EXPECT_EQ(Run().shown, "ok");
  EXPECT_EQ(told, "one;");
}

TEST_F(ObservedCallTest, ObservationsNest) {
  Answer({ScriptAnswer("inner"), ScriptAnswer("outer")});
  Listen();
  ObservedCall outer(settings_, Purpose::kDownload);
  {
    CallSettings inner;
    ObservedCall nested(inner, Purpose::kExecute);
    EXPECT_EQ(RunCall()(), qv::S_OK);
    nested.Finish();
  }
  EXPECT_TRUE(exchanges_.empty());
  EXPECT_EQ(RunCall()(), qv::S_OK);
  outer.Finish();
  ASSERT_EQ(exchanges_.size(), 1U);
  EXPECT_EQ(exchanges_[0].purpose, Purpose::kDownload);
}

TEST_F(ObservedCallTest, FailureWithoutAnExchange) {
  EXPECT_EQ(OutcomeOf([&] {
              ObservedCall call(settings_, Purpose::kExecute);
              qv::ErrorInfo info;
              info.description = u"Cannot create the xml document.";
              call.Explain(qv::_com_error(qv::DISP_E_EXCEPTION, info), "a/b.xml");
            }).shown,
            "Error local file: cannot read the script document a/b.xml as XML (not well-formed, an unknown "
            "encoding, or a "
            "part of it that cannot be opened), or a parameter has no form on the wire");
}

TEST_F(ObservedCallTest, LackOfMemoryIsNoError) {
  EXPECT_THROW(ObservedCall(settings_, Purpose::kExecute).Explain(qv::_com_error(qv::E_OUTOFMEMORY)),
               std::bad_alloc);
}

// Each thread has its own observation, and hears of its own exchanges only.
TEST_F(ObservedCallTest, ThreadsDoNotDisturbEachOther) {
  constexpr int kCalls = 25;
  constexpr int kThreads = 4;
  std::atomic<int> wrong{0};
  std::atomic<int> told{0};
  std::vector<std::thread> threads;
  const auto work = [&](int number) {
    qv::test::RawServer server;
    const std::string mark = "thread-" + std::to_string(number);
    RawScript script;
    for (int i = 0; i < kCalls; ++i) script.ReadRequest().Write(ScriptAnswer(mark));
    server.Expect(script);
    CallSettings settings;
    settings.listener = [&](const Exchange& exchange) {
      ++told;
      if (exchange.answerBody.find(mark) == std::string::npos) ++wrong;
    };
    const qv::IQvClientServicesPtr host = qv::CreateSimpleHost({u"nobody"});
    const qv::IConnectionModelPtr model =
        qv::CreateConnectionModel(qv::FromUtf8(server.Url()), u"", host.get());
    if (model->SetUSID(u"s") != qv::S_OK) ++wrong;
    for (int i = 0; i < kCalls; ++i) {
      ObservedCall call(settings, Purpose::kExecute);
      qv::Variant answer;
      if (model->Execute(u"JavaScript", u"1", nullptr, &answer) != qv::S_OK) ++wrong;
      call.Finish();
    }
    qv::CloseKeptConnections();
  };
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(told, kThreads * kCalls);
}

}  // namespace
}  // namespace scriptwells::test
