// `scriptwells run` with answers that arrive changed, or that a server of this protocol does not send.
#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

class RunAnswers : public TransferServer {
 protected:
  Outcome Answered(const std::string& answer, const std::string& options = "") {
    AnswerCalls({answer});
    return Joe("run -e 1 " + options).Run();
  }
};

TEST_F(RunAnswers, WrappedCountIsNoted) {
  const std::string note = "a count of the duration does not fit 16 bits and arrived changed";
  Answered(ScriptAnswered("xsd:duration", "P40000D")).Succeeds("P-25536D\n", "note: " + note);
  EXPECT_EQ(Answered(ScriptAnswered("xsd:duration", "PT40000M"), "--json").err,
            "{\"note\":\"" + note + "\"}\n");
  Answered(ScriptAnswered("xsd:duration", "-P32767D")).Succeeds("-P32767D\n");
}

TEST_F(RunAnswers, EmptyAnswerIsNoted) {
  const std::pair<const char*, const char*> rows[] = {{"xsd:anyType", "x"}, {"long", "7"}, {"url", ""}};
  for (const auto& [type, text] : rows)
    Answered(ScriptAnswered(type, text))
        .Succeeds(
            "\n",
            "note: the answer arrived as an empty value: a long, a type that the library does not read, or a "
            "URL without text");
}

TEST_F(RunAnswers, AnotherKindOfServerIsSuspected) {
  const std::string invalid = "The respone that arrived is not valid (HTTP status ";
  const std::pair<std::string, std::string> rows[] = {
      {test::RawAnswerText("<html>Welcome</html>"), invalid + "200"},
      {StatusAnswer("404 Not Found", "not found"), invalid + "404"},
      {"HTTP/1.1 302 Found\r\nLocation: /login\r\nContent-Length: 0\r\n\r\n",
       "Unknown Http problem. (HTTP status 302, and redirects are not followed, no usable Content-Length"},
      {"HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic\r\nContent-Length: 3\r\n\r\nwho",
       invalid + "401, and authentication of HTTP is not supported"}};
  for (const auto& [answer, message] : rows) {
    Answer({answer});
    Joe("run -e 1")
        .Fails(7, "answer not understood: " + message + "; is " + Origin() + " a Scriptwells server?)");
  }
}

TEST_F(RunAnswers, RequestThatIsTooLongIsReported) {
  const std::string message = "the server found the request too long (HTTP status 413)";
  for (const char* body : {"", "too long"}) {
    Answered(StatusAnswer("413 Payload Too Large", body)).Fails(7, message);
    EXPECT_TRUE(WasClosed());
  }
  Answered(StatusAnswer("413 Too Large"), "--json")
      .Fails(7, R"({"error":{"kind":"request too long","message":")" + message + R"(","exit":7}})");
}

}  // namespace
}  // namespace qv::cli
