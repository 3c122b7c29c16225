// The start of the service program.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "face/testing/child_process.h"
#include "scriptwells/testing.h"

namespace scriptwells::testing {

struct StartedService {
  std::unique_ptr<ChildProcess> process;
  std::string url;      // "http://127.0.0.1:40123"
  std::string home;     // the directory with the upload scripts
  std::string control;  // the address of the control interface
};

// Returns when the service is ready. Throws Error (kLocalFile) if the program is not there, ends, writes
// anything but its address, or is not ready in time.
StartedService StartService(const ServiceOptions& options,
                            std::chrono::milliseconds time = std::chrono::seconds(10));

}  // namespace scriptwells::testing
