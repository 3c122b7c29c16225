#include "torture/answering_server.h"

#include <string>
#include <vector>

#include "fixtures/loopback_server.h"

namespace qv::torture {
namespace {

using test::RawAnswerText;

std::string Envelope(const std::string& body) {
  return RawAnswerText("<soap:Envelope><soap:Body>" + body + "</soap:Body></soap:Envelope>",
                       "Content-Type: text/xml\r\n");
}

std::string Answer(const std::string& type, const std::string& value) {
  return Envelope("<ExecuteResponse><r xsi:type=\"" + type + "\">" + value + "</r></ExecuteResponse>");
}

struct Row {
  const char* mark;  // in the request
  std::string answer;
};

// The first row whose mark is in the request has its answer.
std::vector<Row> Rows(const std::string& url) {
  return {
      {"GET /file", RawAnswerText("abc", "Content-Disposition: attachment; filename=got.txt\r\n")},
      {"POST /up", RawAnswerText("ok", "Content-Type: text/xml\r\n")},
      {"<CreateUserSession", Envelope("<CreateUserSessionResponse><CreateUserSessionResult>u1"
                                      "</CreateUserSessionResult></CreateUserSessionResponse>")},
      {"<CloseUserSession", Envelope("<CloseUserSessionResponse/>")},
      {"upload-script", Answer("xsd:string", url + "/up?t=t1")},
      {"give a table",
       Answer("SOF:RecordList",
              "<h><s><c xsd:name='a' xsd:type='xsd:int'/><c xsd:name='b' xsd:type='xsd:string'/></s></h>"
              "<d><i><a>5</a><b>five</b></i><i><a>6</a><b>six</b></i></d>")},
      {"give a duration", Answer("xsd:duration", "P1DT2H")},
      {"give a fault", Envelope("<soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5"
                                "&lt;/errorCode&gt;&lt;description&gt;words&lt;/description&gt;"
                                "&lt;/ErrorObject&gt;</faultstring></soap:Fault>")},
      {"<Execute", Answer("xsd:string", "done")},
  };
}

// False when the connection is over.
bool Reply(const std::vector<Row>& rows, const std::string& request,
           const test::LoopbackConnection& connection) {
  for (const Row& row : rows)
    if (request.find(row.mark) != std::string::npos) return connection.Write(row.answer);
  return false;
}

std::uint16_t Start() {
  static std::vector<Row> rows;
  static const test::LoopbackServer server([] {
    return [](test::LoopbackConnection& connection) {
      std::string bytes;
      while (const std::size_t size = connection.ReadRequest(&bytes)) {
        if (!Reply(rows, bytes.substr(0, size), connection)) return;
        bytes.erase(0, size);
      }
    };
  });
  rows = Rows(server.Url());
  return server.Port();
}

}  // namespace

AnsweringServer::AnsweringServer() : ForkedServer(&Start) {}

}  // namespace qv::torture
