// A running service and the verbs of tests that move files.
#pragma once

#include "service_fixture.h"

namespace qv::devservice::testing {

// The form in which clients send the ticket of an uploaded file.
std::string TicketParameter(const std::string& name, const std::string& ticket);

// The path of an address on this service: "http://h:1/a" gives "/a".
std::string PathIn(const std::string& url);

// What stands behind the first "=".
std::string TicketIn(const std::string& url);

// The head of an upload, up to and with the empty line.
std::string UploadHead(const std::string& path, const std::string& usid, std::size_t length);

// A directory of its own below the temporary one, removed with everything in it.
class FreshDirectory {
 public:
  FreshDirectory();
  ~FreshDirectory();
  FreshDirectory(const FreshDirectory&) = delete;
  FreshDirectory& operator=(const FreshDirectory&) = delete;
  const std::string& Path() const { return path_; }
  // How many files, directories not counted, are in it at any depth.
  std::size_t CountFiles() const;

 private:
  std::string path_;
};

class TransferTest : public ServiceTest {
 protected:
  void SetUp() override {
    StartWith(TestOptions());
    session_ = Login();
  }

  // The text that a script answers with; "(none)" and a failure of the test for anything else.
  std::string Text(const std::string& script, const std::string& parameters = NilParameters());
  // A new ticket's address.
  std::string NewUploadUrl() { return Text("uploadUrl()"); }
  // Sends a file to an address with the test's session, or another.
  RawAnswer Upload(const std::string& url, const std::string& content);
  RawAnswer Upload(const std::string& url, const std::string& content, const std::string& usid);
  // Uploads to a new ticket and returns that.
  std::string UploadNew(const std::string& content);
  // GET, or another method, with the test's session or another.
  RawAnswer Fetch(const std::string& url, const std::string& method = "GET");
  RawAnswer FetchAs(const std::string& usid, const std::string& url, const std::string& method = "GET");
};

// "403", for one.
std::string StatusOf(const RawAnswer& answer);

}  // namespace qv::devservice::testing
