// Answers as they should not be: the exact words of each, no request sent twice, and a next call that works.
#include "client_fixture.h"

namespace qv {
namespace {

constexpr char kNotValid[] = "0x80020009 The respone that arrived is not valid";
constexpr char kHttpProblem[] = "0x80020009 Unknown Http problem.";

class OddAnswers : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    ASSERT_EQ(Open(), "ok");
  }
  // The outcome of one script under this odd form. Proves that it was run exactly once, and that the next
  // call is none the worse.
  std::string RunOdd(const std::string& form, const WideString& script = u"'x'") {
    const int before = ScriptsRun();
    Use("/odd/" + form);
    const std::string outcome = Run(script);
    EXPECT_EQ(ScriptsRun(), before + 1);
    Use("");
    EXPECT_EQ(Run(u"'next'"), "VT_BSTR next");
    EXPECT_EQ(ScriptsRun(), before + 2);
    return outcome;
  }
  void LimitIdleTime(std::int64_t milliseconds) {
    HttpOptions options;
    options.idleTimeout = milliseconds;
    SetThreadHttpOptions(options, nullptr);
  }
};

TEST_F(OddAnswers, PrefixOfTheAnswerElementIsKnown) {
  EXPECT_EQ(RunOdd("ns2"), "VT_BSTR x");
  Use("/odd/ns2");
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(HostKnows().substr(0, 5), "open ");
  EXPECT_EQ(Close(), "ok");
}

TEST_F(OddAnswers, FaultWithStatus500IsReadAsAFault) {
  EXPECT_EQ(RunOdd("status500", u"throw new ScriptError(5, 'five')"), "0x80040005 five");
}

// A script's value is looked for at its place, a session id by the name of its element.
TEST_F(OddAnswers, WhiteSpaceStandsInTheWayOfAValueOnly) {
  EXPECT_EQ(RunOdd("whitespace"), kNotValid);
  EXPECT_EQ(RunOdd("whitespace", u"throw new ScriptError(5, 'five')"), "0x80040005 five");
  Use("/odd/whitespace");
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(Run(u"1"), kNotValid);
  EXPECT_EQ(Close(), "ok");
}

TEST_F(OddAnswers, AnswerWithoutLengthIsAnHttpProblem) {
  EXPECT_EQ(RunOdd("nolength"), kHttpProblem);
  EXPECT_EQ(RunOdd("chunked"), kHttpProblem);
  EXPECT_EQ(RunOdd("zero"), kHttpProblem);
  EXPECT_EQ(RunOdd("chunked", u"throw 'not seen'"), kHttpProblem);
}

// The whole answer has 394 bytes for this script, and the service sends half of them.
TEST_F(OddAnswers, CutAnswerHasTheTransportsWords) {
  EXPECT_EQ(RunOdd("cut"), "0x80020009 transfer closed with 197 bytes remaining to read");
}

TEST_F(OddAnswers, HtmlPageIsAnInvalidAnswer) {
  EXPECT_EQ(RunOdd("html"), kNotValid);
}

// The 381st character is the first behind the "</" of an end tag that ends nothing.
TEST_F(OddAnswers, IllFormedAnswerHasItsPlaceInTheWords) {
  EXPECT_EQ(RunOdd("spoil"),
            "0x80020009 Error at file application/xml, line 1, char 381  Message: application/xml");
}

TEST_F(OddAnswers, OtherCharsetsAreRead) {
  const char16_t script[] = u"'\u00E9\u20AC\U0001F600'";
  EXPECT_EQ(RunOdd("latin1", script), "VT_BSTR \\u00E9\\u20AC\\uD83D\\uDE00");
  EXPECT_EQ(RunOdd("utf16", script), "VT_BSTR \\u00E9\\u20AC\\uD83D\\uDE00");
}

TEST_F(OddAnswers, RefusedRequestIsNotSentAgain) {
  Use("/odd/refuse2");
  EXPECT_EQ(Run(u"1"), "0x80020009 Empty reply from server");
  EXPECT_EQ(Stats()["refused"], 1);
  EXPECT_EQ(Run(u"1"), "0x80020009 Empty reply from server");
  EXPECT_EQ(Stats()["refused"], 2);
  EXPECT_EQ(Stats()["actions"]["Execute"], 0);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
  EXPECT_EQ(Stats()["actions"]["Execute"], 1);
  EXPECT_EQ(ScriptsRun(), 1);
}

TEST_F(OddAnswers, SilenceEndsAtTheIdleTime) {
  const std::string words = "0x80020009 Operation timed out after ";
  LimitIdleTime(300);
  for (const char* form : {"stall", "stallhead"}) {
    Use(std::string("/odd/") + form);
    const std::string outcome = Run(u"1");
    EXPECT_EQ(outcome.substr(0, words.size()), words) << form;
    EXPECT_NE(outcome.find(" milliseconds without a byte"), std::string::npos) << outcome;
  }
  EXPECT_EQ(ScriptsRun(), 2);
  Use("");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(OddAnswers, LateAnswerIsReadWithinTheIdleTime) {
  EXPECT_EQ(RunOdd("stallhead"), "VT_BSTR x");
}

TEST_F(OddAnswers, StalledAnswerThatThenEndsIsCut) {
  const std::string outcome = RunOdd("stall");
  EXPECT_EQ(outcome.substr(0, 31), "0x80020009 transfer closed with") << outcome;
}

TEST_F(OddAnswers, AnswerBeyondTheHostsLimitIsRefused) {
  HttpOptions options;
  options.maxBodyBytes = 1000;
  SetThreadHttpOptions(options, nullptr);
  EXPECT_EQ(Run(u"'x'.repeat(2000)"), "0x80020009 Maximum file size exceeded");
  EXPECT_EQ(Run(u"'x'"), "VT_BSTR x");
  EXPECT_EQ(ScriptsRun(), 2);
}

TEST_F(OddAnswers, FailedOpeningLeavesTheSessionThatIsThere) {
  const std::string known = HostKnows();
  for (const char* form : {"cut", "html", "nolength", "zero", "spoil"}) {
    Use(std::string("/odd/") + form);
    EXPECT_NE(Open(), "ok") << form;
    EXPECT_EQ(HostKnows(), known) << form;
  }
  Use("");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 6);
}

TEST_F(OddAnswers, FailedCloseCanBeRepeated) {
  Use("/odd/refuse2");
  EXPECT_EQ(Close(), "0x80020009 Empty reply from server");
  EXPECT_EQ(HostKnows().substr(0, 5), "open ");
  EXPECT_EQ(Close(), "0x80020009 Empty reply from server");
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(HostKnows().substr(0, 7), "closed ");
  EXPECT_EQ(Stats()["actions"]["CloseUserSession"], 1);
  EXPECT_EQ(Stats()["openSessions"], 0);
}

// Cancels every transfer as soon as it is told of one.
class Canceller final : public IHttpProgress {
 public:
  HRESULT QueryInterface(const Guid&, void** object) noexcept override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override { return --references_; }
  HRESULT OnProgress(bool sending, std::int64_t, std::int64_t) noexcept override {
    return sending ? S_OK : S_FALSE;
  }
  std::uint32_t References() const { return references_; }

 private:
  std::uint32_t references_ = 0;
};

TEST_F(OddAnswers, HostCanCancelAStalledAnswer) {
  Canceller canceller;
  SetThreadHttpOptions(HttpOptions(), &canceller);
  Use("/odd/stall");
  EXPECT_EQ(Run(u"1"), "0x80020009 Operation was aborted by an application callback");
  SetThreadHttpOptions(HttpOptions(), nullptr);
  EXPECT_EQ(canceller.References(), 0u);
  Use("");
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
  EXPECT_EQ(ScriptsRun(), 2);
}

}  // namespace
}  // namespace qv
