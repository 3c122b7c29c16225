// What the memory of a host still holds of a password and of a session's id. The server is another process,
// and this one holds both only in a disguise, so whatever is found was left there by the library.
#include <gtest/gtest.h>
#include <string.h>  // NOLINT(modernize-deprecated-headers): explicit_bzero
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "fixtures/forked_server.h"
#include "fixtures/raw_server.h"
#include "fixtures/temporary_directory.h"
#include "memory_search.h"
#include "qvscriptwells/qvscriptwells.h"

namespace qv::test {
namespace {

using Places = std::vector<std::string>;
using Sending = RawScript& (RawScript::*)(const std::string&);

std::string Envelope(const std::string& body) {
  return RawAnswerText("<soap:Envelope><soap:Body>" + body + "</soap:Body></soap:Envelope>");
}

RawScript Session(const std::string& id, Sending send) {
  RawScript script;
  script.ReadRequest();
  (script.*send)(Envelope("<CreateUserSessionResponse><CreateUserSessionResult>" + id +
                          "</CreateUserSessionResult></CreateUserSessionResponse>"));
  script.ReadRequest();
  (script.*send)(Envelope("<ExecuteResponse><r xsi:type=\"xsd:string\">done</r></ExecuteResponse>"));
  script.ReadRequest();
  (script.*send)(RawAnswerText("content", "Content-Disposition: attachment; filename=a.txt\r\n"));
  script.ReadRequest();
  (script.*send)(Envelope("<CloseUserSessionResponse/>"));
  return script;
}

// In another process, which alone has the session's id in the clear. `script` is asked for there.
ForkedServer Serving(const std::function<RawScript()>& script) {
  return ForkedServer([&] {
    static RawServer server;
    server.Expect(script());
    return server.Port();
  });
}

// The host clears what it wrote itself; the string is the library's.
WideString InTheClear(const MarkedText& text) {
  char16_t letters[MarkedText::kLetters];
  text.Reveal(letters);
  WideString result(std::u16string_view(letters, MarkedText::kLetters));
  explicit_bzero(letters, sizeof letters);
  return result;
}

WideString ConnectionText(const MarkedText& password) {
  const IConnectionStringPtr fields = CreateConnectionString();
  ThrowIfFailed(fields->put_UserName(u"joe"));
  ThrowIfFailed(fields->put_UserPassword(InTheClear(password)));
  WideString text;
  ThrowIfFailed(fields->ToString(&text));
  return text;
}

class Secrets : public ::testing::Test {
 protected:
  void RunSession(Sending send) {
    const ForkedServer server = Serving([&] { return Session(id_.Text(), send); });
    const IConnectionModelPtr model = CreateConnectionModel(FromUtf8(server.Url()), u"", host_.get());
    Open(model.get());
    Work(model.get(), FromUtf8(server.Url()));
    ThrowIfFailed(model->CloseUserSession());
    EXPECT_EQ(password_.FindInMemory(), Places()) << "the password, after the session";
    EXPECT_EQ(id_.FindInMemory(), Places()) << "the id, after the session";
  }

  void Open(IConnectionModel* model) {
    EXPECT_EQ(password_.FindInMemory(), Places()) << "the password, before its use";
    {
      const WideString text = ConnectionText(password_);
      EXPECT_NE(password_.FindInMemory(), Places()) << "what is there is not found";
      ThrowIfFailed(model->CreateUserSession(text));
    }
    EXPECT_EQ(password_.FindInMemory(), Places()) << "the password, in an open session";
    // The one block that the model and the host's services share.
    EXPECT_EQ(id_.FindInMemory(), (Places{"[heap] UTF-16 front", "[heap] UTF-16 back"}));
  }

  void Work(IConnectionModel* model, const WideString& url) {
    Variant result;
    ThrowIfFailed(model->Execute(u"JavaScript", u"'a&b'", nullptr, &result));
    const std::u16string address = std::u16string(url.view()) + u"/a.txt";
    WideString path;
    ThrowIfFailed(model->DownloadFile(address, FromUtf8(directory_.Path()), &path));
    AdoptAgain();
    EXPECT_EQ(id_.FindInMemory(), (Places{"[heap] UTF-16 front", "[heap] UTF-16 back"})) << "after work";
  }

  // The services write the id into a text that they are handed.
  void AdoptAgain() {
    const IQvScriptwellsPtr client = CreateQvScriptwells();
    const IQvClientServiceRawPtr raw = As<IQvClientServiceRaw>(client);
    ThrowIfFailed(raw->Init(CreateSimpleServiceProvider(host_.get()).get()));
    ThrowIfFailed(client->put_ServerName(u"http://127.0.0.1:1"));
    EXPECT_NE(ModelOf(client.get()), nullptr);
  }

  void RunRefusal(const RawScript& script) {
    const ForkedServer server = Serving([&] { return script; });
    const IConnectionModelPtr model = CreateConnectionModel(FromUtf8(server.Url()), u"", host_.get());
    EXPECT_NE(model->CreateUserSession(ConnectionText(password_)), S_OK);
    EXPECT_EQ(password_.FindInMemory(), Places());
  }

  MarkedText password_;
  MarkedText id_;
  TemporaryDirectory directory_;
  IQvClientServicesPtr host_ = CreateSimpleHost({u"joe"});
};

TEST_F(Secrets, LeaveNothingBehind) {
  RunSession(&RawScript::Write);
}

TEST_F(Secrets, LeaveNothingBehindWhenAnswersComeInPieces) {
  RunSession(&RawScript::WriteByteByByte);
}

TEST_F(Secrets, LeaveNothingBehindWhenTheServerRefuses) {
  RunRefusal(RawScript().ReadRequest().Write(
      Envelope("<soap:Fault><faultstring>not you</faultstring></soap:Fault>")));
}

TEST_F(Secrets, LeaveNothingBehindWhenTheConnectionBreaks) {
  RunRefusal(RawScript().ReadRequest().Reset());
}

}  // namespace
}  // namespace qv::test

// Binding a function at its first use saves the vector registers on the stack, with 32 bytes of whatever was
// copied last. So all libraries bind theirs at the start.
int main(int argc, char** argv) {
  if (std::getenv("LD_BIND_NOW") == nullptr) {
    setenv("LD_BIND_NOW", "1", 1);
    execv("/proc/self/exe", argv);
    return 1;
  }
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
