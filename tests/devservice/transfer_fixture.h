// A running service and the verbs of tests that move files.
#pragma once

#include "service_fixture.h"

namespace qv::devservice::testing {

// The form in which clients send the ticket of an uploaded file.
inline std::string TicketParameter(const std::string& name, const std::string& ticket) {
  return ParameterElement(name, "FileTicket", "<Id xsi:type=\"string\">" + ticket + "</Id>");
}

// An array of one such parameter "f".
inline std::string OneTicket(const std::string& ticket) {
  return ArrayOf(1, TicketParameter("f", ticket));
}

// The path of an address on this service: "http://h:1/a" gives "/a".
inline std::string PathIn(const std::string& url) {
  const std::size_t host = url.find("://");
  const std::size_t path = host == std::string::npos ? host : url.find('/', host + 3);
  return path == std::string::npos ? "(none)" : url.substr(path);
}

// The text after the first "=".
inline std::string TicketIn(const std::string& url) {
  return url.substr(url.find('=') + 1);
}

class TransferTest : public ServiceTest {
 protected:
  // The text that a script answers with. Fails the test for anything else.
  std::string Text(const std::string& script, const std::string& parameters = NilParameters()) {
    const std::string value = Value(script, parameters);
    if (value.substr(0, 11) == "xsd:string|") return value.substr(11);
    ADD_FAILURE() << value;
    return "(none)";
  }
  // A new ticket's address.
  std::string NewUploadUrl() { return Text("uploadUrl()"); }

  // A request of a session; `start` is as in Request, `headers` are further ones.
  static std::string RequestAs(const std::string& usid, const std::string& start,
                               const std::string& headers) {
    return Request(start, "Host: localhost\r\nusid: " + usid + "\r\n" + headers);
  }
  std::string FileRequest(const std::string& start, const std::string& headers = "") {
    return RequestAs(Session(), start, headers);
  }
  // The head of an upload, up to and with the empty line.
  static std::string UploadHead(const std::string& path, std::size_t length, const std::string& usid) {
    return RequestAs(usid, "POST " + path,
                     "cache-control: no-cache\r\nContent-Length: " + std::to_string(length) + "\r\n");
  }
  std::string UploadHead(const std::string& path, std::size_t length) {
    return UploadHead(path, length, Session());
  }

  // Sends a file to an address.
  RawAnswer UploadAs(const std::string& usid, const std::string& url, const std::string& content) {
    return Ask(UploadHead(PathIn(url), content.size(), usid) + content);
  }
  RawAnswer Upload(const std::string& url, const std::string& content) {
    return UploadAs(Session(), url, content);
  }
  // Uploads to a new ticket and returns that.
  std::string UploadNew(const std::string& content) {
    const std::string url = NewUploadUrl();
    EXPECT_EQ(StatusOf(Upload(url, content)), "200");
    return TicketIn(url);
  }
  // GET, or another method.
  RawAnswer FetchAs(const std::string& usid, const std::string& url, const std::string& method = "GET") {
    RawClient client(Port(), RequestAs(usid, method + " " + PathIn(url), ""));
    return client.Receive(std::chrono::milliseconds(method == "HEAD" ? 300 : 60000));
  }
  RawAnswer Fetch(const std::string& url, const std::string& method = "GET") {
    return FetchAs(Session(), url, method);
  }
};

}  // namespace qv::devservice::testing
