#include "tools/transfer/explain_failure.h"

#include <algorithm>
#include <iterator>

#include "qvscriptwells/http_component.h"
#include "qvscriptwells/messages.h"
#include "qvscriptwells/result_codes.h"

namespace qv::cli {

namespace {

struct TransportRow {
  HRESULT code;
  ExitStatus status;
};

// The built-in component's codes are those of the Win32 network functions. Any other code means that the
// connection failed.
constexpr TransportRow kTransport[] = {
    {HTTP_E_TIMED_OUT, ExitStatus::kTimeout},      // no connection or no byte in the time allowed
    {HTTP_E_CANCELLED, ExitStatus::kInterrupted},  // cancelled
    {HTTP_E_MALFORMED, ExitStatus::kAnswer},       // the answer is not HTTP/1
    {HTTP_E_TOO_LARGE, ExitStatus::kAnswer},       // the answer is too large
    {E_INVALIDARG, ExitStatus::kLocal},            // a host, path or header that cannot be sent
    {E_OUTOFMEMORY, ExitStatus::kFault},
};

// The codes of the component for a file that it sends or writes.
constexpr HRESULT kFileCodes[] = {HTTP_E_FILE_NOT_FOUND, HTTP_E_PATH_NOT_FOUND, HTTP_E_ACCESS_DENIED,
                                  HTTP_E_WRITE_FAULT,    HTTP_E_READ_FAULT,     HTTP_E_DISK_FULL,
                                  HTTP_E_FILE_EXISTS};

bool IsOfFile(HRESULT code) {
  return std::find(std::begin(kFileCodes), std::end(kFileCodes), code) != std::end(kFileCodes);
}

ExitStatus TransportStatus(HRESULT code) {
  for (const TransportRow& row : kTransport)
    if (row.code == code) return row.status;
  return ExitStatus::kUnreachable;
}

// Messages have no codes, so their texts are compared.
bool Is(const std::string& message, const char16_t* fixed) {
  return message == ToUtf8(fixed);
}

bool StartsWith(const std::string& text, const std::string& start) {
  return text.rfind(start, 0) == 0;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string TransportMessage(const ExchangeNote& note) {
  if (EndsWith(note.message, " milliseconds in total")) return "the time that --max-time allows is over";
  return note.message.empty() ? "failure " + HexCode(*note.failure) : note.message;
}

std::string Server(const ExchangeNote& note) {
  return note.proxy.empty() ? note.server : note.server + " through the proxy " + note.proxy;
}

// The limit of a body is known, that of a head is not.
std::string TooLong(const ExchangeNote& note, const std::string& message) {
  const std::string answer = "the answer of " + Server(note);
  if (message == "Maximum file size exceeded")  // libcurl's message
    return answer + " is longer than " + std::to_string(HttpOptions().maxBodyBytes >> 20) + " MB";
  return answer + " is too long: " + message;
}

// An upload fails before there is an answer, a download after. The message names the file.
Failure ExplainFile(const ExchangeNote& note, const std::string& message) {
  const char* what = note.httpStatus.empty() ? "the upload failed: " : "the download failed: ";
  const Failure failure(ExitStatus::kLocal, what + message);
  return note.failure == HTTP_E_FILE_EXISTS ? failure.With(" (--force replaces it)").Called("file exists")
                                            : failure;
}

struct TlsHint {
  const char* part;  // of a message of the TLS library
  const char* hint;
};

constexpr char kOwnAuthority[] = " (--ca-file FILE names your own authority)";

constexpr TlsHint kTlsHints[] = {
    {"unable to get local issuer certificate", kOwnAuthority},
    {"unable to get issuer certificate", kOwnAuthority},
    {"self-signed certificate", kOwnAuthority},
    {"alert certificate required", " (the server wants to see a certificate: --cert FILE, --key FILE)"},
};

std::string TlsHintOn(const std::string& message) {
  for (const TlsHint& row : kTlsHints)
    if (message.find(row.part) != std::string::npos) return row.hint;
  return {};
}

Failure ExplainTransport(const ExchangeNote& note) {
  const ExitStatus status = TransportStatus(*note.failure);
  const std::string message = TransportMessage(note) + TlsHintOn(note.message);
  if (status == ExitStatus::kInterrupted) return Failure(status, "interrupted");
  if (IsOfFile(*note.failure)) return ExplainFile(note, message);
  if (*note.failure == HTTP_E_TOO_LARGE) return Failure(status, TooLong(note, message));
  if (!note.connected) return Failure(status, "cannot reach " + Server(note) + ": " + message);
  if (note.httpStatus.empty()) return Failure(status, "no answer from " + Server(note) + ": " + message);
  return Failure(status, "the answer of " + Server(note) + " broke off: " + message);
}

// Whether the library could not read the fault element of the answer.
bool IsUnreadableFault(const std::string& message) {
  return StartsWith(message, ToUtf8(messages::kErrorAtFile)) || Is(message, messages::kUnreadableFault);
}

Failure ExplainFault(Phase phase, HRESULT code, const std::string& reason) {
  const ExitStatus status = phase == Phase::kOpen ? ExitStatus::kRefused : ExitStatus::kFault;
  const std::string message = reason.empty() ? "the server gives no reason" : reason;
  if (code == DISP_E_EXCEPTION) return Failure(status, message);
  return Failure(status, message, code);
}

struct StatusRow {
  const char* status;
  const char* remark;
};

constexpr char kRedirect[] = ", and redirects are not followed";

constexpr StatusRow kStatusRemarks[] = {
    {"301", kRedirect},
    {"302", kRedirect},
    {"303", kRedirect},
    {"307", kRedirect},
    {"308", kRedirect},
    {"401", ", and authentication of HTTP is not supported"},
    {"407", ", and a proxy that wants a password is not supported"},
};

std::string StatusText(const ExchangeNote& note) {
  std::string text = "HTTP status " + note.httpStatus;
  for (const StatusRow& row : kStatusRemarks)
    if (note.httpStatus == row.status) text += row.remark;
  return text;
}

bool IsCall(Phase phase) {
  return phase == Phase::kOpen || phase == Phase::kExecute;
}

// Whether the answer seems to come from something else than a server of this protocol.
bool IsStrange(Phase phase, const ExchangeNote& note, const std::string& message) {
  if (!IsCall(phase)) return false;
  if (Is(message, messages::kHttpProblem)) return note.httpStatus != "200";
  return Is(message, messages::kInvalidResponse) &&
         (phase == Phase::kOpen || note.envelope != Envelope::kKnown);
}

std::string Doubt(const ExchangeNote& note, const std::string& message) {
  std::string doubt = " (" + StatusText(note);
  if (Is(message, messages::kHttpProblem)) doubt += ", no usable Content-Length";
  if (note.envelope == Envelope::kForeign) doubt += ", an envelope that is not named soap:Envelope";
  return doubt + "; is " + note.server + " a Scriptwells server?)";
}

struct MessageHint {
  const char16_t* message;
  const char* hint;
};

constexpr MessageHint kMessageHints[] = {
    {messages::kHttpProblem, " (the answer has no usable Content-Length)"},
    {messages::kUrl, " (the server's upload script gave no address to upload to)"},
    {messages::kAccuracy, " (a date or time that is empty or none, perhaps in a cell of a table)"},
    {messages::kRecordList, " (the table is damaged, or has an empty duration)"},
};

const char* Hint(const std::string& message) {
  for (const MessageHint& row : kMessageHints)
    if (Is(message, row.message)) return row.hint;
  // The message does not hold the parser's reason.
  if (StartsWith(message, ToUtf8(messages::kErrorAtFile) + "application/xml"))
    return " (the answer is damaged, or beyond the reader's limits, such as 16,384 element names)";
  return "";
}

// The library reports a null answer like a damaged one.
const char* NullHint(Phase phase, const ExchangeNote& note, const std::string& message) {
  const bool isOfScript = phase == Phase::kExecute && note.envelope == Envelope::kKnown;
  return isOfScript && note.httpStatus == "200" && Is(message, messages::kInvalidResponse)
             ? " (a script that returns null or nothing fails like this, too)"
             : "";
}

// Such an answer often has no length, which the library would report instead. It does not matter whether the
// connection broke off afterwards.
bool IsTooLongRequest(Phase phase, const ExchangeNote& note) {
  return phase != Phase::kDownload && note.httpStatus == "413" && !note.holdsFault &&
         note.failure != HTTP_E_CANCELLED;
}

Failure ExplainTooLongRequest() {
  return Failure(ExitStatus::kAnswer, "the server found the request too long (HTTP status 413)")
      .Called("request too long");
}

Failure ExplainAnswer(Phase phase, const ExchangeNote& note, const std::string& message) {
  if (IsStrange(phase, note, message)) return Failure(ExitStatus::kAnswer, message + Doubt(note, message));
  const std::string status = note.httpStatus == "200" ? "" : " (" + StatusText(note) + ")";
  return Failure(ExitStatus::kAnswer, message + status + Hint(message) + NullHint(phase, note, message));
}

Failure ExplainName(const ExchangeNote& note, const std::string& name, const std::string& reason) {
  return Failure(ExitStatus::kAnswer, "the answer of " + Server(note) + " names the file '" + name +
                                          "', which is refused: " + reason);
}

// The library's message names neither the status nor a rejected name.
Failure ExplainDownload(const ExchangeNote& note, const std::string& message) {
  if (!IsSuccess(note.httpStatus))
    return Failure(ExitStatus::kFault,
                   Server(note) + " answered the download with the status " + note.httpStatus)
        .Called("download refused");
  const std::optional<std::string> name = FileNameIn(note.fileHeader);
  if (name && note.nameFault != NameFault::kNone) return ExplainName(note, *name, ReasonOf(note.nameFault));
  if (!Is(message, messages::kHttpProblem)) return ExplainAnswer(Phase::kDownload, note, message);
  if (!name) return Failure(ExitStatus::kAnswer, "the answer of " + Server(note) + " names no file");
  if (LeavesDirectory(*name)) return ExplainName(note, *name, "it would not stay in the directory");
  return ExplainAnswer(Phase::kDownload, note, message);
}

}  // namespace

Failure ExplainFailure(Phase phase, const _com_error& error, const ExchangeNote& note) {
  if (IsTooLongRequest(phase, note)) return ExplainTooLongRequest();
  if (note.failure) return ExplainTransport(note);
  if (error.Error() == E_OUTOFMEMORY) return Failure(ExitStatus::kFault, "out of memory");
  // Nothing was sent: the library rejected an argument.
  if (note.httpStatus.empty()) return Failure(ExitStatus::kLocal, MessageOf(error));
  if (phase == Phase::kDownload) return ExplainDownload(note, MessageOf(error));
  const std::string reason = ToUtf8(error.Description());
  if (note.holdsFault && !IsUnreadableFault(reason)) return ExplainFault(phase, error.Error(), reason);
  return ExplainAnswer(phase, note, MessageOf(error));
}

Failure ExplainDocumentFailure(const std::string& file, const _com_error& error, const ExchangeNote& note) {
  const bool nothingSent = !note.failure && note.httpStatus.empty();
  // The library gives no reason why it cannot read a script document.
  if (!nothingSent || !Is(ToUtf8(error.Description()), messages::kXmlDocument))
    return ExplainFailure(Phase::kExecute, error, note);
  return Failure(ExitStatus::kLocal,
                 "cannot read the script document " + file +
                     " as XML (not well-formed, an unknown encoding, or a part of it that cannot be opened), "
                     "or a parameter has no form on the wire");
}

}  // namespace qv::cli
