// Writes a file under another name in the target's directory, then renames it to the target when it is
// complete. Until then, and after a failure, an existing target is unchanged.
#pragma once

#include <string>
#include <string_view>

#include "qvscriptwells/wide_string.h"
#include "system/unique_descriptor.h"

namespace qv {

class TargetFile {
 public:
  // Throws HttpFailure if no file can be created in the target's directory, and for a target that exists and
  // is neither a regular file nor a link (a link is replaced, never followed). Unless `replaces`, any
  // existing target fails with HTTP_E_FILE_EXISTS, here and in Commit.
  TargetFile(const WideString& path, bool replaces);
  // Removes the unfinished file.
  ~TargetFile();
  TargetFile(const TargetFile&) = delete;
  TargetFile& operator=(const TargetFile&) = delete;

  void Write(std::string_view bytes);
  // Syncs the file to the disk, then renames it to the target.
  void Commit();

 private:
  int Rename() const noexcept;

  std::string name_;
  bool replaces_;
  std::string freshName_;  // empty if there is nothing to remove
  UniqueDescriptor file_;
};

}  // namespace qv
