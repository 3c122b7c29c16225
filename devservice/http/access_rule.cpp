#include "devservice/http/access_rule.h"

#include <arpa/inet.h>

#include <optional>

#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kDigits = "0123456789";

bool IsPort(std::string_view text) {
  return text.empty() || (text[0] == ':' && text.find_first_not_of(kDigits, 1) == std::string_view::npos);
}

bool IsAddress(int family, const std::string& text) {
  unsigned char address[16];
  return inet_pton(family, text.c_str(), address) == 1;
}

// The address of "[::1]:80", nothing when there is none between the brackets.
std::optional<std::string> BracketedAddress(std::string_view host) {
  const std::size_t end = host.find(']');
  if (end == std::string_view::npos || !IsPort(host.substr(end + 1))) return std::nullopt;
  std::string address(host.substr(1, end - 1));
  if (!IsAddress(AF_INET6, address)) return std::nullopt;
  return address;
}

// The name of "NAME:80", without the dot that ends a full name.
std::string NameOf(std::string_view host) {
  const std::size_t colon = host.find(':');
  if (colon != std::string_view::npos && !IsPort(host.substr(colon))) return "";
  std::string name = FoldAscii(host.substr(0, colon));
  if (!name.empty() && name.back() == '.') name.pop_back();
  return name;
}

// A name that can be repeated in a message.
bool IsPlainName(std::string_view name) {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyz0123456789.-_";
  return !name.empty() && name.size() <= 255 && name.find_first_not_of(kPlain) == std::string_view::npos;
}

std::string ForeignHost(std::string_view host) {
  const std::string name = NameOf(host);
  if (!IsPlainName(name)) return "The Host header of the request is not the name of a host.\n";
  return "This service does not answer to the host name \"" + name +
         "\". If the name is meant for it, start the service with that name: scriptwells serve --name " +
         name + "\n";
}

}  // namespace

AccessRule::AccessRule(const std::vector<std::string>& names) : names_{"localhost"} {
  for (const std::string& name : names) names_.insert(NameOf(name));
  names_.erase("");
}

bool AccessRule::Knows(std::string_view host) const {
  if (host.substr(0, 1) == "[") return BracketedAddress(host).has_value();
  const std::string name = NameOf(host);
  return names_.count(name) != 0 || IsAddress(AF_INET, name);
}

std::string AccessRule::Refusal(std::string_view host, std::string_view origin) const {
  if (!host.empty() && !Knows(host)) return ForeignHost(host);
  const std::string own = FoldAscii(host);
  const std::string page = FoldAscii(origin);
  if (page.empty() || (!own.empty() && (page == "http://" + own || page == "https://" + own))) return "";
  return "Web pages of other origins may not use this service.\n";
}

}  // namespace qv::devservice
