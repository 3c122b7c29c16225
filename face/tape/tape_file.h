// A tape that is recorded: a file to which sessions of any process append.
#pragma once

#include <cstddef>
#include <string>

namespace scriptwells {

// Threads: one at a time; different ones at once, also on the same file.
class TapeFile {
 public:
  // Creates the file, for its owner only, or goes on with a tape that is there, and reserves a number for a
  // session. Throws Error (kLocalFile) for a file that is not a tape.
  explicit TapeFile(const std::string& path);
  ~TapeFile();
  TapeFile(const TapeFile&) = delete;
  TapeFile& operator=(const TapeFile&) = delete;

  std::size_t Session() const noexcept { return session_; }
  // Whole, whoever else appends. Throws Error (kLocalFile).
  void Append(const std::string& text);

 private:
  class Lock;

  void Begin();
  void Write(const std::string& text);
  std::string Tail(std::size_t bytes) const;
  std::size_t LastSession(std::size_t size) const;
  [[noreturn]] void Refuse(const std::string& reason) const;
  [[noreturn]] void RefuseError() const;

  std::string path_;
  int descriptor_;
  std::size_t session_ = 0;
};

}  // namespace scriptwells
