// Options, progress and cancelling.
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "http_fixture.h"

namespace qv::test {
namespace {

constexpr HRESULT kCancelled = MakeResult(0x80072EF1);

// Notes what it is told, and does what a test wants at that moment.
class Listener final : public IHttpProgress {
 public:
  HRESULT QueryInterface(const Guid&, void** object) noexcept override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override { return --references_; }
  HRESULT OnProgress(bool sending, std::int64_t done, std::int64_t total) noexcept override {
    const std::string line =
        std::string(sending ? "send " : "read ") + std::to_string(done) + "/" + std::to_string(total);
    if (lines_.empty() || lines_.back() != line) lines_.push_back(line);
    return act_ ? act_(line) : S_OK;
  }

  void Act(const std::function<HRESULT(const std::string&)>& act) { act_ = act; }
  const std::vector<std::string>& Lines() const { return lines_; }
  std::uint32_t References() const { return references_; }

 private:
  std::uint32_t references_ = 1;
  std::vector<std::string> lines_;
  std::function<HRESULT(const std::string&)> act_;
};

class HttpProgressTest : public HttpTest {
 protected:
  void Listen() { SetThreadHttpOptions(HttpOptions(), &listener_); }
  ~HttpProgressTest() override {
    SetThreadHttpOptions(HttpOptions(), nullptr);
    EXPECT_EQ(listener_.References(), 1u) << "somebody still holds the listener";
  }

  Listener listener_;
};

TEST_F(HttpProgressTest, ListenerSeesBothBodiesGrow) {
  Listen();
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Write("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab")
                     .Pause(30)
                     .Write("cd"));
  EXPECT_EQ(Exchange(4).text, WideString(u"abcd"));
  std::vector<std::string> lines = listener_.Lines();
  while (!lines.empty() && lines.front() == "send 0/-1") lines.erase(lines.begin());  // while it connects
  EXPECT_EQ(lines, (std::vector<std::string>{"send 0/8", "send 8/8", "read 0/4", "read 2/4", "read 4/4"}));
}

TEST_F(HttpProgressTest, TotalIsMinusOneWhenNotAnnounced) {
  Listen();
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\n\r\nab").Close());
  EXPECT_EQ(Exchange(2).text, WideString(u"ab"));
  EXPECT_EQ(listener_.Lines().back(), "read 2/-1");
}

TEST_F(HttpProgressTest, LargeBodyIsToldInPieces) {
  Listen();
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(WideString(std::u16string(1'000'000, u'x')), u""), S_OK);
  EXPECT_GT(listener_.Lines().size(), 10u);
}

TEST_F(HttpProgressTest, ListenerCancelsTheReading) {
  Listen();
  listener_.Act([](const std::string& line) { return line == "read 2/4" ? S_FALSE : S_OK; });
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab").Stall());
  const Outcome outcome = Exchange(4);
  EXPECT_EQ(outcome.failedStep, "Read");
  EXPECT_EQ(outcome.code, kCancelled);
  EXPECT_EQ(outcome.words, "Operation was aborted by an application callback");
  ExpectNextCallWorks();
}

TEST_F(HttpProgressTest, ListenerCancelsAServerThatStalls) {
  Listen();
  int told = 0;
  listener_.Act([&](const std::string& line) { return line == "send 8/8" && ++told == 3 ? E_FAIL : S_OK; });
  server_.Expect(RawScript().ReadRequest().Stall());
  const Outcome outcome = Exchange(4);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, kCancelled);
}

TEST_F(HttpProgressTest, AbortFromTheListenerEndsTheTransfer) {
  Listen();
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab").Stall());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  listener_.Act([&](const std::string& line) { return line == "read 2/4" ? request->Abort() : S_OK; });
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(4, &text, &count), kCancelled);
  EXPECT_EQ(request->Read(1, &text, &count), E_UNEXPECTED);
  listener_.Act(nullptr);
}

TEST_F(HttpProgressTest, AbortFromAnotherThreadEndsAStall) {
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 ").Stall());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  std::thread other([&] {
    while (server_.AllReceived().empty()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    request->Abort();
  });
  EXPECT_EQ(request->Send(u"question", u""), kCancelled);
  other.join();
}

TEST_F(HttpProgressTest, AbortBeforeSendLetsNothingOut) {
  server_.Expect(RawScript());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Abort(), S_OK);
  EXPECT_EQ(request->Send(u"", u""), kCancelled);
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpProgressTest, SecondOperationFromTheListenerIsRefused) {
  Listen();
  Answer(RawAnswerText("abcd"));
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  std::vector<HRESULT> codes;
  listener_.Act([&](const std::string& line) {
    if (line != "read 4/4") return S_OK;
    WideString text;
    std::int32_t count = 0;
    codes = {request->Read(1, &text, &count), request->Send(u"", u""), request->Close(), session->Close()};
    return S_OK;
  });
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  EXPECT_EQ(ReadText(request, 4), WideString(u"abcd"));
  EXPECT_EQ(codes, (std::vector<HRESULT>{E_UNEXPECTED, E_UNEXPECTED, E_UNEXPECTED, E_UNEXPECTED}));
  listener_.Act(nullptr);
}

TEST_F(HttpProgressTest, LastReleaseFromTheListenerIsSurvived) {
  Listen();
  Answer(RawAnswerText("abcd"));
  IHttpRequestPtr request = NewRequest(OpenSession());
  listener_.Act([&](const std::string& line) {
    if (line == "read 0/4") request.reset();
    return S_OK;
  });
  IHttpRequest* raw = request.get();
  EXPECT_EQ(raw->Send(u"", u""), S_OK);
  EXPECT_EQ(request.get(), nullptr);
  listener_.Act(nullptr);
}

TEST_F(HttpProgressTest, ListenerOfOneSessionIsTakenAway) {
  Answer(RawAnswerText("ok"));
  const IHttpSessionPtr session = OpenSession();
  void* object = nullptr;
  ASSERT_EQ(session->QueryInterface(IHttpOptions::kIid, &object), S_OK);
  const IHttpOptionsPtr options(static_cast<IHttpOptions*>(object), false);
  EXPECT_EQ(options->SetProgress(&listener_), S_OK);
  EXPECT_EQ(options->SetProgress(nullptr), S_OK);
  EXPECT_EQ(NewRequest(session)->Send(u"", u""), S_OK);
  EXPECT_TRUE(listener_.Lines().empty());
}

TEST_F(HttpProgressTest, OptionsAreGivenBackAsSetAndNegativeOnesRefused) {
  const IHttpSessionPtr session = NewSession();
  void* object = nullptr;
  ASSERT_EQ(session->QueryInterface(IHttpOptions::kIid, &object), S_OK);
  const IHttpOptionsPtr interface(static_cast<IHttpOptions*>(object), false);
  HttpOptions options;
  ASSERT_EQ(interface->GetOptions(&options), S_OK);
  EXPECT_EQ(options.connectTimeout, 30'000);
  EXPECT_EQ(options.idleTimeout, 60'000);
  EXPECT_EQ(options.maxBodyBytes, 536'870'912);
  EXPECT_EQ(options.maxHeadBytes, 307'200);
  EXPECT_EQ(options.totalTimeout, 0);
  EXPECT_EQ(options.minBytesPerSecond, 16);
  EXPECT_EQ(options.rateWindow, 60'000);
  EXPECT_TRUE(options.caFile.IsNull() && options.certificateFile.IsNull() && options.keyFile.IsNull());
  options.idleTimeout = 5;
  EXPECT_EQ(interface->SetOptions(options), S_OK);
  for (std::int64_t HttpOptions::*number :
       {&HttpOptions::connectTimeout, &HttpOptions::idleTimeout, &HttpOptions::maxBodyBytes,
        &HttpOptions::maxHeadBytes, &HttpOptions::totalTimeout, &HttpOptions::minBytesPerSecond,
        &HttpOptions::rateWindow}) {
    HttpOptions bad = options;
    bad.*number = -1;
    EXPECT_EQ(interface->SetOptions(bad), E_INVALIDARG);
  }
  ASSERT_EQ(interface->GetOptions(&options), S_OK);
  EXPECT_EQ(options.idleTimeout, 5);
  EXPECT_EQ(interface->GetOptions(nullptr), E_POINTER);
}

TEST_F(HttpProgressTest, ThreadOptionsReachNewSessionsOfThisThreadOnly) {
  HttpOptions options;
  options.maxHeadBytes = 17;
  SetLimits(options);
  std::int64_t here = 0;
  std::int64_t there = 0;
  const auto limitOfNewSession = [](std::int64_t* limit) {
    void* object = nullptr;
    ASSERT_EQ(NewSession()->QueryInterface(IHttpOptions::kIid, &object), S_OK);
    HttpOptions given;
    EXPECT_EQ(IHttpOptionsPtr(static_cast<IHttpOptions*>(object), false)->GetOptions(&given), S_OK);
    *limit = given.maxHeadBytes;
  };
  limitOfNewSession(&here);
  std::thread([&] { limitOfNewSession(&there); }).join();
  EXPECT_EQ(here, 17);
  EXPECT_EQ(there, 307'200);
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
    if (generations_ > 0) SetThreadHttpOptions(HttpOptions(), new SuccessorListener(live_, generations_ - 1));
    EXPECT_EQ(references_, 1000u) << "released once more while it goes";
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

TEST(HttpThreadOptions, ListenerThatSetsAnotherWhenItIsReplacedHasTheLastWord) {
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
