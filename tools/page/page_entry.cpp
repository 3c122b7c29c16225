#include "tools/page/page_entry.h"

#include <algorithm>

#include "devservice/values/random_id.h"
#include "devservice/values/text_scanner.h"

namespace qv::cli {

namespace {

// In a time that does not depend on the content.
bool IsSame(const std::string& text, const std::string& secret) {
  if (text.size() != secret.size()) return false;
  unsigned difference = 0;
  for (std::size_t i = 0; i < text.size(); ++i)
    difference |= static_cast<unsigned char>(text[i]) ^ static_cast<unsigned char>(secret[i]);
  return difference == 0;
}

}  // namespace

PageEntry::PageEntry() : token_(devservice::RandomId()), secret_(devservice::RandomId()) {}

void PageEntry::SetPort(const std::string& port) {
  name_ = "scriptwells-" + port;
}

std::optional<std::string> PageEntry::Exchange(const std::string& token, const std::string& cookies) {
  if (!IsSame(token, token_)) return std::nullopt;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (Holds(cookies)) return "";
  if (used_) return std::nullopt;
  used_ = true;
  return "Set-Cookie: " + name_ + "=" + secret_ + "; Path=/page/; HttpOnly; SameSite=Strict\r\n";
}

bool PageEntry::Holds(const std::string& cookies) const {
  const std::string start = name_ + "=";
  for (std::size_t at = 0; at <= cookies.size();) {
    const std::size_t end = std::min(cookies.find(';', at), cookies.size());
    const std::string cookie(devservice::Trim(std::string_view(cookies).substr(at, end - at)));
    if (devservice::StartsWith(cookie, start) && IsSame(cookie.substr(start.size()), secret_)) return true;
    at = end + 1;
  }
  return false;
}

}  // namespace qv::cli
