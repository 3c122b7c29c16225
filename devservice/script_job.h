// What a worker is asked to do and what comes of it, with their JSON forms.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "devservice/console_message.h"
#include "devservice/soap_request.h"
#include "devservice/table.h"

namespace qv::devservice {

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

// Where the worker puts the first, second, ... file that it writes in one run.
std::string NumberedPath(const std::string& path, std::size_t number);

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

nlohmann::json ToJson(const ScriptJob& job);
nlohmann::json ToJson(const ConsoleMessage& message);
nlohmann::json ToJson(const ScriptResult& result);

// Whether the worker sent this on behalf of a running script, before the result.
bool IsConsoleMessage(const nlohmann::json& message);

// All throw nlohmann::json::exception when the message has another form. The job takes the texts out of the
// message, since they can be large.
ScriptJob JobFromJson(nlohmann::json message);
ScriptResult ResultFromJson(const nlohmann::json& message);
ConsoleMessage ConsoleFromJson(const nlohmann::json& message);

}  // namespace qv::devservice
