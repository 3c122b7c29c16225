#include "face/session/session_fixture.h"

#include "devservice/files/upload_scripts.h"
#include "service_fixture.h"

namespace scriptwells::test {

void SessionTest::SetUp() {
  qv::devservice::ServiceOptions options = qv::devservice::testing::TestOptions();
  options.users = {{"joe", "secret"}};
  service_ = std::make_unique<qv::devservice::Service>(options);
  service_->Start();
}

std::filesystem::path SessionTest::Home() {
  qv::devservice::InstallUploadScripts(directory_.Path("home"), "http://quorvane.example");
  return directory_.Path("home");
}

Session SessionTest::Open(Options options) {
  if (options.homeDirectory.empty()) options.homeDirectory = Home();
  return Session(Url(), {"joe", "secret"}, std::move(options));
}

int SessionTest::Seen(const std::string& action) {
  const std::string answer =
      qv::devservice::testing::RawClient(service_->Port(), qv::devservice::testing::Request("GET /stats"))
          .Receive()
          .body;
  return nlohmann::json::parse(answer)["actions"][action].get<int>();
}

}  // namespace scriptwells::test
