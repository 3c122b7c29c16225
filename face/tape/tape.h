// The content of a tape. docs/tapes.md shows one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "face/tape/tape_text.h"
#include "scriptwells/options.h"

namespace scriptwells {

struct TapedBreak {
  Phase phase = Phase::kConnect;  // connect, TLS, send, wait or receive: how far it got
  std::uint32_t code = 0;         // of the failure
  TapeText message{};             // with a line end, as the next two
};

// One exchange.
struct TapeEntry {
  int line = 0;  // of the tape, from 1 on
  std::size_t session = 0;
  Purpose purpose = Purpose::kExecute;
  TapeText server{};    // "http://host:port"
  std::string times{};  // of the exchange, for people
  TapeText file{};      // of an upload: name, size and digest; empty for none
  TapeText requestHead{}, requestBody{}, answerHead{}, answerBody{};
  std::vector<std::string> arguments{}, answer{};  // typed_values.h
  std::optional<TapedBreak> failure{};

  bool HasRequest() const noexcept { return !requestHead.empty(); }
};

// The first line of a tape.
extern const std::string_view kTapeHeader;
// "session 3": the line that reserves a number.
std::string SessionLine(std::size_t session);
// Its lines, and an empty one.
std::string EntryText(const TapeEntry& entry);

// Reads a whole tape: its entries in their order. Throws Error (kLocalFile) that names the tape and the line
// of what cannot be read.
std::vector<TapeEntry> ReadTape(const std::string& name, std::string_view text);
// The text of a file, which must be regular and not too large to be a tape. Throws Error (kLocalFile).
std::string TapeFileText(const std::string& path);

}  // namespace scriptwells
