// Answers as they should not be: the exact message of each, no request sent twice, and a next call that
// works.
#include "fixtures/progress_listener.h"
#include "value_test.h"

namespace qv {
namespace {

constexpr char kNotValid[] = "0x80020009 The respone that arrived is not valid";
constexpr char kHttpProblem[] = "0x80020009 Unknown Http problem.";

constexpr char kEmptyReply[] = "0x80020009 Empty reply from server";

class OddAnswers : public ValueTest {
 protected:
  // The outcome of one script under this odd form. Proves that it was run exactly once, and that the next
  // call is none the worse.
  std::string RunOdd(const std::string& form, const WideString& script = u"'x'") {
    const int before = ScriptsRun();
    Use("/odd/" + form);
    std::string outcome = Run(script);
    EXPECT_EQ(ScriptsRun(), before + 1);
    Use();
    EXPECT_EQ(Run(u"'next'"), "VT_BSTR next");
    EXPECT_EQ(ScriptsRun(), before + 2);
    return outcome;
  }
};

TEST_F(OddAnswers, EachFormHasItsOutcome) {
  const char16_t* const five = u"throw new ScriptError(5, 'five')";
  const char16_t* const letters = u"'\u00E9\u20AC\U0001F600'";
  const struct {
    const char* form;
    const char16_t* script;
    const char* outcome;
  } rows[] = {
      {"ns2", u"'x'", "VT_BSTR x"},
      {"status500", five, "0x80040005 five"},
      // A script's value is looked for at its place, so white space is in its way.
      {"whitespace", u"'x'", kNotValid},
      {"whitespace", five, "0x80040005 five"},
      // Without a length.
      {"nolength", u"'x'", kHttpProblem},
      {"chunked", u"'x'", kHttpProblem},
      {"zero", u"'x'", kHttpProblem},
      {"chunked", u"throw 'not seen'", kHttpProblem},
      // The whole answer has 394 bytes for this script, and the service sends half of them.
      {"cut", u"'x'", "0x80020009 transfer closed with 197 bytes remaining to read"},
      {"html", u"'x'", kNotValid},
      // The 381st character is the first after the "</" of an end tag that ends nothing.
      {"spoil", u"'x'",
       "0x80020009 Error at file application/xml, line 1, char 381  Message: application/xml"},
      {"latin1", letters, R"(VT_BSTR \u00E9\u20AC\uD83D\uDE00)"},
      {"utf16", letters, R"(VT_BSTR \u00E9\u20AC\uD83D\uDE00)"},
      {"stallhead", u"'x'", "VT_BSTR x"},  // late, but within the idle time
  };
  for (const auto& row : rows) EXPECT_EQ(RunOdd(row.form, row.script), row.outcome) << row.form;
}

// A session's id is looked for by the name of its element.
TEST_F(OddAnswers, SessionIsOpenedThroughPrefixAndWhiteSpace) {
  for (const auto& [form, value] : {std::pair("ns2", "VT_INT 1"), {"whitespace", kNotValid}}) {
    Use(std::string("/odd/") + form);
    EXPECT_EQ(Open(), "ok");
    EXPECT_EQ(HostKnows().substr(0, 5), "open ");
    EXPECT_EQ(Run(u"1"), value);
    EXPECT_EQ(Close(), "ok");
  }
}

TEST_F(OddAnswers, RefusedRequestIsNotSentAgain) {
  Use("/odd/refuse2");
  for (int refused = 1; refused <= 2; ++refused) {
    EXPECT_EQ(Run(u"1"), kEmptyReply);
    EXPECT_EQ(Stats()["refused"], refused);
  }
  EXPECT_EQ(Stats()["actions"]["Execute"], 0);
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
  EXPECT_EQ(Stats()["actions"]["Execute"], 1);
  EXPECT_EQ(ScriptsRun(), 1);
}

TEST_F(OddAnswers, SilenceEndsAtTheIdleTime) {
  const std::string words = "0x80020009 Operation timed out after ";
  HttpOptions options;
  options.idleTimeout = 300;
  SetThreadHttpOptions(options, nullptr);
  for (const char* form : {"stall", "stallhead"}) {
    Use(std::string("/odd/") + form);
    const std::string outcome = Run(u"1");
    EXPECT_EQ(outcome.substr(0, words.size()), words) << form;
    EXPECT_NE(outcome.find(" milliseconds without a byte"), std::string::npos) << outcome;
  }
  EXPECT_EQ(ScriptsRun(), 2);
  Use();
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
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
  Use();
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 6);
}

TEST_F(OddAnswers, FailedCloseCanBeRepeated) {
  Use("/odd/refuse2");
  EXPECT_EQ(Close(), kEmptyReply);
  EXPECT_EQ(HostKnows().substr(0, 5), "open ");
  EXPECT_EQ(Close(), kEmptyReply);
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(HostKnows().substr(0, 7), "closed ");
  EXPECT_EQ(Stats()["actions"]["CloseUserSession"], 1);
  EXPECT_EQ(Stats()["openSessions"], 0);
}

TEST_F(OddAnswers, HostCanCancelAStalledAnswer) {
  test::ProgressListener canceller(
      [](bool sending, std::int64_t, std::int64_t) { return sending ? S_OK : S_FALSE; });
  SetThreadHttpOptions(HttpOptions(), &canceller);
  Use("/odd/stall");
  EXPECT_EQ(Run(u"1"), "0x80020009 Operation was aborted by an application callback");
  SetThreadHttpOptions(HttpOptions(), nullptr);
  EXPECT_EQ(canceller.References(), 0U);
  Use();
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
  EXPECT_EQ(ScriptsRun(), 2);
}

}  // namespace
}  // namespace qv
