// What people ask of whole tapes. All texts are safe to show. Each function throws Error (kLocalFile) for a
// file that is not a tape.
#pragma once

#include <string>
#include <vector>

namespace scriptwells {

// Each exchange in a few lines: purpose, server, status, sizes, typed values, failure.
std::string ShowTape(const std::string& path);

// What the second tape has in place of the first, without times, hosts, ports, lengths of secrets and ids of
// the server; sessions may come in another order. Empty if nothing.
std::string DiffTapes(const std::string& first, const std::string& second);

// What is wrong with a tape that can be read: typed values that are not those of the bytes, lengths that do
// not agree, masks out of order, lines that are not as they are written. One sentence each, in the tape's
// order.
std::vector<std::string> VerifyTape(const std::string& path);

}  // namespace scriptwells
