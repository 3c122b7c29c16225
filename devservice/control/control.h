// The control interface: pages for the tests of a program, which show what it sent and order faults for it.
#pragma once

#include <string>
#include <string_view>

#include "devservice/control/odd_orders.h"
#include "devservice/control/ordered_fault.h"
#include "devservice/control/request_log.h"
#include "devservice/http/http_server.h"
#include "devservice/values/service_stats.h"

namespace qv::devservice {

// Stands before the handler of a service: answers the pages below its own path, and passes on all other
// requests, which it remembers. The path holds a random token, since everybody on this machine can connect,
// and the pages show passwords. Thread-safe.
class Control : public RequestHandler {
 public:
  // `handler`, `odds` and `stats` are borrowed; the handler carries the odd orders out. Throws FaultError if
  // the system has no random numbers.
  Control(RequestHandler& handler, OddOrders& odds, ServiceStats& stats);

  // "/control/TOKEN"
  const std::string& Path() const { return path_; }

  std::optional<HttpAnswer> Refuse(const HttpRequest& head) override;
  BodyPlan PlanBody(const HttpRequest& head) override;
  HttpAnswer Handle(const HttpRequest& request) override;

 private:
  bool Owns(std::string_view path) const;
  HttpAnswer HandlePage(const HttpRequest& request);
  HttpAnswer Counts() const;
  HttpAnswer Events() const;
  HttpAnswer Order(const HttpRequest& request);
  HttpAnswer OrderOdd(const HttpRequest& request);
  HttpAnswer HandleWith(const OrderedFault& fault, const HttpRequest& request, const std::string& action);

  const std::string path_;
  RequestHandler& handler_;
  OddOrders& odds_;
  ServiceStats& stats_;
  RequestLog log_;
  FaultOrders orders_;
};

}  // namespace qv::devservice
