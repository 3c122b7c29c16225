#include "face/exchange/explain_failure.h"

#include <algorithm>
#include <iterator>
#include <new>

#include "face/exchange/fault_place.h"
#include "face/text/failures.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/messages.h"
#include "scriptwells/error.h"

namespace scriptwells {

namespace {

using qv::HRESULT;

// Phases of codes that mean the same however far the exchange got. All others mean that the connection
// failed.
struct PhaseRow {
  HRESULT code;
  Phase phase;
};
constexpr PhaseRow kPhases[] = {
    {qv::HTTP_E_CANCELLED, Phase::kCancelled},      {qv::HTTP_E_MALFORMED, Phase::kAnswer},
    {qv::HTTP_E_TOO_LARGE, Phase::kAnswer},         {qv::E_INVALIDARG, Phase::kAddress},
    {qv::HTTP_E_FILE_NOT_FOUND, Phase::kLocalFile}, {qv::HTTP_E_PATH_NOT_FOUND, Phase::kLocalFile},
    {qv::HTTP_E_ACCESS_DENIED, Phase::kLocalFile},  {qv::HTTP_E_WRITE_FAULT, Phase::kLocalFile},
    {qv::HTTP_E_READ_FAULT, Phase::kLocalFile},     {qv::HTTP_E_DISK_FULL, Phase::kLocalFile},
    {qv::HTTP_E_FILE_EXISTS, Phase::kLocalFile},
};

// In the message of the TLS library.
struct TlsRow {
  const char* part;
  Remedy remedy;
};
constexpr TlsRow kTlsRemedies[] = {
    {"unable to get local issuer certificate", Remedy::kOwnAuthority},
    {"unable to get issuer certificate", Remedy::kOwnAuthority},
    {"self-signed certificate", Remedy::kOwnAuthority},
    {"alert certificate required", Remedy::kOwnCertificate},
};

struct StatusRow {
  int status;
  const char* remark;
};
constexpr char kRedirect[] = ", and redirects are not followed";
constexpr StatusRow kStatusRemarks[] = {
    {301, kRedirect},
    {302, kRedirect},
    {303, kRedirect},
    {307, kRedirect},
    {308, kRedirect},
    {401, ", and authentication of HTTP is not supported"},
    {407, ", and a proxy that wants a password is not supported"},
};

struct HintRow {
  const char16_t* message;
  const char* hint;
};
constexpr HintRow kHints[] = {
    {qv::messages::kHttpProblem, " (the answer has no usable Content-Length)"},
    {qv::messages::kUrl, " (the server's upload script gave no address to upload to)"},
    {qv::messages::kAccuracy, " (a date or time that is empty or none, perhaps in a cell of a table)"},
    {qv::messages::kRecordList, " (the table is damaged, or has an empty duration)"},
};

// The library below compares only these names.
enum class Envelope {
  kNone,
  kKnown,    // soap:Envelope or SOAP:Envelope
  kForeign,  // an envelope with another prefix
};

bool Holds(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

Envelope EnvelopeOf(const std::string& body) {
  if (Holds(body, "SOAP:Envelope") || Holds(body, "soap:Envelope")) return Envelope::kKnown;
  return Holds(body, ":Envelope") || Holds(body, "<Envelope") ? Envelope::kForeign : Envelope::kNone;
}

// Messages have no codes, so their texts are compared.
bool Is(const std::string& message, const char16_t* fixed) {
  return message == qv::ToUtf8(fixed);
}

bool StartsWith(const std::string& text, const std::string& start) {
  return text.rfind(start, 0) == 0;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

[[noreturn]] void Throw(Phase phase, const std::string& message, const ErrorDetails& details) {
  switch (phase) {
    case Phase::kConnect:
    case Phase::kTls:
    case Phase::kSend:
    case Phase::kWait:
    case Phase::kReceive:
      throw ConnectionError(phase, message, details);
    case Phase::kSession:
      throw SessionError(phase, message, details);
    case Phase::kScript:
      throw ScriptError(phase, message, details);
    case Phase::kCancelled:
      throw CancelledError(phase, message, details);
    default:
      throw Error(phase, message, details);
  }
}

// Says of one failed call what is known of it.
class Explanation {
 public:
  Explanation(const FailedCall& call, const qv::_com_error& error);

  [[noreturn]] void ThrowIt();

 private:
  bool NothingWasSent() const { return !last_.failure && last_.status == 0; }
  bool IsCancelled() const;
  bool IsTooLongRequest() const;
  bool IsReadableFault() const;
  bool IsStrangeAnswer() const;
  Phase PhaseOfTransport() const;
  std::string StatusText() const;
  std::string Doubt() const;
  std::string Hint() const;
  std::string NullHint() const;

  [[noreturn]] void ThrowCancelled() { Throw(Phase::kCancelled, "the call was cancelled", details_); }
  [[noreturn]] void ThrowUnsent();
  [[noreturn]] void ThrowTransport();
  [[noreturn]] void ThrowOfFile(const std::string& message);
  [[noreturn]] void ThrowFault();
  [[noreturn]] void ThrowAnswer();
  [[noreturn]] void ThrowDownload();
  [[noreturn]] void ThrowName(const std::string& name, const std::string& reason);
  [[noreturn]] void ThrowWith(Phase phase, const std::string& message, Remedy remedy) {
    details_.remedy = remedy;
    Throw(phase, message, details_);
  }
  void SetTlsRemedy();
  std::string TransportMessage();
  std::string TooLong(const std::string& message) const;

  const FailedCall& call_;
  const ExchangeRecord& last_;
  const qv::_com_error& error_;
  std::string message_;  // of the call
  std::string body_;     // the start of the answer
  Envelope envelope_;
  bool holdsFault_;
  ErrorDetails details_{};
};

Explanation::Explanation(const FailedCall& call, const qv::_com_error& error)
    : call_(call),
      last_(call.last),
      error_(error),
      message_(MessageOf(error)),
      body_(call.last.BodyText()),
      envelope_(EnvelopeOf(body_)),
      holdsFault_(Holds(body_, "<soap:Fault")) {
  details_.result = static_cast<std::uint32_t>(error.Error());
  details_.text = qv::ToUtf8(error.Description());
  details_.transport = last_.message.empty() ? call.refusedUpload : last_.message;
  details_.status = last_.status;
}

void Explanation::ThrowIt() {
  if (IsCancelled()) ThrowCancelled();
  if (IsTooLongRequest())
    Throw(Phase::kAnswer, "the server found the request too long (HTTP status 413)", details_);
  if (last_.failure) ThrowTransport();
  if (error_.Error() == qv::E_OUTOFMEMORY) throw std::bad_alloc();
  if (NothingWasSent()) ThrowUnsent();
  if (call_.purpose == Purpose::kDownload) ThrowDownload();
  if (IsReadableFault()) ThrowFault();
  ThrowAnswer();
}

// A signal that cancels may also end the reading of a document.
bool Explanation::IsCancelled() const {
  return last_.failure == qv::HTTP_E_CANCELLED ||
         (call_.settings.cancel && call_.settings.cancel->IsCancelled());
}

// Such an answer often has no length, which would be reported instead. It does not matter whether the
// connection broke off afterwards.
bool Explanation::IsTooLongRequest() const {
  return call_.purpose != Purpose::kDownload && last_.status == 413 && !holdsFault_;
}

// Nothing was sent: the library below rejected an argument. It gives no reason why it cannot read a document.
void Explanation::ThrowUnsent() {
  if (call_.document.empty() || !Is(details_.text, qv::messages::kXmlDocument))
    Throw(Phase::kAddress, message_, details_);
  Throw(Phase::kLocalFile,
        "cannot read the script document " + call_.document +
            " as XML (not well-formed, an unknown encoding, or a part of it that cannot be opened), "
            "or a parameter has no form on the wire",
        details_);
}

// A server that wants a certificate says so only after the handshake.
Phase Explanation::PhaseOfTransport() const {
  for (const PhaseRow& row : kPhases)
    if (row.code == *last_.failure) return row.phase;
  return details_.remedy == Remedy::kOwnCertificate ? Phase::kTls : last_.Reached();
}

void Explanation::SetTlsRemedy() {
  for (const TlsRow& row : kTlsRemedies)
    if (Holds(last_.message, row.part)) details_.remedy = row.remedy;
}

std::string Explanation::TransportMessage() {
  if (EndsWith(last_.message, " milliseconds in total")) {
    details_.remedy = Remedy::kTotalTime;
    return "the time that the call may take is over";
  }
  if (!last_.message.empty()) return last_.message;
  return MessageOf(qv::_com_error(*last_.failure));
}

// The limit of a body is known, that of a head is not.
std::string Explanation::TooLong(const std::string& message) const {
  const std::string answer = "the answer of " + last_.Way();
  const std::int64_t limit = call_.settings.http.maxBodyBytes;
  if (message == "Maximum file size exceeded")  // libcurl's message
    return answer + " is longer than " +
           (limit < 1 << 20 ? std::to_string(limit) + " bytes" : std::to_string(limit >> 20) + " MB");
  return answer + " is too long: " + message;
}

// An upload fails before there is an answer, a download after. The message names the file.
void Explanation::ThrowOfFile(const std::string& message) {
  const char* what = last_.status == 0 ? "the upload failed: " : "the download failed: ";
  const bool isThere = last_.failure == qv::HTTP_E_FILE_EXISTS;
  ThrowWith(Phase::kLocalFile, what + message, isThere ? Remedy::kReplaceFiles : Remedy::kNone);
}

void Explanation::ThrowTransport() {
  if (last_.failure == qv::E_OUTOFMEMORY) throw std::bad_alloc();
  SetTlsRemedy();
  std::string message = TransportMessage();
  const Phase phase = PhaseOfTransport();
  if (phase == Phase::kLocalFile) ThrowOfFile(message);
  if (last_.failure == qv::HTTP_E_TOO_LARGE) Throw(phase, TooLong(message), details_);
  if (!last_.connected)
    message = "cannot reach " + last_.Way() + ": " + message;
  else if (last_.status == 0)
    message = "no answer from " + last_.Way() + ": " + message;
  else
    message = "the answer of " + last_.Way() + " broke off: " + message;
  if (last_.failure == qv::HTTP_E_TIMED_OUT) throw TimeoutError(phase, message, details_);
  Throw(phase, message, details_);
}

// Whether the library below could read the fault element of the answer.
bool Explanation::IsReadableFault() const {
  return holdsFault_ && !StartsWith(details_.text, qv::ToUtf8(qv::messages::kErrorAtFile)) &&
         !Is(details_.text, qv::messages::kUnreadableFault);
}

void Explanation::ThrowFault() {
  constexpr std::uint32_t kAddedBits = 0x80040000;
  if (error_.Error() != qv::DISP_E_EXCEPTION) details_.number = details_.result & ~kAddedBits;
  const FaultPlace place = PlaceOfFault(body_, details_.text);
  details_.line = place.line;
  details_.column = place.column;
  const std::string message = details_.text.empty() ? "the server gives no reason" : details_.text;
  if (call_.purpose == Purpose::kExecute) Throw(Phase::kScript, message, details_);
  const bool wantsUser = call_.purpose == Purpose::kOpenSession && !call_.settings.hasUser;
  ThrowWith(Phase::kSession, message, wantsUser ? Remedy::kCredentials : Remedy::kNone);
}

std::string Explanation::StatusText() const {
  std::string text = "HTTP status " + std::to_string(last_.status);
  for (const StatusRow& row : kStatusRemarks)
    if (last_.status == row.status) text += row.remark;
  return text;
}

// Whether the answer seems to come from something else than a server of this protocol.
bool Explanation::IsStrangeAnswer() const {
  if (call_.purpose != Purpose::kOpenSession && call_.purpose != Purpose::kExecute) return false;
  if (Is(message_, qv::messages::kHttpProblem)) return last_.status != 200;
  return Is(message_, qv::messages::kInvalidResponse) &&
         (call_.purpose == Purpose::kOpenSession || envelope_ != Envelope::kKnown);
}

std::string Explanation::Doubt() const {
  std::string doubt = " (" + StatusText();
  if (Is(message_, qv::messages::kHttpProblem)) doubt += ", no usable Content-Length";
  if (envelope_ == Envelope::kForeign) doubt += ", an envelope that is not named soap:Envelope";
  return doubt + "; is " + last_.Server() + " a Scriptwells server?)";
}

std::string Explanation::Hint() const {
  for (const HintRow& row : kHints)
    if (Is(message_, row.message)) return row.hint;
  // The message does not hold the parser's reason.
  if (StartsWith(message_, qv::ToUtf8(qv::messages::kErrorAtFile) + "application/xml"))
    return " (the answer is damaged, or beyond the reader's limits, such as 16,384 element names)";
  return {};
}

// A null answer is reported like a damaged one.
std::string Explanation::NullHint() const {
  const bool isOfScript = call_.purpose == Purpose::kExecute && envelope_ == Envelope::kKnown;
  return isOfScript && last_.status == 200 && Is(message_, qv::messages::kInvalidResponse)
             ? " (a script that returns null or nothing fails like this, too)"
             : "";
}

void Explanation::ThrowAnswer() {
  if (IsStrangeAnswer()) Throw(Phase::kAnswer, message_ + Doubt(), details_);
  const std::string status = last_.status == 200 ? "" : " (" + StatusText() + ")";
  Throw(Phase::kAnswer, message_ + status + Hint() + NullHint(), details_);
}

void Explanation::ThrowName(const std::string& name, const std::string& reason) {
  const bool isHidden = last_.nameFault == NameFault::kHidden;
  ThrowWith(Phase::kAnswer,
            "the answer of " + last_.Way() + " names the file '" + name + "', which is refused: " + reason,
            isHidden ? Remedy::kHiddenFiles : Remedy::kNone);
}

// The message of the call names neither the status nor a rejected name.
void Explanation::ThrowDownload() {
  if (!last_.Succeeded())
    ThrowWith(Phase::kAnswer,
              last_.Way() + " answered the download with the status " + std::to_string(last_.status),
              Remedy::kOtherSession);
  const std::optional<std::string> name = FileNameIn(last_.disposition);
  if (name && last_.nameFault != NameFault::kNone) ThrowName(*name, ReasonOf(last_.nameFault));
  if (!Is(message_, qv::messages::kHttpProblem)) ThrowAnswer();
  if (!name) Throw(Phase::kAnswer, "the answer of " + last_.Way() + " names no file", details_);
  if (LeavesDirectory(*name)) ThrowName(*name, "it would not stay in the directory");
  ThrowAnswer();
}

}  // namespace

void ThrowExplained(const FailedCall& call, const qv::_com_error& error) {
  Explanation(call, error).ThrowIt();
}

bool CouldNotConnect(const ExchangeRecord& record) noexcept {
  constexpr HRESULT kOther[] = {qv::HTTP_E_CANCELLED, qv::E_INVALIDARG, qv::E_OUTOFMEMORY};
  return record.failure && !record.connected &&
         std::find(std::begin(kOther), std::end(kOther), *record.failure) == std::end(kOther);
}

}  // namespace scriptwells
