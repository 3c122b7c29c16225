// Files that a server holds, brought into a directory of this machine.
#pragma once

#include <iosfwd>
#include <string>

#include "qvscriptwells/variant.h"
#include "tools/script_session.h"

namespace qv::cli {

// Downloads `url` into `directory` in the open session and prints the file's path on `out`:
//   /tmp/report.pdf
//   {"path":"/tmp/report.pdf","bytes":1204}
// `url` and `directory` as CheckFileUrl and CheckTargetDirectory give them. Throws Failure.
void SaveFile(ScriptSession& session, const std::string& url, const std::string& directory, bool asJson,
              std::ostream& out);

// The address of a file that a script answered, as CheckFileUrl gives it. Throws Failure (kAnswer) for
// another answer.
std::string UrlOfAnswer(const Variant& answer);

}  // namespace qv::cli
