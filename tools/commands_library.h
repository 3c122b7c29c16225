// What the program and its two libraries of commands agree on. All come from one build; a library of another
// version refuses.
#pragma once

#include <cstddef>
#include <iosfwd>

#include "devservice/workers/started_worker.h"
#include "scriptwells/version.h"
#include "tools/input/parsed_options.h"

namespace qv::cli {

// All of it is borrowed, and the worker is taken. A library of another version reads only the first two
// members.
struct CommandsCall {
  const char* version = SCRIPTWELLS_VERSION;
  std::size_t size = sizeof(ParsedArguments);
  const ParsedArguments* parsed = nullptr;
  devservice::StartedWorker* worker = nullptr;
  std::ostream* out = nullptr;
  std::ostream* err = nullptr;
};

constexpr char kCommandsEntry[] = "ScriptwellsRunCommand";
// Runs the command and returns the exit status, or kOtherVersion without doing anything.
using CommandsEntry = int (*)(const CommandsCall*);
constexpr int kOtherVersion = -1;

}  // namespace qv::cli
