// Requests that are not on the tape, or not where they are asked for.
#include "face/tape/taped_session.h"

namespace scriptwells {
namespace {

using test::ErrorOf;
using test::TapedSession;

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(TapedSession, AnotherRequestIsShownBesideTheNearestOne) {
  Record([](Session& session) {
    session.Run("6 * 7", {{"name", "joe"}});
    session.Run("'something else'");
  });
  EndService();
  Play([&](Session& session) {
    const std::string error = ErrorOf([&] { session.Run("6 * 8", {{"name", "joe"}}); });
    EXPECT_TRUE(Holds(error, "local file: the request (execute) is not on the tape " + Tape() +
                                 "; the nearest one, on line "))
        << error;
    EXPECT_TRUE(Holds(error, "6 * 7")) << error;
    EXPECT_TRUE(Holds(error, "6 * 8")) << error;
    EXPECT_FALSE(Holds(error, "name")) << error;
    // It was not sent, and the session stays where it was.
    EXPECT_EQ(session.Run("6 * 7", {{"name", "joe"}}).As<int>(), 42);
  });
}

TEST_F(TapedSession, SecretsAreNotInTheDifference) {
  Record([](Session& session) { session.Run("1"); });
  EndService();
  Play([&](Session& session) {
    const std::string error = ErrorOf([&] { session.Run("'secret' + '" + session.Id() + "'"); });
    EXPECT_TRUE(Holds(error, "<password:1>")) << error;
    EXPECT_FALSE(Holds(error, "secret")) << error;
    EXPECT_FALSE(Holds(error, session.Id())) << error;
  });
}

TEST_F(TapedSession, TheEndOfTheTapeIsToldApart) {
  Record([](Session& session) {
    session.Run("1");
    session.Run("2");
  });
  EndService();
  Play([&](Session& session) {
    EXPECT_TRUE(Holds(ErrorOf([&] { session.Run("2"); }), "at this place; one like it is on line "));
    EXPECT_EQ(session.Run("1").As<int>(), 1);
    EXPECT_EQ(session.Run("2").As<int>(), 2);
    session.Close();
    Options options;
    options.replay = Tape();
    Session other = Session::Adopt(url_, "some-id", options);
    EXPECT_TRUE(Holds(ErrorOf([&] { other.Run("2"); }), "has no session left to play"));
  });
}

TEST_F(TapedSession, ASessionMayBeClosedEarly) {
  Record([](Session& session) {
    session.Run("1");
    session.Run("2");
  });
  EndService();
  Play([&](Session& session) {
    session.Run("1");
    EXPECT_EQ(ErrorOf([&] { session.Close(); }), "no error");
  });
}

TEST_F(TapedSession, SessionsThatBeganAlikeAreTakenByWhatTheyAskFor) {
  for (int i = 0; i < 3; ++i)
    Record([i](Session& session) {
      session.Run("'first'");
      session.Run(std::to_string(i));
    });
  EndService();
  // One after the other, the other way round, and again.
  for (const int i : {2, 1, 0, 0, 2})
    Play([i](Session& session) {
      session.Run("'first'");
      EXPECT_EQ(session.Run(std::to_string(i)).As<int>(), i);
    });
  // At once.
  Play([&](Session& one) {
    Play([&](Session& two) {
      one.Run("'first'");
      two.Run("'first'");
      EXPECT_EQ(one.Run("1").As<int>(), 1);
      EXPECT_EQ(two.Run("0").As<int>(), 0);
    });
  });
}

TEST_F(TapedSession, ATapeThatWasWrittenAgainIsReadAgain) {
  Record([](Session& session) { session.Run("1"); });
  Play([](Session& session) { EXPECT_EQ(session.Run("1").As<int>(), 1); });
  Record([](Session& session) { session.Run("2"); });
  Play([](Session& session) { EXPECT_EQ(session.Run("2").As<int>(), 2); });
}

}  // namespace
}  // namespace scriptwells
