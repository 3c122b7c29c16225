// JSON as this program writes it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace qv::cli {

// The value in one line, without line end. Bytes that are not UTF-8 become U+FFFD, and unsafe characters
// (unsafe_characters.h) are escaped, so that the line is safe to show and to log.
std::string JsonText(const nlohmann::ordered_json& value);

}  // namespace qv::cli
