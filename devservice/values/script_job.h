// One run of a script: its input and its result.
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
  std::string session{};  // The id of its session, for console messages; the worker does not get it.
};

// A file that a script published. With a ticket it is that upload; those without are the files 1, 2, ... that
// the worker wrote, see NumberedPath.
struct NewFile {
  std::string id;
  std::string name;
  std::string ticket;
};

// The tickets and files that a script has made. Not used when the script failed.
struct MadeFiles {
  std::vector<std::string> tickets;
  std::vector<NewFile> files;
};

enum class ResultKind { kValue, kNull, kNothing, kFault, kTable };

// The result of a script: a value (`type` names a row of the type table, `text` is its text, unescaped),
// null, nothing (undefined), a table, or a fault. `source` is the place in the script as far as it is known.
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
