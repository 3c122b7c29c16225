// Turns a failed call of the library into an exit status and a message for the user.
#pragma once

#include <string>

#include "qvscriptwells/com_error.h"
#include "tools/report/failure.h"
#include "tools/transfer/exchange_note.h"

namespace qv::cli {

enum class Phase { kOpen, kExecute, kDownload, kClose };

// `error` is the failure of the call, `note` what the HTTP component observed (empty if nothing was sent).
Failure ExplainFailure(Phase phase, const _com_error& error, const ExchangeNote& note);

// The same for a script document, which `file` names.
Failure ExplainDocumentFailure(const std::string& file, const _com_error& error, const ExchangeNote& note);

}  // namespace qv::cli
