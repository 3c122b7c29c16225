#include "tools/transfer/failed_call.h"

#include <algorithm>
#include <string>

namespace qv::cli {

namespace {

using scriptwells::Error;
using scriptwells::Phase;
using scriptwells::Remedy;

struct PhaseRow {
  Phase phase;
  ExitStatus status;
};

constexpr PhaseRow kPhases[] = {
    {Phase::kAddress, ExitStatus::kLocal},    {Phase::kConnect, ExitStatus::kUnreachable},
    {Phase::kTls, ExitStatus::kUnreachable},  {Phase::kSend, ExitStatus::kUnreachable},
    {Phase::kWait, ExitStatus::kUnreachable}, {Phase::kReceive, ExitStatus::kUnreachable},
    {Phase::kAnswer, ExitStatus::kAnswer},    {Phase::kSession, ExitStatus::kRefused},
    {Phase::kScript, ExitStatus::kFault},     {Phase::kLocalFile, ExitStatus::kLocal},
    {Phase::kConversion, ExitStatus::kLocal}, {Phase::kCancelled, ExitStatus::kInterrupted},
};

struct RemedyRow {
  Remedy remedy;
  const char* option;  // after the message
  const char* kind;    // null: that of the exit status
};

constexpr RemedyRow kRemedies[] = {
    {Remedy::kOwnAuthority, " (--ca-file FILE names your own authority)", nullptr},
    {Remedy::kOwnCertificate, " (the server wants to see a certificate: --cert FILE, --key FILE)", nullptr},
    {Remedy::kReplaceFiles, " (--force replaces it)", "file exists"},
    {Remedy::kHiddenFiles, " (--force saves it)", nullptr},
    {Remedy::kCredentials, " (no --user given)", nullptr},
    {Remedy::kOtherSession, "", "download refused"},
};

// Ends of messages that are for programs.
struct EndRow {
  const char* library;
  const char* program;
};

constexpr EndRow kEnds[] = {
    {"; credentials are given beside it", "; use --user"},
    {"the time that the call may take is over", "the time that --max-time allows is over"},
};

constexpr int kTooLongRequest = 413;

ExitStatus StatusOf(const Error& error) {
  if (dynamic_cast<const scriptwells::TimeoutError*>(&error) != nullptr) return ExitStatus::kTimeout;
  if (error.remedy() == Remedy::kOtherSession) return ExitStatus::kFault;
  for (const PhaseRow& row : kPhases)
    if (row.phase == error.phase()) return row.status;
  return ExitStatus::kFault;
}

const RemedyRow* FindRemedy(Remedy remedy) {
  for (const RemedyRow& row : kRemedies)
    if (row.remedy == remedy) return &row;
  return nullptr;
}

std::string Reworded(std::string message) {
  for (const auto& [library, program] : kEnds) {
    const std::string end = library;
    const std::size_t at = message.size() - std::min(message.size(), end.size());
    if (message.compare(at, end.size(), end) == 0) message.replace(at, end.size(), program);
  }
  return message;
}

std::string MessageOf(const Error& error) {
  if (error.phase() == Phase::kCancelled) return "interrupted";
  const RemedyRow* row = FindRemedy(error.remedy());
  // All other messages may be a server's.
  const bool isOwn = error.phase() == Phase::kAddress || error.remedy() == Remedy::kTotalTime;
  return (isOwn ? Reworded(error.message()) : error.message()) + (row == nullptr ? "" : row->option);
}

const char* KindOf(const Error& error) {
  if (error.phase() == Phase::kAnswer && error.status() == kTooLongRequest) return "request too long";
  const RemedyRow* row = FindRemedy(error.remedy());
  return row == nullptr ? nullptr : row->kind;
}

}  // namespace

Failure FailureOf(const Error& error) {
  const ExitStatus status = StatusOf(error);
  const scriptwells::ErrorDetails& details = error.details();
  Failure failure =
      error.number() ? Failure(status, MessageOf(error), details.result) : Failure(status, MessageOf(error));
  if (details.line > 0) failure = failure.At({details.line, details.column});
  const char* kind = KindOf(error);
  return kind == nullptr ? failure : failure.Called(kind);
}

}  // namespace qv::cli
