#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

class FileParameters : public TransferTest {
 protected:
  // Runs a script with one uploaded file as the parameter f.
  std::string WithFile(const std::string& content, const std::string& script) {
    return Text(script, ArrayOf(1, TicketParameter("f", UploadNew(content))));
  }
  std::string FaultWithFile(const std::string& content, const std::string& script) {
    return Fault(script, ArrayOf(1, TicketParameter("f", UploadNew(content))));
  }
};

TEST_F(FileParameters, ScriptSeesTicketSizeAndType) {
  const std::string ticket = UploadNew("abc");
  EXPECT_EQ(Text("[parameters.f.ticket, parameters.f.size, parameterTypes.f, parameterList[0].type].join()",
                 ArrayOf(1, TicketParameter("f", ticket))),
            ticket + ",3,FileTicket,FileTicket");
}

TEST_F(FileParameters, TextIsUtf8) {
  EXPECT_EQ(WithFile("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "parameters.f.text()"),
            "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(WithFile("\xEF\xBB\xBF"
                     "a",
                     "parameters.f.text()"),
            "a");
  EXPECT_EQ(WithFile(std::string("a\0b", 3), "parameters.f.text().length + ''"), "3");
  EXPECT_EQ(FaultWithFile("\xFF", "parameters.f.text()"),
            "1010|The file is no text in UTF-8. (line 1)|script, line 1");
}

TEST_F(FileParameters, BytesAreAnArray) {
  EXPECT_EQ(WithFile(std::string("\0\xFFz", 3),
                     "const b = parameters.f.bytes(); (b instanceof Uint8Array) + b.join()"),
            "true0,255,122");
  EXPECT_EQ(WithFile("", "'' + parameters.f.bytes().length"), "0");
}

TEST_F(FileParameters, CanBeReadMoreThanOnce) {
  EXPECT_EQ(WithFile("ab", "parameters.f.bytes()[0] = 7; parameters.f.text() + parameters.f.text()"), "abab");
}

TEST_F(FileParameters, ScriptCannotNameAnotherFile) {
  EXPECT_EQ(WithFile("ab",
                     "const f = parameters.f; f.path = '/etc/passwd'; f.ticket = 'x'; f.size = 9;"
                     "f.text() + f.size"),
            "ab2");
  EXPECT_EQ(FaultWithFile("ab", "parameters.f.text.call({ticket: 'x', path: '/etc/passwd', size: 3})"),
            "1010|This is a function of file objects. (line 1)|script, line 1");
  EXPECT_EQ(FaultWithFile("ab", "new parameters.f.constructor('/etc/passwd').text()").substr(0, 5), "1010|");
}

TEST_F(FileParameters, IsNoAnswer) {
  EXPECT_EQ(FaultWithFile("ab", "parameters.f").substr(0, 5), "1012|");
}

TEST_F(FileParameters, TwoParametersMayShareATicket) {
  const std::string ticket = UploadNew("ab");
  EXPECT_EQ(Text("parameters.a.text() + parameters.b.text()",
                 ArrayOf(2, TicketParameter("a", ticket) + TicketParameter("b", ticket))),
            "abab");
}

TEST_F(FileParameters, UnknownTicketIsAFault) {
  for (const char* ticket : {"", "abc", "../x"}) {
    EXPECT_EQ(Fault("1", ArrayOf(1, TicketParameter("f", ticket))),
              std::string("1017|The parameter \"f\" has the file ticket \"") + ticket +
                  "\", which is not one of this session.|request");
  }
  const std::string ticket = UploadNew("ab");
  session_ = Login();
  EXPECT_EQ(Fault("1", ArrayOf(1, TicketParameter("f", ticket))).substr(0, 5), "1017|");
}

TEST_F(FileParameters, OtherFormsAreNoRequest) {
  const std::string ticket = UploadNew("ab");
  const std::string rows[] = {
      ParameterElement("f", "FileTicket", ticket),
      ParameterElement("f", "FileTicket", ""),
      ParameterElement("f", "FileTicket", "<Id>" + ticket + "</Id>"),
      ParameterElement("f", "FileTicket", "<Id xsi:type=\"xsd:string\">" + ticket + "</Id>"),
      ParameterElement("f", "FileTicket", "<id xsi:type=\"string\">" + ticket + "</id>"),
      ParameterElement("f", "FileTicket", "<Id xsi:type=\"string\">a</Id><Id xsi:type=\"string\">b</Id>"),
  };
  for (const std::string& row : rows) EXPECT_EQ(Fault("1", ArrayOf(1, row)).substr(0, 5), "1001|") << row;
  EXPECT_EQ(Fault("1", ArrayOf(1, ParameterElement("f", "xsd:FileTicket", ticket))).substr(0, 5), "1009|");
}

TEST_F(FileParameters, LargeFilesAreRefusedAtOnce) {
  const std::string url = NewUploadUrl();
  RawClient client(service_->Port());
  client.Send(UploadHead(PathIn(url), session_, (std::size_t{64} << 20) + 1));
  const std::string piece(std::size_t{1} << 20, 'a');
  for (int i = 0; i < 64; ++i) client.Send(piece);
  client.Send("a");
  ASSERT_EQ(StatusOf(client.Receive()), "200");
  const std::string parameters = ArrayOf(1, TicketParameter("f", TicketIn(url)));
  EXPECT_EQ(Text("'' + parameters.f.size", parameters), "67108865");
  EXPECT_EQ(Fault("parameters.f.text()", parameters),
            "1010|The file is larger than 64 MiB and cannot be read at once. (line 1)|script, line 1");
  EXPECT_EQ(Fault("parameters.f.bytes()", parameters).substr(0, 5), "1010|");
}

TEST_F(FileParameters, FilesUpTo64MegabytesAreRead) {
  ServiceOptions options = TestOptions();
  options.scriptMemoryLimit = std::size_t{4} << 30;
  options.scriptTimeLimit = std::chrono::seconds(60);
  StartWith(options);
  session_ = Login();
  const std::string parameters =
      ArrayOf(1, TicketParameter("f", UploadNew(std::string(std::size_t{64} << 20, 'x'))));
  EXPECT_EQ(Value("parameters.f.text().length", parameters), "xsd:int|67108864");
  EXPECT_EQ(Value("parameters.f.bytes().length", parameters), "xsd:int|67108864");
}

}  // namespace
}  // namespace qv::devservice::testing
