// A password, a session's id and a ticket are searched on a tape, in each form that the wire may have.
#include <gtest/gtest.h>

#include "face/tape/tape.h"
#include "face/tape/tape_report.h"
#include "fixtures/raw_server.h"
#include "fixtures/secret_forms.h"
#include "fixtures/temporary_directory.h"
#include "scriptwells/scriptwells.h"

namespace scriptwells {
namespace {

using qv::test::AllFormsOf;
using qv::test::FormsOf;
using qv::test::InXml;
using qv::test::RawAnswerText;
using qv::test::RawScript;
using qv::test::SecretForm;

const std::string kPassword = "s3<&\">' %+/\\\xC3\xA9t\xC3\xA9 canary";
const std::string kId = "id<&/+%\"canary";
const std::string kTicket = "Tick<et>&+/canary";

std::string Envelope(const std::string& body) {
  return RawAnswerText("<soap:Envelope><soap:Body>" + body + "</soap:Body></soap:Envelope>");
}

std::string Answer(const std::string& text) {
  return Envelope("<ExecuteResponse><r xsi:type=\"xsd:string\">" + text + "</r></ExecuteResponse>");
}

// What a tape has, with the escapes that its lines have and without them.
std::string AllOf(const std::string& tape) {
  std::string all = tape;
  const auto masked = [](const TapePiece& piece) { return "<" + piece.mask + ">"; };
  for (const TapeEntry& entry : ReadTape("t", tape))
    for (const TapeText* text : {&entry.server, &entry.file, &entry.requestHead, &entry.requestBody,
                                 &entry.answerHead, &entry.answerBody})
      all += "\n" + JoinedBytes(*text, masked);
  return all;
}

TEST(TapeCanary, NoSecretIsOnATape) {
  const qv::TemporaryDirectory folder;
  folder.Write("home/ClientScripts/UploadScript.xml",
               "<Scriptwell Language=\"JavaScript\"><Code>where()</Code></Scriptwell>");
  const std::string sent = folder.Write("a.txt", "content");
  std::string echo;
  for (const std::string& secret : {kPassword, kId, kTicket}) echo += AllFormsOf(secret);
  qv::test::RawServer server;
  RawScript script;
  const std::string head = "X-Echo: " + kId + "\r\nContent-Disposition: attachment; filename=out.txt\r\n";
  for (const std::string& answer :
       {Envelope("<CreateUserSessionResponse><r>" + InXml(kId) + "</r></CreateUserSessionResponse>"),
        Answer(server.Url() + "/up?ticket=" + InXml(kTicket)),
        std::string("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"),
        Answer(InXml(kPassword) + " " + InXml(kId) + " " + InXml(kTicket)), RawAnswerText(echo, head),
        Envelope("<CloseUserSessionResponse/>")})
    script.ReadRequest().Write(answer);
  server.Expect(script);
  Options options;
  options.record = folder.Path("a.tape");
  options.homeDirectory = folder.Path("home");
  {
    Session session(server.Url(), {"joe", kPassword}, options);
    EXPECT_EQ(session.Run("'" + kPassword + kId + "'", {{"doc", File{sent}}, {"id", kId}}).As<std::string>(),
              kPassword + " " + kId + " " + kTicket);
    session.Download(server.Url() + "/f", folder.Path());
  }
  ASSERT_EQ(folder.Read("out.txt"), echo);
  const std::string tape = folder.Read("a.tape");
  const std::string all = AllOf(tape);
  EXPECT_EQ(all.find("canary"), std::string::npos) << tape;
  for (const std::string& secret : {kPassword, kId, kTicket})
    for (const SecretForm& form : FormsOf(secret)) {
      EXPECT_NE((echo + server.AllReceived()).find(form.text), std::string::npos) << form.name;
      EXPECT_EQ(all.find(form.text), std::string::npos) << form.name << "\n" << tape;
    }
  // Everything else stays.
  for (const char* part :
       {"Username=joe;Password=<password:1>{", "/up?ticket=<ticket:1>{", "usid: <session:1>{",
        "\n+ a.txt, 7 bytes, SHA-256 ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73\n"})
    EXPECT_NE(tape.find(part), std::string::npos) << part << "\n" << tape;
  EXPECT_EQ(VerifyTape(folder.Path("a.tape")), std::vector<std::string>());
}

}  // namespace
}  // namespace scriptwells
