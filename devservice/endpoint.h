// From a request to an answer: paths, sessions, scripts.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "devservice/http_server.h"
#include "devservice/namespaces.h"
#include "devservice/odd_forms.h"
#include "devservice/service_stats.h"
#include "devservice/sessions.h"
#include "devservice/soap_answer.h"
#include "devservice/soap_request.h"
#include "devservice/worker_pool.h"

namespace qv::devservice {

// Thread-safe. Borrows the three parts, which have to outlive it.
class Endpoint {
 public:
  Endpoint(const Namespaces& spaces, SessionTable& sessions, WorkerPool& pool, ServiceStats& stats)
      : spaces_(spaces), sessions_(sessions), pool_(pool), stats_(stats) {}

  // Answers any request; every failure is an answer too.
  HttpAnswer Handle(const HttpRequest& request);

 private:
  HttpAnswer HandlePage(const HttpRequest& request) const;
  HttpAnswer HandleSoap(const HttpRequest& request, const OddForms& forms);
  HttpAnswer Perform(const SoapRequest& request, const OddForms& forms);
  ScriptResult Carry(const SoapRequest& request);
  ScriptResult RunScript(const SoapRequest& request);
  HttpAnswer Fault(const FaultContent& fault, const OddForms& forms);
  bool RefusesStill(const std::string& path);
  std::string StatsText() const;

  const Namespaces spaces_;
  SessionTable& sessions_;
  WorkerPool& pool_;
  ServiceStats& stats_;
  std::mutex mutex_;
  std::map<std::string, int> refusals_;  // By path: how often it was refused.
};

}  // namespace qv::devservice
