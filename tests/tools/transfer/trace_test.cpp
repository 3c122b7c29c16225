// `--trace`: what passes between the program and the server, without secrets.
#include <sys/stat.h>

#include <regex>

#include "fixtures/secret_forms.h"
#include "tests/tools/transfer_server.h"
#include "tools/transfer/trace_file.h"

namespace qv::cli {
namespace {

using namespace testing;
using test::InXml;

// A password and a session id with characters that XML, URLs, JSON and base64 write in other ways.
const std::string kPassword = "s3<&\">' %+/\\\xC3\xA9t\xC3\xA9 canary";
const std::string kId = "id<&/+%canary";
const std::string kTicket = "Tick<et>&+/canary";

std::string OpenedAs(const std::string& id) {
  return test::RawAnswerText(
      "<soap:Envelope><soap:Body><CreateUserSessionResponse><CreateUserSessionResult>" + InXml(id) +
      "</CreateUserSessionResult></CreateUserSessionResponse></soap:Body></soap:Envelope>");
}

// The bytes that a trace shows as "\x00".
std::string Unescaped(const std::string& trace) {
  std::string bytes;
  for (std::size_t at = 0; at < trace.size(); ++at) {
    const bool isByte = trace.compare(at, 2, "\\x") == 0 && at + 4 <= trace.size();
    bytes += isByte ? static_cast<char>(std::stoi(trace.substr(at + 2, 2), nullptr, 16)) : trace[at];
    if (isByte) at += 3;
  }
  return bytes;
}

class Trace : public TransferServer {
 protected:
  // A home whose upload script is there.
  void SetUp() override {
    folder_.Write("home/ClientScripts/UploadScript.xml",
                  "<Scriptwell Language=\"JavaScript\"><Code>where()</Code></Scriptwell>");
    folder_.Write("registry.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" +
                                      folder_.Path("home") + "\"\n");
  }

  // A password of one letter would be masked everywhere.
  Tool Traced(const std::string& line) const {
    return Joe(line + " --trace " + file_)
        .Set("SCRIPTWELLS_PASSWORD", kPassword)
        .Set("QV_REGISTRY", folder_.Path("registry.reg"));
  }

  std::string file_ = folder_.Path("trace");
};

TEST_F(Trace, HasEveryExchangeInOrder) {
  AnswerCalls({ScriptAnswered("xsd:int", "42")});
  Traced("run -e '6 * 7'").Succeeds("42\n");
  const std::string trace = folder_.Read("trace");
  const std::regex exchange(
      R"((?:^|\n)POST http://127\.0\.0\.1:\d+/\S* ([a-z ]+) 200, \d+ bytes sent, \d+ received, \d+ ms\n)");
  std::vector<std::string> purposes;
  for (auto at = std::sregex_iterator(trace.begin(), trace.end(), exchange); at != std::sregex_iterator();
       ++at)
    purposes.push_back((*at)[1].str());
  EXPECT_EQ(purposes, (Words{"open session", "execute", "close session"})) << trace;
  for (const char* part : {"\n> POST /", "\n> \n> <", "6 * 7", "\n< HTTP/1.1 200 OK\n", "\n< \n< <",
                           "<r xsi:type=\"xsd:int\">42</r>", "joe"})
    EXPECT_TRUE(Holds(trace, part)) << part << "\n" << trace;
  EXPECT_TRUE(
      std::regex_search(trace, std::regex(R"(\n= \d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d{3})?Z, connecting )"
                                          R"(\d+\.\d ms, waiting \d+\.\d ms, total \d+\.\d ms\n\n)")))
      << trace;
  struct stat facts = {};
  ASSERT_EQ(::stat(file_.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0600U);
}

TEST_F(Trace, SecretsAreMaskedUnlessAskedFor) {
  const std::string expected = kPassword + " " + kId + "\n";
  for (const bool shown : {false, true}) {
    Answer(
        {OpenedAs(kId), ScriptAnswered("xsd:string", InXml(kPassword) + " " + InXml(kId)), SessionClosed()});
    const Outcome outcome = Traced(shown ? "run -e 1 --trace-secrets" : "run -e 1").Run();
    EXPECT_EQ(outcome.out, expected);
    EXPECT_EQ(outcome.err, "");
    const std::string trace = folder_.Read("trace");
    EXPECT_EQ(Holds(trace, "canary"), shown) << trace;
    EXPECT_EQ(Holds(trace, "***"), !shown) << trace;
  }
}

// An answer that no client reads holds each of them in each form.
TEST_F(Trace, NoFormOfASecretIsInIt) {
  const Words secrets{kPassword, kId, kTicket};
  std::string echo;
  for (const std::string& secret : secrets) echo += test::AllFormsOf(secret);
  const std::string sent = folder_.Write("a.txt", "content");
  for (const bool shown : {false, true}) {
    Answer({OpenedAs(kId), ScriptAnswered("xsd:string", Origin() + "/up?ticket=" + InXml(kTicket)),
            StatusAnswer("200 OK"), test::RawAnswerText(echo), SessionClosed()});
    const Outcome outcome = Traced("run -e 1 -p doc=file:" + sent + (shown ? " --trace-secrets" : "")).Run();
    EXPECT_NE(outcome.exit, 0);
    EXPECT_FALSE(Holds(outcome.out + outcome.err, "canary")) << outcome.err;
    const std::string trace = folder_.Read("trace");
    const std::string all = trace + Unescaped(trace);
    EXPECT_EQ(Holds(all, "canary"), shown) << trace;
    for (const std::string& secret : secrets)
      for (const test::SecretForm& form : test::FormsOf(secret))
        EXPECT_EQ(Holds(all, form.text), shown) << form.name << "\n" << trace;
  }
}

TEST_F(Trace, TicketsAndFilesAreNotInIt) {
  const std::string sent = folder_.Write("a.txt", "private content");
  AnswerCalls({ScriptAnswered("xsd:string", Origin() + "/up?ticket=canary7"), StatusAnswer("200 OK"),
               ScriptAnswered("xsd:string", Url()), FileAnswer("out.txt", "private answer")});
  Traced("run -e 1 -p doc=file:" + sent + " --save " + folder_.Path()).Succeeds(folder_.Path("out.txt\n"));
  const std::string trace = folder_.Read("trace");
  for (const char* part : {" upload address 200, ", " upload 200, ", " download 200, "})
    EXPECT_TRUE(Holds(trace, part)) << part << "\n" << trace;
  EXPECT_TRUE(Holds(trace, "\n= file " + sent + "\n")) << trace;
  EXPECT_TRUE(Holds(trace, "\n= file " + folder_.Path("out.txt") + "\n")) << trace;
  for (const char* part : {"canary7", "private"}) EXPECT_FALSE(Holds(trace, part)) << part << "\n" << trace;
}

TEST_F(Trace, GoesToStandardErrorForAHyphen) {
  Answer({SessionClosed()});
  const Outcome outcome = Tool("session close --usid u1 --trace - --server " + Origin()).Run();
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_TRUE(StartsWith(outcome.err, "POST " + Origin())) << outcome.err;
  EXPECT_TRUE(Holds(outcome.err, " close session 200, ")) << outcome.err;
  EXPECT_FALSE(Holds(outcome.err, "u1")) << outcome.err;
}

TEST_F(Trace, HasWhatFailed) {
  const Outcome outcome = Tool("session close --usid u1 --trace - --server http://127.0.0.1:1").Run();
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_TRUE(StartsWith(outcome.err, "http://127.0.0.1:1 close session failed: ")) << outcome.err;
  EXPECT_TRUE(Holds(outcome.err, "\nscriptwells: cannot reach http://127.0.0.1:1: ")) << outcome.err;
}

TEST_F(Trace, UnusableFileIsReported) {
  Joe("run -e 1 --trace /nonexistent/t")
      .Fails(6, "cannot write the trace /nonexistent/t: No such file or directory");
  EXPECT_EQ(server_.Connections(), 0U);
  AnswerCalls({ScriptAnswered("xsd:int", "42")});
  Joe("run -e 1 --trace /dev/full")
      .Succeeds("42\n", "warning: the trace /dev/full could not be written in full");
}

TEST(TraceText, IsEscapedForTerminals) {
  scriptwells::Exchange exchange;
  exchange.server = "http://h:1";
  exchange.answerHead = "HTTP/1.1 200 \x1b[2J\r\n\r\n";
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  exchange.answerBody = std::string("a\r\n\xE2\x80\xAE") + "b\xFF";
  exchange.file = "/tmp/a\x1b";
  const std::string text = TraceText(exchange);
  EXPECT_TRUE(Holds(text,
                    "\n< HTTP/1.1 200 \\x1b[2J\n< \n< a\n< \\u202eb\\xff\n= file /tmp/a\\x1b\n= "
                    "1970-01-01T00:00:00Z, "))
      << text;
}

}  // namespace
}  // namespace qv::cli
