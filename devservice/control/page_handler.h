// Pages that the program around a service adds to it.
#pragma once

#include <string>

#include "devservice/http/http_message.h"

namespace qv::devservice {

// What such pages see of the service. Thread-safe.
class ServiceView {
 public:
  virtual ~ServiceView() = default;
  // The page of the control interface with this name ("counts", "requests", ...), without secrets.
  virtual HttpAnswer AskControl(const std::string& name, const HttpRequest& request) = 0;
  // Whether the text is the id of an open session, or a ticket or file of one.
  virtual bool KnowsId(const std::string& text) const = 0;
};

// Handles the requests for all paths that begin with "/page/", after their Host and Origin were checked; also
// those with DELETE. On the threads of connections, several at a time. Must not throw.
class PageHandler {
 public:
  virtual ~PageHandler() = default;
  // As RequestHandler.
  virtual BodyPlan PlanBody(const HttpRequest& head) = 0;
  virtual HttpAnswer Handle(const HttpRequest& request, ServiceView& service) = 0;
};

}  // namespace qv::devservice
