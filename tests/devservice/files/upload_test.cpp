// Uploads: addresses, requests that are refused, and the files as parameters of scripts.
#include <thread>
#include <vector>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using namespace std::string_literals;

class Uploads : public TransferTest {
 protected:
  // The content that was uploaded to an address.
  std::string Stored(const std::string& url) { return Text("parameters.f.text()", OneTicket(TicketIn(url))); }
  std::string StatusOfUpload(const std::string& path, const std::string& headers, const std::string& body) {
    return StatusOf(Ask(FileRequest("POST " + path, headers) + body));
  }
  // An upload whose client closes early.
  RawAnswer UploadHalf(const std::string& url) {
    RawClient client(Port(), UploadHead(PathIn(url), 100) + "half");
    client.EndSending();
    return client.Receive();
  }
};

TEST_F(Uploads, AddressHoldsANewTicketEachTime) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(url.substr(0, url.size() - 32), "http://127.0.0.1:80/WebEditor/FileManagerUpload.aspx?ticket=");
  EXPECT_EQ(TicketIn(url).find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_NE(NewUploadUrl(), url);
  // A given ticket keeps its address.
  EXPECT_EQ(Text("uploadUrl(parameters.p)", OneParameter("xsd:string", TicketIn(url))), url);
  EXPECT_EQ(Text("const u = uploadUrl(); uploadUrl(u.slice(-32)) === u ? 'same' : 'other'"), "same");
}

TEST_F(Uploads, FilesOfAnySizeAndTypeArrive) {
  const RawAnswer answer = Upload(NewUploadUrl(), "some bytes");
  EXPECT_EQ(answer.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(answer.body, "The file has arrived.\n");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "22");
  const std::string script = "parameters.f.size + '|' + parameters.f.text()";
  EXPECT_EQ(Text(script, OneTicket(UploadNew(""))), "0|");
  EXPECT_EQ(Text(script, OneTicket(UploadNew("a"))), "1|a");
  for (const std::string type : {"multipart/form-data; boundary=b", "application/x-www-form-urlencoded",
                                 "text/xml", "application/octet-stream"}) {
    const std::string url = NewUploadUrl();
    const std::string headers =
        "Content-Type: " + type + "\r\nContent-Encoding: gzip\r\nContent-Length: 9\r\n";
    EXPECT_EQ(StatusOfUpload(PathIn(url), headers, "--b\na=%20"), "200") << type;
    EXPECT_EQ(Stored(url), "--b\na=%20") << type;
  }
  const nlohmann::json stats = Stats();
  EXPECT_EQ(stats["uploads"], 7);
  EXPECT_EQ(stats["uploadedBytes"], 10 + 1 + 4 * 9);
}

TEST_F(Uploads, AnyPrefixAndWholeUrlsAreAccepted) {
  const std::string path = PathIn(NewUploadUrl());
  EXPECT_EQ(StatusOf(Upload("http://x/some/where" + path, "a")), "200");
  EXPECT_EQ(StatusOf(Ask(UploadHead("http://server:80" + path, 1) + "a")), "200");
}

TEST_F(Uploads, ConnectionIsKept) {
  const std::string path = PathIn(NewUploadUrl());
  RawClient client(Port());
  for (int i = 0; i < 20; ++i) {
    client.Send(UploadHead(path, 70000) + std::string(70000, 'a'));
    const RawAnswer answer = client.Receive();
    ASSERT_EQ(StatusOf(answer), "200") << i;
    ASSERT_FALSE(answer.closed) << i;
  }
}

TEST_F(Uploads, ExpectContinueIsAnswered) {
  RawClient client(
      Port(), FileRequest("POST " + PathIn(NewUploadUrl()), "Content-Length: 1\r\nExpect: 100-continue\r\n"));
  EXPECT_EQ(StatusOf(client.Receive(std::chrono::milliseconds(500))), "100");
  client.Send("a");
  EXPECT_EQ(StatusOf(client.Receive()), "200");
}

TEST_F(Uploads, WrongSessionAndTicketAreRefused) {
  const std::string url = NewUploadUrl();
  const std::string other = Login();
  EXPECT_EQ(UploadAs(other, url, "a").body, "The ticket is that of another session.\n");
  for (const std::string& usid : {other, std::string(), std::string(32, '0')})
    EXPECT_EQ(StatusOf(UploadAs(usid, url, "a")), "403") << usid;
  for (const std::string& query : {std::string(), std::string("?ticket="), "?ticket=" + std::string(32, 'a'),
                                   std::string("?ticket=../../etc/passwd"), std::string("?ticket=%00")})
    EXPECT_EQ(StatusOf(Upload("http://x/WebEditor/FileManagerUpload.aspx" + query, "a")), "404") << query;
  // The ticket of a script that failed.
  EXPECT_EQ(StatusOf(Upload(Between(Fault("throw uploadUrl()"), "|", "|"), "a")), "404");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(Uploads, OtherMethodsAndFramingsAreRefused) {
  const std::string path = PathIn(NewUploadUrl());
  EXPECT_EQ(StatusOf(Fetch("http://x" + path)), "405");
  EXPECT_EQ(StatusOfUpload(path, "Transfer-Encoding: chunked\r\n", "1\r\na\r\n0\r\n\r\n"), "411");
  EXPECT_EQ(StatusOfUpload(path, "", ""), "411");
  EXPECT_EQ(StatusOfUpload(path, "Content-Length: 1\r\nContent-Length: 2\r\n", "ab"), "411");
}

TEST_F(Uploads, RefusalReachesAClientThatStillSends) {
  RawClient client(Port(), UploadHead("/WebEditor/FileManagerUpload.aspx?ticket=x", 8 << 20));
  const std::string piece(65536, 'a');
  for (int i = 0; i < 128; ++i) client.Send(piece);
  const RawAnswer answer = client.Receive();
  EXPECT_EQ(StatusOf(answer), "404");
  EXPECT_EQ(HeaderOf(answer.head, "Connection"), "close");
}

TEST_F(Uploads, SecondUploadReplacesTheFile) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(UploadHalf(url)), "400");
  EXPECT_EQ(Fault("1", OneTicket(TicketIn(url))), "1017|The parameter \"f\" has the file ticket \"" +
                                                      TicketIn(url) +
                                                      "\", for which nothing was uploaded.|request");
  EXPECT_EQ(Stats()["uploads"], 0);
  Upload(url, "first, longer");
  EXPECT_EQ(StatusOf(Upload(url, "second")), "200");
  EXPECT_EQ(Stored(url), "second");
  UploadHalf(url);
  EXPECT_EQ(Stored(url), "second");
}

TEST_F(Uploads, ClosedSessionTakesNoMore) {
  const std::string url = NewUploadUrl();
  RawClient open(Port(), UploadHead(PathIn(url), 2) + "a");
  // Another request after the first piece: the upload is running when the session ends.
  EXPECT_EQ(StatusOf(Upload(url, "whole")), "200");
  Post("", "CloseUserSession", CloseEnvelope(Session()));
  open.Send("b");
  EXPECT_EQ(StatusOf(open.Receive()), "403");
  EXPECT_EQ(StatusOf(Upload(url, "a")), "403");
  EXPECT_EQ(Stats()["uploads"], 1);
}

TEST_F(Uploads, ManyAtOnceKeepApart) {
  const std::string shared = NewUploadUrl();
  std::vector<std::string> own(6);
  for (std::string& url : own) url = NewUploadUrl();
  std::vector<std::thread> clients(own.size());
  for (std::size_t i = 0; i < own.size(); ++i) {
    clients[i] = std::thread([this, &own, &shared, i] {
      const std::string content(500000, static_cast<char>('a' + i));
      EXPECT_EQ(StatusOf(Upload(own[i], content)), "200");
      EXPECT_EQ(StatusOf(Upload(shared, content)), "200");
    });
  }
  for (std::thread& client : clients) client.join();
  const std::string script = "const t = parameters.f.text(); (t === t[0].repeat(500000)) + t[0]";
  for (std::size_t i = 0; i < own.size(); ++i)
    EXPECT_EQ(Text(script, OneTicket(TicketIn(own[i]))), std::string("true") + static_cast<char>('a' + i));
  EXPECT_EQ(Text(script, OneTicket(TicketIn(shared))).substr(0, 4), "true");
  EXPECT_EQ(Stats()["uploads"], 12);
}

TEST_F(Uploads, TicketOfNobodyIsAFaultThatScriptsCanCatch) {
  const std::string ticket = TicketIn(NewUploadUrl());
  ExpectFaults({{"uploadUrl('abc')",
                 "1017|The file ticket \"abc\" is not one of this session. (line 1)|script, line 1"}});
  EXPECT_EQ(Text("try { uploadUrl('abc') } catch (e) { e.name + e.code + (e instanceof Error) }"),
            "ScriptError1017true");
  ExpectFaultStart("1010|", {"uploadUrl(undefined)", "uploadUrl('a', 'b')"});
  session_ = Login();
  ExpectFaultStart("1017|", {"uploadUrl('" + ticket + "')"});
}

using FileParameters = TransferTest;

TEST_F(FileParameters, ScriptReadsTheFile) {
  const std::pair<std::string, ScriptRow> rows[] = {
      {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",
       {"parameters.f.text()", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"}},
      {"\xEF\xBB\xBF-", {"parameters.f.text()", "-"}},
      {"a\0b"s, {"parameters.f.text().length + ''", "3"}},
      {"\0\xFFz"s, {"const b = parameters.f.bytes(); (b instanceof Uint8Array) + b.join()", "true0,255,122"}},
      {"", {"'' + parameters.f.bytes().length", "0"}},
      {"ab", {"parameters.f.bytes()[0] = 7; parameters.f.text() + parameters.f.text()", "abab"}},
      // A script cannot name another file.
      {"ab",
       {"const f = parameters.f; f.path = '/etc/passwd'; f.ticket = 'x'; f.size = 9; f.text() + f.size",
        "ab2"}},
  };
  for (const auto& [content, row] : rows)
    EXPECT_EQ(Text(row.script, OneTicket(UploadNew(content))), row.outcome) << row.script;
  const std::string ticket = UploadNew("abc");
  EXPECT_EQ(Text("[parameters.f.ticket, parameters.f.size, parameterTypes.f, parameterList[0].type].join()",
                 OneTicket(ticket)),
            ticket + ",3,FileTicket,FileTicket");
  EXPECT_EQ(Text("parameters.a.text() + parameters.b.text()",
                 ArrayOf(2, TicketParameter("a", ticket) + TicketParameter("b", ticket))),
            "abcabc");
}

TEST_F(FileParameters, MisuseIsAFault) {
  EXPECT_EQ(Fault("parameters.f.text()", OneTicket(UploadNew("\xFF"))),
            "1010|The file is no text in UTF-8. (line 1)|script, line 1");
  const std::string parameters = OneTicket(UploadNew("ab"));
  EXPECT_EQ(Fault("parameters.f.text.call({ticket: 'x', path: '/etc/passwd', size: 3})", parameters),
            "1010|This is a function of file objects. (line 1)|script, line 1");
  EXPECT_EQ(FaultCode("new parameters.f.constructor('/etc/passwd').text()", parameters), "1010");
  EXPECT_EQ(FaultCode("parameters.f", parameters), "1012") << "not an answer";
}

TEST_F(FileParameters, UnknownTicketIsAFault) {
  for (const char* ticket : {"", "abc", "../x"})
    EXPECT_EQ(Fault("1", OneTicket(ticket)), std::string("1017|The parameter \"f\" has the file ticket \"") +
                                                 ticket + "\", which is not one of this session.|request");
  const std::string ticket = UploadNew("ab");
  session_ = Login();
  EXPECT_EQ(FaultCode("1", OneTicket(ticket)), "1017");
}

TEST_F(FileParameters, OtherFormsAreBadRequests) {
  const std::string ticket = UploadNew("ab");
  for (const std::string& value :
       {ticket, std::string(), "<Id>" + ticket + "</Id>", "<Id xsi:type=\"xsd:string\">" + ticket + "</Id>",
        "<id xsi:type=\"string\">" + ticket + "</id>",
        std::string(R"(<Id xsi:type="string">a</Id><Id xsi:type="string">b</Id>)")})
    EXPECT_EQ(FaultCode("1", OneParameter("FileTicket", value)), "1001") << value;
  EXPECT_EQ(FaultCode("1", OneParameter("xsd:FileTicket", ticket)), "1009");
}

TEST_F(FileParameters, LargeFilesAreRefusedAtOnce) {
  const std::string url = NewUploadUrl();
  RawClient client(Port(), UploadHead(PathIn(url), (std::size_t{64} << 20) + 1));
  const std::string piece(std::size_t{1} << 20, 'a');
  for (int i = 0; i < 64; ++i) client.Send(piece);
  client.Send("a");
  ASSERT_EQ(StatusOf(client.Receive()), "200");
  const std::string parameters = OneTicket(TicketIn(url));
  EXPECT_EQ(Text("'' + parameters.f.size", parameters), "67108865");
  EXPECT_EQ(Fault("parameters.f.text()", parameters),
            "1010|The file is larger than 64 MiB and cannot be read at once. (line 1)|script, line 1");
  EXPECT_EQ(FaultCode("parameters.f.bytes()", parameters), "1010");
}

TEST_F(FileParameters, FilesUpTo64MegabytesAreRead) {
  StartWith([](ServiceOptions& options) {
    options.scriptMemoryLimit = std::size_t{4} << 30;
    options.scriptTimeLimit = std::chrono::seconds(60);
  });
  const std::string parameters = OneTicket(UploadNew(std::string(std::size_t{64} << 20, 'x')));
  EXPECT_EQ(Value("parameters.f.text().length", parameters), "xsd:int|67108864");
  EXPECT_EQ(Value("parameters.f.bytes().length", parameters), "xsd:int|67108864");
}

}  // namespace
}  // namespace qv::devservice::testing
