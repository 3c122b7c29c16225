// The console output of scripts that run in a service of this program.
#pragma once

#include <iosfwd>

#include "devservice/values/console_message.h"

namespace qv::cli {

// Writes each message to `err`, which must outlive the sink: "console.log: text" for each of its lines, with
// unsafe characters escaped; as JSON {"console": {"level": "log", "text": ...}}.
devservice::ConsoleSink WriteConsole(bool asJson, std::ostream& err);

// Passes each message to the first, then to the second.
devservice::ConsoleSink Both(devservice::ConsoleSink first, devservice::ConsoleSink second);

}  // namespace qv::cli
