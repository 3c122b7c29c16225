// From what a call of the library left behind to what the user is told: exit status and words.
#pragma once

#include <string>

#include "qvscriptwells/com_error.h"
#include "tools/failure.h"
#include "tools/reporting_http.h"

namespace qv::cli {

enum class Phase { kOpen, kExecute, kDownload, kClose };

// `error` is what the call gave, `note` what the transport saw of the exchange (empty when there was none).
Failure ExplainFailure(Phase phase, const _com_error& error, const ExchangeNote& note);

// The same of the execution of a script document, which `file` names.
Failure ExplainDocumentFailure(const std::string& file, const _com_error& error, const ExchangeNote& note);

}  // namespace qv::cli
