#include "devservice/values/service_stats.h"

#include <nlohmann/json.hpp>

#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

struct ActionCount {
  const char* name;
  std::atomic<std::uint64_t> ServiceStats::*count;
};

constexpr ActionCount kActions[] = {
    {"CreateUserSession", &ServiceStats::createUserSession},
    {"CloseUserSession", &ServiceStats::closeUserSession},
    {"Execute", &ServiceStats::execute},
};

}  // namespace

std::atomic<std::uint64_t>* CounterOf(ServiceStats& stats, std::string_view action) {
  for (const ActionCount& row : kActions)
    if (action == row.name) return &(stats.*row.count);
  return nullptr;
}

std::string ActionIn(std::string_view soapAction) {
  if (EndsWith(soapAction, "\"")) soapAction.remove_suffix(1);
  const std::string_view name = soapAction.substr(soapAction.rfind('#') + 1);
  for (const ActionCount& row : kActions)
    if (name == row.name) return row.name;
  return "";
}

std::string StatsText(const ServiceStats& stats, std::size_t openSessions) {
  nlohmann::json actions;
  for (const ActionCount& row : kActions) actions[row.name] = (stats.*row.count).load();
  const nlohmann::json counts = {
      {"connections", stats.connections.load()},
      {"requests", stats.requests.load()},
      {"refused", stats.refused.load()},
      {"actions", actions},
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
