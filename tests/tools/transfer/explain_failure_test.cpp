// How the program explains a failed call, from the library's error and the HTTP component's note.
#include "tools/transfer/explain_failure.h"

#include <gtest/gtest.h>

namespace qv::cli {
namespace {

constexpr Phase kOpen = Phase::kOpen;
constexpr Phase kExecute = Phase::kExecute;
constexpr Phase kDownload = Phase::kDownload;
constexpr Phase kClose = Phase::kClose;

constexpr std::uint32_t kTimedOut = 0x80072EE2;
constexpr std::uint32_t kRefused = 0x80072EFD;
constexpr std::uint32_t kReset = 0x80072EFE;
constexpr std::uint32_t kCancelled = 0x80072EF1;
constexpr std::uint32_t kTls = 0x80072F8F;

_com_error Error(const char16_t* message, HRESULT code = DISP_E_EXCEPTION) {
  ErrorInfo info;
  info.description = message;
  return _com_error(code, info);
}

const _com_error kNoCall = Error(u"Cannot create a soap call.");
const _com_error kInvalid = Error(u"The respone that arrived is not valid");
const _com_error kHttpProblem = Error(u"Unknown Http problem.");
const _com_error kNoXml = Error(u"Cannot create the xml document.");
const _com_error kDamaged =
    Error(u"Error at file application/xml, line 3, char 77  Message: application/xml");

// Notes of an exchange that got as far as this.
ExchangeNote Tried() {
  ExchangeNote note;
  note.server = "http://srv:8080";
  return note;
}
ExchangeNote Connected() {
  ExchangeNote note = Tried();
  note.connected = true;
  return note;
}
ExchangeNote Answered(const char* status, bool holdsFault = false) {
  ExchangeNote note = Connected();
  note.httpStatus = status;
  note.holdsFault = holdsFault;
  return note;
}
ExchangeNote WithEnvelope(Envelope envelope, const char* status = "200") {
  ExchangeNote note = Answered(status);
  note.envelope = envelope;
  return note;
}
ExchangeNote Downloaded(const char* status, const char* fileHeader) {
  ExchangeNote note = Answered(status);
  note.fileHeader = fileHeader;
  return note;
}
ExchangeNote Broken(ExchangeNote note, std::uint32_t code, const std::string& message) {
  note.failure = MakeResult(code);
  note.message = message;
  return note;
}

// The exit status and the message.
std::string Shown(const Failure& failure) {
  return std::to_string(static_cast<int>(failure.Status())) + " " + failure.Message();
}

struct Row {
  Phase phase;
  _com_error error;
  ExchangeNote note;
  std::string shown;
};

void ExpectShown(const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(Shown(ExplainFailure(row.phase, row.error, row.note)), row.shown);
}

TEST(ExplainFailure, OfConnecting) {
  const std::string start = "cannot reach http://srv:8080: ";
  ExchangeNote proxy = Tried();
  proxy.proxy = "px:3128";
  ExpectShown(
      {{kOpen, kNoCall, Broken(Tried(), kTimedOut, "why"), "4 " + start + "why"},
       {kOpen, kNoCall, Broken(Tried(), 0x80072EE7, "why"), "3 " + start + "why"},
       {kOpen, kNoCall, Broken(Tried(), kRefused, "why"), "3 " + start + "why"},
       {kOpen, kNoCall, Broken(Tried(), kTls, "why"), "3 " + start + "why"},
       {kOpen, kNoCall, Broken(Tried(), kCancelled, "why"), "130 interrupted"},
       {kOpen, kNoCall, Broken(Tried(), 0x80070057, "why"), "6 " + start + "why"},
       {kOpen, kNoCall, Broken(proxy, kRefused, "why"),
        "3 cannot reach http://srv:8080 through the proxy px:3128: why"},
       {kDownload, Error(nullptr, E_POINTER), Broken(Tried(), kRefused, "why"), "3 " + start + "why"}});
}

TEST(ExplainFailure, OfCertificatesHasAHint) {
  const std::string problem = "SSL certificate problem: ";
  for (const char* reason : {"unable to get local issuer certificate", "self-signed certificate",
                             "self-signed certificate in certificate chain"})
    ExpectShown({{kOpen, kNoCall, Broken(Tried(), kTls, problem + reason),
                  "3 cannot reach http://srv:8080: " + problem + reason +
                      " (--ca-file FILE names your own authority)"}});
  ExpectShown(
      {{kOpen, kNoCall, Broken(Tried(), kTls, problem + "certificate has expired"),
        "3 cannot reach http://srv:8080: " + problem + "certificate has expired"},
       {kOpen, kNoCall, Broken(Connected(), kReset, "tlsv13 alert certificate required, errno 0"),
        "3 no answer from http://srv:8080: tlsv13 alert certificate required, errno 0 (the server wants to "
        "see a certificate: --cert FILE, --key FILE)"}});
}

TEST(ExplainFailure, OfAConnectionThatBreaks) {
  ExchangeNote proxy = Connected();
  proxy.proxy = "px:3128";
  const std::string start = "no answer from http://srv:8080: ";
  const std::string brokeOff = "the answer of http://srv:8080 broke off: ";
  ExpectShown({{kExecute, Error(u"x"), Broken(Connected(), kReset, "reset"), "3 " + start + "reset"},
               {kExecute, Error(u"x"), Broken(Connected(), kTimedOut, "silence"), "4 " + start + "silence"},
               {kExecute, Error(u"x"),
                Broken(Connected(), kTimedOut, "Operation timed out after 7 milliseconds in total"),
                "4 " + start + "the time that --max-time allows is over"},
               {kExecute, Error(u"x"), Broken(Connected(), 0x80072F78, "no HTTP"), "7 " + start + "no HTTP"},
               {kExecute, kNoCall, Broken(Connected(), kReset, ""), "3 " + start + "failure 0x80072EFE"},
               {kOpen, kNoCall, Broken(proxy, kReset, "closed"),
                "3 no answer from http://srv:8080 through the proxy px:3128: closed"},
               {kExecute, Error(u"x"), Broken(Answered("200"), kReset, "closed"), "3 " + brokeOff + "closed"},
               {kExecute, kDamaged, Broken(Answered("200"), kReset, "closed"), "3 " + brokeOff + "closed"},
               {kDownload, kNoCall, Broken(Downloaded("200", "x=a"), kTimedOut, "silence"),
                "4 " + brokeOff + "silence"},
               {kDownload, kNoCall, Broken(Connected(), kCancelled, "aborted"), "130 interrupted"}});
}

TEST(ExplainFailure, OfAnAnswerThatIsTooLong) {
  ExpectShown({{kExecute, kNoCall, Broken(Answered("200"), 0x800700DF, "Maximum file size exceeded"),
                "7 the answer of http://srv:8080 is longer than 512 MB"},
               {kExecute, kNoCall, Broken(Connected(), 0x800700DF, "large head"),
                "7 the answer of http://srv:8080 is too long: large head"}});
}

TEST(ExplainFailure, OfAFileIsLocal) {
  ExpectShown(
      {{kDownload, kNoCall, Broken(Answered("200"), 0x80070050, "Couldn't write file /f: File exists"),
        "6 the download failed: Couldn't write file /f: File exists (--force replaces it)"},
       {kExecute, kNoCall,
        Broken(Connected(), 0x80070002, "Couldn't open file /a: No such file or directory"),
        "6 the upload failed: Couldn't open file /a: No such file or directory"},
       {kExecute, kNoCall, Broken(Connected(), 0x8007001E, "shrank"), "6 the upload failed: shrank"}});
  for (const std::uint32_t code : {0x80070003U, 0x80070005U, 0x8007001DU, 0x80070070U})
    ExpectShown({{kDownload, kNoCall, Broken(Answered("200"), code, "no space left"),
                  "6 the download failed: no space left"}});
}

TEST(ExplainFailure, FaultKeepsItsMessageAndCode) {
  const Failure opening =
      ExplainFailure(kOpen, Error(u"who are you", MakeResult(0x800403EB)), Answered("500", true));
  EXPECT_EQ(opening.Status(), ExitStatus::kRefused);
  EXPECT_EQ(opening.Message(), "who are you");
  EXPECT_EQ(opening.Code(), MakeResult(0x800403EB));
  const Failure script =
      ExplainFailure(kExecute, Error(u"no such customer", MakeResult(0x80040005)), Answered("200", true));
  EXPECT_EQ(script.Status(), ExitStatus::kFault);
  EXPECT_EQ(script.Message(), "no such customer");
  EXPECT_EQ(script.Code(), MakeResult(0x80040005));
  const Failure plain = ExplainFailure(kExecute, Error(u"oops"), Answered("200", true));
  EXPECT_EQ(plain.Status(), ExitStatus::kFault);
  EXPECT_FALSE(plain.Code().has_value());
  ExpectShown({{kExecute, Error(nullptr), Answered("200", true), "1 the server gives no reason"}});
}

TEST(ExplainFailure, StrangeAnswerRaisesADoubt) {
  const std::pair<const char*, const char*> rows[] = {
      {"200", ""},
      {"404", ""},
      {"302", ", and redirects are not followed"},
      {"401", ", and authentication of HTTP is not supported"},
      {"407", ", and a proxy that wants a password is not supported"}};
  for (const auto& [status, remark] : rows) {
    const std::string doubt = std::string(" (HTTP status ") + status + remark;
    const char question[] = "; is http://srv:8080 a Scriptwells server?)";
    for (const Phase phase : {kOpen, kExecute})
      ExpectShown({{phase, kInvalid, Answered(status),
                    "7 The respone that arrived is not valid" + doubt + question}});
    // With status 200 it is a server of this protocol behind a proxy that removes the length.
    if (std::string(status) != "200")
      ExpectShown({{kOpen, kHttpProblem, Answered(status),
                    "7 Unknown Http problem." + doubt + ", no usable Content-Length" + question}});
  }
  ExpectShown(
      {{kOpen, kInvalid, WithEnvelope(Envelope::kForeign),
        "7 The respone that arrived is not valid (HTTP status 200, an envelope that is not named "
        "soap:Envelope; is http://srv:8080 a Scriptwells server?)"},
       {kOpen, kInvalid, WithEnvelope(Envelope::kKnown),
        "7 The respone that arrived is not valid (HTTP status 200; is http://srv:8080 a Scriptwells "
        "server?)"},
       {kClose, kInvalid, Answered("404"), "7 The respone that arrived is not valid (HTTP status 404)"},
       {kClose, kInvalid, Answered("200"), "7 The respone that arrived is not valid"}});
}

TEST(ExplainFailure, HintsSayWhatTheMessageMeans) {
  const std::string limits =
      " (the answer is damaged, or beyond the reader's limits, such as 16,384 element names)";
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"Unknown Http problem.", " (the answer has no usable Content-Length)"},
      {u"Unable to convert a value with the given accuracy",
       " (a date or time that is empty or none, perhaps in a cell of a table)"},
      {u"Cannot create the recordlist", " (the table is damaged, or has an empty duration)"},
      {u"Cannot parse url, expecting 'http://' after protocol name.",
       " (the server's upload script gave no address to upload to)"}};
  for (const auto& [message, hint] : rows)
    ExpectShown({{kExecute, Error(message), Answered("200"), "7 " + ToUtf8(message) + hint}});
  for (const bool holdsFault : {false, true})
    ExpectShown(
        {{kExecute, kDamaged, Answered("200", holdsFault), "7 " + ToUtf8(kDamaged.Description()) + limits}});
  ExpectShown({{kExecute, kInvalid, WithEnvelope(Envelope::kKnown),
                "7 The respone that arrived is not valid (a script that returns null or nothing fails like "
                "this, too)"},
               {kExecute, kInvalid, WithEnvelope(Envelope::kKnown, "500"),
                "7 The respone that arrived is not valid (HTTP status 500)"}});
}

TEST(ExplainFailure, BeforeAnythingWasSentIsLocal) {
  ExpectShown({{kExecute, kNoXml, ExchangeNote(), "6 Cannot create the xml document."},
               {kExecute, Error(nullptr, E_POINTER), ExchangeNote(), "6 failure 0x80004003"},
               {kExecute, Error(nullptr, E_OUTOFMEMORY), Answered("200"), "1 out of memory"}});
}

TEST(ExplainFailure, OfADocumentThatCannotBeRead) {
  struct DocumentRow {
    _com_error error;
    ExchangeNote note;
    const char* shown;
  };
  const DocumentRow rows[] = {
      {kNoXml, ExchangeNote(),
       "6 cannot read the script document a/b.xml as XML (not well-formed, an unknown encoding, or a part of "
       "it that "
       "cannot be opened), or a parameter has no form on the wire"},
      {Error(u"another message"), ExchangeNote(), "6 another message"},
      {kNoXml, Answered("200", true), "1 Cannot create the xml document."},
      {kNoXml, Broken(Connected(), kReset, "reset"), "3 no answer from http://srv:8080: reset"}};
  for (const DocumentRow& row : rows)
    EXPECT_EQ(Shown(ExplainDocumentFailure("a/b.xml", row.error, row.note)), row.shown);
}

TEST(ExplainFailure, RequestThatIsTooLongIsReportedFirst) {
  const std::string message = "7 the server found the request too long (HTTP status 413)";
  const ExchangeNote refused = Answered("413");
  for (const _com_error& error : {kHttpProblem, kInvalid, Error(u"")}) {
    ExpectShown({{kExecute, error, refused, message}, {kOpen, error, refused, message}});
    EXPECT_EQ(Shown(ExplainDocumentFailure("a/b.xml", error, refused)), message);
  }
  ExpectShown({{kExecute, kNoCall, Broken(refused, kReset, "closed"), message},
               {kExecute, kNoCall, Broken(refused, kCancelled, "aborted"), "130 interrupted"},
               {kExecute, Error(u"at most 1 MB"), Answered("413", true), "1 at most 1 MB"},
               {kDownload, kNoCall, refused, "1 http://srv:8080 answered the download with the status 413"}});
}

TEST(ExplainFailure, OfADownloadNamesStatusOrName) {
  const Failure failure = ExplainFailure(kDownload, kHttpProblem, Downloaded("404", ""));
  EXPECT_EQ(failure.Status(), ExitStatus::kFault);
  EXPECT_EQ(failure.Message(), "http://srv:8080 answered the download with the status 404");
  EXPECT_STREQ(failure.OwnKind(), "download refused");
  const std::string answer = "7 the answer of http://srv:8080 names ";
  ExpectShown({{kDownload, kHttpProblem, Downloaded("200", ""), answer + "no file"},
               {kDownload, kHttpProblem, Downloaded("200", "inline"), answer + "no file"},
               {kDownload, kHttpProblem, Downloaded("200", "attachment; filename=../x"),
                answer + "the file '../x', which is refused: it would not stay in the directory"}});
}

}  // namespace
}  // namespace qv::cli
