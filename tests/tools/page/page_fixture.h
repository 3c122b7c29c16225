// A running service with its page, and the requests of its browser.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "devservice/service.h"
#include "fixtures/temporary_directory.h"
#include "raw_client.h"
#include "tools/page/page.h"
#include "tools/service/private_home.h"

namespace qv::cli::testing {

using Json = nlohmann::json;

struct PageAnswer {
  int status = 0;
  std::string head;
  std::string body;

  Json Parsed() const { return Json::parse(body); }
  // Of an answer that refuses.
  std::string Message() const { return Parsed().at("error").at("message"); }
};

class PageTest : public ::testing::Test {
 protected:
  void TearDown() override;

  // Without a call of it the first request starts a service without users.
  void Start(std::vector<devservice::ServiceUser> users = {},
             const std::function<void(devservice::ServiceOptions&, PagePlace&)>& change = {});
  void StopService();

  // One request on its own connection, as the page sends it: with cookie and origin; `headers` are more
  // lines.
  PageAnswer Ask(const std::string& method, const std::string& path, const std::string& body = "",
                 const std::string& headers = "");
  // The same without what shows that it comes from the page.
  PageAnswer AskPlainly(const std::string& method, const std::string& path, const std::string& body = "",
                        const std::string& headers = "");
  PageAnswer Post(const std::string& path, const Json& body) { return Ask("POST", path, body.dump()); }
  // The bytes of such a request.
  std::string Bytes(const std::string& method, const std::string& path, const std::string& body,
                    const std::string& headers) const;

  int OpenSession(const std::string& user = "page", const std::string& password = "");
  // A run in the session 1, which is opened if there is none.
  Json Run(const std::string& code, const Json& parameters = Json::array());
  Json ValueOf(const std::string& code, const Json& parameters = Json::array());
  int Upload(const std::string& name, const std::string& content);

  std::string Host() const { return "127.0.0.1:" + std::to_string(service_->Port()); }
  std::string Token() const { return address_.substr(address_.find('#') + 1); }
  void Enter();

  std::unique_ptr<PrivateHome> home_;
  std::unique_ptr<Page> page_;
  std::unique_ptr<devservice::Service> service_;
  std::string address_;
  std::string cookie_;
  bool hasSession_ = false;
  std::string all_;  // every byte that was answered
};

}  // namespace qv::cli::testing
