// What surrounds every command.
#pragma once

#include <iosfwd>

#include "tools/input/parsed_options.h"
#include "tools/report/failure.h"

namespace qv::cli {

using RunParsed = ExitStatus (*)(const ParsedArguments& parsed, std::ostream& out, std::ostream& err);

// Runs a command, with the user's locale, and watching for interrupts (so once per process). Reports its
// exception on `err`. Returns the exit status. Never throws.
int InCommandFrame(const ParsedArguments& parsed, RunParsed run, std::ostream& out,
                   std::ostream& err) noexcept;

// Only reports the exception.
int Reporting(const ParsedArguments& parsed, RunParsed run, std::ostream& out, std::ostream& err) noexcept;

}  // namespace qv::cli
