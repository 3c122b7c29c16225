// Starts the development service inside of this program: for hosts in this tree, such as tests.
//   own_service        from the project's folder, after scripts/demo
#include <cstdio>
#include <exception>
#include <iostream>

#include "devservice/service.h"

namespace {

void StartService() {
  qv::devservice::ServiceOptions options;
  options.workerCommand = {"build/demo/devservice/scriptwells-script-worker"};
  qv::devservice::Service service(options);
  service.Start();                   // throws std::runtime_error with a readable message
  std::puts(service.Url().c_str());  // http://127.0.0.1:40123: the server name for a client
}

}  // namespace

int main() {
  try {
    StartService();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
