// The files of one run of a script, on the side of the service.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "devservice/files/session_files.h"
#include "devservice/files/spool.h"
#include "devservice/files/transfer_urls.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

// Belongs to one run of one script. Keeps the files that it may read while it runs. The destructor deletes
// files that it wrote and did not publish.
class ScriptFiles {
 public:
  ScriptFiles(std::shared_ptr<SessionFiles> session, SpoolDirectory& spool);
  ~ScriptFiles();
  ScriptFiles(const ScriptFiles&) = delete;
  ScriptFiles& operator=(const ScriptFiles&) = delete;

  // Fills in the files of the job. Throws FaultError with kUnknownTicket when a parameter has a ticket
  // for which the session holds no file.
  void Prepare(ScriptJob& job, const TransferUrls& urls);

  // Gives the session the tickets and the published files of a script that succeeded. Throws FaultError with
  // kTooManyFiles when there is no room or the session has ended meanwhile, kUnavailable when the files are
  // missing.
  void Keep(const MadeFiles& made);

 private:
  void PrepareParameter(const Parameter& parameter, FileJob& job);
  std::shared_ptr<const SpooledFile> TakeFile(const NewFile& entry);

  const std::shared_ptr<SessionFiles> session_;
  const std::string newFilesPath_;
  std::size_t taken_ = 0;                               // Of the files that the worker wrote.
  std::map<std::string, SessionFiles::File> readable_;  // By ticket.
};

}  // namespace qv::devservice
