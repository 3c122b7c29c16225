// The last requests, for a test that looks at what its program sent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>

#include "devservice/http/http_message.h"

namespace qv::devservice {

// Thread-safe.
class RequestLog {
 public:
  static constexpr std::size_t kMostRequests = 1000;
  static constexpr std::size_t kMostBodyBytes = std::size_t{1} << 20;  // of one; the rest is left out
  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;     // of all bodies together

  // Forgets the oldest requests when there are too many, or too long ones.
  void Add(const HttpRequest& request, const std::string& action);

  // {"requests": [{"method": ..., "target": ..., "action": ..., "body": ...}, ...]}, the oldest first. Bytes
  // that are not UTF-8 become U+FFFD.
  std::string Json() const;

  // The requests after number `last`, masked, as server-sent events with their numbers as ids, the oldest
  // first; `last` becomes the number of the newest. The first request has the number 1.
  std::string EventsAfter(std::uint64_t& last) const;

 private:
  struct Entry {
    std::string method;
    std::string target;
    std::string action;
    std::string body;
  };

  mutable std::mutex mutex_;
  std::deque<Entry> entries_;
  std::size_t bytes_ = 0;
  std::uint64_t added_ = 0;
};

}  // namespace qv::devservice
