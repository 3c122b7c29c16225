// Tapes as people ask about them.
#include "face/tape/tape_report.h"

#include <regex>

#include "face/tape/taped_session.h"

namespace scriptwells {
namespace {

using test::TapedSession;

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(TapedSession, IsShownInAFewLines) {
  Record([](Session& session) { session.Run("6 * parameters.n", {{"n", 7}}); });
  const std::string shown = ShowTape(Tape());
  const std::regex whole(
      R"(line 5: session 1, open session at http://127\.0\.0\.1:\d+, 200, \d+ bytes sent, \d+ received\n)"
      R"(line \d+: session 1, execute at \S+, 200, \d+ bytes sent, \d+ received\n)"
      R"re(  script = "6 \* parameters\.n"\n  n = int 7\n  = int 42\n)re"
      R"(line \d+: session 1, close session at \S+, 200, \d+ bytes sent, \d+ received\n)");
  EXPECT_TRUE(std::regex_match(shown, whole)) << shown;
}

TEST_F(TapedSession, DifferencesAreOfWhatWasAskedAndAnswered) {
  const auto record = [this](const std::string& name, const std::string& script) {
    Record([&](Session& session) { session.Run(script); }, name);
  };
  record("a.tape", "[1].length");
  record("a.tape", "'two'");
  record("b.tape", "'two'");
  record("b.tape", "[1].length");
  EXPECT_EQ(DiffTapes(Tape(), Tape("b.tape")), "");
  record("c.tape", "'two'");
  record("c.tape", "[1, 2].length");
  const std::string diff = DiffTapes(Tape(), Tape("c.tape"));
  EXPECT_TRUE(Holds(diff, "execute, line ")) << diff;
  EXPECT_TRUE(Holds(diff, "[1].length")) << diff;
  EXPECT_TRUE(Holds(diff, "\n+ <ExecuteResult xsi:type=\"xsd:int\">2</ExecuteResult>")) << diff;
  EXPECT_FALSE(Holds(diff, "two")) << diff;
  record("d.tape", "'two'");
  EXPECT_TRUE(Holds(DiffTapes(Tape(), Tape("d.tape")), "- execute, line "))
      << DiffTapes(Tape(), Tape("d.tape"));
  EXPECT_TRUE(Holds(DiffTapes(Tape("d.tape"), Tape()), "+ execute, line "));
}

// Ids of published files are the server's.
TEST_F(TapedSession, IdsOfTheServerAreNoDifference) {
  for (const char* name : {"a.tape", "b.tape"})
    Record(
        [&](Session& session) {
          session.Download(session.Run("publish('out.txt', 'text')").As<std::string>(), directory_.Path());
        },
        name);
  EXPECT_EQ(DiffTapes(Tape(), Tape("b.tape")), "");
}

TEST_F(TapedSession, EditedTapesAreFound) {
  Record([](Session& session) { session.Run("6 * parameters.n", {{"n", 7}}); });
  const std::string tape = TapeContent();
  EXPECT_EQ(VerifyTape(Tape()), std::vector<std::string>());
  const struct {
    const char* from;
    const char* to;
    const char* fault;
  } rows[] = {
      {"  n = int 7\n", "  n = int 8\n", "the arguments are not those of the request"},
      {"  = int 42\n", "  = int 43\n", "the value is not that of the answer"},
      {">42</", ">42000</", "the answer announces "},
      {"<password:1>{6}", "<password:1>{7}", "the request announces "},
      {"<password:1>", "<password:2>", "<password:2> comes before the one with the number below"},
      {"  script = ", "  script =  ", "the arguments are not those of the request"},
      {"\n> POST ", "\n> POS\\x54 ", "not as this program writes it"},
  };
  for (const auto& row : rows) {
    const std::size_t at = tape.find(row.from);
    ASSERT_NE(at, std::string::npos) << row.from;
    std::string edited = tape;
    directory_.Write("edited.tape", edited.replace(at, std::string(row.from).size(), row.to));
    std::string found;
    for (const std::string& fault : VerifyTape(Tape("edited.tape"))) found += fault + "\n";
    EXPECT_TRUE(Holds(found, row.fault)) << row.to << "\n" << found;
  }
}

}  // namespace
}  // namespace scriptwells
