// One run of a script: what it gets, and what comes of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "devservice/values/table.h"

namespace qv::devservice {

// The type of a parameter that is the ticket of an uploaded file.
inline constexpr std::string_view kFileTicketType = "FileTicket";

// One parameter of a script. `type` is the name of a row of the type table, `text` its normalised text; or
// `type` is kFileTicketType, and `text` the ticket.
struct Parameter {
  std::string name;
  std::string type;
  std::string text;
};

// An uploaded file that a script may read.
struct ReadableFile {
  std::string ticket;
  std::string path;
  std::uint64_t size = 0;
};

// What a script may do with files.
struct FileJob {
  std::vector<ReadableFile> readable;
  std::vector<std::string> tickets;  // Those of its session.
  std::size_t ticketsLeft = 0;
  std::size_t newFilesLeft = 0;
  std::string newFilesPath;  // See NumberedPath.
  std::string uploadUrl;     // Addresses for ExpandUrl.
  std::string fileUrl;
};

// One script with its parameters.
struct ScriptJob {
  std::string code;
  std::vector<Parameter> parameters;
  FileJob files{};
};

// A file that a script published: one with a ticket is that upload, those without have the numbers 1, 2, ...
// in their order.
struct NewFile {
  std::string id;
  std::string name;
  std::string ticket;
};

// What a script has made of its FileJob. Of no use when it failed.
struct MadeFiles {
  std::vector<std::string> tickets;
  std::vector<NewFile> files;
};

enum class ResultKind { kValue, kNull, kNothing, kFault, kTable };

// What a script came to: a value (`type` names a row of the type table, `text` is its text, unescaped), null,
// nothing at all (undefined), a table, or a fault. `source` is the place in the script as far as it is known.
struct ScriptResult {
  ResultKind kind = ResultKind::kNothing;
  std::string type;
  std::string text;
  int code = 0;
  std::string source;
  MadeFiles files{};
  Table table{};
};

}  // namespace qv::devservice
