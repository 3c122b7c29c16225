// What a request names in its query.
#pragma once

#include <string>
#include <string_view>

namespace qv::cli {

// The value of this name in a target such as "/page/api/files?name=a%20b.txt", decoded: "a b.txt". The first
// one counts; empty if there is none. Any bytes.
std::string QueryValue(const std::string& target, std::string_view name);

}  // namespace qv::cli
