// The control interface: pages for the tests of a program, which show what it sent and order faults for it.
// Also the way to the pages of the program around the service.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "devservice/control/odd_orders.h"
#include "devservice/control/ordered_fault.h"
#include "devservice/control/page_handler.h"
#include "devservice/control/request_log.h"
#include "devservice/http/http_server.h"
#include "devservice/values/service_stats.h"

namespace qv::devservice {

// Stands before the handler of a service: answers the pages below its own path, and passes on all other
// requests, which it remembers. The path holds a random token, since everybody on this machine can connect,
// and the pages show passwords. Thread-safe.
class Control : public RequestHandler, public ServiceView {
 public:
  // All is borrowed; the handler carries the odd orders out.
  struct Parts {
    RequestHandler& handler;
    OddOrders& odds;
    ServiceStats& stats;
    PageHandler* page = nullptr;                        // null: there is none
    std::function<bool(const std::string&)> knowsId{};  // see ServiceView
  };

  // Without a path of its own unless that is wanted. Throws FaultError if the system has no random numbers.
  Control(Parts parts, bool hasPath);

  // "/control/TOKEN", or empty.
  const std::string& Path() const { return path_; }

  std::optional<HttpAnswer> Refuse(const HttpRequest& head) override;
  BodyPlan PlanBody(const HttpRequest& head) override;
  HttpAnswer Handle(const HttpRequest& request) override;

  HttpAnswer AskControl(const std::string& name, const HttpRequest& request) override;
  bool KnowsId(const std::string& text) const override { return parts_.knowsId(text); }

 private:
  bool Owns(std::string_view path) const;
  bool IsForPage(std::string_view path) const;
  HttpAnswer Answer(std::string_view page, const HttpRequest& request, bool masked);
  HttpAnswer Counts() const;
  HttpAnswer Events();
  HttpAnswer Order(const HttpRequest& request);
  HttpAnswer OrderOdd(const HttpRequest& request);
  HttpAnswer Perform(const HttpRequest& request, const std::string& action);
  HttpAnswer HandleWith(const OrderedFault& fault, const HttpRequest& request, const std::string& action);

  const std::string path_;
  const Parts parts_;
  RequestLog log_;
  FaultOrders orders_;
  std::shared_ptr<std::atomic<int>> watchers_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace qv::devservice
