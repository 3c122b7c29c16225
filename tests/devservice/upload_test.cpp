#include <thread>
#include <vector>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using Uploads = TransferTest;

std::string Chunked(const std::string& path, const std::string& usid) {
  return "POST " + path + " HTTP/1.1\r\nHost: localhost\r\nusid: " + usid +
         "\r\nTransfer-Encoding: chunked\r\n\r\n1\r\na\r\n0\r\n\r\n";
}

TEST_F(Uploads, AddressHoldsANewTicketEachTime) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(url.substr(0, url.size() - 32), "http://127.0.0.1:80/WebEditor/FileManagerUpload.aspx?ticket=");
  EXPECT_EQ(TicketIn(url).find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_NE(NewUploadUrl(), url);
}

TEST_F(Uploads, FileArrivesWithText) {
  const RawAnswer answer = Upload(NewUploadUrl(), "some bytes");
  EXPECT_EQ(answer.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(answer.body, "The file has arrived.\n");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "22");
}

TEST_F(Uploads, SizesOfNothingAndOneByte) {
  const std::string script = "parameters.f.size + '|' + parameters.f.text()";
  EXPECT_EQ(Text(script, ArrayOf(1, TicketParameter("f", UploadNew("")))), "0|");
  EXPECT_EQ(Text(script, ArrayOf(1, TicketParameter("f", UploadNew("a")))), "1|a");
}

TEST_F(Uploads, AnyContentTypeIsTakenAsBytes) {
  for (const char* type : {"multipart/form-data; boundary=b", "application/x-www-form-urlencoded", "text/xml",
                           "application/octet-stream"}) {
    const std::string url = NewUploadUrl();
    RawClient client(service_->Port());
    client.Send("POST " + PathIn(url) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ +
                "\r\nContent-Type: " + type + "\r\nContent-Encoding: gzip\r\nContent-Length: 9\r\n\r\n" +
                "--b\na=%20");
    EXPECT_EQ(StatusOf(client.Receive()), "200") << type;
    EXPECT_EQ(Text("parameters.f.text()", ArrayOf(1, TicketParameter("f", TicketIn(url)))), "--b\na=%20")
        << type;
  }
}

TEST_F(Uploads, AnyPrefixAndWholeUrlsAreAccepted) {
  const std::string path = PathIn(NewUploadUrl());
  EXPECT_EQ(StatusOf(Upload("http://x/some/where" + path, "a")), "200");
  RawClient proxied(service_->Port());
  proxied.Send(UploadHead("http://server:80" + path, session_, 1) + "a");
  EXPECT_EQ(StatusOf(proxied.Receive()), "200");
}

TEST_F(Uploads, ConnectionIsKept) {
  const std::string path = PathIn(NewUploadUrl());
  RawClient client(service_->Port());
  for (int i = 0; i < 20; ++i) {
    client.Send(UploadHead(path, session_, 70000) + std::string(70000, 'a'));
    const RawAnswer answer = client.Receive();
    ASSERT_EQ(StatusOf(answer), "200") << i;
    ASSERT_FALSE(answer.closed) << i;
  }
}

TEST_F(Uploads, ExpectContinueIsAnswered) {
  RawClient client(service_->Port());
  client.Send("POST " + PathIn(NewUploadUrl()) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ +
              "\r\nContent-Length: 1\r\nExpect: 100-continue\r\n\r\n");
  EXPECT_EQ(StatusOf(client.Receive(std::chrono::milliseconds(500))), "100");
  client.Send("a");
  EXPECT_EQ(StatusOf(client.Receive()), "200");
}

TEST_F(Uploads, WrongSessionIsRefused) {
  const std::string url = NewUploadUrl();
  const std::string other = Login();
  EXPECT_EQ(Upload(url, "a", other).body, "The ticket is that of another session.\n");
  EXPECT_EQ(StatusOf(Upload(url, "a", other)), "403");
  EXPECT_EQ(StatusOf(Upload(url, "a", "")), "403");
  EXPECT_EQ(StatusOf(Upload(url, "a", std::string(32, '0'))), "403");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(Uploads, UnknownTicketIsRefused) {
  const std::string path = "http://x/WebEditor/FileManagerUpload.aspx";
  for (const std::string& query : {std::string(), std::string("?ticket="), "?ticket=" + std::string(32, 'a'),
                                   std::string("?ticket=../../etc/passwd"), std::string("?ticket=%00")}) {
    EXPECT_EQ(StatusOf(Upload(path + query, "a")), "404") << query;
  }
}

TEST_F(Uploads, OtherMethodsAndFramingsAreRefused) {
  const std::string path = PathIn(NewUploadUrl());
  EXPECT_EQ(StatusOf(Fetch("http://x" + path)), "405");
  RawClient chunked(service_->Port());
  chunked.Send(Chunked(path, session_));
  EXPECT_EQ(StatusOf(chunked.Receive()), "411");
  RawClient none(service_->Port());
  none.Send("POST " + path + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  EXPECT_EQ(StatusOf(none.Receive()), "411");
  RawClient twice(service_->Port());
  twice.Send("POST " + path + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ +
             "\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nab");
  EXPECT_EQ(StatusOf(twice.Receive()), "411");
}

TEST_F(Uploads, RefusalReachesAClientThatStillSends) {
  RawClient client(service_->Port());
  client.Send(UploadHead("/WebEditor/FileManagerUpload.aspx?ticket=x", session_, 8 << 20));
  const std::string piece(65536, 'a');
  for (int i = 0; i < 128; ++i) client.Send(piece);
  const RawAnswer answer = client.Receive();
  EXPECT_EQ(StatusOf(answer), "404");
  EXPECT_EQ(HeaderOf(answer.head, "Connection"), "close");
}

TEST_F(Uploads, SecondUploadReplacesTheFile) {
  const std::string url = NewUploadUrl();
  Upload(url, "first, longer");
  EXPECT_EQ(StatusOf(Upload(url, "second")), "200");
  EXPECT_EQ(Text("parameters.f.text()", ArrayOf(1, TicketParameter("f", TicketIn(url)))), "second");
}

TEST_F(Uploads, EarlyEndOfBodyKeepsNothing) {
  const std::string url = NewUploadUrl();
  RawClient client(service_->Port());
  client.Send(UploadHead(PathIn(url), session_, 100) + "half");
  client.EndSending();
  EXPECT_EQ(StatusOf(client.Receive()), "400");
  EXPECT_EQ(Fault("1", ArrayOf(1, TicketParameter("f", TicketIn(url)))),
            "1017|The parameter \"f\" has the file ticket \"" + TicketIn(url) +
                "\", for which nothing was uploaded.|request");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(Uploads, EarlyEndOfBodyLeavesTheFileBefore) {
  const std::string url = NewUploadUrl();
  Upload(url, "before");
  RawClient client(service_->Port());
  client.Send(UploadHead(PathIn(url), session_, 100) + "half");
  client.EndSending();
  client.Receive();
  EXPECT_EQ(Text("parameters.f.text()", ArrayOf(1, TicketParameter("f", TicketIn(url)))), "before");
}

TEST_F(Uploads, ClosedSessionTakesNoMore) {
  const std::string url = NewUploadUrl();
  RawClient open(service_->Port());
  open.Send(UploadHead(PathIn(url), session_, 2) + "a");
  // Another request after the first piece: the upload is under way when the session ends.
  EXPECT_EQ(StatusOf(Upload(url, "whole")), "200");
  Post("", "CloseUserSession", CloseEnvelope(session_));
  open.Send("b");
  EXPECT_EQ(StatusOf(open.Receive()), "403");
  EXPECT_EQ(StatusOf(Upload(url, "a")), "403");
  EXPECT_EQ(Stats()["uploads"], 1);
}

TEST_F(Uploads, ManyAtOnceKeepApart) {
  const std::string shared = NewUploadUrl();
  std::vector<std::string> own;
  for (int i = 0; i < 6; ++i) own.push_back(NewUploadUrl());
  std::vector<std::thread> clients;
  for (std::size_t i = 0; i < own.size(); ++i) {
    clients.emplace_back([this, &own, &shared, i] {
      const std::string content(500000, static_cast<char>('a' + i));
      EXPECT_EQ(StatusOf(Upload(own[i], content)), "200");
      EXPECT_EQ(StatusOf(Upload(shared, content)), "200");
    });
  }
  for (std::thread& client : clients) client.join();
  const std::string script = "const t = parameters.f.text(); (t === t[0].repeat(500000)) + t[0]";
  for (std::size_t i = 0; i < own.size(); ++i) {
    EXPECT_EQ(Text(script, ArrayOf(1, TicketParameter("f", TicketIn(own[i])))),
              std::string("true") + static_cast<char>('a' + i));
  }
  EXPECT_EQ(Text(script, ArrayOf(1, TicketParameter("f", TicketIn(shared)))).substr(0, 4), "true");
  EXPECT_EQ(Stats()["uploads"], 12);
}

TEST_F(Uploads, AreCounted) {
  UploadNew("12345");
  UploadNew("");
  const nlohmann::json stats = Stats();
  EXPECT_EQ(stats["uploads"], 2);
  EXPECT_EQ(stats["uploadedBytes"], 5);
}

TEST_F(Uploads, GivenTicketKeepsItsAddress) {
  const std::string url = NewUploadUrl();
  const std::string parameters = ArrayOf(1, ParameterElement("fileTicket", "xsd:string", TicketIn(url)));
  EXPECT_EQ(Text("uploadUrl(parameters.fileTicket)", parameters), url);
  EXPECT_EQ(Text("const u = uploadUrl(); uploadUrl(u.slice(-32)) === u ? 'same' : 'other'"), "same");
}

TEST_F(Uploads, TicketOfNobodyIsAFaultThatScriptsCanCatch) {
  const std::string ticket = TicketIn(NewUploadUrl());
  EXPECT_EQ(Fault("uploadUrl('abc')"),
            "1017|The file ticket \"abc\" is not one of this session. (line 1)|script, line 1");
  EXPECT_EQ(Text("try { uploadUrl('abc') } catch (e) { e.name + e.code + (e instanceof Error) }"),
            "ScriptError1017true");
  EXPECT_EQ(Fault("uploadUrl(undefined)").substr(0, 5), "1010|");
  EXPECT_EQ(Fault("uploadUrl('a', 'b')").substr(0, 5), "1010|");
  session_ = Login();
  EXPECT_EQ(Fault("uploadUrl('" + ticket + "')").substr(0, 5), "1017|");
}

TEST_F(Uploads, TicketsOfAFailedScriptAreGone) {
  const std::string fault = Fault("throw uploadUrl()");
  const std::string url = fault.substr(5, fault.find('|', 5) - 5);
  EXPECT_EQ(StatusOf(Upload(url, "a")), "404");
}

}  // namespace
}  // namespace qv::devservice::testing
