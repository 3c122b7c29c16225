#include "devservice/control/request_log.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "devservice/control/mask.h"

namespace qv::devservice {

void RequestLog::Add(const HttpRequest& request, const std::string& action) {
  Entry entry{request.method, request.target, action, request.body.substr(0, kMostBodyBytes)};
  const std::lock_guard<std::mutex> lock(mutex_);
  ++added_;
  bytes_ += entry.body.size();
  entries_.push_back(std::move(entry));
  while (entries_.size() > kMostRequests || bytes_ > kMostBytes) {
    bytes_ -= entries_.front().body.size();
    entries_.pop_front();
  }
}

std::string RequestLog::EventsAfter(std::uint64_t& last) const {
  std::deque<Entry> entries;
  std::uint64_t number = 0;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::size_t count = std::min<std::uint64_t>(added_ - std::min(last, added_), entries_.size());
    number = added_ - count;
    entries.assign(entries_.end() - static_cast<std::ptrdiff_t>(count), entries_.end());
    last = added_;
  }
  std::string events;
  for (const Entry& entry : entries) {
    const nlohmann::ordered_json event = {{"method", entry.method},
                                          {"target", MaskSecrets(entry.target)},
                                          {"action", entry.action},
                                          {"body", MaskSecrets(entry.body)}};
    events += "id: " + std::to_string(++number) + "\nevent: request\ndata: " +
              event.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n\n";
  }
  return events;
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
