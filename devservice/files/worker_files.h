// The files of one run of a script, on the side of the worker process.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "devservice/values/script_job.h"

namespace qv::devservice {

// Largest content that a script may hold at once, in bytes.
inline constexpr std::size_t kLargestContent = std::size_t{64} << 20;

// Belongs to one run of one script, used by the worker's main thread. Every failure is a FaultError whose
// code and message are for the script.
class WorkerFiles {
 public:
  explicit WorkerFiles(FileJob job) : job_(std::move(job)) {}

  // The upload that came with a ticket; null when there is none. Lives as long as this object.
  const ReadableFile* Find(std::string_view ticket) const;
  // The bytes of a file.
  static std::string Read(const ReadableFile& file);

  // The address of a new ticket, and that of an existing ticket of the session.
  std::string NewUploadUrl();
  std::string UploadUrl(const std::string& ticket) const;

  // Both return the address of the published file.
  std::string Publish(const std::string& name, std::string_view content);
  std::string PublishUpload(const std::string& name, const std::string& ticket);

  // The tickets and files that the script has made so far.
  const MadeFiles& Made() const { return made_; }

 private:
  void CheckNewFile(const std::string& name) const;
  std::string AddFile(const std::string& name, const std::string& ticket);

  const FileJob job_;
  std::size_t written_ = 0;
  MadeFiles made_;
};

}  // namespace qv::devservice
