#include "tools/explain_failure.h"

#include <gtest/gtest.h>

namespace qv::cli {
namespace {

_com_error Error(HRESULT code, const char16_t* words) {
  ErrorInfo info;
  info.description = words;
  return _com_error(code, info);
}

ExchangeNote Connected() {
  ExchangeNote note;
  note.server = "http://srv:8080";
  note.connected = true;
  return note;
}

ExchangeNote Answered(const char* status, bool holdsFault) {
  ExchangeNote note = Connected();
  note.httpStatus = status;
  note.holdsFault = holdsFault;
  return note;
}

ExchangeNote WithEnvelope(Envelope envelope, const char* status = "200") {
  ExchangeNote note = Answered(status, false);
  note.envelope = envelope;
  return note;
}

ExchangeNote Broken(ExchangeNote note, std::uint32_t code, const char* words) {
  note.failure = MakeResult(code);
  note.words = words;
  return note;
}

std::string Explain(Phase phase, const _com_error& error, const ExchangeNote& note) {
  const Failure failure = ExplainFailure(phase, error, note);
  return std::to_string(static_cast<int>(failure.Status())) + " " + failure.Message();
}

std::string ExplainDocument(const _com_error& error, const ExchangeNote& note) {
  const Failure failure = ExplainDocumentFailure("a/b.xml", error, note);
  return std::to_string(static_cast<int>(failure.Status())) + " " + failure.Message();
}

const _com_error kNoCall = Error(DISP_E_EXCEPTION, u"Cannot create a soap call.");

struct TransportRow {
  const char* name;
  std::uint32_t code;
  const char* expected;
};

class Transport : public ::testing::TestWithParam<TransportRow> {};

TEST_P(Transport, FailureWhileConnectingNamesTheServer) {
  ExchangeNote note;
  note.server = "http://srv:8080";
  EXPECT_EQ(Explain(Phase::kOpen, kNoCall, Broken(note, GetParam().code, "words")), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    ExplainFailure, Transport,
    ::testing::Values(TransportRow{"timeout", 0x80072EE2, "4 cannot reach http://srv:8080: words"},
                      TransportRow{"name", 0x80072EE7, "3 cannot reach http://srv:8080: words"},
                      TransportRow{"refused", 0x80072EFD, "3 cannot reach http://srv:8080: words"},
                      TransportRow{"tls", 0x80072F8F, "3 cannot reach http://srv:8080: words"},
                      TransportRow{"cancelled", 0x80072EF1, "130 interrupted"},
                      TransportRow{"argument", 0x80070057, "6 cannot reach http://srv:8080: words"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ExplainFailure, CertificateThatNobodyVouchesForHasAHint) {
  ExchangeNote note;
  note.server = "https://srv:443";
  for (const char* words : {"SSL certificate problem: unable to get local issuer certificate",
                            "SSL certificate problem: self-signed certificate",
                            "SSL certificate problem: self-signed certificate in certificate chain"})
    EXPECT_EQ(Explain(Phase::kOpen, kNoCall, Broken(note, 0x80072F8F, words)),
              std::string("3 cannot reach https://srv:443: ") + words +
                  " (--ca-file FILE names an authority of your own)");
  EXPECT_EQ(Explain(Phase::kOpen, kNoCall,
                    Broken(note, 0x80072F8F, "SSL certificate problem: certificate has expired")),
            "3 cannot reach https://srv:443: SSL certificate problem: certificate has expired");
}

TEST(ExplainFailure, ServerThatWantsACertificateHasAHint) {
  EXPECT_EQ(Explain(Phase::kOpen, kNoCall,
                    Broken(Connected(), 0x80072EFE, "tlsv13 alert certificate required, errno 0")),
            "3 no answer from http://srv:8080: tlsv13 alert certificate required, errno 0 "
            "(the server wants to see a certificate: --cert FILE, --key FILE)");
}

TEST(ExplainFailure, ConnectionThatBreaksBeforeTheAnswer) {
  EXPECT_EQ(Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"x"), Broken(Connected(), 0x80072EFE, "reset")),
            "3 no answer from http://srv:8080: reset");
  EXPECT_EQ(
      Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"x"), Broken(Connected(), 0x80072EE2, "silence")),
      "4 no answer from http://srv:8080: silence");
  EXPECT_EQ(Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"x"),
                    Broken(Connected(), 0x80072EE2, "Operation timed out after 7 milliseconds in total")),
            "4 no answer from http://srv:8080: the time that --max-time allows is over");
  EXPECT_EQ(
      Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"x"), Broken(Connected(), 0x80072F78, "no HTTP")),
      "7 no answer from http://srv:8080: no HTTP");
}

TEST(ExplainFailure, AnswerThatBreaksOff) {
  EXPECT_EQ(Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"x"),
                    Broken(Answered("200", false), 0x80072EFE, "closed")),
            "3 the answer of http://srv:8080 broke off: closed");
}

TEST(ExplainFailure, ProxyIsNamedBesideTheServer) {
  ExchangeNote note;
  note.server = "http://srv:8080";
  note.proxy = "px:3128";
  EXPECT_EQ(Explain(Phase::kOpen, kNoCall, Broken(note, 0x80072EFD, "refused")),
            "3 cannot reach http://srv:8080 through the proxy px:3128: refused");
  note.connected = true;
  EXPECT_EQ(Explain(Phase::kOpen, kNoCall, Broken(note, 0x80072EFE, "closed")),
            "3 no answer from http://srv:8080 through the proxy px:3128: closed");
}

TEST(ExplainFailure, AnswerThatIsTooLong) {
  EXPECT_EQ(Explain(Phase::kExecute, kNoCall,
                    Broken(Answered("200", false), 0x800700DF, "Maximum file size exceeded")),
            "7 the answer of http://srv:8080 is longer than 512 MB");
  EXPECT_EQ(Explain(Phase::kExecute, kNoCall, Broken(Connected(), 0x800700DF, "large head")),
            "7 the answer of http://srv:8080 is too long: large head");
}

TEST(ExplainFailure, FileThatExistsIsHintedAt) {
  EXPECT_EQ(Explain(Phase::kDownload, kNoCall,
                    Broken(Answered("200", false), 0x80070050, "Couldn't write file /f: File exists")),
            "6 the download failed: Couldn't write file /f: File exists (--force replaces it)");
}

TEST(ExplainFailure, MissingLengthIsHintedAt) {
  EXPECT_EQ(
      Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"Unknown Http problem."), Answered("200", false)),
      "7 Unknown Http problem. (the answer has no usable Content-Length)");
}

TEST(ExplainFailure, TransportWithoutWordsShowsItsCode) {
  EXPECT_EQ(Explain(Phase::kExecute, kNoCall, Broken(Connected(), 0x80072EFE, "")),
            "3 no answer from http://srv:8080: failure 0x80072EFE");
}

TEST(ExplainFailure, FaultInOpeningIsARefusal) {
  const Failure failure =
      ExplainFailure(Phase::kOpen, Error(MakeResult(0x800403EB), u"who are you"), Answered("500", true));
  EXPECT_EQ(failure.Status(), ExitStatus::kRefused);
  EXPECT_EQ(failure.Message(), "who are you");
  EXPECT_EQ(failure.Code(), MakeResult(0x800403EB));
}

TEST(ExplainFailure, FaultInExecuteKeepsItsCode) {
  const Failure failure = ExplainFailure(Phase::kExecute, Error(MakeResult(0x80040005), u"no such customer"),
                                         Answered("200", true));
  EXPECT_EQ(failure.Status(), ExitStatus::kFault);
  EXPECT_EQ(failure.Message(), "no such customer");
  EXPECT_EQ(failure.Code(), MakeResult(0x80040005));
}

TEST(ExplainFailure, FaultWithoutNumberHasNoCode) {
  const Failure failure =
      ExplainFailure(Phase::kExecute, Error(DISP_E_EXCEPTION, u"oops"), Answered("200", true));
  EXPECT_EQ(failure.Status(), ExitStatus::kFault);
  EXPECT_FALSE(failure.Code().has_value());
}

TEST(ExplainFailure, FaultWithoutWordsSaysSo) {
  EXPECT_EQ(Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, nullptr), Answered("200", true)),
            "1 the server gives no reason");
}

const _com_error kInvalid = Error(DISP_E_EXCEPTION, u"The respone that arrived is not valid");
const _com_error kNoLength = Error(DISP_E_EXCEPTION, u"Unknown Http problem.");

struct StrangeRow {
  const char* status;
  const char* shown;
};

class StrangeAnswer : public ::testing::TestWithParam<StrangeRow> {};

TEST_P(StrangeAnswer, AsksForTheServerWithTheStatus) {
  const std::string question = std::string("; is http://srv:8080 a Scriptwells server?)");
  const ExchangeNote note = Answered(GetParam().status, false);
  for (const Phase phase : {Phase::kOpen, Phase::kExecute})
    EXPECT_EQ(
        Explain(phase, kInvalid, note),
        std::string("7 The respone that arrived is not valid (HTTP status ") + GetParam().shown + question);
  if (note.httpStatus == "200")
    return;  // a server of this protocol behind a proxy that leaves the length out
  EXPECT_EQ(Explain(Phase::kOpen, kNoLength, note), std::string("7 Unknown Http problem. (HTTP status ") +
                                                        GetParam().shown + ", no usable Content-Length" +
                                                        question);
}

INSTANTIATE_TEST_SUITE_P(
    ExplainFailure, StrangeAnswer,
    ::testing::Values(StrangeRow{"200", "200"}, StrangeRow{"404", "404"},
                      StrangeRow{"302", "302, and redirects are not followed"},
                      StrangeRow{"401", "401, and authentication of HTTP is not supported"},
                      StrangeRow{"407", "407, and a proxy that wants a password is not supported"}),
    [](const auto& row) { return std::string(row.param.status); });

TEST(ExplainFailure, ForeignEnvelopeIsTold) {
  EXPECT_EQ(Explain(Phase::kOpen, kInvalid, WithEnvelope(Envelope::kForeign)),
            "7 The respone that arrived is not valid (HTTP status 200, an envelope that is not named "
            "soap:Envelope; is http://srv:8080 a Scriptwells server?)");
}

TEST(ExplainFailure, NullAnswerIsHintedAtOnlyInAnEnvelopeThatAnswersAScript) {
  EXPECT_EQ(Explain(Phase::kExecute, kInvalid, WithEnvelope(Envelope::kKnown)),
            "7 The respone that arrived is not valid (a script that answers null or nothing ends so, too)");
  EXPECT_EQ(Explain(Phase::kOpen, kInvalid, WithEnvelope(Envelope::kKnown)),
            "7 The respone that arrived is not valid (HTTP status 200; is http://srv:8080 a Scriptwells "
            "server?)");
  EXPECT_EQ(Explain(Phase::kExecute, kInvalid, WithEnvelope(Envelope::kKnown, "500")),
            "7 The respone that arrived is not valid (HTTP status 500)");
}

TEST(ExplainFailure, NobodyIsAskedForWhenASessionIsClosed) {
  EXPECT_EQ(Explain(Phase::kClose, kInvalid, Answered("404", false)),
            "7 The respone that arrived is not valid (HTTP status 404)");
  EXPECT_EQ(Explain(Phase::kClose, kInvalid, Answered("200", false)),
            "7 The respone that arrived is not valid");
}

TEST(ExplainFailure, EmptyCellsOfATableAreHintedAt) {
  EXPECT_EQ(
      Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"Unable to convert a value with the given accuracy"),
              Answered("200", false)),
      "7 Unable to convert a value with the given accuracy (a date or time that is empty or none, perhaps "
      "in a cell of a table)");
  EXPECT_EQ(Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"Cannot create the recordlist"),
                    Answered("200", false)),
            "7 Cannot create the recordlist (the table is damaged, or has an empty duration)");
}

TEST(ExplainFailure, FaultThatCannotBeReadIsAnAnswerNotUnderstood) {
  EXPECT_EQ(
      Explain(
          Phase::kExecute,
          Error(DISP_E_EXCEPTION, u"Error at file application/xml, line 1, char 9  Message: application/xml"),
          Answered("200", true)),
      "7 Error at file application/xml, line 1, char 9  Message: application/xml (the answer is damaged, or "
      "beyond the reader's limits, such as 16,384 element names)");
}

TEST(ExplainFailure, LimitsOfTheReaderAreHintedAt) {
  const _com_error unread =
      Error(DISP_E_EXCEPTION, u"Error at file application/xml, line 3, char 77  Message: application/xml");
  EXPECT_EQ(
      Explain(Phase::kExecute, unread, Answered("200", false)),
      "7 Error at file application/xml, line 3, char 77  Message: application/xml (the answer is damaged, or "
      "beyond the reader's limits, such as 16,384 element names)");
  EXPECT_EQ(Explain(Phase::kExecute, unread, Broken(Answered("200", false), 0x80072EFE, "closed")),
            "3 the answer of http://srv:8080 broke off: closed");
}

TEST(ExplainFailure, FailureBeforeAnythingWasSentIsLocal) {
  EXPECT_EQ(
      Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"Cannot create the xml document."), ExchangeNote()),
      "6 Cannot create the xml document.");
  EXPECT_EQ(Explain(Phase::kExecute, Error(E_POINTER, nullptr), ExchangeNote()), "6 failure 0x80004003");
}

TEST(ExplainFailure, DocumentThatCannotBeReadIsTold) {
  const _com_error unread = Error(DISP_E_EXCEPTION, u"Cannot create the xml document.");
  EXPECT_EQ(
      ExplainDocument(unread, ExchangeNote()),
      "6 cannot read the script document a/b.xml as XML (not well-formed, an unknown encoding, or a part "
      "of it that cannot be opened), or a parameter has no form on the wire");
  EXPECT_EQ(ExplainDocument(Error(DISP_E_EXCEPTION, u"other words"), ExchangeNote()), "6 other words");
  EXPECT_EQ(ExplainDocument(unread, Answered("200", true)), "1 Cannot create the xml document.");
  EXPECT_EQ(ExplainDocument(unread, Broken(Connected(), 0x80072EFE, "reset")),
            "3 no answer from http://srv:8080: reset");
}

TEST(ExplainFailure, RequestThatIsTooLongIsToldWhateverElseFails) {
  const std::string told = "7 the server found the request too long (HTTP status 413)";
  const ExchangeNote refused = Answered("413", false);
  for (const char16_t* words : {u"Unknown Http problem.", u"The respone that arrived is not valid", u""}) {
    EXPECT_EQ(Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, words), refused), told);
    EXPECT_EQ(Explain(Phase::kOpen, Error(DISP_E_EXCEPTION, words), refused), told);
    EXPECT_EQ(ExplainDocument(Error(DISP_E_EXCEPTION, words), refused), told);
  }
  EXPECT_EQ(Explain(Phase::kExecute, kNoCall, Broken(refused, 0x80072EFE, "closed")), told);
  EXPECT_EQ(Explain(Phase::kExecute, kNoCall, Broken(refused, 0x80072EF1, "aborted")), "130 interrupted");
  EXPECT_EQ(Explain(Phase::kExecute, Error(DISP_E_EXCEPTION, u"at most 1 MB"), Answered("413", true)),
            "1 at most 1 MB");
  EXPECT_EQ(Explain(Phase::kDownload, kNoCall, refused),
            "1 http://srv:8080 answered the download with the status 413");
}

ExchangeNote Downloaded(const char* status, const char* fileHeader) {
  ExchangeNote note = Answered(status, false);
  note.fileHeader = fileHeader;
  return note;
}

const _com_error kUnknown = Error(DISP_E_EXCEPTION, u"Unknown Http problem.");

TEST(ExplainTransfer, FileThatIsGoneOrCannotBeReadIsLocal) {
  EXPECT_EQ(Explain(Phase::kExecute, kNoCall,
                    Broken(Connected(), 0x80070002, "Couldn't open file /a: No such file or directory")),
            "6 the upload failed: Couldn't open file /a: No such file or directory");
  EXPECT_EQ(Explain(Phase::kExecute, kNoCall, Broken(Connected(), 0x8007001E, "shrank")),
            "6 the upload failed: shrank");
}

TEST(ExplainTransfer, TargetThatCannotBeWrittenIsLocal) {
  for (const std::uint32_t code : {0x80070003u, 0x80070005u, 0x8007001Du, 0x80070070u})
    EXPECT_EQ(Explain(Phase::kDownload, kNoCall, Broken(Answered("200", false), code, "no space left")),
              "6 the download failed: no space left");
}

TEST(ExplainTransfer, RefusedDownloadTellsItsStatus) {
  const Failure failure = ExplainFailure(Phase::kDownload, kUnknown, Downloaded("404", ""));
  EXPECT_EQ(failure.Status(), ExitStatus::kFault);
  EXPECT_EQ(failure.Message(), "http://srv:8080 answered the download with the status 404");
  EXPECT_STREQ(failure.OwnKind(), "download refused");
}

TEST(ExplainTransfer, AnswerWithoutAFileIsNotUnderstood) {
  EXPECT_EQ(Explain(Phase::kDownload, kUnknown, Downloaded("200", "")),
            "7 the answer of http://srv:8080 names no file");
  EXPECT_EQ(Explain(Phase::kDownload, kUnknown, Downloaded("200", "inline")),
            "7 the answer of http://srv:8080 names no file");
}

TEST(ExplainTransfer, NameThatWouldLeaveTheDirectoryIsTold) {
  EXPECT_EQ(
      Explain(Phase::kDownload, kUnknown, Downloaded("200", "attachment; filename=../x")),
      "7 the answer of http://srv:8080 names the file '../x', which is refused: it would not stay in the "
      "directory");
}

TEST(ExplainTransfer, SilenceAndBrokenConnectionsKeepTheirStatus) {
  EXPECT_EQ(Explain(Phase::kDownload, kNoCall, Broken(Downloaded("200", "x=a"), 0x80072EE2, "silence")),
            "4 the answer of http://srv:8080 broke off: silence");
  ExchangeNote nowhere;
  nowhere.server = "http://srv:8080";
  EXPECT_EQ(Explain(Phase::kDownload, Error(E_POINTER, nullptr), Broken(nowhere, 0x80072EFD, "refused")),
            "3 cannot reach http://srv:8080: refused");
  EXPECT_EQ(Explain(Phase::kDownload, kNoCall, Broken(Connected(), 0x80072EF1, "aborted")),
            "130 interrupted");
}

TEST(ExplainTransfer, UploadScriptThatGivesNoAddressIsHintedAt) {
  EXPECT_EQ(
      Explain(Phase::kExecute,
              Error(DISP_E_EXCEPTION, u"Cannot parse url, expecting 'http://' after protocol name."),
              Answered("200", false)),
      "7 Cannot parse url, expecting 'http://' after protocol name. (the server's upload script gave no "
      "address to upload to)");
}

TEST(ExplainFailure, LackOfMemoryIsToldAsSuch) {
  EXPECT_EQ(Explain(Phase::kExecute, Error(E_OUTOFMEMORY, nullptr), Answered("200", false)),
            "1 out of memory");
}

}  // namespace
}  // namespace qv::cli
