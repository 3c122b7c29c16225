// The client's logic with a host that notes what it is asked, and a look at what its model sends.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/module.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/speaking_host.h"
#include "fixtures/thrown.h"
#include "session/qv_scriptwells_impl.h"
#include "session/session_answers.h"

namespace qv {

inline constexpr char kNoPointer[] = "_com_error 0x80004003 <null>";

class ClientLogic : public testing::Test {
 protected:
  ClientLogic()
      : services_(new SpeakingServices(&log_)), provider_(new SpeakingProvider(&log_, services_->Unknown())) {
    EnsureFormaters();
    services_->Answer("GetUsid", Nulls());
    client_.reset(new QvScriptwellsImpl);
  }
  void TearDown() override {
    client_.reset();
    provider_.reset();
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 0);
    EXPECT_EQ(SpeakingProvider::Live(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
    EXPECT_EQ(ModuleLocks(), 0);
  }

  std::string Init(IUnknown* provider) {
    return Thrown([&] { client_->Init(provider); });
  }
  // Ready for ConnectionModel, with nothing noted.
  void MakeReady() {
    ASSERT_EQ(Init(provider_.get()), "nothing");
    client_->put_ServerName(u"http://srv");
    log_.clear();
  }
  std::string ReadModel() {
    return Thrown([this] { client_->get_ConnectionModel(); });
  }
  // The session that a model holds: what it sends when it closes it; "none" when nothing goes out.
  std::string SessionOf(IConnectionModel* model) {
    FakeHttp http;
    http.Answer(kSessionClosed);
    model->CloseUserSession();
    if (http.Bodies().empty()) return "none";
    const std::string& body = http.Bodies()[0];
    const std::string opening = "<usid xsi:type=\"xsd:string\">";
    const std::size_t start = body.find(opening) + opening.size();
    return body.substr(start, body.find("</usid>") - start);
  }
  // Where a model sends its requests.
  std::string ServerOf(IConnectionModel* model) {
    FakeHttp http;
    EXPECT_EQ(model->SetUSID(u"u"), S_OK);
    http.Answer(kSessionClosed);
    model->CloseUserSession();
    const std::vector<std::string> opened = http.CallsNamed("Open(");
    return opened.empty() ? "nowhere" : opened[0];
  }

  HostLog log_;
  SpeakingServicesPtr services_;
  SpeakingProviderPtr provider_;
  std::unique_ptr<QvScriptwellsImpl> client_;
};

}  // namespace qv
