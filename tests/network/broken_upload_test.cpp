// Uploads that break on their way: the message, what the file object keeps, and a next call that works.
#include <unistd.h>

#include "client_fixture.h"
#include "qvscriptwells/create_objects.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

class BrokenUpload : public TransferTest {
 protected:
  // The request for an address is answered; what follows is the upload's.
  RawScript AfterTheAddress() const { return RawScript().Reply(ScriptAnswer(UploadUrl())); }
  // A file that takes no room on the disk, and more than sockets hold.
  IAttachedFilePtr LargeFile() const {
    const std::string name = files_.Write("here/f.bin", "");
    EXPECT_EQ(truncate(name.c_str(), 64L * 1024 * 1024), 0);
    return CreateAttachedFile(Wide(name));
  }
  // The ticket was stored before the file was sent, and stays.
  static void ExpectTicket(const IAttachedFilePtr& file, const char16_t* ticket = u"T1") {
    VARIANT_BOOL has = VARIANT_FALSE;
    EXPECT_EQ(file->IsTicketId(&has), S_OK);
    EXPECT_EQ(has, VARIANT_TRUE);
    WideString text;
    EXPECT_EQ(file->get_TicketId(&text), S_OK);
    EXPECT_EQ(text, WideString(ticket));
  }
  // The outcome starts with one of these; the script "1" itself is not sent.
  void ExpectFails(const RawScript& script, const IAttachedFilePtr& file,
                   std::initializer_list<const char*> outcomes, std::size_t stuck = 0) {
    const Tree before = TreeOf(Target());
    server_.Expect(script);
    const std::string outcome = RunWith(file);
    bool known = false;
    for (const char* start : outcomes)
      known = known || outcome.rfind("0x80020009 " + std::string(start), 0) == 0;
    EXPECT_TRUE(known) << outcome;
    EXPECT_EQ(server_.Received().back().find("FileTicket"), std::string::npos);
    EXPECT_EQ(TreeOf(Target()), before);
    EXPECT_EQ(TreeOf(files_.Path("temp")), Tree());
    ExpectTicket(file);
    ExpectUploadsLeaveNothing(stuck);
  }
  // The file cannot be read. Nothing was sent, so the connection stays good.
  void ExpectNotSent(const std::string& path, const std::string& reason) {
    const IAttachedFilePtr file = CreateAttachedFile(Wide(path));
    const std::size_t before = server_.Connections();
    server_.Expect(
        AfterTheAddress().Reply(ScriptAnswer(UploadUrl())).Answer("").Reply(ScriptAnswer("arrived")));
    EXPECT_EQ(RunWith(file), "0x80020009 Couldn't open file " + path + ": " + reason);
    ExpectTicket(file);
    EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
    EXPECT_EQ(server_.Connections(), before + 1);
    const std::string sent = server_.Received().back();
    EXPECT_EQ(sent.find("POST /up"), sent.rfind("POST /up"));
    EXPECT_NE(sent.find("Content-Length: 7\r\n\r\ncontentPOST"), std::string::npos);
    ExpectUploadsLeaveNothing();
  }
};

TEST_F(BrokenUpload, WholeUploadIsThreeRequestsOnOneConnection) {
  const std::size_t before = server_.Connections();
  server_.Expect(WholeUpload());
  EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
  ASSERT_EQ(server_.Connections(), before + 1);
  const std::string sent = server_.Received().back();
  for (const char* piece :
       {"POST /up?ticket=T1 HTTP/1.1\r\n", "\r\nusid: s1\r\n", "Content-Length: 7\r\n\r\ncontent",
        R"(<Value xsi:type="FileTicket"><Id xsi:type="string">T1</Id></Value>)"})
    EXPECT_NE(sent.find(piece), std::string::npos) << piece;
}

TEST_F(BrokenUpload, ConnectionThatBreaksFails) {
  // Which of the three the system reports first is chance.
  ExpectFails(AfterTheAddress().ReadBytes(200'000).Reset(), LargeFile(),
              {"Send failure: Connection reset by peer", "Send failure: Broken pipe",
               "Recv failure: Connection reset by peer"});
  ExpectFails(AfterTheAddress().Reply("HTTP/1.1 2").Reset(), File("content"),
              {"Recv failure: Connection reset by peer"});
  ExpectFails(AfterTheAddress().ReadRequest().Close(), File("content"), {"Empty reply from server"});
  ExpectFails(AfterTheAddress().Reply("SMTP ready\r\n\r\n").Close(), File("content"), {""});
}

TEST_F(BrokenUpload, ServerThatStallsTimesOut) {
  const char* const timedOut = "Operation timed out after N milliseconds without a byte";
  SetIdleTimeout(200);
  ExpectFails(AfterTheAddress().ReadRequest().Stall(), File("content"), {timedOut});
  ExpectFails(AfterTheAddress().ReadBytes(1000).Stall(), LargeFile(), {timedOut}, 1);
}

TEST_F(BrokenUpload, FileThatCannotBeReadFailsAfterItsAddressWasAskedFor) {
  ExpectNotSent(files_.Path("none"), "No such file or directory");
  ExpectNotSent(Target(), "Not a regular file");
}

// The status of an upload's answer is never looked at.
TEST_F(BrokenUpload, RefusalByStatusAloneGoesUnnoticed) {
  server_.Expect(AfterTheAddress()
                     .Reply("HTTP/1.1 500 Broken\r\nContent-Length: 0\r\n\r\n")
                     .Reply(ScriptAnswer("arrived")));
  EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
}

TEST_F(BrokenUpload, AnswerBeforeTheWholeFileWasReadCounts) {
  const std::size_t before = server_.Connections();
  server_.Expect(AfterTheAddress().ReadBytes(1000).Write("HTTP/1.1 413 Enough\r\n\r\n").Stall());
  Reply(ScriptAnswer("arrived"));
  EXPECT_EQ(RunWith(LargeFile()), "VT_BSTR arrived");
  EXPECT_EQ(server_.Connections(), before + 2);
  CloseKeptConnections();
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft(1);
}

// Answers whose body would have to be read to its end end the connection; nobody waits for them.
TEST_F(BrokenUpload, AnswersWithoutLengthInChunksAndTooLongAreDropped) {
  for (const std::string& answer :
       {OkText("\r\nto the end"), ChunkedText("3\r\nabc"), SizedText(99999999999, "abc")}) {
    const std::size_t before = server_.Connections();
    server_.Expect(AfterTheAddress().Reply(answer));
    Reply(ScriptAnswer("arrived"));
    EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
    EXPECT_EQ(server_.Connections(), before + 2);
    CloseKeptConnections();
  }
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenUpload, ServerOfTheFilesThatIsNotThereIsAnHttpProblem) {
  const IAttachedFilePtr file = File("content");
  Reply(ScriptAnswer("http://127.0.0.1:1/up?ticket=T1"));
  EXPECT_EQ(RunWith(file), "0x80020009 Unknown Http problem.");
  ExpectTicket(file);
  ExpectUploadsLeaveNothing();
}

TEST_F(BrokenUpload, FaultOfTheScriptThatGivesAddressesPasses) {
  Answer(
      "<soap:Envelope><soap:Body><soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/"
      "errorCode&gt;&lt;description&gt;no room&lt;/description&gt;&lt;/ErrorObject&gt;</faultstring>"
      "</soap:Fault></soap:Body></soap:Envelope>");
  EXPECT_EQ(RunWith(File("content")), "0x80040005 no room");
  CloseKeptConnections();
  ExpectNextUploadWorks();
}

TEST_F(BrokenUpload, FailedFileGoesAgainUnderItsTicket) {
  const IAttachedFilePtr file = File("content");
  server_.Expect(AfterTheAddress().ReadRequest().Close());
  EXPECT_EQ(RunWith(file), "0x80020009 Empty reply from server");
  server_.Expect(WholeUpload());
  EXPECT_EQ(RunWith(file), "VT_BSTR arrived");
  EXPECT_NE(server_.Received().back().find("<Name xsi:type=\"xsd:string\">fileTicket</Name>"
                                           "<Value xsi:type=\"xsd:string\">T1</Value>"),
            std::string::npos);
  ExpectTicket(file);
}

TEST_F(BrokenUpload, UploadsStayDoneWhenALaterOneFails) {
  const IAttachedFilePtr first = File("content");
  const IAttachedFilePtr second = CreateAttachedFile(Wide(files_.Path("none")));
  server_.Expect(AfterTheAddress().Answer("").Reply(ScriptAnswer(ServerUrl() + "/up?ticket=T2")));
  const IParametersPtr list =
      ParameterList({{u"a", Variant::FromObject(first.get())}, {u"b", Variant::FromObject(second.get())}});
  Variant result;
  EXPECT_NE(model_->Execute(u"JavaScript", u"1", list.get(), &result), S_OK);
  ExpectTicket(first);
  ExpectTicket(second, u"T2");
  EXPECT_EQ(server_.AllReceived().find("FileTicket"), std::string::npos);
  ExpectUploadsLeaveNothing();
}

}  // namespace
}  // namespace qv::test
