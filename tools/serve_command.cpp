#include "tools/serve_command.h"

#include <cmath>
#include <ostream>

#include "tools/failure.h"
#include "tools/input_text.h"
#include "tools/interrupt.h"
#include "tools/local_service.h"
#include "tools/users_file.h"

namespace qv::cli {

namespace {

devservice::ServiceOptions ToServiceOptions(const ServeOptions& options) {
  devservice::ServiceOptions service = CommonServiceOptions();
  service.host = options.host;
  service.port = options.port;
  service.scriptTimeLimit =
      std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(options.scriptTimeoutSeconds * 1000)));
  service.scriptMemoryLimit = static_cast<std::size_t>(options.scriptMemoryMegabytes) << 20;
  if (!options.usersFile.empty()) service.users = ParseUsers(ReadWhole(options.usersFile, "users file"));
  return service;
}

bool IsLoopback(const std::string& host) {
  return host == "localhost" || host == "::1" || host.rfind("127.", 0) == 0;
}

}  // namespace

void ServeCommand(const ServeOptions& options, std::ostream& out, std::ostream& err) {
  devservice::Service service(ToServiceOptions(options));
  StartService(service);
  if (!IsLoopback(options.host))
    ReportNote("warning", "others can reach this service and run code on this machine", false, err);
  out << service.Url() << std::endl;
  if (!out) throw Failure(ExitStatus::kLocal, "cannot write the address to standard output");
  WaitForInterrupt();
  service.Stop();
}

}  // namespace qv::cli
