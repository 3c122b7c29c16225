#include "tools/system/own_files.h"

#include <filesystem>
#include <system_error>

#include "tools/report/failure.h"

#if !defined(SCRIPTWELLS_LIBRARY_FOLDER) || !defined(SCRIPTWELLS_WORKER_FOLDER)
#error "The folders come from the build"
#endif

namespace qv::cli {

namespace {

namespace fs = std::filesystem;

// Each absolute, or relative to the folder of the program.
struct Places {
  const char* installed;
  const char* built;
};

constexpr Places kCommandsLibrary = {SCRIPTWELLS_LIBRARY_FOLDER "/scriptwells-commands.so",
                                     "../tools/scriptwells-commands.so"};
constexpr Places kServiceLibrary = {SCRIPTWELLS_LIBRARY_FOLDER "/scriptwells-service.so",
                                    "../tools/scriptwells-service.so"};
constexpr Places kShellLibrary = {SCRIPTWELLS_LIBRARY_FOLDER "/scriptwells-shell.so",
                                  "../tools/scriptwells-shell.so"};
constexpr Places kLocalShellLibrary = {SCRIPTWELLS_LIBRARY_FOLDER "/scriptwells-local-shell.so",
                                       "../tools/scriptwells-local-shell.so"};
constexpr Places kInspectLibrary = {SCRIPTWELLS_LIBRARY_FOLDER "/scriptwells-inspect.so",
                                    "../tools/scriptwells-inspect.so"};
constexpr Places kXmlLibrary = {SCRIPTWELLS_LIBRARY_FOLDER "/scriptwells-xml.so",
                                "../tools/scriptwells-xml.so"};
constexpr Places kScriptWorker = {SCRIPTWELLS_WORKER_FOLDER "/scriptwells-script-worker",
                                  "../devservice/scriptwells-script-worker"};

fs::path ProgramFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) throw Failure(ExitStatus::kLocal, "cannot find this program's own file: " + error.message());
  return program.parent_path();
}

std::string Find(const Places& places) {
  const fs::path folder = ProgramFolder();
  const fs::path installed = (folder / places.installed).lexically_normal();
  const fs::path built = (folder / places.built).lexically_normal();
  std::error_code ignored;
  return (!fs::exists(installed, ignored) && fs::exists(built, ignored) ? built : installed).string();
}

}  // namespace

std::string CommandsLibrary() {
  return Find(kCommandsLibrary);
}

std::string ServiceLibrary() {
  return Find(kServiceLibrary);
}

std::string ShellLibrary() {
  return Find(kShellLibrary);
}

std::string LocalShellLibrary() {
  return Find(kLocalShellLibrary);
}

std::string InspectLibrary() {
  return Find(kInspectLibrary);
}

std::string XmlLibrary() {
  return Find(kXmlLibrary);
}

std::string ScriptWorker() {
  return Find(kScriptWorker);
}

}  // namespace qv::cli
