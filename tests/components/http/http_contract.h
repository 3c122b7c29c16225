// What every HTTP component must do for the library. Each kind of component brings a side that makes it and
// has it answered; the suite runs with all of them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "qvscriptwells/http_component.h"

namespace qv::test {

class HttpContractSide {
 public:
  virtual ~HttpContractSide() = default;
  // CLSID_HttpComponent names this side's class for as long as it lives.
  virtual std::uint16_t Port() const = 0;
  // The next request gets an answer with this status and ASCII body, its length announced.
  virtual void WillAnswer(int status, const std::string& body) = 0;
  // The next request gets an answer without `Content-Length`.
  virtual void WillAnswerWithoutLength() = 0;
  // The next sending fails.
  virtual void WillFail() = 0;
  // The bodies that arrived, joined.
  virtual std::string BodiesSent() const = 0;
};

using HttpContractSideMaker = std::unique_ptr<HttpContractSide> (*)();

class HttpContract : public ::testing::TestWithParam<HttpContractSideMaker> {
 protected:
  void SetUp() override { side_ = GetParam()(); }
  void TearDown() override { side_.reset(); }

  // Made through the class registry, as the library does it.
  IHttpSessionPtr OpenSession();
  static IHttpRequestPtr NewRequest(const IHttpSessionPtr& session);
  // A request of an open session that was sent.
  IHttpRequestPtr Sent();
  static std::string Header(const IHttpRequestPtr& request, const WideString& name);
  static void ExpectRead(const IHttpRequestPtr& request, const char16_t* text, std::int32_t length);

  std::unique_ptr<HttpContractSide> side_;
};

}  // namespace qv::test
