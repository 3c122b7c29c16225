// A running service and the verbs of tests that move files.
#pragma once

#include "service_fixture.h"

namespace qv::devservice::testing {

// The form in which clients send the ticket of an uploaded file, and an array of one such parameter "f".
std::string TicketParameter(const std::string& name, const std::string& ticket);
std::string OneTicket(const std::string& ticket);

// The path of an address on this service: "http://h:1/a" gives "/a".
std::string PathIn(const std::string& url);
// The text after the first "=".
std::string TicketIn(const std::string& url);

class TransferTest : public ServiceTest {
 protected:
  // The text that a script answers with; "(none)" and a failure of the test for anything else.
  std::string Text(const std::string& script, const std::string& parameters = NilParameters());
  // A new ticket's address.
  std::string NewUploadUrl() { return Text("uploadUrl()"); }

  // A request of the test's session; `start` is as in Request, `headers` are further ones.
  std::string FileRequest(const std::string& start, const std::string& headers = "");
  // The head of an upload, up to and with the empty line.
  std::string UploadHead(const std::string& path, std::size_t length);

  // Sends a file to an address with the test's session, or another.
  RawAnswer Upload(const std::string& url, const std::string& content);
  RawAnswer UploadAs(const std::string& usid, const std::string& url, const std::string& content);
  // Uploads to a new ticket and returns that.
  std::string UploadNew(const std::string& content);
  // GET, or another method, with the test's session or another.
  RawAnswer Fetch(const std::string& url, const std::string& method = "GET");
  RawAnswer FetchAs(const std::string& usid, const std::string& url, const std::string& method = "GET");
};

}  // namespace qv::devservice::testing
