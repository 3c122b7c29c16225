// URLs of files on this machine. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv {

// Whether a name begins with "file:", in any case.
bool IsFileUrl(std::u16string_view name) noexcept;

// The absolute path that a file URL names, for the system: "file:/p", "file:///p" and "file://localhost/p"
// alike, without query and fragment, "\" turned to "/", then percent-decoded. Nothing for a URL without an
// absolute path, with another host, or with a percent sign that does not start the code of a byte above 0.
std::optional<std::string> PathOfFileUrl(std::u16string_view url);

// Decodes a path in place; false, with the path in pieces, when a percent sign is as told above.
bool DecodePercents(std::string& path);

}  // namespace qv
