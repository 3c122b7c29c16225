#include <nlohmann/json.hpp>

#include "face/testing/control_client.h"
#include "face/testing/service_start.h"
#include "scriptwells/error.h"
#include "scriptwells/testing.h"

namespace scriptwells {

namespace {

using nlohmann::json;

constexpr const char* kKinds[] = {"fault", "status", "cut", "silence"};  // as in OrderedFault::Kind

// What `read` makes of the page.
template <typename Read>
auto ReadPage(const testing::ControlClient& client, const char* page, const Read& read) {
  const std::string text = client.Get(page);
  try {
    return read(json::parse(text));
  } catch (const json::exception& error) {
    throw Error(Phase::kAnswer,
                std::string("the development service answered something else: ") + error.what());
  }
}

SeenRequest RequestIn(const json& seen) {
  return {seen.at("method").get<std::string>(), seen.at("target").get<std::string>(),
          seen.at("action").get<std::string>(), seen.at("body").get<std::string>()};
}

}  // namespace

class DevelopmentService::Impl {
 public:
  explicit Impl(const ServiceOptions& options)
      : service(testing::StartService(options)),
        control(service.control),
        home(service.home),
        user(options.users.empty() ? Credentials{"tester"} : options.users.front()) {}

  void Post(const char* page, const json& order) const {
    std::string text;
    try {
      text = order.dump();
    } catch (const json::exception&) {
      throw Error(Phase::kAddress, "the fault's text or action is not valid UTF-8");
    }
    control.Post(page, text);
  }

  const testing::StartedService service;
  const testing::ControlClient control;
  const std::filesystem::path home;
  const Credentials user;
};

DevelopmentService::DevelopmentService(const ServiceOptions& options)
    : impl_(std::make_unique<Impl>(options)) {}
DevelopmentService::~DevelopmentService() = default;
DevelopmentService::DevelopmentService(DevelopmentService&& other) noexcept = default;
DevelopmentService& DevelopmentService::operator=(DevelopmentService&& other) noexcept = default;

const std::string& DevelopmentService::Url() const noexcept {
  return impl_->service.url;
}

const std::filesystem::path& DevelopmentService::HomeDirectory() const noexcept {
  return impl_->home;
}

Session DevelopmentService::Connect(Options options) const {
  if (options.homeDirectory.empty()) options.homeDirectory = HomeDirectory();
  return Session(Url(), impl_->user, std::move(options));
}

std::map<std::string, std::int64_t> DevelopmentService::Counts() const {
  return ReadPage(impl_->control, "/counts", [](const json& counts) {
    return counts.at("actions").get<std::map<std::string, std::int64_t>>();
  });
}

std::vector<SeenRequest> DevelopmentService::Requests() const {
  return ReadPage(impl_->control, "/requests", [](const json& page) {
    std::vector<SeenRequest> requests;
    for (const json& seen : page.at("requests")) requests.push_back(RequestIn(seen));
    return requests;
  });
}

void DevelopmentService::Order(const OrderedFault& fault) {
  impl_->Post("/faults", {{"kind", kKinds[static_cast<std::size_t>(fault.kind)]},
                          {"number", fault.number},
                          {"text", fault.text},
                          {"action", fault.action}});
}

void DevelopmentService::Order(const OddOrder& order) {
  json page = {{"names", order.names}, {"action", order.action}, {"seed", order.seed}};
  if (order.chance == 1)
    page["requests"] = order.requests;
  else
    page["chance"] = order.chance;
  impl_->Post("/odd", page);
}

}  // namespace scriptwells
