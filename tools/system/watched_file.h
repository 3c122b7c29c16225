// Waits until a file is saved.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// Editors write a file in place, or write another one and rename it. Both are seen, since the folder is
// watched; for a symbolic link, the folder of the file that it names, too.
class WatchedFile {
 public:
  // Begins to watch. Throws Failure (kLocal) if the folder cannot be watched.
  explicit WatchedFile(const std::string& file);
  ~WatchedFile();
  WatchedFile(const WatchedFile&) = delete;
  WatchedFile& operator=(const WatchedFile&) = delete;

  // Waits until the file was saved since the last call, and then until nothing happens to it for a moment.
  // False after SIGINT or SIGTERM. Throws Failure (kLocal) if the folder is gone.
  bool WaitForSave();

 private:
  struct Entry {
    int folder;  // its number as the system gave it
    std::string name;
  };

  void Watch(const std::string& file);
  bool WasSaved();

  int descriptor_ = -1;
  std::string file_;
  std::vector<Entry> entries_;
};

}  // namespace qv::cli
