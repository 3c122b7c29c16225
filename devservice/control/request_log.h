// The last requests and their answers, for a test or a person that looks at what a program sent.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "devservice/http/http_message.h"

namespace qv::devservice {

// Thread-safe.
class RequestLog {
 public:
  static constexpr std::size_t kMostRequests = 1000;
  static constexpr std::size_t kMostBodyBytes = std::size_t{1} << 20;    // of one; the rest is left out
  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;       // of all bodies and answers together
  static constexpr std::size_t kMostEventBytes = std::size_t{64} << 10;  // of one body or answer in an event

  // Forgets the oldest requests when there are too many, or too long ones. Returns the request's number; the
  // first is 1.
  std::uint64_t Add(const HttpRequest& request, const std::string& action);
  // What the request was answered with, if it is not forgotten.
  void AddAnswer(std::uint64_t number, const HttpAnswer& answer);

  // {"requests": [{"number": ..., "time": ..., "method": ..., "target": ..., "action": ..., "body": ...,
  // "status": ..., "milliseconds": ..., "answer": ...}, ...]}, the oldest first; the last three when it is
  // answered. Bytes that are not UTF-8 become U+FFFD. Masked: without secrets, see MaskSecrets.
  std::string Json(bool masked) const;

  // Some of the requests that came or were answered after the change number `last`, which becomes that of the
  // newest among them. As server-sent events with the requests' numbers as ids, masked, the oldest change
  // first. Longer bodies and answers are cut, and have their "bodyBytes" and "answerBytes".
  std::string EventsAfter(std::uint64_t& last) const;

 private:
  struct Content {
    std::string text;
    std::uint64_t bytes = 0;  // of the whole
  };
  struct Answer {
    int status = 0;
    double milliseconds = 0;
    Content content;
  };
  // Nothing in it changes: readers keep it while the log goes on.
  struct Entry {
    std::uint64_t number = 0;
    std::chrono::system_clock::time_point time;
    std::chrono::steady_clock::time_point begin;
    std::string method;
    std::string target;
    std::string action;
    std::shared_ptr<const Content> body;
    std::shared_ptr<const Answer> answer;  // null: not yet
    std::uint64_t change = 0;
  };
  using Entries = std::vector<Entry>;

  static Content Kept(const std::string& text, std::uint64_t bytes);
  static std::string EventOf(const Entry& entry);
  void ForgetOldest();
  Entries Copy() const;

  mutable std::mutex mutex_;
  std::deque<Entry> entries_;
  std::size_t bytes_ = 0;
  std::uint64_t added_ = 0;
  std::uint64_t changes_ = 0;
};

}  // namespace qv::devservice
