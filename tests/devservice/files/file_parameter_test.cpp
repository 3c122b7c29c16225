// Uploaded files as parameters of scripts.
#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using std::string_literals::operator""s;

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
        std::string("<Id xsi:type=\"string\">a</Id><Id xsi:type=\"string\">b</Id>")})
    EXPECT_EQ(FaultCode("1", OneParameter("FileTicket", value)), "1001") << value;
  EXPECT_EQ(FaultCode("1", OneParameter("xsd:FileTicket", ticket)), "1009");
}

TEST_F(FileParameters, LargeFilesAreRefusedAtOnce) {
  const std::string url = NewUploadUrl();
  RawClient client(Port());
  client.Send(UploadHead(PathIn(url), (std::size_t{64} << 20) + 1));
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
