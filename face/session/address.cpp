#include "face/session/address.h"

#include <algorithm>
#include <charconv>

#include "scriptwells/error.h"

namespace scriptwells {

namespace {

[[noreturn]] void Refuse(const std::string& what, const std::string& text, const std::string& reason) {
  throw Error(Phase::kAddress, what + " '" + text + "' " + reason);
}

char Lowered(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// An address holds no blanks, control characters, backslashes and bytes beyond ASCII.
bool IsPlain(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~' && c != '\\'; });
}

bool IsPort(const std::string& text) {
  unsigned port = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, port);
  return result.ec == std::errc() && result.ptr == end && port >= 1 && port <= 65535;
}

// Returns whether there is a port after the host. `what` and `whole` are for the message.
bool CheckAuthority(const std::string& what, const std::string& whole, const std::string& authority) {
  if (authority.find('@') != std::string::npos)
    throw Error(
        Phase::kAddress,
        what + " must not hold a user name; credentials are given beside it");  // nor is it repeated here
  if (authority.find('[') != std::string::npos)
    Refuse(what, whole, "is an IPv6 address, which the protocol's client cannot read; use a host name");
  const std::size_t colon = authority.find(':');
  if (authority.empty() || colon == 0) Refuse(what, whole, "has no host name");
  if (colon == std::string::npos) return false;
  if (!IsPort(authority.substr(colon + 1)))
    Refuse(what, whole, "has no port between 1 and 65535 after its ':'");
  return true;
}

struct Pieces {
  std::string origin;  // scheme, host and always a port
  std::string path;    // with its query
};

// The URL with its scheme in lower case, the only case that the library reads.
std::string WithLowerScheme(const std::string& url) {
  std::string lowered = url;
  const auto length = static_cast<std::ptrdiff_t>(std::min(url.find("://"), url.size()));
  std::transform(url.begin(), url.begin() + length, lowered.begin(), Lowered);
  return lowered;
}

// `what` and `whole` are for messages, as in "server 'x'" and "the server's URL".
Pieces Split(const std::string& what, const std::string& whole, const std::string& given) {
  const std::string url = WithLowerScheme(given);
  if (!IsPlain(url))
    throw Error(Phase::kAddress, whole + " holds a blank, '\\' or another character that no URL has");
  const bool secure = url.rfind("https://", 0) == 0;
  if (!secure && url.rfind("http://", 0) != 0) Refuse(what, given, "does not begin with http:// or https://");
  const std::size_t start = secure ? 8 : 7;
  const std::size_t end = std::min(url.find_first_of("/?#", start), url.size());
  const std::string authority = url.substr(start, end - start);
  const bool hasPort = CheckAuthority(what, url, authority);
  Pieces pieces{url.substr(0, end) + (hasPort ? "" : secure ? ":443" : ":80"), url.substr(end)};
  if (pieces.path.find("://") != std::string::npos) Refuse(what, url, "holds a second '://'");
  return pieces;
}

}  // namespace

std::string CheckedServer(const std::string& url) {
  const Pieces pieces = Split("server", "the server's URL", url);
  if (url.find_first_of("?#") != std::string::npos) Refuse("server", url, "must not hold '?' or '#'");
  std::string path = pieces.path;
  while (!path.empty() && path.back() == '/') path.pop_back();
  return pieces.origin + path;
}

std::string CheckedFileUrl(const std::string& url) {
  const Pieces pieces = Split("URL", "the URL", url);
  if (pieces.path.size() < 2 || pieces.path[0] != '/') Refuse("URL", url, "names no file after its host");
  if (url.find('#') != std::string::npos) Refuse("URL", url, "must not hold '#'");
  return pieces.origin + pieces.path;
}

std::string CheckedProxy(const std::string& proxy) {
  if (proxy.empty()) return proxy;
  if (!IsPlain(proxy))
    throw Error(Phase::kAddress, "the proxy holds a blank, '\\' or another character that no host has");
  if (proxy.find('/') != std::string::npos) Refuse("proxy", proxy, "is not of the form host or host:port");
  CheckAuthority("proxy", proxy, proxy);
  return proxy;
}

}  // namespace scriptwells
