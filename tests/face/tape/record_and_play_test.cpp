// What was recorded is played with the same results, without a service.
#include <sys/stat.h>

#include <thread>

#include "face/tape/tape_report.h"
#include "face/tape/taped_session.h"

namespace scriptwells {
namespace {

using test::ErrorOf;
using test::TapedSession;
using test::WithoutTimes;

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Runs each script, and one that gives back each argument.
std::vector<Value> AnswersOf(Session& session) {
  std::vector<Value> answers;
  for (const char* script : {"true", "typed.byte(5)", "typed.short(-5)", "42", "typed.long(5)", "1.5",
                             R"('a <b> & \u00e9 \u{1F600}\r\n\\')", "''", "typed.date('2024-03-05')",
                             "typed.time('10:15:30')", "typed.datetime('2024-03-05T10:15:30')",
                             "typed.duration('P1DT2H')", "typed.url('http://a/', 'caption')",
                             "[{city: 'Rome', people: 2748109}, {city: 'Bern', people: 134591}]"})
    answers.push_back(session.Run(script));
  const Arguments arguments{{"a", true},
                            {"b", Byte(5)},
                            {"c", Short(5)},
                            {"d", Int(7)},
                            {"e", Long(5'000'000'000)},
                            {"f", Float(0.5)},
                            {"g", 1.5},
                            {"h", "<\xC3\xA9 \xF0\x9F\x98\x80>"},
                            {"i", Date{2024, 3, 5}},
                            {"j", Time{10, 15, 30, 0}},
                            {"k", DateTime::Parse("2024-03-05T10:15:30")},
                            {"l", Duration::Parse("P1DT2H")}};
  for (const Argument& argument : arguments)
    answers.push_back(session.Run("parameters." + argument.Name(), arguments));
  return answers;
}

TEST_F(TapedSession, EachTypeIsPlayedAsItWas) {
  std::vector<Value> recorded;
  Record([&](Session& session) { recorded = AnswersOf(session); });
  EndService();
  std::vector<Value> played;
  Play([&](Session& session) { played = AnswersOf(session); }, "a.tape", "b.tape");
  EXPECT_EQ(played, recorded);
  EXPECT_EQ(WithoutTimes(TapeContent("b.tape")), WithoutTimes(TapeContent()));
  EXPECT_EQ(DiffTapes(Tape(), Tape("b.tape")), "");
  EXPECT_EQ(VerifyTape(Tape()), std::vector<std::string>());
}

TEST_F(TapedSession, IsReadable) {
  Record([](Session& session) {
    session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}});
    session.Run("[{city: 'Rome', people: 2748109}]");
    session.Run("'1\\n2'");
  });
  const std::string tape = TapeContent();
  for (const char* part :
       {"scriptwells tape 1\n\nsession 1\n\n1 open session http://127.0.0.1:", "\n@ 2", "Z, connecting ",
        "\n> POST /", " HTTP/1.1\\r\n> Host: ", "\n> \\r\n>> <SOAP-ENV:Envelope ",
        "\\\n>> <SOAP-ENV:Body>\\\n", "Username=joe;Password=<password:1>{6};</ConnectionString>\\\n",
        "\n< HTTP/1.1 200 OK\\r\n", "\n<< <CreateUserSessionResult xsi:type=\"xsd:string\"><session:1>{",
        "\n>> <usid xsi:type=\"xsd:string\"><session:1>{", "\n  script = \"parameters.a + parameters.b\"\n",
        "\n  a = int 2\n  b = int 40\n< ", "\n  = int 42\n\n1 execute ",
        "\n  = table, 1 rows\n    city string, people int\n    [\"Rome\",2748109]\n",
        "\n  = string \"1\\n2\"\n", "\n1 close session "})
    EXPECT_TRUE(Holds(tape, part)) << part << "\n" << tape;
  EXPECT_FALSE(Holds(tape, "secret")) << tape;
  struct stat facts = {};
  ASSERT_EQ(::stat(Tape().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0600U);
}

TEST_F(TapedSession, FaultsArePlayedAsTheyWere) {
  const auto fault = [](Session& session) {
    try {
      session.Run("throw new ScriptError(5, 'no such customer')");
      ADD_FAILURE() << "ran";
    } catch (const ScriptError& error) {
      EXPECT_EQ(error.message(), "no such customer");
      EXPECT_EQ(error.number(), 5U);
      EXPECT_EQ(error.status(), 200);
    }
  };
  Record(fault);
  EXPECT_TRUE(Holds(TapeContent(), "\n  = failure 5 \"no such customer\"\n")) << TapeContent();
  EndService();
  Play(fault);
}

TEST_F(TapedSession, FilesArePlayed) {
  std::string bytes;
  for (int i = 0; i < 1024; ++i) bytes += static_cast<char>(i * 7);
  const std::string upload = directory_.Write("report.bin", bytes);
  std::string folder;
  const auto transfer = [&](Session& session) {
    std::filesystem::create_directory(directory_.Path(folder));
    EXPECT_EQ(session.Run("parameters.doc.size", {{"doc", File{upload}}}).As<int>(), 1024);
    const Value url = session.Run("publish('out.bin', parameters.doc)", {{"doc", File{upload}}});
    session.Download(url.As<std::string>(), directory_.Path(folder));
    EXPECT_EQ(directory_.Read(folder + "/out.bin"), bytes);
    const Value text = session.Run("publish('out.txt', 'one\\ntwo')");
    session.Download(text.As<std::string>(), directory_.Path(folder));
    EXPECT_EQ(directory_.Read(folder + "/out.txt"), "one\ntwo");
  };
  folder = "one";
  Record(transfer);
  const std::string tape = TapeContent();
  EXPECT_TRUE(Holds(tape, "\n+ report.bin, 1024 bytes, SHA-256 ")) << tape;
  EXPECT_TRUE(Holds(tape, "?ticket=<ticket:1>{")) << tape;
  EXPECT_TRUE(Holds(tape, "\n  doc = file [ticket:1]\n")) << tape;
  EXPECT_TRUE(Holds(tape, "\n<< one\n<< two\\\n")) << tape;
  EXPECT_TRUE(Holds(tape, "\n<b ")) << tape;
  EndService();
  folder = "two";
  Play(transfer, "a.tape", "b.tape");
  EXPECT_EQ(WithoutTimes(TapeContent("b.tape")), WithoutTimes(tape));
  EXPECT_EQ(VerifyTape(Tape()), std::vector<std::string>());
  // Another content is another request.
  directory_.Write("report.bin", "short");
  EXPECT_TRUE(
      Holds(ErrorOf([&] {
              Play([&](Session& session) { session.Run("parameters.doc.size", {{"doc", File{upload}}}); });
            }),
            "\n+ report.bin, 5 bytes, SHA-256 "));
}

TEST_F(TapedSession, SessionsOnThreadsArePlayedInAnyOrder) {
  const auto run = [](Session& session, int first) {
    for (int i = 0; i < 20; ++i)
      EXPECT_EQ(session.Run("parameters.n * 2", {{"n", first + i}}).As<int>(), 2 * (first + i));
  };
  const auto both = [&](const std::function<void(int first)>& session) {
    std::thread one([&] { session(100); });
    std::thread two([&] { session(200); });
    one.join();
    two.join();
  };
  both([&](int first) { Record([&](Session& session) { run(session, first); }); });
  EndService();
  for (int round = 0; round < 5; ++round)
    both([&](int first) { Play([&](Session& session) { run(session, first); }); });
  const auto play = [&](int first) {
    Play([&](Session& session) { run(session, first); }, "a.tape", "b.tape");
  };
  both(play);
  EXPECT_EQ(DiffTapes(Tape(), Tape("b.tape")), "");
}

TEST_F(TapedSession, AdoptedSessionsAndOtherPasswords) {
  Options options;
  options.record = Tape();
  Session kept = Open();
  const std::string id = kept.Id();
  Session::Adopt(url_, id, options).Run("1");
  Record([](Session& session) { EXPECT_EQ(session.Run("2").As<int>(), 2); });
  EXPECT_FALSE(Holds(TapeContent(), id));
  kept.Release();
  EndService();
  Options play;
  play.replay = Tape();
  EXPECT_EQ(Session::Adopt("http://nowhere.invalid", "some-other-id", play).Run("1").As<int>(), 1);
  EXPECT_EQ(Session("http://nowhere.invalid", {"joe", ""}, play).Run("2").As<int>(), 2);
  EXPECT_EQ(Session("http://nowhere.invalid", {"joe", "another <one>"}, play).Run("2").As<int>(), 2);
}

TEST_F(TapedSession, AnswersInUtf16ArePlayed) {
  const std::string url = url_ + "/odd/utf16";
  Options options;
  options.record = Tape();
  std::string id;
  {
    Session session(url, {"joe", "secret"}, options);
    id = session.Id();
    EXPECT_EQ(session.Run("'Gr\xC3\xBC\xC3\x9F' + 'e'").As<std::string>(),
              "Gr\xC3\xBC\xC3\x9F"
              "e");
  }
  EndService();
  const std::string tape = TapeContent();
  EXPECT_NE(tape.find("<session:1>{" + std::to_string(2 * id.size()) + "}"), std::string::npos) << tape;
  options.record.clear();
  options.replay = Tape();
  Session session(url, {"joe", "secret"}, options);
  EXPECT_EQ(session.Id().size(), id.size());
  EXPECT_EQ(session.Run("'Gr\xC3\xBC\xC3\x9F' + 'e'").As<std::string>(),
            "Gr\xC3\xBC\xC3\x9F"
            "e");
}

TEST_F(TapedSession, ListenersAndProgressSeeWhatIsPlayed) {
  Record([](Session& session) { session.Run("1"); });
  EndService();
  Options options;
  options.replay = Tape();
  std::vector<Exchange> seen;
  options.listener = [&seen](const Exchange& exchange) { seen.push_back(exchange); };
  { EXPECT_EQ(Session(url_, {"joe", "secret"}, options).Run("1").As<int>(), 1); }
  ASSERT_EQ(seen.size(), 3U);
  EXPECT_EQ(seen[1].status, 200);
  EXPECT_EQ(seen[1].requestBody.find("secret"), std::string::npos);
  EXPECT_TRUE(Holds(seen[1].answerBody, ">1<")) << seen[1].answerBody;
}

TEST_F(TapedSession, LimitsHoldForWhatIsPlayed) {
  Record([](Session& session) { session.Run("'x'.repeat(5000)"); });
  EndService();
  Options options;
  options.replay = Tape();
  options.mostAnswerBytes = 1000;
  Session session(url_, {"joe", "secret"}, options);
  EXPECT_TRUE(Holds(ErrorOf([&] { session.Run("'x'.repeat(5000)"); }), "is longer than 1000 bytes"));
}

}  // namespace
}  // namespace scriptwells
