// The file that keeps the shell's history.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qv::cli {

// XDG_STATE_HOME/scriptwells/history, or ~/.local/state/scriptwells/history; empty if neither is known.
std::string UsualHistoryFile();

// Only its owner may read it. A file that cannot be read or written is no failure: the shell goes on without
// it.
class HistoryFile {
 public:
  // Empty: no file.
  explicit HistoryFile(std::string path) : path_(std::move(path)) {}

  // The last 1000 entries, oldest first. Shortens a file that has become long.
  std::vector<std::string> Load() const;
  // Several shells may add to one file.
  void Add(const std::string& entry) const;
  // Removes the entries for which `isUnwanted`.
  void Remove(const std::function<bool(const std::string&)>& isUnwanted) const;

 private:
  void Replace(const std::vector<std::string>& entries) const;

  std::string path_;
};

}  // namespace qv::cli
