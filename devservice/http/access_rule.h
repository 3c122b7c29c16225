// Which hosts and web pages a request may name.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qv::devservice {

// The service runs the scripts that it is sent, and every web page in a browser on this machine can send
// requests to it. A page from elsewhere gives itself away: by its Origin, or, where its own host name was
// made to lead to this machine, by the Host of its requests. Immutable; any thread.
class AccessRule {
 public:
  // Names that are welcome as hosts besides "localhost" and all IP addresses. Letters of any case.
  explicit AccessRule(const std::vector<std::string>& names);

  // Why a request with these headers is refused, as a text for people; empty when it is welcome. An empty
  // host or origin means that the header is missing.
  std::string Refusal(std::string_view host, std::string_view origin) const;

 private:
  bool Knows(std::string_view host) const;

  std::set<std::string> names_;
};

}  // namespace qv::devservice
