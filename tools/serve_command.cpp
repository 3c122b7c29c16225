#include "tools/commands.h"

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "tools/input/input_text.h"
#include "tools/page/page.h"
#include "tools/report/json_text.h"
#include "tools/report/reporter.h"
#include "tools/report/standard_output.h"
#include "tools/service/home_directory.h"
#include "tools/service/lent_home.h"
#include "tools/service/local_service.h"
#include "tools/service/odd_order_text.h"
#include "tools/service/private_home.h"
#include "tools/service/script_console.h"
#include "tools/service/users_file.h"
#include "tools/system/interrupt.h"
#include "tools/system/local_files.h"

namespace qv::cli {

namespace {

devservice::ServiceOptions ToServiceOptions(const ServeOptions& options) {
  devservice::ServiceOptions service = CommonServiceOptions();
  service.host = options.host;
  service.names = options.names;
  service.port = options.port;
  service.control = options.control;
  service.scriptTimeLimit = std::chrono::milliseconds(Milliseconds(options.scriptTimeoutSeconds));
  service.scriptMemoryLimit = static_cast<std::size_t>(options.scriptMemoryMegabytes) << 20;
  for (const std::string& odd : options.odds) service.odds.push_back(ParseOddOrder(odd));
  if (!options.usersFile.empty()) service.users = ParseUsers(ReadWhole(options.usersFile, "users file"));
  return service;
}

bool IsLoopback(const std::string& host) {
  return host == "localhost" || host == "::1" || host.rfind("127.", 0) == 0;
}

std::string CheckedHome(const std::string& directory) {
  std::string home = std::filesystem::path(AbsolutePath(directory, "home directory")).lexically_normal();
  if (home.size() > 1 && home.back() == '/') home.pop_back();
  CheckHomePath(home);
  return home;
}

void InstallHome(const std::string& directory, const Reporter& reporter) {
  const std::string home = CheckedHome(directory);
  InstallMissingScripts(home);
  const std::string file = SetHomeDirectory(home);
  reporter.Note("the home directory is now " + home + ", set in " + file);
}

void CompleteHome(const Reporter& reporter) {
  const std::string home = HomeDirectory();
  if (home.empty())
    throw Failure(ExitStatus::kLocal, "no home directory is known; --install-home needs --home DIR");
  CheckHomePath(home);
  if (InstallMissingScripts(home))
    reporter.Note("wrote the upload scripts into the home directory " + home);
  else
    reporter.Note("the home directory " + home + " has its upload scripts");
}

constexpr char kWithoutUploads[] =
    "scripts and downloads work; clients on this machine cannot upload files: ";

// `home` may be empty.
void NoteWhatWorks(const std::string& home, const Reporter& reporter) {
  if (home.empty())
    reporter.Note(std::string(kWithoutUploads) +
                  "no home directory is known (serve --home DIR lends one, with --install-home permanently)");
  else if (HasUploadScripts(home))
    reporter.Note("scripts, downloads and uploads work; the upload scripts are those of " + home);
  else
    reporter.Note(
        std::string(kWithoutUploads) + "the home directory " + home +
        " has no upload scripts (serve --install-home writes them, serve --home DIR lends another home)");
}

void NoteHowToBorrow(const LentHome& lent, const Reporter& reporter) {
  reporter.Note(
      "scripts and downloads work; uploads work for clients on this machine that run with QV_REGISTRY=" +
      lent.Registry() + ", until the service stops");
}

// `home` may be empty, or without the upload scripts.
std::string JsonAddress(const devservice::Service& service, const std::string& home,
                        const std::string& page) {
  nlohmann::ordered_json line;
  line["url"] = service.Url();
  line["home"] = nullptr;
  if (!home.empty() && HasUploadScripts(home)) line["home"] = home;
  if (!service.ControlUrl().empty()) line["control"] = service.ControlUrl();
  if (!page.empty()) line["page"] = page;
  return JsonText(line);
}

// The address of the page; empty without one.
std::string BeginPage(Page* page, const devservice::Service& service, bool hasUsers, const std::string& home,
                      const std::optional<LentHome>& lent) {
  if (page == nullptr) return {};
  PagePlace place;
  place.url = service.Url();
  place.needsPassword = hasUsers;
  if (!home.empty() && HasUploadScripts(home)) place.home = home;
  if (lent) place.registry = lent->Registry();
  return page->Begin(place);
}

}  // namespace

void ServeCommand(const ServeOptions& options, std::ostream& out, std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  std::optional<PrivateHome> own;
  std::optional<LentHome> lent;  // before the service and its threads
  const bool choosesHome = !options.home.empty() || options.installHome;
  if ((options.control || options.page) && !choosesHome) own.emplace();
  if (!options.home.empty() && !options.installHome) lent.emplace(CheckedHome(options.home));
  if (options.page && own) lent.emplace(own->Path());
  std::unique_ptr<Page> page;  // outlives the service
  if (options.page) page = std::make_unique<Page>();
  devservice::ServiceOptions serviceOptions = ToServiceOptions(options);
  const bool hasUsers = !serviceOptions.users.empty();
  serviceOptions.page = page.get();
  serviceOptions.console = WriteConsole(options.json, err);
  if (page) serviceOptions.console = Both(page->Console(), serviceOptions.console);
  devservice::Service service(std::move(serviceOptions));
  StartService(service);
  if (options.installHome && !options.home.empty()) InstallHome(options.home, reporter);
  if (options.installHome && options.home.empty()) CompleteHome(reporter);
  if (lent) NoteHowToBorrow(*lent, reporter);
  const std::string home = own ? own->Path() : HomeDirectory();
  if (!choosesHome && !lent) NoteWhatWorks(home, reporter);
  if (!IsLoopback(options.host)) reporter.Warn("others can reach this service and run code on this machine");
  const std::string pageUrl = BeginPage(page.get(), service, hasUsers, home, lent);
  out << (options.json ? JsonAddress(service, home, pageUrl) : service.Url()) << std::endl;
  if (!options.json && page) out << pageUrl << std::endl;
  if (!out) throw FailedOutput(out, "cannot write the address to standard output");
  if (options.untilEof)
    WaitForInterruptOrEof(STDIN_FILENO);
  else
    WaitForInterrupt();
  if (page) page->Stop();
  service.Stop();
}

}  // namespace qv::cli
