// Files of a server that commands download.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/transfer/script_session.h"

namespace qv::cli {

// Downloads `url` into `directory` in the open session and prints the file's path on `out`:
//   /tmp/report.pdf
//   {"path":"/tmp/report.pdf","bytes":1204}
// Throws Failure.
void SaveFile(ScriptSession& session, const std::string& url, const std::string& directory, bool asJson,
              std::ostream& out);

// The URL of a file that a script returned. Throws Failure (kAnswer) for any other answer.
std::string UrlOfAnswer(const scriptwells::Value& answer);

// "http://host:port" of a file's URL. Throws Failure (kLocal) for one that cannot be downloaded.
std::string ServerOfFile(const std::string& url);

}  // namespace qv::cli
