// Whether anybody has opened a file since this object was made.
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <string>

#include "system/unique_descriptor.h"

namespace qv::test {

class OpenWatch {
 public:
  explicit OpenWatch(const std::string& path)
      : events_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
        isReady_(inotify_add_watch(events_.Get(), path.c_str(), IN_OPEN | IN_ACCESS) >= 0) {}

  // False when the system cannot watch the file; nothing is known then.
  bool IsReady() const { return isReady_; }
  bool WasOpened() const {
    char event[512];
    return read(events_.Get(), event, sizeof event) > 0;
  }

 private:
  UniqueDescriptor events_;
  bool isReady_;
};

}  // namespace qv::test
