#include "tools/serve_command.h"

#include <filesystem>
#include <ostream>

#include "tools/failed_output.h"
#include "tools/failure.h"
#include "tools/home_directory.h"
#include "tools/input_text.h"
#include "tools/interrupt.h"
#include "tools/local_files.h"
#include "tools/local_service.h"
#include "tools/time_span.h"
#include "tools/users_file.h"

namespace qv::cli {

namespace {

devservice::ServiceOptions ToServiceOptions(const ServeOptions& options) {
  devservice::ServiceOptions service = CommonServiceOptions();
  service.host = options.host;
  service.names = options.names;
  service.port = options.port;
  service.scriptTimeLimit = std::chrono::milliseconds(Milliseconds(options.scriptTimeoutSeconds));
  service.scriptMemoryLimit = static_cast<std::size_t>(options.scriptMemoryMegabytes) << 20;
  if (!options.usersFile.empty()) service.users = ParseUsers(ReadWhole(options.usersFile, "users file"));
  return service;
}

bool IsLoopback(const std::string& host) {
  return host == "localhost" || host == "::1" || host.rfind("127.", 0) == 0;
}

// Clients on this machine upload files with the scripts of their home directory.
void SetHome(const std::string& directory, std::ostream& err) {
  const std::string home =
      std::filesystem::path(AbsolutePath(directory, "home directory")).lexically_normal();
  CheckHomePath(home);
  InstallMissingScripts(home);
  const std::string file = SetHomeDirectory(home);
  ReportNote("note", "the home directory is " + home + " now, as " + file + " tells", false, err);
}

void CompleteHome(std::ostream& err) {
  const std::string home = HomeDirectory();
  if (home.empty())
    return ReportNote("note",
                      "no home directory is known, so that clients on this machine cannot upload "
                      "files; serve --home DIR sets one",
                      false, err);
  try {
    if (InstallMissingScripts(home))
      ReportNote("note", "wrote the upload scripts into the home directory " + home, false, err);
  } catch (const Failure& failure) {
    ReportNote("warning", failure.Message(), false, err);
  }
}

}  // namespace

void ServeCommand(const ServeOptions& options, std::ostream& out, std::ostream& err) {
  devservice::Service service(ToServiceOptions(options));
  StartService(service);
  if (!options.home.empty()) SetHome(options.home, err);
  if (options.home.empty()) CompleteHome(err);
  if (!IsLoopback(options.host))
    ReportNote("warning", "others can reach this service and run code on this machine", false, err);
  out << service.Url() << std::endl;
  if (!out) throw FailedOutput(out, "cannot write the address to standard output");
  WaitForInterrupt();
  service.Stop();
}

}  // namespace qv::cli
