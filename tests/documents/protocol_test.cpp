// Compares docs/protocol.md with the built client, byte by byte.
#include <gtest/gtest.h>

#include <sstream>

#include "fixtures/raw_server.h"
#include "tests/documents/markdown.h"
#include "tests/documents/typing.h"
#include "tests/fixtures/output_of.h"

namespace qv::documents {
namespace {

const std::string kPage = ReadFile(std::string(QV_SOURCE_DIR) + "/docs/protocol.md");

// The lines of a head end with CR LF, and a body has no line end.
std::string OnTheWire(const std::string& block) {
  const std::size_t empty = block.find("\n\n");
  return Replaced(block.substr(0, empty + 2), "\n", "\r\n") +
         block.substr(empty + 2, block.size() - empty - 3);
}

std::string InEnvelope(const std::string& body) {
  return "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\"><soap:Body>" + body +
         "</soap:Body></soap:Envelope>";
}

std::string Executed(const std::string& value) {
  return InEnvelope("<ExecuteResponse>" + value + "</ExecuteResponse>");
}

constexpr char kOne[] = "<r xsi:type=\"xsd:int\">1</r>";

class Protocol : public ::testing::Test {
 protected:
  void Answer(const std::vector<std::string>& answers) {
    test::RawScript script;
    for (const std::string& answer : answers) script.ReadRequest().Write(answer);
    server_.Expect(script);
  }
  // Both output streams of a run.
  std::string Run(const std::string& more) const {
    const std::string command =
        "env -i QV_REGISTRY=/dev/null SCRIPTWELLS_PASSWORD=secret timeout 60 " SCRIPTWELLS_PROGRAM
        " run --server http://127.0.0.1:" +
        std::to_string(server_.Port()) + " --user joe " + more + " 2>&1 </dev/null";
    return OutputOf(command).text;
  }
  // A run whose script gets this answer.
  std::string RunWithAnswer(const std::string& answer, const std::string& more = "-e 1") {
    Answer({opened_, answer, closed_});
    return Run(more);
  }
  std::string RunWith(const std::string& envelope, const std::string& more = "-e 1 --json") {
    return RunWithAnswer(test::RawAnswerText(envelope), more);
  }
  static void ExpectRow(const Row& row, const std::string& printed) {
    if (row.second.rfind("{", 0) == 0)
      EXPECT_EQ(printed.substr(0, printed.find('\n')), row.second) << row.first << "\n" << printed;
    else
      EXPECT_NE(printed.find("\"message\":\"" + row.second), std::string::npos) << row.first << "\n"
                                                                                << printed;
  }

  const std::string opened_ =
      test::RawAnswerText(InEnvelope("<CreateUserSessionResponse><r>1</r></CreateUserSessionResponse>"));
  const std::string closed_ = test::RawAnswerText(InEnvelope("<CloseUserSessionResponse/>"));
  test::RawServer server_;
};

TEST_F(Protocol, SessionIsAsThePageShowsIt) {
  const std::vector<std::string> blocks = BlocksOf(kPage, "http");
  ASSERT_EQ(blocks.size(), 6U);
  std::string requests;
  std::vector<std::string> answers;
  for (std::size_t i = 0; i < blocks.size(); ++i)
    if (i % 2 == 0)
      requests += OnTheWire(blocks[i]);
    else
      answers.push_back(OnTheWire(blocks[i]));
  Answer(answers);
  EXPECT_EQ(Run("-e '6 * 7' -p a=int:7"), "42\n");
  EXPECT_EQ(server_.AllReceived(),
            Replaced(requests, "127.0.0.1:8080", "127.0.0.1:" + std::to_string(server_.Port())));
}

TEST_F(Protocol, AnswersAreReadAsThePageSays) {
  const struct {
    const char* head;  // of the table
    std::size_t rows;
    std::string (*answer)(const std::string& cell);
  } tables[] = {
      {"Envelope", 6, [](const std::string& envelope) { return envelope; }},
      {"Body", 12, [](const std::string& body) { return InEnvelope(body); }},
      {"Value element", 26, [](const std::string& value) { return Executed(value); }},
  };
  for (const auto& table : tables) {
    const std::vector<Row> rows = RowsOf(kPage, table.head);
    EXPECT_EQ(rows.size(), table.rows) << table.head;
    for (const Row& row : rows) ExpectRow(row, RunWith(table.answer(row.first)));
  }
}

TEST_F(Protocol, ParametersAreWrittenAsThePageSays) {
  const std::vector<Row> rows = RowsOf(kPage, "Parameter");
  EXPECT_EQ(rows.size(), 11U);
  for (const Row& row : rows) {
    RunWith(Executed(kOne), "-e 1 -p " + Quoted(row.first));
    EXPECT_NE(server_.Received().back().find(row.second), std::string::npos) << row.first << "\n"
                                                                             << server_.Received().back();
  }
}

TEST_F(Protocol, HeadsAreReadAsThePageSays) {
  const std::string answer = Executed(kOne);
  const std::string chunk = "Transfer-Encoding: chunked\r\n\r\n" + [&] {
    std::ostringstream size;
    size << std::hex << answer.size();
    return size.str();
  }() + "\r\n" + answer + "\r\n0\r\n\r\n";
  for (const std::string& bad :
       {"HTTP/1.1 200 OK\r\n" + chunk, std::string("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")})
    EXPECT_NE(RunWithAnswer(bad).find("Unknown Http problem."), std::string::npos) << bad;
  for (const std::string& good :
       {Replaced(test::RawAnswerText(answer), "200 OK", "500 Internal Server Error"),
        test::RawAnswerText(answer, "Content-Encoding: gzip\r\n")})
    EXPECT_EQ(RunWithAnswer(good), "1\n") << good;
}

TEST_F(Protocol, SessionWithoutAnIdIsNotOpen) {
  Answer({test::RawAnswerText(InEnvelope("<CreateUserSessionResponse><r/></CreateUserSessionResponse>"))});
  EXPECT_NE(Run("-e 1").find("the server opened a session without an id"), std::string::npos);
}

}  // namespace
}  // namespace qv::documents
