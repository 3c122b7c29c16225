#include "tools/explain_failure.h"

#include "qvscriptwells/http_component.h"
#include "qvscriptwells/result_codes.h"

namespace qv::cli {

namespace {

struct TransportRow {
  HRESULT code;
  ExitStatus status;
};

// The built-in component's codes are those of the Win32 network functions. One that stands here not is a
// connection that did not work out.
constexpr TransportRow kTransport[] = {
    {HTTP_E_TIMED_OUT, ExitStatus::kTimeout},      // no connection or no byte in the time allowed
    {HTTP_E_CANCELLED, ExitStatus::kInterrupted},  // cancelled
    {HTTP_E_MALFORMED, ExitStatus::kAnswer},       // the answer is no HTTP/1
    {HTTP_E_TOO_LARGE, ExitStatus::kAnswer},       // the answer is too large
    {E_INVALIDARG, ExitStatus::kLocal},            // a host, path or header that cannot be sent
    {E_OUTOFMEMORY, ExitStatus::kFault},
};

ExitStatus TransportStatus(HRESULT code) {
  for (const TransportRow& row : kTransport)
    if (row.code == code) return row.status;
  return ExitStatus::kUnreachable;
}

std::string WordsOr(const std::string& words, HRESULT code) {
  return words.empty() ? "failure " + HexCode(code) : words;
}

std::string Server(const ExchangeNote& note) {
  return note.proxy.empty() ? note.server : note.server + " through the proxy " + note.proxy;
}

// The transport has the same words for every text that is too long; a body has a limit that can be named.
std::string TooLong(const ExchangeNote& note, const std::string& words) {
  const std::string answer = "the answer of " + Server(note);
  if (words == "Maximum file size exceeded")
    return answer + " is longer than " + std::to_string(HttpOptions().maxBodyBytes >> 20) + " MB";
  return answer + " is too long: " + words;
}

Failure ExplainTransport(const ExchangeNote& note) {
  const ExitStatus status = TransportStatus(*note.failure);
  const std::string words = WordsOr(note.words, *note.failure);
  if (status == ExitStatus::kInterrupted) return Failure(status, "interrupted");
  if (*note.failure == HTTP_E_TOO_LARGE) return Failure(status, TooLong(note, words));
  if (!note.connected) return Failure(status, "cannot reach " + Server(note) + ": " + words);
  if (note.httpStatus.empty()) return Failure(status, "no answer from " + Server(note) + ": " + words);
  return Failure(status, "the answer of " + Server(note) + " broke off: " + words);
}

bool StartsWith(const std::string& text, const char* start) {
  return text.rfind(start, 0) == 0;
}

// Words of the library's own about an answer that has a fault element but cannot be read.
bool IsUnreadableFault(const std::string& words) {
  return StartsWith(words, "Error at file ") || words == "Cannot deserializer the soap fault.";
}

Failure ExplainFault(Phase phase, HRESULT code, const std::string& words) {
  const ExitStatus status = phase == Phase::kOpen ? ExitStatus::kRefused : ExitStatus::kFault;
  const std::string message = words.empty() ? "the server gives no reason" : words;
  if (code == DISP_E_EXCEPTION) return Failure(status, message);
  return Failure(status, message, code);
}

// The library has the same words for a null answer as for one that is damaged, and names no length that it
// missed.
const char* Hint(const ExchangeNote& note, const std::string& words) {
  if (words == "Unknown Http problem.") return " (the answer has no usable Content-Length)";
  const bool whole = note.httpStatus == "200" && words == "The respone that arrived is not valid";
  return whole ? " (a script that answers null or nothing ends so, too)" : "";
}

// The library tells no more of a script document that it cannot read.
Failure ExplainLocal(Phase phase, HRESULT code, const std::string& words) {
  if (phase == Phase::kExecuteDocument && words == "Cannot create the xml document.")
    return Failure(ExitStatus::kLocal,
                   "the script document is not well-formed XML, or a parameter has no form on the wire");
  return Failure(ExitStatus::kLocal, WordsOr(words, code));
}

Failure ExplainAnswer(const ExchangeNote& note, const std::string& words) {
  const std::string status = note.httpStatus == "200" ? "" : " (HTTP status " + note.httpStatus + ")";
  return Failure(ExitStatus::kAnswer, words + status + Hint(note, words));
}

}  // namespace

Failure ExplainFailure(Phase phase, const _com_error& error, const ExchangeNote& note) {
  const std::string words = ToUtf8(error.Description());
  if (note.failure) return ExplainTransport(note);
  if (error.Error() == E_OUTOFMEMORY) return Failure(ExitStatus::kFault, "out of memory");
  // Nothing was sent: an argument that the library refuses.
  if (note.httpStatus.empty()) return ExplainLocal(phase, error.Error(), words);
  if (note.holdsFault && !IsUnreadableFault(words)) return ExplainFault(phase, error.Error(), words);
  return ExplainAnswer(note, WordsOr(words, error.Error()));
}

}  // namespace qv::cli
