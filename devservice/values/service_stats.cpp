#include "devservice/values/service_stats.h"

#include <nlohmann/json.hpp>

namespace qv::devservice {

std::string StatsText(const ServiceStats& stats, std::size_t openSessions) {
  const nlohmann::json counts = {
      {"connections", stats.connections.load()},
      {"requests", stats.requests.load()},
      {"refused", stats.refused.load()},
      {"actions",
       {{"CreateUserSession", stats.createUserSession.load()},
        {"CloseUserSession", stats.closeUserSession.load()},
        {"Execute", stats.execute.load()}}},
      {"faults", stats.faults.load()},
      {"openSessions", openSessions},
      {"scriptsRun", stats.scriptsRun.load()},
      {"uploads", stats.uploads.load()},
      {"uploadedBytes", stats.uploadedBytes.load()},
      {"downloads", stats.downloads.load()},
      {"downloadedBytes", stats.downloadedBytes.load()},
      {"workersStarted", stats.workersStarted.load()},
      {"workersKilled", stats.workersKilled.load()},
      {"workersCrashed", stats.workersCrashed.load()},
  };
  return counts.dump(2) + "\n";
}

}  // namespace qv::devservice
