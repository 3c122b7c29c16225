// Uploads that break on their way: the words, what the file object keeps, and a next call that works.
#include <unistd.h>

#include "qvscriptwells/create_objects.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

constexpr std::size_t kMoreThanSocketsHold = std::size_t{64} * 1024 * 1024;

class BrokenUpload : public TransferTest {
 protected:
  std::string UploadUrl() const { return ServerUrl() + "/up?ticket=T1"; }
  // The request for an address is answered; what follows is the upload's.
  RawScript AfterTheAddress() const { return RawScript().ReadRequest().Write(ScriptAnswer(UploadUrl())); }
  IAttachedFilePtr File(const std::string& content) const {
    return CreateAttachedFile(Wide(files_.Write("here/f.bin", content)));
  }
  // A file that takes no room on the disk.
  IAttachedFilePtr LargeFile() const {
    const std::string name = files_.Write("here/f.bin", "");
    EXPECT_EQ(truncate(name.c_str(), kMoreThanSocketsHold), 0);
    return CreateAttachedFile(Wide(name));
  }
  // The ticket was stored before the file went out, and stays.
  static void ExpectTicket(const IAttachedFilePtr& file, const char16_t* ticket) {
    VARIANT_BOOL has = VARIANT_FALSE;
    EXPECT_EQ(file->IsTicketId(&has), S_OK);
    EXPECT_EQ(has, VARIANT_TRUE);
    WideString text;
    EXPECT_EQ(file->get_TicketId(&text), S_OK);
    EXPECT_EQ(text, WideString(ticket));
  }
  void ExpectFails(const RawScript& script, const IAttachedFilePtr& file, const std::string& outcome,
                   std::size_t stuck = 0) {
    const Tree before = TreeOf(Target());
    server_.Expect(script);
    EXPECT_EQ(RunWith(file), outcome);
    EXPECT_EQ(TreeOf(Target()), before);
    EXPECT_EQ(TreeOf(files_.Path("temp")), Tree());
    ExpectTicket(file, u"T1");
    ExpectNextUploadWorks();
    ExpectNoDescriptorLeft(stuck);
  }
  // The file cannot be read. Nothing was sent, so the connection stays good.
  void ExpectNotSent(const IAttachedFilePtr& file, const std::string& outcome) {
    const std::size_t before = server_.Connections();
    server_.Expect(AfterTheAddress()
                       .ReadRequest()
                       .Write(ScriptAnswer(UploadUrl()))
                       .ReadRequest()
                       .Write(RawAnswerText(""))
                       .ReadRequest()
                       .Write(ScriptAnswer("arrived")));
    EXPECT_EQ(RunWith(file), outcome);
    ExpectTicket(file, u"T1");
    EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
    EXPECT_EQ(server_.Connections(), before + 1);
    const std::string sent = server_.Received().back();
    EXPECT_EQ(sent.find("POST /up"), sent.rfind("POST /up"));
    EXPECT_NE(sent.find("Content-Length: 7\r\n\r\ncontentPOST"), std::string::npos);
    CloseKeptConnections();
    ExpectNextUploadWorks();
    ExpectNoDescriptorLeft();
  }
  // How often the script "1" itself was sent.
  std::size_t ScriptsSent() const {
    std::size_t count = 0;
    const std::string all = server_.AllReceived();
    for (std::size_t at = all.find("FileTicket"); at != std::string::npos;
         at = all.find("FileTicket", at + 1))
      ++count;
    return count;
  }
};

TEST_F(BrokenUpload, WholeUploadIsThreeRequestsOnOneConnection) {
  const std::size_t before = server_.Connections();
  server_.Expect(
      AfterTheAddress().ReadRequest().Write(RawAnswerText("")).ReadRequest().Write(ScriptAnswer("arrived")));
  EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
  ASSERT_EQ(server_.Connections(), before + 1);
  const std::string sent = server_.Received().back();
  EXPECT_NE(sent.find("POST /up?ticket=T1 HTTP/1.1\r\n"), std::string::npos);
  EXPECT_NE(sent.find("\r\nusid: s1\r\n"), std::string::npos);
  EXPECT_NE(sent.find("Content-Length: 7\r\n\r\ncontent"), std::string::npos);
  EXPECT_NE(sent.find("<Value xsi:type=\"FileTicket\"><Id xsi:type=\"string\">T1</Id></Value>"),
            std::string::npos);
}

TEST_F(BrokenUpload, ResetInTheBodyFails) {
  const IAttachedFilePtr file = LargeFile();
  server_.Expect(AfterTheAddress().ReadBytes(200'000).Reset());
  const std::string outcome = RunWith(file);
  // Which of the two the system tells first is chance.
  EXPECT_TRUE(outcome == "0x80020009 Send failure: Connection reset by peer" ||
              outcome == "0x80020009 Send failure: Broken pipe" ||
              outcome == "0x80020009 Recv failure: Connection reset by peer")
      << outcome;
  EXPECT_EQ(ScriptsSent(), 0u);
  ExpectTicket(file, u"T1");
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenUpload, ResetInTheHeadOfTheAnswerFails) {
  ExpectFails(AfterTheAddress().ReadRequest().Write("HTTP/1.1 2").Reset(), File("content"),
              "0x80020009 Recv failure: Connection reset by peer");
}

TEST_F(BrokenUpload, CloseWithoutAnAnswerFails) {
  ExpectFails(AfterTheAddress().ReadRequest().Close(), File("content"), "0x80020009 Empty reply from server");
}

TEST_F(BrokenUpload, ServerThatStopsReadingTimesOut) {
  SetIdleTimeout(200);
  ExpectFails(AfterTheAddress().ReadBytes(1000).Stall(), LargeFile(),
              "0x80020009 Operation timed out after N milliseconds without a byte", 1);
}

TEST_F(BrokenUpload, ServerThatDoesNotAnswerTimesOut) {
  SetIdleTimeout(200);
  ExpectFails(AfterTheAddress().ReadRequest().Stall(), File("content"),
              "0x80020009 Operation timed out after N milliseconds without a byte");
}

TEST_F(BrokenUpload, AnswerThatIsNoHttpFails) {
  const IAttachedFilePtr file = File("content");
  server_.Expect(AfterTheAddress().ReadRequest().Write("SMTP ready\r\n\r\n").Close());
  EXPECT_EQ(RunWith(file).substr(0, 11), "0x80020009 ");
  EXPECT_EQ(ScriptsSent(), 0u);
  ExpectTicket(file, u"T1");
  ExpectNextUploadWorks();
}

TEST_F(BrokenUpload, MissingFileFailsAfterItsAddressWasAskedFor) {
  ExpectNotSent(CreateAttachedFile(Wide(files_.Path("none"))),
                "0x80020009 Couldn't open file " + files_.Path("none") + ": No such file or directory");
}

TEST_F(BrokenUpload, DirectoryIsNoFileToSend) {
  ExpectNotSent(CreateAttachedFile(Wide(Target())),
                "0x80020009 Couldn't open file " + Target() + ": Not a regular file");
}

// The status of an upload's answer is never looked at.
TEST_F(BrokenUpload, RefusalByStatusAloneGoesUnnoticed) {
  server_.Expect(AfterTheAddress()
                     .ReadRequest()
                     .Write("HTTP/1.1 500 Broken\r\nContent-Length: 0\r\n\r\n")
                     .ReadRequest()
                     .Write(ScriptAnswer("arrived")));
  EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
}

TEST_F(BrokenUpload, AnswerBeforeTheWholeFileWasReadCounts) {
  const std::size_t before = server_.Connections();
  server_.Expect(AfterTheAddress().ReadBytes(1000).Write("HTTP/1.1 413 Enough\r\n\r\n").Stall());
  server_.Expect(RawScript().ReadRequest().Write(ScriptAnswer("arrived")));
  EXPECT_EQ(RunWith(LargeFile()), "VT_BSTR arrived");
  EXPECT_EQ(server_.Connections(), before + 2);
  CloseKeptConnections();
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft(1);
}

// Answers whose body would have to be read to its end end the connection; nobody waits for them.
TEST_F(BrokenUpload, AnswersWithoutLengthInChunksAndTooLongAreDropped) {
  for (const char* answer :
       {"HTTP/1.1 200 OK\r\n\r\nto the end", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc",
        "HTTP/1.1 200 OK\r\nContent-Length: 99999999999\r\n\r\nabc"}) {
    const std::size_t before = server_.Connections();
    server_.Expect(AfterTheAddress().ReadRequest().Write(answer));
    server_.Expect(RawScript().ReadRequest().Write(ScriptAnswer("arrived")));
    EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
    EXPECT_EQ(server_.Connections(), before + 2);
    CloseKeptConnections();
  }
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenUpload, ServerOfTheFilesThatIsNotThereIsAnHttpProblem) {
  const IAttachedFilePtr file = File("content");
  server_.Expect(RawScript().ReadRequest().Write(ScriptAnswer("http://127.0.0.1:1/up?ticket=T1")));
  EXPECT_EQ(RunWith(file), "0x80020009 Unknown Http problem.");
  ExpectTicket(file, u"T1");
  CloseKeptConnections();
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenUpload, FaultOfTheScriptThatGivesAddressesPasses) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText(
      "<soap:Envelope><soap:Body><soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/"
      "errorCode&gt;&lt;description&gt;no room&lt;/description&gt;&lt;/ErrorObject&gt;</faultstring>"
      "</soap:Fault></soap:Body></soap:Envelope>")));
  EXPECT_EQ(RunWith(File("content")), "0x80040005 no room");
  CloseKeptConnections();
  ExpectNextUploadWorks();
}

TEST_F(BrokenUpload, FailedFileGoesAgainUnderItsTicket) {
  const IAttachedFilePtr file = File("content");
  server_.Expect(AfterTheAddress().ReadRequest().Close());
  EXPECT_EQ(RunWith(file), "0x80020009 Empty reply from server");
  server_.Expect(
      AfterTheAddress().ReadRequest().Write(RawAnswerText("")).ReadRequest().Write(ScriptAnswer("arrived")));
  EXPECT_EQ(RunWith(file), "VT_BSTR arrived");
  const std::string sent = server_.Received().back();
  EXPECT_NE(
      sent.find("<Name xsi:type=\"xsd:string\">fileTicket</Name><Value xsi:type=\"xsd:string\">T1</Value>"),
      std::string::npos);
  ExpectTicket(file, u"T1");
}

TEST_F(BrokenUpload, UploadsStayDoneWhenALaterOneFails) {
  const IAttachedFilePtr first = File("content");
  const IAttachedFilePtr second = CreateAttachedFile(Wide(files_.Path("none")));
  server_.Expect(AfterTheAddress()
                     .ReadRequest()
                     .Write(RawAnswerText(""))
                     .ReadRequest()
                     .Write(ScriptAnswer(ServerUrl() + "/up?ticket=T2")));
  const IParametersPtr list = CreateParameters();
  ASSERT_EQ(list->Add(u"a", Variant::FromObject(first.get()), nullptr), S_OK);
  ASSERT_EQ(list->Add(u"b", Variant::FromObject(second.get()), nullptr), S_OK);
  Variant result;
  EXPECT_NE(model_->Execute(u"JavaScript", u"1", list.get(), &result), S_OK);
  ExpectTicket(first, u"T1");
  ExpectTicket(second, u"T2");
  EXPECT_EQ(ScriptsSent(), 0u);
  CloseKeptConnections();
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

}  // namespace
}  // namespace qv::test
