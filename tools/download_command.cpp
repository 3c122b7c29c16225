#include "tools/commands.h"

#include <ostream>
#include <string_view>

#include "tools/report/failure.h"
#include "tools/system/local_files.h"
#include "tools/transfer/saved_file.h"
#include "tools/transfer/session_frame.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

namespace {

// A server sends a session's files to that session only, and this one was opened for the download.
Failure WithHintAtSessions(const Failure& failure, const DownloadOptions& options) {
  const char* kind = failure.OwnKind();
  const bool isRefused = kind != nullptr && std::string_view(kind) == "download refused";
  if (!isRefused || !options.usid.empty()) return failure;
  return failure.With(
      " (a file of another session is fetched with that session's id, --usid, or by run --save)");
}

}  // namespace

void DownloadCommand(const DownloadOptions& options, std::ostream& out, std::ostream& err) {
  const std::string serverOfFile = ServerOfFile(options.url);
  const std::string directory = CheckTargetDirectory(options.directory);
  SessionSettings settings = SettingsOf(options);
  if (options.server.empty()) settings.server = serverOfFile;
  settings.options.replaceFiles = options.force;
  settings.options.hiddenFiles = options.force;
  TakePassword(options, settings);
  try {
    InSession(settings, Reporter(err, FormOf(options.json)),
              [&](ScriptSession& session) { SaveFile(session, options.url, directory, options.json, out); });
  } catch (const Failure& failure) {
    throw WithHintAtSessions(failure, options);
  }
}

}  // namespace qv::cli
