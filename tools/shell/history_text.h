// The entries of the shell's history as lines of a file.
#pragma once

#include <string>
#include <vector>

#include "face/exchange/masking.h"

namespace qv::cli {

// One line for an entry, which may have several: "\n" for a line end, "\\" for a backslash.
std::string HistoryLine(const std::string& entry);
std::string EntryOf(const std::string& line);

// Whether the entry may be written into a file: not after a blank, not longer than 64 kB, and without a
// secret in any form. What stands where a secret does is one, too: "?ticket=1234", "Password=a;", "usid: a",
// "<usid>a".
bool MayBeKept(const std::string& entry, const scriptwells::Masking& secrets);

// "4711" in "http://a/upload?ticket=4711", as a script may answer. None of less than 4 bytes.
std::vector<std::string> TicketsInAddresses(const std::string& text);

}  // namespace qv::cli
