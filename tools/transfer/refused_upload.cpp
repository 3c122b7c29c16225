#include "tools/transfer/refused_upload.h"

namespace qv::cli {

std::string RefusedUpload(const scriptwells::Exchange& exchange) {
  const bool isSuccess = exchange.status >= 200 && exchange.status < 300;
  const bool isUpload = exchange.purpose == scriptwells::Purpose::kUpload;
  if (!isUpload || !exchange.failure.empty() || exchange.status == 0 || isSuccess) return {};
  return exchange.server + " answered the upload of " + exchange.file + " with the status " +
         std::to_string(exchange.status);
}

}  // namespace qv::cli
