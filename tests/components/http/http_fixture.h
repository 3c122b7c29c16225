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

WideString Wide(const std::string& latin1);
// The waiting error record's words in UTF-8, "<none>" without a record. Takes the record.
std::string ErrorWords();
// How many descriptors this process has open.
std::size_t OpenDescriptors();

// What one exchange gave: the first failing code, or the text.
struct Outcome {
  HRESULT code = S_OK;
  std::string failedStep;  // empty when all went well
  std::string words;       // of the error record
  WideString text;
};

class HttpTest : public ::testing::Test {
 protected:
  HttpTest();
  ~HttpTest() override;

  static IHttpSessionPtr NewSession();
  HRESULT Open(const IHttpSessionPtr& session, const std::string& proxy = "");
  // Open, with the opening checked.
  IHttpSessionPtr OpenSession();
  static IHttpRequestPtr NewRequest(const IHttpSessionPtr& session, const std::string& verb = "POST",
                                    const std::string& path = "/x");
  // A request of an open session that was sent with this body; the sending is checked.
  IHttpRequestPtr Sent(const std::string& body = "question", const std::string& verb = "POST");
  static std::string Header(const IHttpRequestPtr& request, const std::string& name);
  static WideString ReadText(const IHttpRequestPtr& request, std::int32_t length);

  // Open, send "question", read `length` bytes (-1: none), close everything.
  Outcome Exchange(std::int32_t length);
  // Serves one request with these bytes, then waits for the client to close.
  void Answer(const std::string& bytes);
  // An exchange after a failure: must work, on a connection of its own.
  void ExpectNextCallWorks();
  static void SetLimits(const HttpOptions& options) { SetThreadHttpOptions(options, nullptr); }

  RawServer server_;
};

}  // namespace qv::test
