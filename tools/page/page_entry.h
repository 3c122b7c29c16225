// Who may use the page: a browser that was given its address.
#pragma once

#include <mutex>
#include <optional>
#include <string>

namespace qv::cli {

// The address holds a token in its fragment, which browsers send to nobody. The page exchanges it once for a
// cookie. Thread-safe.
class PageEntry {
 public:
  // Throws std::runtime_error if the system has no random numbers.
  PageEntry();

  const std::string& Token() const noexcept { return token_; }

  // Cookies know no ports, so the name has the service's. To be called before the first request.
  void SetPort(const std::string& port);

  // The header with the cookie, at the first time; an empty text for a browser that has it already. Nothing
  // if the token is wrong, or was used by another one.
  std::optional<std::string> Exchange(const std::string& token, const std::string& cookies);

  // Whether these cookies, as in the header, hold the page's.
  bool Holds(const std::string& cookies) const;

 private:
  const std::string token_;
  const std::string secret_;
  std::string name_;
  std::mutex mutex_;
  bool used_ = false;
};

}  // namespace qv::cli
