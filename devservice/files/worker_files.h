// What the worker process does with files on behalf of a script.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "devservice/values/script_job.h"

namespace qv::devservice {

// Largest content that a script may hold at once, in bytes.
inline constexpr std::size_t kLargestContent = std::size_t{64} << 20;

// Belongs to one run of one script, used by the worker's main thread. All failures are a FaultError whose
// code and words are for the script.
class WorkerFiles {
 public:
  explicit WorkerFiles(FileJob job) : job_(std::move(job)) {}

  // The upload that came with a ticket; null when there is none. Lives as long as this object.
  const ReadableFile* Find(std::string_view ticket) const;
  // The bytes of a file, which is opened anew.
  static std::string Read(const ReadableFile& file);

  // The address of a new ticket, and that of one which the session has.
  std::string NewUploadUrl();
  std::string UploadUrl(const std::string& ticket) const;

  // Both return the address of the published file.
  std::string Publish(const std::string& name, std::string_view content);
  std::string PublishUpload(const std::string& name, const std::string& ticket);

  // What came of all this so far.
  const MadeFiles& Made() const { return made_; }

 private:
  void CheckNewFile(const std::string& name) const;
  std::string AddFile(const std::string& name, const std::string& ticket);

  const FileJob job_;
  std::size_t written_ = 0;
  MadeFiles made_;
};

}  // namespace qv::devservice
