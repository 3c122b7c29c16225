// The journal of a batch: what was begun and how it ended, so that nothing runs twice.
#pragma once

#include <cstdint>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

#include "tools/batch/row_outcome.h"

namespace qv::cli {

// A text file. The first line holds a key of what is run; each further line was written with one call:
//   scriptwells-map 1 9c5bd2f0a1b2c3d4
//   start 17                   before the request is sent
//   done 17 "42"               the answer, as a JSON string
//   failed 18 "script fault 0x80040005 (5): no such customer"
//   unknown 19 "no answer"
//   unsent 20
// A row that was started and has no further line is unknown. What is written survives the end of the program
// at any moment, kill -9 too. It is not forced to the disk, so it may not survive a loss of power.
class Journal {
 public:
  // A new journal. Throws Failure (kLocal), also if the file exists.
  Journal(const std::string& path, const std::string& key);
  // Goes on with the journal of the same key, for this number of rows. Throws Failure (kLocal), also if
  // another program uses it, it is damaged, or it has another key. A last line without its end is removed.
  Journal(const std::string& path, const std::string& key, std::int64_t rows);
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  // Both throw Failure (kLocal) if the line cannot be written. Several threads may call them.
  void Start(std::int64_t row);
  void End(std::int64_t row, const RowOutcome& outcome);

  // Of the time before this object. Only one thread may call it.
  RowOutcome Earlier(std::int64_t row);
  Fate EarlierFate(std::int64_t row) const;

 private:
  // 16 bytes for each row when a journal is continued.
  struct Entry {
    std::int64_t offset = 0;  // of the last line
    Fate fate = Fate::kUnsent;
  };

  void Open(int flags);
  void Read(const std::string& key, std::int64_t rows);
  void ReadLine(const std::string& line, std::int64_t offset);
  void Write(const std::string& line);
  [[noreturn]] void Refuse(const std::string& reason) const;
  [[noreturn]] void RefuseOther() const;

  std::string path_;
  int descriptor_ = -1;
  std::mutex mutex_;  // of writing
  std::vector<Entry> entries_;
  std::ifstream reader_;
};

}  // namespace qv::cli
