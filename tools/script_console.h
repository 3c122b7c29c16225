// What scripts of a service of this program say to their console.
#pragma once

#include <iosfwd>

#include "devservice/values/console_message.h"

namespace qv::cli {

// Writes each message to `err`, which has to live as long as the sink: a line "console.log: text" for each of
// its lines, with the escapes of a table; as JSON {"console": {"level": "log", "text": ...}}.
devservice::ConsoleSink WriteConsole(bool asJson, std::ostream& err);

}  // namespace qv::cli
