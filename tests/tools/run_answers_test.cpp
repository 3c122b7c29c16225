// `scriptwells run` against a server that answers as the test says: what arrives changed or not at all.
#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::RunTool;
using testing::ScriptAnswered;
using testing::SessionClosed;
using testing::SessionOpened;
using testing::StatusAnswer;
using testing::Words;

class RunAnswers : public testing::TransferServer {
 protected:
  // One run whose call is answered so.
  Outcome Answered(const std::string& answer, const Words& more = {}) {
    Answer({SessionOpened(), answer, SessionClosed()});
    Words words = AsJoe("run", {"-e", "1"});
    words.insert(words.end(), more.begin(), more.end());
    return RunTool(words);
  }
};

TEST_F(RunAnswers, CountThatWrappedIsTold) {
  const Outcome text = Answered(ScriptAnswered("xsd:duration", "P40000D"));
  EXPECT_EQ(text.out, "P-25536D\n");
  EXPECT_EQ(text.err,
            "scriptwells: note: a count of the duration does not fit 16 bits and arrived changed\n");
  EXPECT_EQ(text.exit, 0);
  EXPECT_EQ(Answered(ScriptAnswered("xsd:duration", "PT40000M"), {"--json"}).err,
            "{\"note\":\"a count of the duration does not fit 16 bits and arrived changed\"}\n");
  const Outcome whole = Answered(ScriptAnswered("xsd:duration", "-P32767D"));
  EXPECT_EQ(whole.out, "-P32767D\n");
  EXPECT_EQ(whole.err, "");
}

TEST_F(RunAnswers, EmptyAnswerTellsWhatItMayBe) {
  for (const std::string& answer :
       {ScriptAnswered("xsd:anyType", "x"), ScriptAnswered("long", "7"), ScriptAnswered("url", "")}) {
    const Outcome outcome = Answered(answer);
    EXPECT_EQ(outcome.out, "\n") << answer;
    EXPECT_EQ(outcome.err,
              "scriptwells: note: the answer arrived as an empty value: a long, a type that the library does "
              "not read, or a URL without text\n")
        << answer;
    EXPECT_EQ(outcome.exit, 0) << answer;
  }
}

TEST_F(RunAnswers, ServerOfAnotherKindIsAskedFor) {
  const std::pair<std::string, std::string> answers[] = {
      {test::RawAnswerText("<html>Welcome</html>"), "The respone that arrived is not valid (HTTP status 200"},
      {"HTTP/1.1 404 Not Found\r\nContent-Length: 9\r\n\r\nnot found",
       "The respone that arrived is not valid (HTTP status 404"},
      {"HTTP/1.1 302 Found\r\nLocation: /login\r\nContent-Length: 0\r\n\r\n",
       "Unknown Http problem. (HTTP status 302, and redirects are not followed, no usable Content-Length"},
      {"HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic\r\nContent-Length: 3\r\n\r\nwho",
       "The respone that arrived is not valid (HTTP status 401, and authentication of HTTP is not supported"},
  };
  for (const auto& [answer, shown] : answers) {
    Answer({answer});
    const Outcome outcome = RunTool(AsJoe("run", {"-e", "1"}));
    EXPECT_EQ(outcome.err, "scriptwells: answer not understood: " + shown + "; is " + Origin() +
                               " a Scriptwells server?)\n");
    EXPECT_EQ(outcome.exit, 7);
  }
}

TEST_F(RunAnswers, RequestThatTheServerFindsTooLongIsTold) {
  for (const std::string& refusal :
       {StatusAnswer("413 Payload Too Large"),
        std::string("HTTP/1.1 413 Payload Too Large\r\nContent-Length: 8\r\n\r\ntoo long")}) {
    const Outcome outcome = Answered(refusal);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "scriptwells: the server found the request too long (HTTP status 413)\n");
    EXPECT_EQ(outcome.exit, 7);
    EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
  }
  EXPECT_EQ(Answered(StatusAnswer("413 Too Large"), {"--json"}).err,
            "{\"error\":{\"kind\":\"request too long\",\"message\":\"the server found the request too long "
            "(HTTP status 413)\",\"exit\":7}}\n");
}

}  // namespace
}  // namespace qv::cli
