// Makes system calls of this thread fail, and notes what they say about files. The test program has its own
// connect(), fsync(), rename(), renameat2() and link(), which come before the C library's, for libcurl too.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace qv::test {

class SystemCalls {
 public:
  SystemCalls();
  ~SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  // The next `times` calls of this function fail with `error`; those after them work again.
  void Fail(const std::string& function, int error, int times);
  // How many of those have not been made yet.
  int Left(const std::string& function) const { return failures_.at(function).times; }
  // The calls about files, in order: "fsync file of 3", "rename", "fsync directory".
  const std::vector<std::string>& Lines() const { return lines_; }

  // For the functions in front: false, with errno, when this call fails.
  static bool Passes(const char* function);
  static void Note(const std::string& line);

 private:
  struct Failure {
    int error;
    int times;
  };

  std::map<std::string, Failure> failures_;
  std::vector<std::string> lines_;
};

}  // namespace qv::test
