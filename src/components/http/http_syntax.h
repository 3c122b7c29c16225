// What may stand in a request: the checks that keep a caller's text from becoming more than one request, and
// the small text operations of HTTP heads. ASCII rules; no locale.
#pragma once

#include <string>
#include <string_view>

namespace qv {

bool IsTokenChar(unsigned char c) noexcept;
// RFC 9110 token, not empty.
bool IsToken(std::string_view text) noexcept;
bool IsToken(std::u16string_view text) noexcept;
// No CR, LF or NUL.
bool IsFieldValue(std::u16string_view text) noexcept;
// A name or an address that can stand in a URL's authority without becoming anything else there: no control
// character, blank, delimiter or user information. An IPv6 address may have brackets.
bool IsHost(std::u16string_view text) noexcept;

// Host as a URL holds it: UTF-8, ASCII letters lower case, an IPv6 address in brackets.
std::string HostForUrl(std::u16string_view host);
// Request target in ASCII: units beyond ASCII become percent-encoded UTF-8, empty becomes "/". Throws
// HttpFailure (E_INVALIDARG) for control characters, blanks, and a target that does not begin with "/".
std::string RequestTarget(std::u16string_view path);

std::string LowerAscii(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b) noexcept;
bool EqualsIgnoringCase(std::u16string_view a, std::string_view b) noexcept;
// Without blanks and tabs at both ends; a view into `text`.
std::string_view TrimBlanks(std::string_view text) noexcept;
// Is `token` (lower case) one of the comma-separated words of `list`, in any case?
bool ListHasToken(std::string_view list, std::string_view token) noexcept;

}  // namespace qv
