// Validates the parts of a request, so that a caller's text cannot inject a second one, and has the small
// text operations of HTTP heads. ASCII rules; no locale.
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
// A name or an address that is valid in a URL's authority: no control character, blank, delimiter or user
// information. An IPv6 address may have brackets.
bool IsHost(std::u16string_view text) noexcept;

// Host in the form of a URL: UTF-8, ASCII letters lower case, an IPv6 address in brackets.
std::string HostForUrl(std::u16string_view host);
// Request target in ASCII: units beyond ASCII become percent-encoded UTF-8, empty becomes "/". Throws
// HttpFailure (E_INVALIDARG) for control characters, blanks, and a target that does not begin with "/".
std::string RequestTarget(std::u16string_view path);

std::string LowerAscii(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b) noexcept;
bool EqualsIgnoringCase(std::u16string_view a, std::string_view b) noexcept;
// Without blanks and tabs at both ends; a view into `text`.
std::string_view TrimBlanks(std::string_view text) noexcept;
// Whether `token` (lower case) is one of the comma-separated elements of `list`, ignoring case.
bool ListHasToken(std::string_view list, std::string_view token) noexcept;

}  // namespace qv
