#include "tools/service/local_service.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "devservice/soap/namespaces.h"
#include "devservice/values/random_id.h"
#include "tools/report/failure.h"

#ifndef QV_NAMESPACE_HOST
#error "QV_NAMESPACE_HOST comes from the build"
#endif

namespace qv::cli {

std::vector<std::string> WorkerCommand() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) throw Failure(ExitStatus::kLocal, "cannot find this program's own file: " + error.message());
  return {program.string(), "script-worker"};
}

std::string NamespaceHost() {
  return QV_NAMESPACE_HOST;
}

std::string ScriptNamespace() {
  return devservice::Namespaces(NamespaceHost()).script;
}

devservice::ServiceOptions CommonServiceOptions() {
  devservice::ServiceOptions options;
  options.namespaceHost = NamespaceHost();
  options.workerCommand = WorkerCommand();
  return options;
}

devservice::ServiceUser RandomUser() {
  try {
    return {devservice::RandomId(), devservice::RandomId()};
  } catch (const std::runtime_error& error) {
    throw Failure(ExitStatus::kLocal, error.what());
  }
}

void StartService(devservice::Service& service) {
  try {
    service.Start();
  } catch (const std::runtime_error& error) {
    throw Failure(ExitStatus::kLocal, std::string("cannot start the service: ") + error.what());
  }
}

}  // namespace qv::cli
