// A regular file that is sent as a body: its size is fixed when it is opened, and the file must not become
// shorter.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "qvscriptwells/wide_string.h"
#include "system/regular_file.h"

namespace qv {

// A path in the system's form (NativePath in native_path.h). Throws HttpFailure (E_INVALIDARG) for an empty
// path and for one with a NUL.
std::string NativeFileName(const WideString& path);

class SourceFile {
 public:
  // Throws HttpFailure when the file cannot be opened or is not a regular one.
  explicit SourceFile(const WideString& path);

  std::int64_t Size() const noexcept { return file_.size; }
  // The next piece, empty at the end. Bytes that are appended after opening are not sent. Throws HttpFailure
  // (HTTP_E_READ_FAULT) when the file cannot be read or has become shorter. The view is valid until the next
  // call.
  std::string_view Next();

 private:
  std::string name_;
  RegularFile file_;
  std::int64_t left_ = 0;
  std::vector<char> buffer_;
};

}  // namespace qv
