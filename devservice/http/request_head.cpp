#include "devservice/http/request_head.h"

#include <strings.h>

#include <algorithm>
#include <charconv>

namespace qv::devservice {
namespace {

// The text becomes part of addresses that scripts answer, so only the characters of hosts and ports are
// allowed.
bool IsHost(const std::string& text) {
  constexpr std::string_view kAllowed =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_:[]";
  return !text.empty() && text.size() <= 255 && text.find_first_not_of(kAllowed) == std::string::npos;
}

// Nothing unless there is exactly one length, in digits, and no other header that determines the body's end.
std::optional<std::uint64_t> BodyLength(const httplib::Request& request) {
  if (request.get_header_value_count("Content-Length") != 1 || request.has_header("Transfer-Encoding"))
    return std::nullopt;
  const std::string text = request.get_header_value("Content-Length");
  std::uint64_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return length;
}

bool HasParameter(const httplib::Request& request, const char* name) {
  return std::any_of(request.params.begin(), request.params.end(),
                     [name](const auto& entry) { return strcasecmp(entry.first.c_str(), name) == 0; });
}

// All values of a header. Several values make a text that is different from any single value.
std::string JoinedValues(const httplib::Request& request, const char* name) {
  std::string joined = request.get_header_value(name);
  for (std::size_t i = 1; i < request.get_header_value_count(name); ++i)
    joined += ", " + request.get_header_value(name, i);
  return joined;
}

}  // namespace

std::string PathOf(const std::string& target) {
  constexpr std::string_view kScheme = "http://";
  if (target.compare(0, kScheme.size(), kScheme) != 0) return target;
  const std::size_t slash = target.find('/', kScheme.size());
  return slash == std::string::npos ? "/" : target.substr(slash);
}

HttpRequest MakeRequestHead(const httplib::Request& request, const std::string& path,
                            const std::string& ownHost) {
  HttpRequest head;
  head.method = request.method;
  head.path = path;
  head.target = request.target;
  head.contentType = request.get_header_value("Content-Type");
  head.soapAction = request.get_header_value("SOAPAction");
  head.hostHeader = JoinedValues(request, "Host");
  head.host = IsHost(head.hostHeader) ? head.hostHeader : ownHost;
  head.origin = JoinedValues(request, "Origin");
  head.forwardedProto = request.get_header_value("X-Forwarded-Proto");
  head.usid = request.get_header_value("usid");
  head.cookie = JoinedValues(request, "Cookie");
  head.fetchSite = JoinedValues(request, "Sec-Fetch-Site");
  head.ticket = request.get_param_value("ticket");
  head.asksForWsdl = HasParameter(request, "wsdl");
  head.bodyLength = BodyLength(request);
  return head;
}

}  // namespace qv::devservice
