#include "scriptwells/options.h"

namespace scriptwells {

namespace {

constexpr const char* kPurposes[] = {"open session",   "close session", "execute",
                                     "upload address", "upload",        "download"};

// Verb and address, such as "POST http://srv:80/path"; the server alone if nothing was sent.
std::string RequestOf(const Exchange& exchange) {
  const std::string line = exchange.requestHead.substr(0, exchange.requestHead.find('\r'));
  const std::size_t verb = line.find(' ');
  if (verb == std::string::npos) return exchange.server;
  const std::string target = line.substr(verb + 1, line.rfind(' ') - verb - 1);
  // Through a proxy the target has the server already.
  return line.substr(0, verb + 1) + (target[0] == '/' ? exchange.server + target : target);
}

std::string OutcomeOf(const Exchange& exchange) {
  std::string outcome = exchange.status == 0 ? "" : " " + std::to_string(exchange.status);
  if (!exchange.failure.empty()) outcome += " failed: " + exchange.failure;
  return outcome;
}

std::string Milliseconds(std::chrono::microseconds time) {
  return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) + " ms";
}

}  // namespace

const char* ToString(Purpose purpose) noexcept {
  return kPurposes[static_cast<std::size_t>(purpose)];
}

std::string Summary(const Exchange& exchange) {
  return RequestOf(exchange) + " " + ToString(exchange.purpose) + OutcomeOf(exchange) + ", " +
         std::to_string(exchange.sentBytes) + " bytes sent, " + std::to_string(exchange.receivedBytes) +
         " received, " + Milliseconds(exchange.total);
}

}  // namespace scriptwells
