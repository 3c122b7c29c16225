// URLs of files on this machine. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv {

// Whether a name begins with "file:"; case is ignored.
bool IsFileUrl(std::u16string_view name) noexcept;

// The absolute path that a file URL names, for the system: from "file:/p", "file:///p" or
// "file://localhost/p", without query and fragment, with "\" replaced by "/", then percent-decoded. Nothing
// for a URL without an absolute path, with another host, or with a percent sign that does not start the code
// of a byte above 0.
std::optional<std::string> PathOfFileUrl(std::u16string_view url);

// Percent-decodes a path in place; false, with undefined content, for an invalid percent sign as above.
bool DecodePercents(std::string& path);

}  // namespace qv
