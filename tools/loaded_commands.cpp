#include "tools/loaded_commands.h"

#include <dlfcn.h>
#include <unistd.h>

#include <exception>
#include <string>

#include "tools/calling_commands.h"
#include "tools/command_frame.h"
#include "tools/commands_library.h"
#include "tools/report/failure.h"
#include "tools/system/own_files.h"

namespace qv::cli {

namespace {

// The service may be left out of an installation; any other missing file is a broken one.
void RequireService(const std::string& library) {
  if (::access(library.c_str(), F_OK) != 0)
    throw Failure(ExitStatus::kLocal, "there is no service on this machine (" + library +
                                          " is missing): install the package scriptwells-service");
}

// The library is linked to be bound at once; RTLD_LAZY is for those that it needs, of which a command uses
// little. It is never unloaded: its threads may still be running.
CommandsEntry Load(const std::string& path) {
  void* library = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
  void* entry = library == nullptr ? nullptr : ::dlsym(library, kCommandsEntry);
  if (entry == nullptr)
    throw Failure(ExitStatus::kLocal,
                  std::string("cannot load the library of this program's commands: ") + ::dlerror());
  return reinterpret_cast<CommandsEntry>(entry);
}

// Before the library is loaded, which takes as long as the worker's start.
devservice::StartedWorker EarlyWorker(const ParsedArguments& parsed) {
  if (!RunsScriptsItself(parsed)) return {};
  try {
    return devservice::StartedWorker({ScriptWorker()});
  } catch (const std::exception&) {
    return {};  // the service reports it when it starts one
  }
}

std::string LibraryOf(const ParsedArguments& parsed) {
  if (parsed.command == Command::kShell) return parsed.shell.local ? LocalShellLibrary() : ShellLibrary();
  if (RunsService(parsed)) return ServiceLibrary();
  return Inspects(parsed) ? InspectLibrary() : CommandsLibrary();
}

ExitStatus RunInLibrary(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  devservice::StartedWorker worker = EarlyWorker(parsed);
  const std::string path = LibraryOf(parsed);
  if (RunsService(parsed)) RequireService(path);
  CommandsCall call;
  call.parsed = &parsed;
  call.worker = &worker;
  call.out = &out;
  call.err = &err;
  const int status = Load(path)(&call);
  if (status == kOtherVersion)
    throw Failure(ExitStatus::kLocal, "the library " + path + " belongs to another version of this program");
  return static_cast<ExitStatus>(status);
}

}  // namespace

int RunLoadedCommand(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) noexcept {
  return Reporting(parsed, err, [&] { return RunInLibrary(parsed, out, err); });
}

}  // namespace qv::cli
