// A session from its opening to its end, on a real service.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "face/session/refusal.h"
#include "face/session/session_fixture.h"
#include "scriptwells/version.h"

namespace scriptwells {
namespace {

using test::RefusalOf;
using test::SessionTest;

TEST_F(SessionTest, RunsAndCloses) {
  {
    Session session(Url(), {"joe", "secret"});
    EXPECT_EQ(session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}}).As<int>(), 42);
    EXPECT_EQ(session.Server(), Url());
  }
  EXPECT_EQ(Seen("CreateUserSession"), 1);
  EXPECT_EQ(Seen("Execute"), 1);
  EXPECT_EQ(Seen("CloseUserSession"), 1);
}

TEST_F(SessionTest, ReadsATableInALoopOverATemporary) {
  Session session = Open();
  std::ostringstream out;
  for (const auto& row : session.Run("[{city: 'Rome', people: 2748109}]").AsTable())
    out << row["city"].As<std::string>() << " " << row["people"].As<int>() << "\n";
  EXPECT_EQ(out.str(), "Rome 2748109\n");
}

TEST_F(SessionTest, ClosesOnEveryWayOut) {
  const auto fail = [this] {
    Session session = Open();
    session.Run("throw new ScriptError(5, 'no such customer')");
  };
  EXPECT_THROW(fail(), ScriptError);
  EXPECT_EQ(Seen("CloseUserSession"), 1);
}

TEST_F(SessionTest, IsUsableAfterAFailedCall) {
  Session session = Open();
  EXPECT_EQ(RefusalOf(Phase::kScript, [&] { session.Run("throw 'no'"); }), "no");
  EXPECT_EQ(session.Run("1").As<int>(), 1);
}

TEST_F(SessionTest, CloseReportsAndEndsIt) {
  Session session = Open();
  session.Close();
  session.Close();
  EXPECT_EQ(Seen("CloseUserSession"), 1);
  EXPECT_EQ(RefusalOf(Phase::kSession, [&] { session.Run("1"); }), "the session is closed");
}

TEST_F(SessionTest, AdoptsAnIdAndDoesNotCloseIt) {
  Session owner = Open();
  {
    Session guest = Session::Adopt(Url(), owner.Id());
    EXPECT_EQ(guest.Id(), owner.Id());
    EXPECT_EQ(guest.Run("'guest'").As<std::string>(), "guest");
  }
  EXPECT_EQ(Seen("CloseUserSession"), 0);
  EXPECT_EQ(owner.Run("1").As<int>(), 1);
  Session::Adopt(Url(), owner.Id()).Close();
  EXPECT_EQ(Seen("CloseUserSession"), 1);
  EXPECT_THROW(owner.Run("1"), Error);
}

TEST_F(SessionTest, ReleasesASessionThatStaysOpen) {
  std::string id;
  {
    Session session = Open();
    id = session.Release();
    EXPECT_THROW(session.Run("1"), SessionError);
  }
  EXPECT_EQ(Seen("CloseUserSession"), 0);
  EXPECT_EQ(Session::Adopt(Url(), id).Run("1").As<int>(), 1);
}

TEST_F(SessionTest, Moves) {
  std::optional<Session> kept;
  {
    Session session = Open();
    kept = std::move(session);
  }
  EXPECT_EQ(Seen("CloseUserSession"), 0);
  EXPECT_EQ(kept->Run("7").As<int>(), 7);
  *kept = Open();
  EXPECT_EQ(Seen("CloseUserSession"), 1) << "the first one";
  EXPECT_EQ(kept->Run("8").As<int>(), 8);
}

TEST_F(SessionTest, RefusesCallsOnceItWasMoved) {
  Session session = Open();
  const Session taken = std::move(session);
  const auto refused = [](const std::function<void()>& call) { return RefusalOf(Phase::kSession, call); };
  // NOLINTBEGIN(bugprone-use-after-move): what is tested
  for (const std::function<void()>& call : std::vector<std::function<void()>>{
           [&] { session.Run("1"); }, [&] { session.Close(); }, [&] { session.Id(); },
           [&] { session.Server(); }, [&] { session.RunAsync("1"); }, [&] { session.Release(); },
           [&] { session.Download(Url() + "/x"); }})
    EXPECT_EQ(refused(call), "the session was moved to another object");
  // NOLINTEND(bugprone-use-after-move)
}

TEST_F(SessionTest, SessionsComeAndGoBesideEachOther) {
  Session first = Open();
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(Open().Run("typed.date('2024-03-05')").As<Date>(), (Date{2024, 3, 5}));
  EXPECT_EQ(first.Run("typed.duration('P1D')").As<Duration>().days, 1) << "value types are still known";
}

TEST_F(SessionTest, RunsDocuments) {
  Session session = Open();
  const std::string answer =
      session.RunDocument(EXAMPLES_FOLDER "/document.xml", {{"for", 1}}).As<std::string>();
  EXPECT_EQ(answer, "Grüße, Wörld! You sent: <for>");
  EXPECT_EQ(RefusalOf(Phase::kLocalFile, [&] { session.RunDocument("/none.xml"); }),
            "cannot read the script document /none.xml: No such file or directory");
}

TEST_F(SessionTest, TakesTheLanguageFromTheCallOrTheSession) {
  Options options;
  options.language = "Cobol";
  Session session = Open(options);
  EXPECT_THROW(session.Run("1"), ScriptError);
  RunOptions call;
  call.language = "JavaScript";
  EXPECT_EQ(session.Run("1", {}, call).As<int>(), 1);
}

TEST_F(SessionTest, DoesNotCloseWhenTheServerIsGone) {
  Session session = Open();
  service_->Stop();
  EXPECT_THROW(session.Run("1"), ConnectionError);
}

TEST_F(SessionTest, RefusesTextsThatTheWireWouldCut) {
  Session session = Open();
  const auto refused = [&](const std::string& script) {
    return RefusalOf(Phase::kConversion, [&] { session.Run(script); });
  };
  EXPECT_EQ(refused(""), "the script is empty");
  EXPECT_EQ(refused("\xFF"), "the script is not valid UTF-8");
  EXPECT_EQ(refused(std::string("1\0;2", 4)), "the script holds a null character, which would end it there");
  EXPECT_EQ(Seen("Execute"), 0);
}

TEST_F(SessionTest, HasTheVersionOfTheProject) {
  EXPECT_STREQ(Version(), SCRIPTWELLS_VERSION);
}

}  // namespace
}  // namespace scriptwells
