#include "scriptwells/error.h"

#include <utility>

namespace scriptwells {

namespace {

constexpr const char* kPhases[] = {"address", "connect", "TLS",    "send",       "wait",       "receive",
                                   "answer",  "session", "script", "local file", "conversion", "cancelled"};

constexpr const char* kRemedies[] = {
    "",
    " (Options::authorities names your own authority)",
    " (the server wants to see a certificate: Options::certificate, Options::key)",
    " (Options::replaceFiles replaces it)",
    " (Options::hiddenFiles allows it)",
    " (Options::totalTimeout)",
    " (without a user name: Credentials::user)",
    " (Options::homeDirectory names the directory that holds them)",
    " (a file belongs to the session that made it)",
};

}  // namespace

const char* ToString(Phase phase) noexcept {
  return kPhases[static_cast<std::size_t>(phase)];
}

struct Error::Content {
  Phase phase;
  std::string message;
  ErrorDetails details;
};

Error::Error(Phase phase, const std::string& message, ErrorDetails details)
    : std::runtime_error(message + kRemedies[static_cast<std::size_t>(details.remedy)]),
      content_(std::make_shared<const Content>(Content{phase, message, std::move(details)})) {}

Error::~Error() = default;

Phase Error::phase() const noexcept {
  return content_->phase;
}

const std::string& Error::message() const noexcept {
  return content_->message;
}

const ErrorDetails& Error::details() const noexcept {
  return content_->details;
}

}  // namespace scriptwells
