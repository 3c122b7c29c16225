#include "devservice/files/script_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "devservice/values/fault_codes.h"
#include "devservice/values/names.h"
#include "devservice/values/random_id.h"

namespace qv::devservice {
namespace {

std::shared_ptr<const SpooledFile> AdoptFile(const std::string& path) {
  struct stat info;
  if (lstat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return nullptr;
  return std::make_shared<const SpooledFile>(path, static_cast<std::uint64_t>(info.st_size));
}

}  // namespace

ScriptFiles::ScriptFiles(std::shared_ptr<SessionFiles> session, SpoolDirectory& spool)
    : session_(std::move(session)), newFilesPath_(spool.NewPath()) {}

// The worker numbers its files from 1; those that were taken have been renamed.
ScriptFiles::~ScriptFiles() {
  for (std::size_t number = taken_ + 1; unlink(NumberedPath(newFilesPath_, number).c_str()) == 0; ++number) {
  }
}

void ScriptFiles::Prepare(ScriptJob& job, const TransferUrls& urls) {
  for (const Parameter& parameter : job.parameters) {
    if (parameter.type == kFileTicketType) PrepareParameter(parameter, job.files);
  }
  job.files.tickets = session_->Tickets();
  job.files.ticketsLeft = session_->TicketsLeft();
  job.files.newFilesLeft = session_->PublishedLeft();
  job.files.newFilesPath = newFilesPath_;
  job.files.uploadUrl = urls.upload;
  job.files.fileUrl = urls.file;
}

void ScriptFiles::PrepareParameter(const Parameter& parameter, FileJob& job) {
  const std::string& ticket = parameter.text;
  SessionFiles::File file = session_->Uploaded(ticket);
  if (!file) {
    const char* why = session_->HasTicket(ticket) ? ", for which nothing was uploaded."
                                                  : ", which is not one of this session.";
    throw FaultError(kUnknownTicket,
                     "The parameter \"" + parameter.name + "\" has the file ticket \"" +
                         ticket.substr(0, 100) + "\"" + why,
                     "request");
  }
  if (!readable_.emplace(ticket, file).second) return;
  job.readable.push_back({ticket, file->Path(), file->Size()});
}

std::shared_ptr<const SpooledFile> ScriptFiles::TakeFile(const NewFile& entry) {
  if (!IsRandomId(entry.id) || !IsFileName(entry.name)) return nullptr;
  if (entry.ticket.empty()) {
    const std::string path = NumberedPath(newFilesPath_, ++taken_);
    const std::string kept = newFilesPath_ + "-" + std::to_string(taken_);
    return rename(path.c_str(), kept.c_str()) == 0 ? AdoptFile(kept) : nullptr;
  }
  const auto found = readable_.find(entry.ticket);
  return found == readable_.end() ? nullptr : found->second;
}

void ScriptFiles::Keep(const MadeFiles& made) {
  std::map<std::string, PublishedFile> published;
  for (const NewFile& entry : made.files) {
    std::shared_ptr<const SpooledFile> file = TakeFile(entry);
    if (!file) throw FaultError(kUnavailable, "A file of the script was lost.", "service");
    published[entry.id] = {entry.name, std::move(file)};
  }
  if (made.tickets.empty() && published.empty()) return;
  if (session_->Add(made.tickets, std::move(published))) return;
  throw FaultError(kTooManyFiles, "The session has ended, or has no room for the script's tickets and files.",
                   "session");
}

}  // namespace qv::devservice
