// `scriptwells map` as its users run it: results, failures, sessions that end, and going on after a stop.
#include <csignal>
#include <filesystem>
#include <regex>
#include <sstream>
#include <thread>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

const std::string kSquares = "map -e 'parameters.a * parameters.a' ";

std::string Numbers(int count) {
  std::string rows = "a:int\n";
  for (int i = 1; i <= count; ++i) rows += std::to_string(i) + "\n";
  return rows;
}

std::string Squares(int count) {
  std::string rows = "a:int,answer\r\n";
  for (int i = 1; i <= count; ++i) rows += std::to_string(i) + "," + std::to_string(i * i) + "\r\n";
  return rows;
}

class Map : public ::testing::Test {
 protected:
  std::string Rows(const std::string& text) const { return folder_.Write("rows.csv", text); }
  // A client of the service for rows with this text.
  Tool Mapped(const std::string& script, const std::string& rows, const std::string& options = "") const {
    return service_.Joe("map -e", {script, Rows(rows)}).Add(Line(options));
  }
  std::string Results() const { return folder_.Path("out.csv"); }
  std::string ToResults(const std::string& more = "") const { return "--results " + Results() + " " + more; }

  TemporaryDirectory folder_;
  ServeProcess service_{"--script-timeout 20"};
};

TEST_F(Map, AnswersComeInTheOrderOfTheRows) {
  // Early rows take longer.
  const std::string script =
      "const end = Date.now() + 30 * (8 - parameters.a % 8); while (Date.now() < end); parameters.a * "
      "parameters.a";
  Mapped(script, Numbers(24), "--jobs 8").Succeeds(Squares(24));
  EXPECT_TRUE(service_.Reaches("openSessions", 0));
  EXPECT_LE(service_.Count("CreateUserSession"), 8);
  EXPECT_EQ(service_.Count("Execute"), 24);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("rows.failed.csv")));
}

TEST_F(Map, SessionsAreOpenedForRowsOnly) {
  Mapped("1", "a\nx\n", "--jobs 8").Succeeds("a,answer\r\nx,1\r\n");
  EXPECT_EQ(service_.Count("CreateUserSession"), 1);
  Mapped("1", "a\n").Succeeds("a,answer\r\n");
  EXPECT_EQ(service_.Count("CreateUserSession"), 1);
}

TEST_F(Map, TypesTablesAndFormulas) {
  const std::string rows = "a:double,b:date,c,note:ignore\n1.5,2024-03-05,=1+1,n\n";
  Mapped("[typeof parameters.a, Object.keys(parameters).length, parameters.c].join()", rows)
      .Succeeds("a:double,b:date,c,note:ignore,answer\r\n1.5,2024-03-05,=1+1,n,\"number,3,=1+1\"\r\n");
  Mapped("[{n: parameters.c}]", "c\nx\n", "--json")
      .Succeeds(R"({"row":1,"cells":{"c":"x"},"answer":{"type":"recordlist","columns":[)"
                R"({"name":"n","displayName":"n","type":"string"}],"rows":[["x"]]}})"
                "\n");
  Mapped("[{n: parameters.c}]", "c\nx\n")
      .Succeeds(
          "c,answer\r\nx,\"{\"\"columns\"\":[{\"\"name\"\":\"\"n\"\",\"\"displayName\"\":\"\"n\"\","
          "\"\"type\"\":\"\"string\"\"}],\"\"rows\"\":[[\"\"x\"\"]]}\"\r\n");
}

TEST_F(Map, NothingIsSentIfARowIsWrong) {
  Mapped("1", "a:int\n1\nx\n").FailsLike(6, Rows("a:int\n1\nx\n") + ", line 3: parameter 'a': ");
  EXPECT_EQ(service_.Count("CreateUserSession"), 0);
}

TEST_F(Map, FailedRowsAreKeptBesideAndCanBeRunAgain) {
  const std::string script = "if (parameters.a % 2) throw new ScriptError(5, 'odd, no'); parameters.a";
  const Outcome outcome = Mapped(script, Numbers(4)).Run();
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(outcome.out, "a:int,answer\r\n2,2\r\n4,4\r\n");
  EXPECT_EQ(outcome.err,
            "scriptwells: 2 of 4 rows have no result; they are in " + folder_.Path("rows.failed.csv") + "\n");
  EXPECT_EQ(folder_.Read("rows.failed.csv"),
            "a:int,row:ignore,error:ignore\r\n1,1,\"script fault 0x80040005 (5): odd, no\"\r\n"
            "3,3,\"script fault 0x80040005 (5): odd, no\"\r\n");
  Mapped("1", Numbers(1))
      .Fails(6, folder_.Path("rows.failed.csv") + " is there already (--force replaces it)");
  service_.Joe(kSquares + folder_.Path("rows.failed.csv"))
      .Succeeds(
          "a:int,row:ignore,error:ignore,answer\r\n1,1,\"script fault 0x80040005 (5): odd, no\",1\r\n"
          "3,3,\"script fault 0x80040005 (5): odd, no\",9\r\n");
}

TEST_F(Map, WrongServerOrUserEndsAll) {
  const std::string rows = Rows(Numbers(100));
  const Outcome outcome = Tool(kSquares + rows + " --server http://127.0.0.1:1 --user joe").Run();
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_TRUE(StartsWith(outcome.err,
                         "scriptwells: note: 100 of 100 rows were not run\nscriptwells: cannot "
                         "reach http://127.0.0.1:1: "))
      << outcome.err;
}

TEST_F(Map, ResultsOfAnEarlierStartAreKept) {
  Mapped("parameters.a * parameters.a", Numbers(10), ToResults()).Succeeds("");
  EXPECT_EQ(folder_.Read("out.csv"), Squares(10));
  Mapped("parameters.a * parameters.a", Numbers(10), ToResults())
      .Fails(6, Results() + " is there already (--resume goes on with what was begun, --force begins again)");
  Mapped("parameters.a * parameters.a", Numbers(10), ToResults("--resume")).Succeeds("");
  EXPECT_EQ(folder_.Read("out.csv"), Squares(10));
  EXPECT_EQ(service_.Count("Execute"), 10);
  const std::string other =
      "the journal " + Results() +
      ".journal belongs to another script, to other rows, or to another form of results";
  Mapped("1", Numbers(10), ToResults("--resume")).Fails(6, other);
  Mapped("parameters.a * parameters.a", Numbers(11), ToResults("--resume")).Fails(6, other);
  Mapped("parameters.a * parameters.a", Numbers(10), ToResults("--resume -o json")).Fails(6, other);
  EXPECT_EQ(folder_.Read("out.csv"), Squares(10));
  Mapped("parameters.a * parameters.a", Numbers(3), ToResults("--force")).Succeeds("");
  EXPECT_EQ(folder_.Read("out.csv"), Squares(3));
}

TEST_F(Map, ReadFilesAreNotWritten) {
  const std::string rows = Rows(Numbers(1));
  EXPECT_EQ(service_.Joe(kSquares + rows + " --force --results " + rows).Run().exit, 6);
  EXPECT_EQ(service_.Joe(kSquares + rows + " --force --failed " + rows).Run().exit, 6);
  EXPECT_EQ(folder_.Read("rows.csv"), Numbers(1));
}

TEST_F(Map, UnknownRowsAreNamedAndOnlyRunAgainWhenAsked) {
  folder_.Write("out.csv", "");
  const std::string script = "parameters.a * parameters.a";
  Mapped(script, Numbers(3), ToResults("--force")).Succeeds("");
  // As if the program had been killed during the call of row 2, and before that of row 3.
  const std::string journal = folder_.Read("out.csv.journal");
  folder_.Write("out.csv.journal",
                journal.substr(0, journal.find('\n') + 1) + "start 1\ndone 1 \"1\"\nstart 2\n");
  const Outcome left = Mapped(script, Numbers(3), ToResults("--resume")).Run();
  EXPECT_EQ(left.exit, 1);
  EXPECT_EQ(
      left.err,
      "scriptwells: warning: it is not known whether the script ran: row 2; --resume --retry-unknown runs "
      "the script again for them\nscriptwells: 1 of 3 rows have no result; they are in " +
          folder_.Path("out.failed.csv") + "\n");
  EXPECT_EQ(folder_.Read("out.csv"), "a:int,answer\r\n1,1\r\n3,9\r\n");
  EXPECT_EQ(folder_.Read("out.failed.csv"),
            "a:int,row:ignore,error:ignore\r\n2,2,the program ended before the answer came\r\n");
  EXPECT_EQ(service_.Count("Execute"), 4);
  Mapped(script, Numbers(3), ToResults("--resume --retry-unknown"))
      .Succeeds("", "warning: run again, although the script may have run before: row 2");
  EXPECT_EQ(folder_.Read("out.csv"), Squares(3));
  EXPECT_EQ(service_.Count("Execute"), 5);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("out.failed.csv")));
}

TEST_F(Map, SilenceOfTheServerIsUnknownAndOthersGoOn) {
  const std::string script = "if (parameters.a == 2) while (true); parameters.a * parameters.a";
  const Outcome outcome = Mapped(script, Numbers(4), ToResults("--timeout 1 --jobs 1")).Run();
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(folder_.Read("out.csv"), "a:int,answer\r\n1,1\r\n3,9\r\n4,16\r\n");
  EXPECT_TRUE(Holds(folder_.Read("out.csv.journal"), "\nunknown 2 \"")) << folder_.Read("out.csv.journal");
}

TEST_F(Map, InterruptEndsCallsAndTheRestGoesOnLater) {
  const std::string script =
      "const end = Date.now() + 100; while (Date.now() < end); parameters.a * parameters.a";
  Process process(Mapped(script, Numbers(200), ToResults()));
  ASSERT_TRUE([&] {
    for (int i = 0; i < 400 && service_.Count("Execute") < 5; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(25));
    return service_.Count("Execute") >= 5;
  }());
  process.Signal(SIGINT);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_TRUE(Holds(outcome.err, " of 200 rows were not run; --resume goes on with them\n")) << outcome.err;
  EXPECT_TRUE(service_.Reaches("openSessions", 0));
  EXPECT_LT(service_.Count("Execute"), 200);
  EXPECT_FALSE(Holds(folder_.Read("out.csv.journal"), "unknown"));
  EXPECT_EQ(Mapped(script, Numbers(200), ToResults("--resume --jobs 8")).Run().exit, 0);
  EXPECT_EQ(folder_.Read("out.csv"), Squares(200));
  EXPECT_EQ(service_.Count("Execute"), 200);
}

TEST_F(Map, InterruptCancelsWhatDoesNotEnd) {
  Process process(Mapped("while (true);", Numbers(9), ToResults("--jobs 2")));
  ASSERT_TRUE(service_.Reaches("Execute", 2));
  process.Signal(SIGINT);
  const auto before = std::chrono::steady_clock::now();
  const Outcome outcome = process.Finish();
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_TRUE(Holds(outcome.err, "it is not known whether the script ran: rows 1, 2;")) << outcome.err;
}

TEST_F(Map, TimeForAllCallsEnds) {
  const Outcome outcome = Mapped("while (true);", Numbers(9), "--max-time 0.5").Run();
  EXPECT_EQ(outcome.exit, 4);
  EXPECT_TRUE(Holds(outcome.err, "the time that --max-time allows is over")) << outcome.err;
}

TEST_F(Map, ProgressIsShownOnATerminal) {
  const Outcome outcome =
      Mapped("const end = Date.now() + 300; while (Date.now() < end); 1", "a\nx\ny\n", ToResults("--jobs 1"))
          .Set("SCRIPTWELLS_PASSWORD", "x")
          .OnTerminal("", "", 100);
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_TRUE(Holds(outcome.out, "rows.csv")) << outcome.out;
  EXPECT_TRUE(Holds(outcome.out, " of 2 rows  ")) << outcome.out;
  EXPECT_TRUE(Holds(outcome.out, " left")) << outcome.out;
}

TEST_F(Map, ClosedPipeEndsQuietly) {
  Process process(Mapped("parameters.a", Numbers(2000)));
  EXPECT_EQ(process.ReadLine(), "a:int,answer\r");
  process.CloseOutput();
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_FALSE(Holds(outcome.err, "cannot write")) << outcome.err;
}

TEST_F(Map, SessionThatTheServerEndedIsReplaced) {
  const std::string script =
      "const end = Date.now() + 200; while (Date.now() < end); parameters.a * parameters.a";
  const std::string trace = folder_.Path("trace");
  Process process(Mapped(script, Numbers(6), "-j 1 --trace-secrets --trace " + trace));
  ASSERT_TRUE(service_.Reaches("Execute", 2));
  std::smatch id;
  const std::string text = folder_.Read("trace");
  ASSERT_TRUE(std::regex_search(text, id, std::regex("CreateUserSessionResult[^>]*>([^<]+)<"))) << text;
  EXPECT_EQ(Tool("session close --server " + service_.Url() + " --usid " + id[1].str()).Run().exit, 0);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_TRUE(StartsWith(outcome.err, "scriptwells: 1 of 6 rows have no result;")) << outcome.err;
  EXPECT_EQ(service_.Count("CreateUserSession"), 2);
}

// Answers of a server, one connection for one session.
class MapAgainst : public TransferServer {
 protected:
  Tool Mapped(int rows, const std::string& options = "") const {
    return Joe("map -e 1 -j 1", {folder_.Write("rows.csv", Numbers(rows))}).Add(Line(options));
  }
};

std::string Refused() {
  return test::RawAnswerText(
      "<soap:Envelope><soap:Body><soap:Fault><faultcode>soap:Client</faultcode><faultstring>x</faultstring>"
      "</soap:Fault></soap:Body></soap:Envelope>");
}

TEST_F(MapAgainst, BrokenAnswerIsUnknown) {
  server_.Expect(
      test::RawScript().Reply(SessionOpened()).Reply(ScriptAnswered("xsd:int", "1")).ReadRequest().Close());
  Answer({SessionClosed(), SessionOpened(), ScriptAnswered("xsd:int", "3"), SessionClosed()});
  const Outcome outcome = Mapped(3).Run();
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(outcome.out, "a:int,answer\r\n1,1\r\n3,3\r\n");
  EXPECT_TRUE(Holds(outcome.err, "it is not known whether the script ran: row 2\n")) << outcome.err;
}

TEST_F(MapAgainst, SecretsAreNowhere) {
  Answer({SessionOpened(), ScriptAnswered("xsd:string", "a"), Refused(), SessionClosed()});
  const std::string trace = folder_.Path("trace");
  const Outcome outcome = Joe("map -e 1 -j 1", {folder_.Write("rows.csv", Numbers(2))})
                              .Add({"--results", folder_.Path("out.csv"), "--trace", trace})
                              .Set("SCRIPTWELLS_PASSWORD", "pw-canary")
                              .Run();
  EXPECT_EQ(outcome.exit, 1);
  ASSERT_TRUE(WasSent("pw-canary"));
  for (const char* file : {"out.csv", "out.csv.journal", "out.failed.csv", "trace"}) {
    EXPECT_NE(folder_.Read(file), "") << file;
    EXPECT_FALSE(Holds(folder_.Read(file), "canary")) << file;
    EXPECT_FALSE(Holds(folder_.Read(file), ">u1<")) << file;
  }
  EXPECT_FALSE(Holds(outcome.out + outcome.err, "canary"));
}

}  // namespace
}  // namespace qv::cli
