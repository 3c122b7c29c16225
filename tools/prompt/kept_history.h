// The shell's history without the secrets of its session.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "face/exchange/masking.h"
#include "tools/prompt/history_file.h"

namespace qv::cli {

class KeptHistory {
 public:
  explicit KeptHistory(HistoryFile file) : file_(std::move(file)) {}

  // No entry with one of them is kept from now on. Those that were added before, when nobody knew, leave the
  // file, unless the secret has less than 4 bytes.
  void Learn(const std::vector<std::string>& secrets);
  std::vector<std::string> Load() const { return file_.Load(); }
  // Nothing for an entry that must not be kept.
  void Add(const std::string& entry) const;

 private:
  HistoryFile file_;
  std::set<std::string> known_;
  scriptwells::Masking secrets_;
};

}  // namespace qv::cli
