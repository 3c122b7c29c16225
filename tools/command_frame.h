// What surrounds every command.
#pragma once

#include <functional>
#include <iosfwd>

#include "tools/input/parsed_options.h"
#include "tools/report/failure.h"

namespace qv::cli {

using RunCommandItself = std::function<ExitStatus()>;

// Runs a command with the user's locale, watching for interrupts (so once per process), and reporting its
// exception as Reporting does. Returns the exit status.
int InCommandFrame(const ParsedArguments& parsed, std::ostream& err, const RunCommandItself& run) noexcept;

// Runs a command, and reports its exception on `err`, as `parsed` wants it. Returns the exit status.
int Reporting(const ParsedArguments& parsed, std::ostream& err, const RunCommandItself& run) noexcept;

}  // namespace qv::cli
