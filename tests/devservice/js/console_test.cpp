// The console messages of scripts.
#include "devservice/values/console_message.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

class Console : public ServiceTest {
 protected:
  void SetUp() override {
    StartWith([this](ServiceOptions& options) {
      options.scriptTimeLimit = std::chrono::seconds(2);
      options.console = [this](const ConsoleMessage& message) {
        said_ += message.level + "|" + message.text + "\n";
        saidIn_ = message.session;
        ++count_;
      };
    });
  }

  // The messages of a script, "level|text" lines.
  std::string SaidBy(const std::string& script) {
    said_.clear();
    count_ = 0;
    Execute(script);
    return said_;
  }

  std::string said_;
  std::string saidIn_;
  int count_ = 0;
};

TEST_F(Console, MessagesAreJoinedTexts) {
  const ScriptRow rows[] = {
      {"console.log('a'); console.info('b'); console.warn('c'); console.error('d'); console.debug('e'); "
       "console.log()",
       "log|a\ninfo|b\nwarn|c\nerror|d\ndebug|e\nlog|\n"},
      {"console.log('a', 1, -0.5, true, null, undefined, 10n, Symbol('s'), Symbol())",
       "log|a 1 -0.5 true null undefined 10 Symbol(s) Symbol()\n"},
      {"console.log({a: 1, b: 'x'}, [1, [2]], new Map(), typed.duration('P1D'))",
       "log|{\"a\":1,\"b\":\"x\"} [1,[2]] [object Map] P1D\n"},
      {"\nconsole.log(new TypeError('boom'))", "log|TypeError: boom (line 2)\n"},
      // Values without a text do not throw.
      {"const c = {}; c.c = c;"
       "console.log(c, {toString() { throw 1 }}, Object.create(null), {toJSON() { throw 1 }})",
       "log|[object Object] {} {} [object Object]\n"},
      {"console.log('\\ud800')", "log|\xEF\xBF\xBD\n"},
      {R"(console.log('a\nb\x1b[2J\u0085'))", "log|a\nb\x1b[2J\xC2\x85\n"},
      // A script that is killed.
      {"console.log('before'); while (true);", "log|before\n"},
  };
  for (const ScriptRow& row : rows) EXPECT_EQ(SaidBy(row.script), row.outcome) << row.script;
}

TEST_F(Console, MessagesHaveTheirSession) {
  Execute("console.log('a')");
  EXPECT_EQ(saidIn_, Session());
}

TEST_F(Console, ScriptGoesOnAndAnswers) {
  EXPECT_EQ(Value("console.log('a') === undefined"), "xsd:boolean|true");
  EXPECT_EQ(said_, "log|a\n");
}

TEST_F(Console, LongTextsAreCut) {
  EXPECT_EQ(SaidBy("console.log('x'.repeat(8192))"), "log|" + std::string(8192, 'x') + "\n");
  EXPECT_EQ(SaidBy("console.log('x'.repeat(8191) + '\\u00e9')"),
            "log|" + std::string(8191, 'x') + "... (cut)\n");
  EXPECT_EQ(SaidBy("console.log('x'.repeat(5000), 'y'.repeat(1e7), 'z')"),
            "log|" + std::string(5000, 'x') + " " + std::string(3191, 'y') + "... (cut)\n");
}

TEST_F(Console, EndlessMessagesAreLeftOutAndCountedForEachRun) {
  const std::string said = SaidBy("for (let i = 0; i < 5000; ++i) console.log(i)");
  EXPECT_EQ(count_, 1001);
  const std::string last =
      "log|999\nwarn|the script has sent 1000 messages to its console; further ones are left out\n";
  ASSERT_GT(said.size(), last.size());
  EXPECT_EQ(said.substr(said.size() - last.size()), last);
  EXPECT_EQ(SaidBy("console.log('again')"), "log|again\n");
}

TEST_F(Console, SinkMayBeEmpty) {
  StartWith(TestOptions());
  EXPECT_EQ(Value("console.log('a'); 1"), "xsd:int|1");
  EXPECT_EQ(said_, "");
}

}  // namespace
}  // namespace qv::devservice::testing
