// Class, phase, message and remedy for what was seen of a call: the cases that no real server brings about.
#include "face/exchange/explain_failure.h"

#include "qvscriptwells/http_component.h"
#include "tests/face/exchange/call_fixture.h"

namespace scriptwells::test {
namespace {

constexpr char kKnown[] = "<soap:Envelope/>";
constexpr char kForeign[] = "<SOAP-ENV:Envelope/>";
constexpr char kFault[] = "<soap:Envelope><soap:Fault/></soap:Envelope>";

qv::_com_error Failed(const char16_t* message, qv::HRESULT code = qv::DISP_E_EXCEPTION) {
  qv::ErrorInfo info;
  info.description = message;
  return qv::_com_error(code, info);
}

class ExplainFailure : public ::testing::Test {
 protected:
  ExplainFailure() {
    record_.protocol = u"http";
    record_.host = u"srv";
    record_.port = 8080;
  }
  void Connected() { record_.connected = true; }
  void Answered(int status, const std::string& body = "") {
    record_ = ExchangeRecord();
    record_.protocol = u"http";
    record_.host = u"srv";
    record_.port = 8080;
    record_.connected = record_.sent = record_.answering = true;
    record_.status = status;
    record_.body.Append(body);
  }
  void Broken(qv::HRESULT code, const std::string& message) {
    record_.failure = code;
    record_.message = message;
  }
  Outcome Explained(const qv::_com_error& error, Purpose purpose = Purpose::kExecute) {
    return OutcomeOf([&] { ThrowExplained({purpose, settings_, record_, {}, document_}, error); });
  }
  std::string Shown(const char16_t* message, Purpose purpose = Purpose::kExecute) {
    return Explained(Failed(message), purpose).shown;
  }

  CallSettings settings_;
  ExchangeRecord record_;
  std::string document_;
};

TEST_F(ExplainFailure, CodesOfTheTransport) {
  struct Row {
    qv::HRESULT code;
    const char* start;
  };
  const Row rows[] = {{qv::HTTP_E_TIMED_OUT, "TimeoutError connect: cannot reach"},
                      {qv::HTTP_E_NOT_RESOLVED, "ConnectionError connect: cannot reach"},
                      {qv::HTTP_E_NOT_CONNECTED, "ConnectionError connect: cannot reach"},
                      {qv::HTTP_E_CUT_OFF, "ConnectionError connect: cannot reach"},
                      {qv::E_UNEXPECTED, "ConnectionError connect: cannot reach"},
                      {qv::HTTP_E_TLS, "ConnectionError TLS: cannot reach"},
                      {qv::HTTP_E_CANCELLED, "CancelledError cancelled: the call was"},
                      {qv::E_INVALIDARG, "Error address: cannot reach"},
                      {qv::HTTP_E_MALFORMED, "Error answer: cannot reach"},
                      {qv::HTTP_E_TOO_LARGE, "Error answer: the answer of http://srv:8080 is too long: why"},
                      {qv::HTTP_E_FILE_NOT_FOUND, "Error local file: the upload failed: why"},
                      {qv::HTTP_E_PATH_NOT_FOUND, "Error local file: the upload failed: why"},
                      {qv::HTTP_E_ACCESS_DENIED, "Error local file: the upload failed: why"},
                      {qv::HTTP_E_WRITE_FAULT, "Error local file: the upload failed: why"},
                      {qv::HTTP_E_READ_FAULT, "Error local file: the upload failed: why"},
                      {qv::HTTP_E_DISK_FULL, "Error local file: the upload failed: why"},
                      {qv::HTTP_E_FILE_EXISTS, "Error local file: the upload failed: why"}};
  for (const Row& row : rows) {
    Broken(row.code, "why");
    const std::string shown = Shown(u"x");
    EXPECT_EQ(shown.substr(0, std::string(row.start).size()), row.start) << shown;
  }
  Broken(qv::E_OUTOFMEMORY, "why");
  EXPECT_THROW(Shown(u"x"), std::bad_alloc);
}

TEST_F(ExplainFailure, FailureWithoutAMessageShowsItsCode) {
  Connected();
  Broken(qv::HTTP_E_CUT_OFF, "");
  EXPECT_EQ(Shown(u"x"), "ConnectionError send: no answer from http://srv:8080: failure 0x80072EFE");
}

TEST_F(ExplainFailure, RemediesOfCertificates) {
  Broken(qv::HTTP_E_TLS, "SSL certificate problem: certificate has expired");
  EXPECT_EQ(Explained(Failed(u"x")).details.remedy, Remedy::kNone);
  for (const char* reason : {"unable to get local issuer certificate", "self-signed certificate",
                             "self-signed certificate in certificate chain"}) {
    Broken(qv::HTTP_E_TLS, std::string("SSL certificate problem: ") + reason);
    const Outcome outcome = Explained(Failed(u"x"));
    EXPECT_EQ(outcome.details.remedy, Remedy::kOwnAuthority);
    EXPECT_EQ(outcome.shown, std::string("ConnectionError TLS: cannot reach http://srv:8080: SSL certificate "
                                         "problem: ") +
                                 reason);
  }
}

TEST_F(ExplainFailure, StrangeAnswersRaiseADoubt) {
  const std::string invalid = "Error answer: The respone that arrived is not valid (HTTP status ";
  const std::string unknown = "Error answer: Unknown Http problem. (HTTP status ";
  const std::string question = "; is http://srv:8080 a Scriptwells server?)";
  const auto doubted = [&question](const std::string& start, const std::string& status) {
    return start + status + question;
  };
  const std::pair<int, const char*> rows[] = {{200, ""},
                                              {404, ""},
                                              {302, ", and redirects are not followed"},
                                              {401, ", and authentication of HTTP is not supported"},
                                              {407, ", and a proxy that wants a password is not supported"}};
  for (const auto& [status, remark] : rows) {
    Answered(status);
    const std::string shown = std::to_string(status) + remark;
    for (const Purpose purpose : {Purpose::kOpenSession, Purpose::kExecute})
      EXPECT_EQ(Shown(u"The respone that arrived is not valid", purpose), doubted(invalid, shown));
    if (status != 200) {
      EXPECT_EQ(Shown(u"Unknown Http problem."), doubted(unknown, shown + ", no usable Content-Length"));
    }
  }
  Answered(200, kForeign);
  EXPECT_EQ(Shown(u"The respone that arrived is not valid"),
            invalid + "200, an envelope that is not named soap:Envelope" + question);
  Answered(404);
  EXPECT_EQ(Shown(u"The respone that arrived is not valid", Purpose::kCloseSession), invalid + "404)");
}

TEST_F(ExplainFailure, HintsSayWhatTheMessageMeans) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"Unknown Http problem.", " (the answer has no usable Content-Length)"},
      {u"Unable to convert a value with the given accuracy",
       " (a date or time that is empty or none, perhaps in a cell of a table)"},
      {u"Cannot create the recordlist", " (the table is damaged, or has an empty duration)"},
      {u"Error at file application/xml, line 3, char 77  Message: application/xml",
       " (the answer is damaged, or beyond the reader's limits, such as 16,384 element names)"}};
  for (const auto& [message, hint] : rows) {
    Answered(200);
    EXPECT_EQ(Shown(message), "Error answer: " + qv::ToUtf8(message) + hint);
  }
  const char16_t damaged[] = u"Error at file application/xml, line 3";
  Answered(200, kFault);
  EXPECT_EQ(Shown(damaged).substr(0, 13), "Error answer:");
  EXPECT_EQ(Shown(u"Cannot deserializer the soap fault."),
            "Error answer: Cannot deserializer the soap fault.");
  Answered(200, kKnown);
  EXPECT_EQ(
      Shown(u"The respone that arrived is not valid"),
      "Error answer: The respone that arrived is not valid (a script that returns null or nothing fails like "
      "this, too)");
  Answered(500, kKnown);
  EXPECT_EQ(Shown(u"The respone that arrived is not valid"),
            "Error answer: The respone that arrived is not valid (HTTP status 500)");
}

TEST_F(ExplainFailure, FaultsWithoutAReason) {
  Answered(200, kFault);
  EXPECT_EQ(Shown(nullptr), "ScriptError script: the server gives no reason");
  EXPECT_EQ(Shown(u"no", Purpose::kOpenSession), "SessionError session: no");
}

TEST_F(ExplainFailure, RequestThatIsTooLongIsReportedFirst) {
  const std::string message = "Error answer: the server found the request too long (HTTP status 413)";
  Answered(413);
  EXPECT_EQ(Shown(u"Unknown Http problem."), message);
  Broken(qv::HTTP_E_CUT_OFF, "closed");
  EXPECT_EQ(Shown(u"x", Purpose::kOpenSession), message);
  Broken(qv::HTTP_E_CANCELLED, "aborted");
  EXPECT_EQ(Shown(u"x"), "CancelledError cancelled: the call was cancelled");
  Answered(413, kFault);
  EXPECT_EQ(Shown(u"at most 1 MB"), "ScriptError script: at most 1 MB");
  Answered(413);
  EXPECT_EQ(Shown(u"x", Purpose::kDownload),
            "Error answer: http://srv:8080 answered the download with the status 413");
}

TEST_F(ExplainFailure, BeforeAnythingWasSent) {
  record_ = ExchangeRecord();
  EXPECT_EQ(Shown(u"Cannot create the xml document."), "Error address: Cannot create the xml document.");
  EXPECT_EQ(Explained(Failed(nullptr, qv::E_POINTER)).shown, "Error address: failure 0x80004003");
  document_ = "a.xml";
  EXPECT_EQ(Shown(u"another message"), "Error address: another message");
  EXPECT_EQ(Shown(u"Cannot create the xml document.").substr(0, 54),
            "Error local file: cannot read the script document a.xm");
}

TEST_F(ExplainFailure, CancelledTokenComesFirst) {
  settings_.cancel.emplace();
  settings_.cancel->Cancel();
  Answered(200, kFault);
  EXPECT_EQ(Shown(u"oops"), "CancelledError cancelled: the call was cancelled");
}

TEST(CouldNotConnect, IsWhatHappensBeforeThereIsAConnection) {
  ExchangeRecord record;
  EXPECT_FALSE(scriptwells::CouldNotConnect(record));
  for (const qv::HRESULT code : {qv::HTTP_E_NOT_CONNECTED, qv::HTTP_E_TLS, qv::HTTP_E_TIMED_OUT}) {
    record.failure = code;
    EXPECT_TRUE(scriptwells::CouldNotConnect(record));
  }
  for (const qv::HRESULT code : {qv::HTTP_E_CANCELLED, qv::E_INVALIDARG, qv::E_OUTOFMEMORY}) {
    record.failure = code;
    EXPECT_FALSE(scriptwells::CouldNotConnect(record));
  }
  record.failure = qv::HTTP_E_CUT_OFF;
  record.connected = true;
  EXPECT_FALSE(scriptwells::CouldNotConnect(record));
}

}  // namespace
}  // namespace scriptwells::test
