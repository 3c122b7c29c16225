#include "devservice/control/request_log.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace qv::devservice {

void RequestLog::Add(const HttpRequest& request, const std::string& action) {
  Entry entry{request.method, request.target, action, request.body.substr(0, kMostBodyBytes)};
  const std::lock_guard<std::mutex> lock(mutex_);
  bytes_ += entry.body.size();
  entries_.push_back(std::move(entry));
  while (entries_.size() > kMostRequests || bytes_ > kMostBytes) {
    bytes_ -= entries_.front().body.size();
    entries_.pop_front();
  }
}

std::string RequestLog::Json() const {
  nlohmann::ordered_json requests = nlohmann::ordered_json::array();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const Entry& entry : entries_)
      requests.push_back({{"method", entry.method},
                          {"target", entry.target},
                          {"action", entry.action},
                          {"body", entry.body}});
  }
  const nlohmann::ordered_json whole = {{"requests", std::move(requests)}};
  return whole.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace qv::devservice
