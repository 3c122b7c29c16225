#include "devservice/control/request_log.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>
#include <utility>

#include "devservice/control/mask.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

using json = nlohmann::ordered_json;

// Of one call of EventsAfter, so that a late watcher does not get the whole log in one text.
constexpr std::size_t kMostPieceBytes = std::size_t{1} << 20;

std::string TextOf(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

// "2024-03-05T10:15:30.123Z"
std::string TimeText(std::chrono::system_clock::time_point point) {
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(point);
  const std::time_t seconds = std::chrono::system_clock::to_time_t(point);
  std::tm utc = {};
  gmtime_r(&seconds, &utc);
  char text[64] = {};
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
  const int rest = static_cast<int>(milliseconds.time_since_epoch().count() % 1000);
  static_cast<void>(std::snprintf(text + length, sizeof text - length, ".%03dZ", rest));
  return text;
}

double MillisecondsSince(std::chrono::steady_clock::time_point begin) {
  const auto spent = std::chrono::steady_clock::now() - begin;
  return static_cast<double>(std::chrono::duration_cast<std::chrono::microseconds>(spent).count()) / 1000;
}

// The text as a person reads it, without secrets.
std::string Shown(const std::string& text) {
  return MaskSecrets(ReadableText(text));
}

// Its beginning, in whole characters.
std::string Beginning(std::string text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
  text.resize(most);
  return text;
}

}  // namespace

// An id that is cut would not be known as one any more, so its beginning is left out.
RequestLog::Content RequestLog::Kept(const std::string& text, std::uint64_t bytes) {
  if (text.size() <= kMostBodyBytes) return {text, bytes};
  std::size_t end = kMostBodyBytes;
  while (kMostBodyBytes - end < kIdDigits && IsHexDigit(text[end - 1])) --end;
  return {text.substr(0, kMostBodyBytes - end < kIdDigits ? end : kMostBodyBytes), bytes};
}

std::uint64_t RequestLog::Add(const HttpRequest& request, const std::string& action) {
  Entry entry;
  entry.time = std::chrono::system_clock::now();
  entry.begin = std::chrono::steady_clock::now();
  entry.method = request.method;
  entry.target = request.target;
  entry.action = action;
  const std::uint64_t bytes = request.body.empty() ? request.bodyLength.value_or(0) : request.body.size();
  entry.body = std::make_shared<const Content>(Kept(request.body, bytes));
  const std::lock_guard<std::mutex> lock(mutex_);
  entry.number = ++added_;
  entry.change = ++changes_;
  bytes_ += entry.body->text.size();
  entries_.push_back(std::move(entry));
  ForgetOldest();
  return added_;
}

void RequestLog::AddAnswer(std::uint64_t number, const HttpAnswer& answer) {
  const bool isNone = answer.delivery == Delivery::kDrop;
  Answer kept;
  kept.status = isNone ? 0 : answer.status;
  if (!isNone) kept.content = Kept(answer.body, answer.file ? answer.file->Size() : answer.body.size());
  const std::lock_guard<std::mutex> lock(mutex_);
  if (entries_.empty() || number < entries_.front().number || number > entries_.back().number) return;
  Entry& entry = entries_[static_cast<std::size_t>(number - entries_.front().number)];
  kept.milliseconds = MillisecondsSince(entry.begin);
  bytes_ += kept.content.text.size();
  entry.answer = std::make_shared<const Answer>(std::move(kept));
  entry.change = ++changes_;
  ForgetOldest();
}

void RequestLog::ForgetOldest() {
  while (entries_.size() > kMostRequests || bytes_ > kMostBytes) {
    const Entry& oldest = entries_.front();
    bytes_ -= oldest.body->text.size() + (oldest.answer ? oldest.answer->content.text.size() : 0);
    entries_.pop_front();
  }
}

RequestLog::Entries RequestLog::Copy() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return {entries_.begin(), entries_.end()};
}

std::string RequestLog::EventOf(const Entry& entry) {
  json event = {
      {"number", entry.number},        {"time", TimeText(entry.time)},
      {"method", entry.method},        {"target", MaskTarget(entry.target)},
      {"action", entry.action},        {"body", Beginning(Shown(entry.body->text), kMostEventBytes)},
      {"bodyBytes", entry.body->bytes}};
  if (entry.answer) {
    event["status"] = entry.answer->status;
    event["milliseconds"] = entry.answer->milliseconds;
    event["answer"] = Beginning(Shown(entry.answer->content.text), kMostEventBytes);
    event["answerBytes"] = entry.answer->content.bytes;
  }
  return "id: " + std::to_string(entry.number) + "\nevent: request\ndata: " + TextOf(event) + "\n\n";
}

std::string RequestLog::EventsAfter(std::uint64_t& last) const {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (changes_ <= last) return "";
  }
  Entries entries = Copy();
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return a.change < b.change; });
  std::string events;
  for (const Entry& entry : entries) {
    if (entry.change <= last) continue;
    if (events.size() > kMostPieceBytes) break;
    events += EventOf(entry);
    last = entry.change;
  }
  return events;
}

std::string RequestLog::Json(bool masked) const {
  const auto shown = [masked](const std::string& text) { return masked ? Shown(text) : text; };
  json requests = json::array();
  for (const Entry& entry : Copy()) {
    json request = {{"number", entry.number}, {"time", TimeText(entry.time)},
                    {"method", entry.method}, {"target", masked ? MaskTarget(entry.target) : entry.target},
                    {"action", entry.action}, {"body", shown(entry.body->text)}};
    if (entry.answer) {
      request["status"] = entry.answer->status;
      request["milliseconds"] = entry.answer->milliseconds;
      request["answer"] = shown(entry.answer->content.text);
    }
    requests.push_back(std::move(request));
  }
  return TextOf({{"requests", std::move(requests)}}) + "\n";
}

}  // namespace qv::devservice
