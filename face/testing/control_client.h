// Requests to the control interface of a service.
#pragma once

#include <cstdint>
#include <string>

namespace scriptwells::testing {

// Makes a connection for each request. One thread at a time. Throws ConnectionError or TimeoutError if no
// whole answer comes, and Error (kAnswer, with the status and the service's reason) if it is no success.
class ControlClient {
 public:
  // `url`: "http://127.0.0.1:PORT/control/TOKEN". Throws Error (kAddress) for another form.
  explicit ControlClient(const std::string& url);

  // The page below the URL: "/counts".
  std::string Get(const std::string& page) const { return Ask("GET", page, ""); }
  void Post(const std::string& page, const std::string& body) const { Ask("POST", page, body); }

 private:
  std::string Ask(const std::string& method, const std::string& page, const std::string& body) const;

  std::uint16_t port_ = 0;
  std::string path_;
};

}  // namespace scriptwells::testing
