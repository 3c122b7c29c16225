#include "tools/serve_command.h"

#include <filesystem>
#include <optional>
#include <ostream>

#include "tools/failed_output.h"
#include "tools/failure.h"
#include "tools/home_directory.h"
#include "tools/input_text.h"
#include "tools/interrupt.h"
#include "tools/lent_home.h"
#include "tools/local_files.h"
#include "tools/local_service.h"
#include "tools/script_console.h"
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

void Tell(const std::string& words, std::ostream& err) {
  ReportNote("note", words, false, err);
}

std::string CheckedHome(const std::string& directory) {
  std::string home = std::filesystem::path(AbsolutePath(directory, "home directory")).lexically_normal();
  if (home.size() > 1 && home.back() == '/') home.pop_back();
  CheckHomePath(home);
  return home;
}

void InstallHome(const std::string& directory, std::ostream& err) {
  const std::string home = CheckedHome(directory);
  InstallMissingScripts(home);
  const std::string file = SetHomeDirectory(home);
  Tell("the home directory is " + home + " now, as " + file + " tells", err);
}

void CompleteHome(std::ostream& err) {
  const std::string home = HomeDirectory();
  if (home.empty())
    throw Failure(ExitStatus::kLocal, "no home directory is known; --install-home needs --home DIR");
  CheckHomePath(home);
  if (InstallMissingScripts(home))
    Tell("wrote the upload scripts into the home directory " + home, err);
  else
    Tell("the home directory " + home + " has its upload scripts", err);
}

constexpr char kWithoutUploads[] =
    "scripts and downloads work; clients on this machine cannot upload files: ";

// What works without a home of the service's.
void TellWhatWorks(std::ostream& err) {
  const std::string home = HomeDirectory();
  if (home.empty())
    Tell(std::string(kWithoutUploads) +
             "no home directory is known (serve --home DIR lends one, with --install-home for good)",
         err);
  else if (HasUploadScripts(home))
    Tell("scripts, downloads and uploads work; the upload scripts are those of " + home, err);
  else
    Tell(std::string(kWithoutUploads) + "the home directory " + home +
             " has no upload scripts (serve --install-home writes them, serve --home DIR lends another home)",
         err);
}

void TellHowToBorrow(const LentHome& lent, std::ostream& err) {
  Tell("scripts and downloads work; uploads work for clients on this machine that run with QV_REGISTRY=" +
           lent.Registry() + ", until the service stops",
       err);
}

}  // namespace

void ServeCommand(const ServeOptions& options, std::ostream& out, std::ostream& err) {
  std::optional<LentHome> lent;  // before the service and its threads
  if (!options.home.empty() && !options.installHome) lent.emplace(CheckedHome(options.home));
  devservice::ServiceOptions serviceOptions = ToServiceOptions(options);
  serviceOptions.console = WriteConsole(false, err);
  devservice::Service service(std::move(serviceOptions));
  StartService(service);
  if (options.installHome && !options.home.empty()) InstallHome(options.home, err);
  if (options.installHome && options.home.empty()) CompleteHome(err);
  if (lent) TellHowToBorrow(*lent, err);
  if (options.home.empty() && !options.installHome) TellWhatWorks(err);
  if (!IsLoopback(options.host))
    ReportNote("warning", "others can reach this service and run code on this machine", false, err);
  out << service.Url() << std::endl;
  if (!out) throw FailedOutput(out, "cannot write the address to standard output");
  WaitForInterrupt();
  service.Stop();
}

}  // namespace qv::cli
