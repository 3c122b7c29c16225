// Exchanges that somebody saved, and what a session makes of their answers. For `scriptwells explain`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scriptwells/options.h"
#include "scriptwells/value.h"

namespace scriptwells {

// Why there was no connection, or why it broke.
struct SavedBreak {
  Phase phase = Phase::kConnect;
  std::uint32_t code = 0;
  std::string message{};
};

struct SavedExchange {
  int line = 0;  // of the tape
  Purpose purpose = Purpose::kExecute;
  std::string server = "http://server";
  std::string request{}, answer{};     // heads and bodies
  std::vector<std::string> secrets{};  // made up, of the same sizes, for those that the tape masks
  std::optional<SavedBreak> failure{};
};

// Whether this is how a tape begins.
bool IsTape(std::string_view text) noexcept;
// The exchanges of a tape. `name` is for messages. Throws Error (kLocalFile).
std::vector<SavedExchange> ExchangesOf(const std::string& name, std::string_view text);

// What a session makes of the answer, which is played to it in place of a connection: the value of a script,
// the id of a session that is opened, and nothing else. Throws what the function of the session throws. Not
// for uploads and downloads.
Value ReadSaved(const SavedExchange& exchange, bool strict = false);

// "int 42", "string \"a\"", "empty"; of a table the columns and the first rows.
std::vector<std::string> ShownLines(const Value& value);

}  // namespace scriptwells
