// Which hosts and web pages a request may name.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qv::devservice {

// The service runs the scripts that it is sent, and every web page in a browser on this machine can send
// requests to it. Requests of a foreign page are known by their Origin, or by their Host if the page's own
// host name was made to point to this machine (DNS rebinding). Immutable; any thread.
class AccessRule {
 public:
  // Names that are accepted as hosts besides "localhost" and all IP addresses. Letters of any case.
  explicit AccessRule(const std::vector<std::string>& names);

  // The message that refuses a request with these headers; empty when it is accepted. An empty host or origin
  // means that the header is missing.
  std::string Refusal(std::string_view host, std::string_view origin) const;

 private:
  bool Knows(std::string_view host) const;

  std::set<std::string> names_;
};

}  // namespace qv::devservice
