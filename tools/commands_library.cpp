#include "tools/commands_library.h"

#include <string_view>
#include <utility>

#include "src/xml/xml_library_start.h"
#include "tools/calling_commands.h"

// Compiled for each of the two libraries of commands.
#ifndef SCRIPTWELLS_RUN
#error "SCRIPTWELLS_RUN comes from the build"
#endif

extern "C" __attribute__((visibility("default"))) int ScriptwellsRunCommand(
    const qv::cli::CommandsCall* call) noexcept {
  const qv::cli::CommandsCall own;
  if (std::string_view(call->version) != own.version || call->size != own.size) return qv::cli::kOtherVersion;
  qv::PutOffXmlLibraryStart();
  return qv::cli::SCRIPTWELLS_RUN({*call->parsed, std::move(*call->worker), *call->out, *call->err});
}
