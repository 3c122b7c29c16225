#include "tools/explain_failure.h"

#include <algorithm>
#include <iterator>

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

// What the component reports of a file that it sends or writes.
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

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string WordsOr(const std::string& words, HRESULT code) {
  if (EndsWith(words, " milliseconds in total")) return "the time that --max-time allows is over";
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

// Only a file that is written has an answer already. The words name the file.
Failure ExplainFile(const ExchangeNote& note, const std::string& words) {
  const char* what = note.httpStatus.empty() ? "the upload failed: " : "the download failed: ";
  const Failure failure(ExitStatus::kLocal, what + words);
  return note.failure == HTTP_E_FILE_EXISTS ? failure.With(" (--force replaces it)").Called("file exists")
                                            : failure;
}

struct TlsHint {
  const char* words;  // in those of the TLS library
  const char* hint;
};

constexpr char kOwnAuthority[] = " (--ca-file FILE names an authority of your own)";

constexpr TlsHint kTlsHints[] = {
    {"unable to get local issuer certificate", kOwnAuthority},
    {"unable to get issuer certificate", kOwnAuthority},
    {"self-signed certificate", kOwnAuthority},
    {"alert certificate required", " (the server wants to see a certificate: --cert FILE, --key FILE)"},
};

std::string HintOfTls(const std::string& words) {
  for (const TlsHint& row : kTlsHints)
    if (words.find(row.words) != std::string::npos) return row.hint;
  return {};
}

Failure ExplainTransport(const ExchangeNote& note) {
  const ExitStatus status = TransportStatus(*note.failure);
  const std::string words = WordsOr(note.words, *note.failure) + HintOfTls(note.words);
  if (status == ExitStatus::kInterrupted) return Failure(status, "interrupted");
  if (IsOfFile(*note.failure)) return ExplainFile(note, words);
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

std::string StatusWords(const ExchangeNote& note) {
  std::string words = "HTTP status " + note.httpStatus;
  for (const StatusRow& row : kStatusRemarks)
    if (note.httpStatus == row.status) words += row.remark;
  return words;
}

bool IsCall(Phase phase) {
  return phase == Phase::kOpen || phase == Phase::kExecute;
}

constexpr char kNoLength[] = "Unknown Http problem.";
constexpr char kNoAnswer[] = "The respone that arrived is not valid";

// Whether something else than a server of this protocol seems to have answered.
bool IsStrange(Phase phase, const ExchangeNote& note, const std::string& words) {
  if (!IsCall(phase)) return false;
  if (words == kNoLength) return note.httpStatus != "200";
  return words == kNoAnswer && (phase == Phase::kOpen || note.envelope != Envelope::kKnown);
}

std::string Doubt(const ExchangeNote& note, const std::string& words) {
  std::string doubt = " (" + StatusWords(note);
  if (words == kNoLength) doubt += ", no usable Content-Length";
  if (note.envelope == Envelope::kForeign) doubt += ", an envelope that is not named soap:Envelope";
  return doubt + "; is " + note.server + " a Scriptwells server?)";
}

// The library has the same words for a null answer as for one that is damaged, and names no length that it
// missed.
const char* Hint(const std::string& words) {
  if (words == kNoLength) return " (the answer has no usable Content-Length)";
  if (words == "Cannot parse url, expecting 'http://' after protocol name.")
    return " (the server's upload script gave no address to upload to)";
  if (words == "Unable to convert a value with the given accuracy")
    return " (a date or time that is empty or none, perhaps in a cell of a table)";
  if (words == "Cannot create the recordlist") return " (the table is damaged, or has an empty duration)";
  // The parser's own words never come through.
  if (StartsWith(words, "Error at file application/xml"))
    return " (the answer is damaged, or beyond the reader's limits, such as 16,384 element names)";
  return "";
}

const char* NullHint(Phase phase, const ExchangeNote& note, const std::string& words) {
  const bool isOfScript = phase == Phase::kExecute && note.envelope == Envelope::kKnown;
  return isOfScript && note.httpStatus == "200" && words == kNoAnswer
             ? " (a script that answers null or nothing ends so, too)"
             : "";
}

// Such an answer often is short and without a length, which the library would complain about instead. Whether
// the connection lasted to its end does not matter either.
bool IsTooLongRequest(Phase phase, const ExchangeNote& note) {
  return phase != Phase::kDownload && note.httpStatus == "413" && !note.holdsFault &&
         note.failure != HTTP_E_CANCELLED;
}

Failure ExplainTooLongRequest() {
  return Failure(ExitStatus::kAnswer, "the server found the request too long (HTTP status 413)")
      .Called("request too long");
}

Failure ExplainAnswer(Phase phase, const ExchangeNote& note, const std::string& words) {
  if (IsStrange(phase, note, words)) return Failure(ExitStatus::kAnswer, words + Doubt(note, words));
  const std::string status = note.httpStatus == "200" ? "" : " (" + StatusWords(note) + ")";
  return Failure(ExitStatus::kAnswer, words + status + Hint(words) + NullHint(phase, note, words));
}

Failure ExplainName(const ExchangeNote& note, const std::string& name, const std::string& reason) {
  return Failure(ExitStatus::kAnswer, "the answer of " + Server(note) + " names the file '" + name +
                                          "', which is refused: " + reason);
}

// The library names neither the status nor the name that it refused.
Failure ExplainDownload(const ExchangeNote& note, const std::string& words) {
  if (!IsSuccess(note.httpStatus))
    return Failure(ExitStatus::kFault,
                   Server(note) + " answered the download with the status " + note.httpStatus)
        .Called("download refused");
  const std::optional<std::string> name = FileNameIn(note.fileHeader);
  if (name && note.nameFault != NameFault::kNone) return ExplainName(note, *name, ReasonOf(note.nameFault));
  if (words != kNoLength) return ExplainAnswer(Phase::kDownload, note, words);
  if (!name) return Failure(ExitStatus::kAnswer, "the answer of " + Server(note) + " names no file");
  if (LeavesDirectory(*name)) return ExplainName(note, *name, "it would not stay in the directory");
  return ExplainAnswer(Phase::kDownload, note, words);
}

}  // namespace

Failure ExplainFailure(Phase phase, const _com_error& error, const ExchangeNote& note) {
  const std::string words = ToUtf8(error.Description());
  if (IsTooLongRequest(phase, note)) return ExplainTooLongRequest();
  if (note.failure) return ExplainTransport(note);
  if (error.Error() == E_OUTOFMEMORY) return Failure(ExitStatus::kFault, "out of memory");
  // Nothing was sent: an argument that the library refuses.
  if (note.httpStatus.empty()) return Failure(ExitStatus::kLocal, WordsOr(words, error.Error()));
  if (phase == Phase::kDownload) return ExplainDownload(note, WordsOr(words, error.Error()));
  if (note.holdsFault && !IsUnreadableFault(words)) return ExplainFault(phase, error.Error(), words);
  return ExplainAnswer(phase, note, WordsOr(words, error.Error()));
}

Failure ExplainDocumentFailure(const std::string& file, const _com_error& error, const ExchangeNote& note) {
  const bool nothingSent = !note.failure && note.httpStatus.empty();
  // The library tells no more of a script document that it cannot read.
  if (!nothingSent || ToUtf8(error.Description()) != "Cannot create the xml document.")
    return ExplainFailure(Phase::kExecute, error, note);
  return Failure(ExitStatus::kLocal,
                 "cannot read the script document " + file +
                     " as XML (not well-formed, an unknown encoding, or a part of it that cannot be opened), "
                     "or a parameter has no form on the wire");
}

}  // namespace qv::cli
