// Verbs for tests of the HTTP component against the raw server. Every test starts without kept connections
// and with the default limits.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "fixtures/raw_server.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/http_component.h"

namespace qv::test {

// The component's codes in numbers, since hosts know them so.
constexpr HRESULT kTimedOut = MakeResult(0x80072EE2);
constexpr HRESULT kNotResolved = MakeResult(0x80072EE7);
constexpr HRESULT kCancelled = MakeResult(0x80072EF1);
constexpr HRESULT kNotConnected = MakeResult(0x80072EFD);
constexpr HRESULT kCutOff = MakeResult(0x80072EFE);
constexpr HRESULT kMalformed = MakeResult(0x80072F78);
constexpr HRESULT kTls = MakeResult(0x80072F8F);
constexpr HRESULT kTooLarge = MakeResult(0x800700DF);

WideString Wide(const std::string& latin1);
// The message of the waiting error record in UTF-8, "<none>" without a record. Takes the record.
std::string ErrorWords();
// How many descriptors this process has open.
std::size_t OpenDescriptors();

// The result of one exchange: the first code that is a failure, or the text in UTF-8.
struct Outcome {
  HRESULT code = S_OK;
  std::string failedStep;  // empty when all went well
  std::string words;       // of the error record
  std::string text;
};

class HttpTest : public ::testing::Test {
 protected:
  HttpTest();
  ~HttpTest() override;

  // As at the start of a test: without kept connections and without an error record.
  static void StartAnew();
  static void SetLimits(const HttpOptions& options) { SetThreadHttpOptions(options, nullptr); }
  // The default limits but this one.
  static void Limit(std::int64_t HttpOptions::*number, std::int64_t value);

  static IHttpSessionPtr NewSession();
  // Opens a new session; the result.
  static HRESULT OpenAt(const std::string& protocol, const std::string& host, std::uint16_t port,
                        const std::string& proxy = "");
  HRESULT Open(const IHttpSessionPtr& session, const std::string& proxy = "");
  // Open, with the opening checked.
  IHttpSessionPtr OpenSession();
  static IHttpRequestPtr NewRequest(const IHttpSessionPtr& session, const std::string& verb = "POST",
                                    const std::string& path = "/x");
  // A request of an open session that was sent with this body; the sending is checked.
  IHttpRequestPtr Sent(const std::string& body = "question", const std::string& verb = "POST");
  static std::string Header(const IHttpRequestPtr& request, const std::string& name);
  // The next `length` bytes of the body, as text in UTF-8; the reading is checked.
  static std::string ReadText(const IHttpRequestPtr& request, std::int32_t length);
  // The result of reading.
  static HRESULT Read(const IHttpRequestPtr& request, std::int32_t length);

  // Open, send "question", read `length` bytes (-1: none), close everything.
  Outcome Exchange(std::int32_t length);
  // An exchange that gives this text, or fails in this way.
  void ExpectText(const std::string& text);
  void ExpectFailure(std::int32_t length, const std::string& step, HRESULT code, const std::string& words);
  // Sends this many bytes on a new connection; the result.
  HRESULT SendMany(std::size_t bytes);
  // One request gets an answer with this body, or these bytes; then the server waits for the client to close.
  void Answer(const std::string& body) { server_.Expect(RawScript().Answer(body)); }
  void Reply(const std::string& bytes) { server_.Expect(RawScript().Reply(bytes)); }
  // The same, and the server closes.
  void ReplyAndClose(const std::string& bytes) { server_.Expect(RawScript().Reply(bytes).Close()); }
  // An exchange after a failure: must work, on a new connection.
  void ExpectNextCallWorks();

  RawServer server_;
};

}  // namespace qv::test
