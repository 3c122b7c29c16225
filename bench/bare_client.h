// The limit of a round trip: libcurl alone, posting prepared bytes on a kept connection.
#pragma once

#include <string>

#include <curl/curl.h>

namespace qv::bench {

class BareClient {
 public:
  // Posts `body` to `url` with the headers that the library sends. `body` is borrowed.
  BareClient(const std::string& url, const std::string& body);
  ~BareClient();
  BareClient(const BareClient&) = delete;
  BareClient& operator=(const BareClient&) = delete;

  // One exchange. The answer is dropped unless `keep` is set. False when it failed.
  bool Post(std::string* keep);

 private:
  CURL* curl_;
  curl_slist* headers_ = nullptr;
};

// The limit of a transfer: a file on a kept connection as libcurl does it by itself, with its own buffers.
class BareTransfer {
 public:
  explicit BareTransfer(const std::string& url);
  ~BareTransfer();
  BareTransfer(const BareTransfer&) = delete;
  BareTransfer& operator=(const BareTransfer&) = delete;

  // False when it failed.
  bool Upload(const std::string& file);
  bool Download(const std::string& file);

 private:
  CURL* curl_;
  curl_slist* headers_ = nullptr;
};

}  // namespace qv::bench
