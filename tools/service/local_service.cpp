#include "tools/service/local_service.h"

#include <stdexcept>

#include "devservice/values/random_id.h"
#include "tools/report/failure.h"
#include "tools/system/own_files.h"

#ifndef QV_NAMESPACE_HOST
#error "QV_NAMESPACE_HOST comes from the build"
#endif

namespace qv::cli {

std::vector<std::string> WorkerCommand() {
  return {ScriptWorker()};
}

devservice::ServiceOptions CommonServiceOptions() {
  devservice::ServiceOptions options;
  options.namespaceHost = QV_NAMESPACE_HOST;
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

void StartService(devservice::Service& service, devservice::StartedWorker first) {
  try {
    service.Start(std::move(first));
  } catch (const std::runtime_error& error) {
    throw Failure(ExitStatus::kLocal, std::string("cannot start the service: ") + error.what());
  }
}

}  // namespace qv::cli
