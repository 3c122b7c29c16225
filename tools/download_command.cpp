#include "tools/download_command.h"

#include <ostream>

#include "tools/failure.h"
#include "tools/local_files.h"
#include "tools/password.h"
#include "tools/saved_file.h"
#include "tools/server_address.h"
#include "tools/session_frame.h"

namespace qv::cli {

namespace {

// It travels as the value of a header.
void CheckSessionId(const std::string& usid) {
  for (const char c : usid)
    if (c <= ' ' || c > '~')
      throw Failure(ExitStatus::kLocal, "the session's id holds a character that no header carries");
}

}  // namespace

void DownloadCommand(const DownloadOptions& options, std::ostream& out, std::ostream& err) {
  const std::string url = CheckFileUrl(options.url);
  const std::string directory = CheckTargetDirectory(options.directory);
  CheckSessionId(options.usid);
  SessionSettings settings = CheckSettings(options);
  settings.server = options.server.empty() ? OriginOf(url) : CheckServer(options.server);
  settings.usid = options.usid;
  settings.http.replaceFiles = options.force;
  if (options.usid.empty()) settings.password = FindPassword(options);
  InSession(settings, options.json, err,
            [&](ScriptSession& session) { SaveFile(session, url, directory, options.json, out); });
}

}  // namespace qv::cli
