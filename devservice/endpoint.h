// Answers requests: finds the page, method or file by the path, and runs scripts in their sessions.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "devservice/control/odd_orders.h"
#include "devservice/files/sessions.h"
#include "devservice/files/spool.h"
#include "devservice/files/transfer_urls.h"
#include "devservice/files/transfers.h"
#include "devservice/http/access_rule.h"
#include "devservice/http/http_server.h"
#include "devservice/http/odd_forms.h"
#include "devservice/soap/namespaces.h"
#include "devservice/soap/soap_answer.h"
#include "devservice/soap/soap_request.h"
#include "devservice/values/service_stats.h"
#include "devservice/workers/worker_pool.h"

namespace qv::devservice {

// What an endpoint borrows; all of it has to outlive it.
struct EndpointParts {
  SessionTable& sessions;
  WorkerPool& pool;
  SpoolDirectory& spool;
  ServiceStats& stats;
  OddOrders& odds;
};

// Thread-safe. Every failure becomes an answer.
class Endpoint : public RequestHandler {
 public:
  Endpoint(const Namespaces& spaces, const EndpointParts& parts, AccessRule access,
           std::uint64_t maxUploadBytes);

  std::optional<HttpAnswer> Refuse(const HttpRequest& head) override;
  BodyPlan PlanBody(const HttpRequest& head) override;
  HttpAnswer Handle(const HttpRequest& request) override;

 private:
  HttpAnswer HandlePage(const HttpRequest& request) const;
  HttpAnswer HandleFile(const HttpRequest& request, const std::string& id);
  HttpAnswer DescribeService(const HttpRequest& request) const;
  HttpAnswer HandleService(const HttpRequest& request);
  HttpAnswer HandleSoap(const HttpRequest& request, const OddForms& forms);
  HttpAnswer Perform(const HttpRequest& http, const OddForms& forms);
  ScriptResult Carry(const SoapRequest& request, const TransferUrls& urls, const OddForms& forms);
  ScriptResult RunScript(const SoapRequest& request, const TransferUrls& urls, const OddForms& forms);
  HttpAnswer Fault(const FaultContent& fault, const OddForms& forms);
  bool RefusesStill(const std::string& path, int times);

  const Namespaces spaces_;
  const AccessRule access_;
  SessionTable& sessions_;
  WorkerPool& pool_;
  SpoolDirectory& spool_;
  ServiceStats& stats_;
  OddOrders& odds_;
  Transfers transfers_;
  std::mutex mutex_;
  std::map<std::string, int> refusals_;  // By path: how often it was refused.
};

}  // namespace qv::devservice
