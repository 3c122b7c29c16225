// A file that appears at its place only when it is whole: written beside the target under another name, then
// renamed to it. Whatever stood there stays as it was until then, and for good when the writing fails.
#pragma once

#include <string>
#include <string_view>

#include "qvscriptwells/wide_string.h"
#include "system/unique_descriptor.h"

namespace qv {

class TargetFile {
 public:
  // Throws HttpFailure when no file can be made in the target's directory, and for a target that exists and
  // is neither a regular file nor a link (a link is replaced, never followed). Unless `replaces`, any target
  // that exists is refused with HTTP_E_FILE_EXISTS, here and in Commit.
  TargetFile(const WideString& path, bool replaces);
  // Removes the unfinished file.
  ~TargetFile();
  TargetFile(const TargetFile&) = delete;
  TargetFile& operator=(const TargetFile&) = delete;

  void Write(std::string_view bytes);
  // Puts the file in its place, with what was written on the disk before it is seen there.
  void Commit();

 private:
  int Rename() const noexcept;

  std::string name_;
  bool replaces_;
  std::string freshName_;  // empty when there is nothing to remove
  UniqueDescriptor file_;
};

}  // namespace qv
