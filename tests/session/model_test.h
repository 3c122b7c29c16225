// A connection model with a server, a host and an HTTP component in memory.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "fixtures/fake_host.h"
#include "fixtures/fake_http.h"
#include "fixtures/known_failures.h"
#include "fixtures/shown_text.h"
#include "fixtures/soap_texts.h"
#include "fixtures/thrown.h"
#include "recordlist/register_formaters.h"
#include "session/connection_model_impl.h"

namespace qv {

using Lines = std::vector<std::string>;

constexpr char kServerFault[] = "EQvException 0x80040005 server words";  // kFaultFive as an exception

class ModelTest : public testing::Test {
 protected:
  ModelTest() : host_(new FakeHost) {
    FillFormaters();
    model_.SetServer(u"http://srv", u"");
    model_.SetClientServices(host_->Unknown());
  }
  void TearDown() override {
    EXPECT_EQ(http_.LiveObjects(), 0);
    model_.SetClientServices(nullptr);
    EXPECT_EQ(host_->References(), 1U);
  }

  // A session "u1" that was opened elsewhere: no request, no call of the host.
  void AdoptSession() { model_.SetUSID(u"u1"); }
  // The next call of the model, which gets this answer; an empty one is none.
  std::string CreateThrows(const std::u16string& answer = u"") {
    return Throws(answer, [this] { model_.CreateUserSession(u"Username=joe;"); });
  }
  std::string CloseThrows(const std::u16string& answer = u"") {
    return Throws(answer, [this] { model_.CloseUserSession(); });
  }
  std::string ExecuteThrows(IParameters* parameters = nullptr, const std::u16string& answer = u"") {
    return Throws(answer, [&] { model_.Execute(u"VBScript", u"a<b", parameters); });
  }
  std::string Throws(const std::u16string& answer, const std::function<void()>& call) {
    if (!answer.empty()) http_.Answer(answer);
    return Thrown(call);
  }
  // Session id and cookie in the form of shown_text.h.
  void ExpectSession(SessionState state, const std::string& id, const std::string& cookie) const {
    EXPECT_EQ(model_.State(), state);
    EXPECT_EQ(Shown(model_.ContextHandle()), id);
    EXPECT_EQ(Shown(model_.CookieHandle()), cookie);
  }

  FakeHttp http_;
  FakeHostPtr host_;
  ConnectionModelImpl model_;
};

}  // namespace qv
