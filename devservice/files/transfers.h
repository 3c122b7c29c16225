// Uploads and downloads of files over HTTP.
#pragma once

#include <cstdint>

#include "devservice/files/sessions.h"
#include "devservice/files/spool.h"
#include "devservice/http/http_message.h"
#include "devservice/http/odd_forms.h"
#include "devservice/values/service_stats.h"

namespace qv::devservice {

// Thread-safe. Borrows its parts, which have to outlive it and the sinks that it makes.
class Transfers {
 public:
  Transfers(SessionTable& sessions, SpoolDirectory& spool, ServiceStats& stats, std::uint64_t maxUploadBytes)
      : sessions_(sessions), spool_(spool), stats_(stats), maxUploadBytes_(maxUploadBytes) {}

  // The plan for the body of a POST to the upload path: a sink that writes it to a file, or a refusal.
  BodyPlan PlanUpload(const HttpRequest& head, const TransferForms& forms);

  // Answers a GET or HEAD for the published file with this id.
  HttpAnswer Download(const HttpRequest& request, const std::string& id, const TransferForms& forms);

 private:
  SessionTable& sessions_;
  SpoolDirectory& spool_;
  ServiceStats& stats_;
  const std::uint64_t maxUploadBytes_;
};

}  // namespace qv::devservice
