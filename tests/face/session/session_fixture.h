// Sessions on a development service in this process.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "devservice/service.h"
#include "fixtures/temporary_directory.h"
#include "scriptwells/scriptwells.h"

namespace scriptwells::test {

class SessionTest : public ::testing::Test {
 protected:
  // The service accepts joe with the password "secret".
  void SetUp() override;

  // A session with the service's upload scripts as home directory, unless the options have one.
  Session Open(Options options = {});
  std::string Url() const { return service_->Url(); }
  // Upload scripts are written there when it is first asked for.
  std::filesystem::path Home();
  // How often the service has seen the action: "Execute", "CloseUserSession", ...
  int Seen(const std::string& action);

  const qv::TemporaryDirectory directory_;
  std::unique_ptr<qv::devservice::Service> service_;
};

}  // namespace scriptwells::test
