// Files of a server that commands download.
#pragma once

#include <iosfwd>
#include <string>

#include "qvscriptwells/variant.h"
#include "tools/transfer/script_session.h"

namespace qv::cli {

// Downloads `url` into `directory` in the open session and prints the file's path on `out`:
//   /tmp/report.pdf
//   {"path":"/tmp/report.pdf","bytes":1204}
// `url` and `directory` are from CheckFileUrl and CheckTargetDirectory. Throws Failure.
void SaveFile(ScriptSession& session, const std::string& url, const std::string& directory, bool asJson,
              std::ostream& out);

// The URL of a file that a script returned, checked by CheckFileUrl. Throws Failure (kAnswer) for any other
// answer.
std::string UrlOfAnswer(const Variant& answer);

}  // namespace qv::cli
