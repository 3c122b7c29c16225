// Links with a caption: the small markup that carries them inside a text. Pure and thread-safe.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

struct UrlValue {
  std::string link;
  std::string caption;
};

// Whether the text can be a link or caption: it holds none of the markup's own marks ("<URL>", "</C>", ...),
// since the markup cannot escape them.
bool IsUrlPart(std::string_view text);

// Reads "<URL>link</URL><C>caption</C>", where an empty part may also be "<URL/>" or "<C/>". A text that
// holds none of these marks is a link without a caption. False for anything else.
bool ParseUrl(std::string_view text, UrlValue& result);

// "<URL>link</URL><C>caption</C>". Empty parts keep both their marks: clients misread "<URL/>" and "<C/>".
std::string FormatUrl(const UrlValue& url);

}  // namespace qv::devservice
