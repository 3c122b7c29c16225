// Writes what passed between this program and a server, for people.
#pragma once

#include <fstream>
#include <iosfwd>
#include <string>

#include "scriptwells/options.h"

namespace qv::cli {

// Each exchange as one line of summary, the head and body of the request with "> " before each line, those of
// the answer with "< ", a line of times, and an empty line. Unsafe characters (unsafe_characters.h) are
// escaped.
class TraceFile {
 public:
  // Creates or empties the file, which only its owner may read, or uses standard error for "-". Throws
  // Failure (kLocal).
  explicit TraceFile(const std::string& path);
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;

  void Write(const scriptwells::Exchange& exchange);
  // Whether all was written so far.
  bool IsComplete() const;
  const std::string& Path() const noexcept { return path_; }

 private:
  std::string path_;
  std::ofstream file_;
  std::ostream& out_;
};

// The text for one exchange.
std::string TraceText(const scriptwells::Exchange& exchange);

}  // namespace qv::cli
