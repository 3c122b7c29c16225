// The client's logic with a host that notes its calls, and a look at what its model sends.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/module.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_http.h"
#include "fixtures/known_failures.h"
#include "fixtures/soap_texts.h"
#include "fixtures/speaking_host.h"
#include "fixtures/thrown.h"
#include "recordlist/register_formaters.h"
#include "session/qv_scriptwells_impl.h"

namespace qv {

class ClientLogic : public testing::Test {
 protected:
  ClientLogic()
      : services_(new SpeakingServices(&log_)), provider_(new SpeakingProvider(&log_, services_->Unknown())) {
    FillFormaters();
    services_->Answer("GetUsid", Nulls());
    Restart();
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

  // A new client, with nothing noted. The one before has to release the module.
  void Restart() {
    client_.reset();
    EXPECT_EQ(ModuleLocks(), 0);
    client_ = std::make_unique<QvScriptwellsImpl>();
    log_.clear();
  }
  std::string Init(IUnknown* provider) {
    return Thrown([&] { client_->Init(provider); });
  }
  std::string Init() { return Init(provider_.get()); }
  // Ready for ConnectionModel, with nothing noted.
  void MakeReady() {
    ASSERT_EQ(Init(), "nothing");
    client_->put_ServerName(u"http://srv");
    log_.clear();
  }
  std::string ReadModel() {
    return Thrown([this] { client_->get_ConnectionModel(); });
  }
  // The session that a model holds: what it sends when it closes it; "none" when it sends nothing.
  static std::string SessionOf(const IConnectionModelPtr& model) {
    FakeHttp http;
    http.Answer(kSessionClosed);
    model->CloseUserSession();
    if (http.Bodies().empty()) return "none";
    const std::string& body = http.Bodies()[0];
    const std::string opening = "<usid xsi:type=\"xsd:string\">";
    const std::size_t start = body.find(opening) + opening.size();
    return body.substr(start, body.find("</usid>") - start);
  }
  std::string SessionOfModel() { return SessionOf(client_->get_ConnectionModel()); }
  // Where a model sends its requests.
  static std::string ServerOf(const IConnectionModelPtr& model) {
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
