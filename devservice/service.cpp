#include "devservice/service.h"

#include <unistd.h>

#include <stdexcept>

#include "devservice/control/control.h"
#include "devservice/endpoint.h"
#include "devservice/files/sessions.h"
#include "devservice/files/spool.h"
#include "devservice/http/http_server.h"
#include "devservice/values/service_stats.h"
#include "devservice/workers/worker_pool.h"

namespace qv::devservice {
namespace {

void CheckOdds(const std::vector<OddOrder>& orders) {
  try {
    for (const OddOrder& order : orders) CheckOddOrder(order);
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(error.what());
  }
}

void CheckOptions(const ServiceOptions& options) {
  if (options.port < 0 || options.port > 65535)
    throw std::runtime_error("The port is not between 0 and 65535.");
  if (options.workerCommand.empty()) throw std::runtime_error("No command for the script worker is set.");
  CheckOdds(options.odds);
  if (options.maxWorkers == 0 || options.maxConnections == 0) {
    throw std::runtime_error("The service needs at least one worker and one connection.");
  }
  const std::string& program = options.workerCommand.front();
  if (program.find('/') != std::string::npos && access(program.c_str(), X_OK) != 0) {
    throw std::runtime_error("The script worker \"" + program + "\" is no program that can be run.");
  }
}

std::vector<std::string> NamesOf(const ServiceOptions& options) {
  std::vector<std::string> names = options.names;
  names.push_back(options.host);
  return names;
}

}  // namespace

// The parts in the order in which they depend on each other.
class Service::Running {
 public:
  Running(const ServiceOptions& options, StartedWorker first)
      : odds_(options.odds),
        sessions_(options.users, {options.maxSessions, options.maxTickets}),
        pool_({options.workerCommand, options.maxWorkers, options.scriptTimeLimit, options.scriptMemoryLimit,
               options.console},
              stats_, std::move(first)),
        endpoint_(Namespaces(options.namespaceHost), {sessions_, pool_, spool_, stats_, odds_},
                  AccessRule(NamesOf(options)), options.maxUploadBytes),
        control_(MakeControl(options)),
        server_({options.host, options.port, options.maxRequestBytes, options.maxConnections,
                 options.keepAliveTime, options.stallTime, options.requestTime, options.maxBodyBytes},
                stats_, control_ ? static_cast<RequestHandler&>(*control_) : endpoint_) {}

  // Scripts first: the server waits for its handlers.
  ~Running() {
    pool_.Stop();
    server_.Stop();
  }

  int Port() const { return server_.Port(); }
  std::string ControlPath() const { return control_ ? control_->Path() : ""; }

 private:
  std::unique_ptr<Control> MakeControl(const ServiceOptions& options) {
    if (!options.control && options.page == nullptr) return nullptr;
    const auto knowsId = [this](const std::string& text) {
      return sessions_.Find(text) != nullptr || sessions_.KnowsTicket(text) || sessions_.KnowsPublished(text);
    };
    return std::make_unique<Control>(Control::Parts{endpoint_, odds_, stats_, options.page, knowsId},
                                     options.control);
  }

  ServiceStats stats_;
  OddOrders odds_;
  SpoolDirectory spool_;  // Outlives all that own files in it.
  SessionTable sessions_;
  WorkerPool pool_;
  Endpoint endpoint_;
  std::unique_ptr<Control> control_;
  HttpServer server_;
};

Service::Service(ServiceOptions options) : options_(std::move(options)) {}
Service::~Service() = default;

void Service::Start(StartedWorker first) {
  if (running_) return;
  CheckOptions(options_);
  running_ = std::make_unique<Running>(options_, std::move(first));
}

void Service::Stop() {
  running_.reset();
}

int Service::Port() const {
  return running_ ? running_->Port() : 0;
}

std::string Service::Url() const {
  if (!running_) return "";
  const bool bracketed = options_.host.find(':') != std::string::npos;
  const std::string host = bracketed ? "[" + options_.host + "]" : options_.host;
  return "http://" + host + ":" + std::to_string(Port());
}

std::string Service::ControlUrl() const {
  const std::string path = running_ ? running_->ControlPath() : "";
  return path.empty() ? "" : Url() + path;
}

}  // namespace qv::devservice
