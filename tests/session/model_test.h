// A connection model with a server, a host and an HTTP component in memory.
#pragma once

#include <gtest/gtest.h>

#include "fixtures/fake_host.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "session/connection_model_impl.h"
#include "session/session_answers.h"

namespace qv {

class ModelTest : public testing::Test {
 protected:
  ModelTest() : host_(new FakeHost) {
    EnsureFormaters();
    model_.SetServer(u"http://srv", u"");
    model_.SetClientServices(host_->Unknown());
  }

  // A session "u1" that was opened elsewhere: no request, no word to the host.
  void AdoptSession() { model_.SetUSID(u"u1"); }
  std::string CreateThrows(const WideString& connectionString = u"Username=joe;") {
    return Thrown([&] { model_.CreateUserSession(connectionString); });
  }
  std::string CloseThrows() {
    return Thrown([this] { model_.CloseUserSession(); });
  }
  std::string ExecuteThrows(IParameters* parameters = nullptr) {
    return Thrown([&] { model_.Execute(u"VBScript", u"a<b", parameters); });
  }

  FakeHttp http_;
  FakeHostPtr host_;
  ConnectionModelImpl model_;
};

using Lines = std::vector<std::string>;

}  // namespace qv
