// Options, progress and cancelling.
#include <chrono>
#include <functional>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "fixtures/progress_listener.h"
#include "http_fixture.h"
#include "qvscriptwells/com_call.h"

namespace qv::test {
namespace {

class HttpProgressTest : public HttpTest {
 protected:
  using Action = std::function<HRESULT(const std::string& line)>;

  ~HttpProgressTest() override {
    SetLimits(HttpOptions());
    EXPECT_EQ(listener_.References(), 0U) << "somebody still holds the listener";
  }
  // The listener of this thread's sessions notes lines such as "read 2/4", each once, and does what `act`
  // says.
  void Listen(const Action& act = nullptr) {
    act_ = act;
    SetThreadHttpOptions(HttpOptions(), &listener_);
  }
  HRESULT Note(const std::string& line) {
    if (lines_.empty() || lines_.back() != line) lines_.push_back(line);
    return act_ ? act_(line) : S_OK;
  }
  // Half of a body, and then nothing.
  void ReplyHalf() { server_.Expect(RawScript().Reply(SizedText(4, "ab")).Stall()); }

  std::vector<std::string> lines_;
  Action act_;
  ProgressListener listener_{[this](bool sending, std::int64_t done, std::int64_t total) {
    return Note((sending ? "send " : "read ") + std::to_string(done) + "/" + std::to_string(total));
  }};
};

TEST_F(HttpProgressTest, ListenerSeesBothBodiesGrow) {
  Listen();
  server_.Expect(RawScript().Reply(SizedText(4, "ab")).Pause(30).Write("cd"));
  ExpectText("abcd");
  while (!lines_.empty() && lines_.front() == "send 0/-1") lines_.erase(lines_.begin());  // while it connects
  EXPECT_EQ(lines_, (std::vector<std::string>{"send 0/8", "send 8/8", "read 0/4", "read 2/4", "read 4/4"}));
}

TEST_F(HttpProgressTest, TotalIsMinusOneWhenNotAnnounced) {
  Listen();
  ReplyAndClose(OkText("\r\nab"));
  ExpectText("ab");
  EXPECT_EQ(lines_.back(), "read 2/-1");
}

TEST_F(HttpProgressTest, LargeBodyIsReportedInPieces) {
  Listen();
  Answer("ok");
  EXPECT_EQ(SendMany(1'000'000), S_OK);
  EXPECT_GT(lines_.size(), 10U);
}

TEST_F(HttpProgressTest, ListenerCancelsTheReading) {
  Listen([](const std::string& line) { return line == "read 2/4" ? S_FALSE : S_OK; });
  ReplyHalf();
  ExpectFailure(4, "Read", kCancelled, "Operation was aborted by an application callback");
  ExpectNextCallWorks();
}

TEST_F(HttpProgressTest, ListenerCancelsAServerThatStalls) {
  int calls = 0;
  Listen([&](const std::string& line) { return line == "send 8/8" && ++calls == 3 ? E_FAIL : S_OK; });
  server_.Expect(RawScript().ReadRequest().Stall());
  const Outcome outcome = Exchange(4);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, kCancelled);
}

TEST_F(HttpProgressTest, AbortFromTheListenerEndsTheTransfer) {
  Listen();
  ReplyHalf();
  const IHttpRequestPtr request = NewRequest(OpenSession());
  act_ = [&](const std::string& line) { return line == "read 2/4" ? request->Abort() : S_OK; };
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  EXPECT_EQ(Read(request, 4), kCancelled);
  EXPECT_EQ(Read(request, 1), E_UNEXPECTED);
  act_ = nullptr;
}

TEST_F(HttpProgressTest, AbortFromAnotherThreadEndsAStall) {
  server_.Expect(RawScript().Reply("HTTP/1.1 ").Stall());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  std::thread other([&] {
    while (server_.AllReceived().empty()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    request->Abort();
  });
  EXPECT_EQ(request->Send(u"question", u""), kCancelled);
  other.join();
}

TEST_F(HttpProgressTest, NothingIsSentAfterAbort) {
  server_.Expect(RawScript());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Abort(), S_OK);
  EXPECT_EQ(request->Send(u"", u""), kCancelled);
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpProgressTest, SecondOperationFromTheListenerIsRefused) {
  Listen();
  Answer("abcd");
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  std::vector<HRESULT> codes;
  act_ = [&](const std::string& line) {
    if (line == "read 4/4")
      codes = {Read(request, 1), request->Send(u"", u""), request->Close(), session->Close()};
    return S_OK;
  };
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  EXPECT_EQ(ReadText(request, 4), "abcd");
  EXPECT_EQ(codes, std::vector<HRESULT>(4, E_UNEXPECTED));
  act_ = nullptr;
}

TEST_F(HttpProgressTest, LastReleaseFromTheListenerIsSurvived) {
  Listen();
  Answer("abcd");
  IHttpRequestPtr request = NewRequest(OpenSession());
  act_ = [&](const std::string& line) {
    if (line == "read 0/4") request.reset();
    return S_OK;
  };
  IHttpRequest* raw = request.get();
  EXPECT_EQ(raw->Send(u"", u""), S_OK);
  EXPECT_EQ(request.get(), nullptr);
  act_ = nullptr;
}

TEST_F(HttpProgressTest, ListenerOfOneSessionIsTakenAway) {
  Answer("ok");
  const IHttpSessionPtr session = OpenSession();
  const IHttpOptionsPtr options = As<IHttpOptions>(session);
  ASSERT_NE(options, nullptr);
  EXPECT_EQ(options->SetProgress(&listener_), S_OK);
  EXPECT_EQ(options->SetProgress(nullptr), S_OK);
  EXPECT_EQ(NewRequest(session)->Send(u"", u""), S_OK);
  EXPECT_TRUE(lines_.empty());
}

TEST_F(HttpProgressTest, OptionsAreGivenBackAsSetAndNegativeOnesRefused) {
  const struct {
    std::int64_t HttpOptions::*number;
    std::int64_t value;
  } defaults[] = {{&HttpOptions::connectTimeout, 30'000},    {&HttpOptions::idleTimeout, 60'000},
                  {&HttpOptions::maxBodyBytes, 536'870'912}, {&HttpOptions::maxHeadBytes, 307'200},
                  {&HttpOptions::totalTimeout, 0},           {&HttpOptions::minBytesPerSecond, 16},
                  {&HttpOptions::rateWindow, 60'000}};
  const IHttpOptionsPtr interface = As<IHttpOptions>(NewSession());
  ASSERT_NE(interface, nullptr);
  HttpOptions options;
  ASSERT_EQ(interface->GetOptions(&options), S_OK);
  EXPECT_TRUE(options.caFile.IsNull() && options.certificateFile.IsNull() && options.keyFile.IsNull());
  for (const auto& row : defaults) EXPECT_EQ(options.*row.number, row.value);
  options.idleTimeout = 5;
  EXPECT_EQ(interface->SetOptions(options), S_OK);
  for (const auto& row : defaults) {
    HttpOptions bad = options;
    bad.*row.number = -1;
    EXPECT_EQ(interface->SetOptions(bad), E_INVALIDARG);
  }
  ASSERT_EQ(interface->GetOptions(&options), S_OK);
  EXPECT_EQ(options.idleTimeout, 5);
  EXPECT_EQ(interface->GetOptions(nullptr), E_POINTER);
}

TEST_F(HttpProgressTest, ThreadOptionsReachNewSessionsOfThisThreadOnly) {
  Limit(&HttpOptions::maxHeadBytes, 17);
  const auto limitOfNewSession = [](std::int64_t expected) {
    const IHttpOptionsPtr interface = As<IHttpOptions>(NewSession());
    ASSERT_NE(interface, nullptr);
    HttpOptions options;
    EXPECT_EQ(interface->GetOptions(&options), S_OK);
    EXPECT_EQ(options.maxHeadBytes, expected);
  };
  limitOfNewSession(17);
  std::thread([&] { limitOfNewSession(307'200); }).join();
}

// A listener that sets another one, or the same again, when a thread lets it go.
class SuccessorListener final : public IHttpProgress {
 public:
  SuccessorListener(int* live, int generations) : live_(live), generations_(generations) { ++*live_; }
  HRESULT QueryInterface(const Guid&, void** object) noexcept override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left != 0) return left;
    references_ = 1000;  // a reference that is taken and returned below does not end it again
    if (generations_ > 0)
      SetThreadHttpOptions(HttpOptions(), new (std::nothrow) SuccessorListener(live_, generations_ - 1));
    EXPECT_EQ(references_, 1000U) << "released once more while it goes";
    --*live_;
    delete this;
    return 0;
  }
  HRESULT OnProgress(bool, std::int64_t, std::int64_t) noexcept override { return S_OK; }

 private:
  ~SuccessorListener() = default;
  int* live_;
  int generations_;
  std::uint32_t references_ = 0;
};

TEST(HttpThreadOptions, ListenerThatSetsAnotherWhenItsThreadEndsIsReleasedOnce) {
  int live = 0;
  std::thread([&live] { SetThreadHttpOptions(HttpOptions(), new SuccessorListener(&live, 1)); }).join();
  EXPECT_EQ(live, 0);
}

TEST(HttpThreadOptions, ListenerThatSetsAnotherWhenItIsReplacedIsTheLastOneSet) {
  int live = 0;
  std::thread([&live] {
    SetThreadHttpOptions(HttpOptions(), new SuccessorListener(&live, 1));
    SetThreadHttpOptions(HttpOptions(), nullptr);
    EXPECT_EQ(live, 1);
  }).join();
  EXPECT_EQ(live, 0);
}

}  // namespace
}  // namespace qv::test
