#pragma once

// The switch of scripts/mutants, which adds this header to the files that have mutants. QV_MUTANT is the
// number of the one that is on in this process. QV_MUTANT_REACHED names a file with a byte for each, where
// those that are reached leave a 1. Nothing here allocates, since tests refuse memory and count it. Wrong
// code needs the public headers.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/record_list.h"

namespace mutation {

inline constexpr int kMostMutants = 4096;
inline std::atomic<int> chosen{-1};
inline std::atomic<unsigned char*> reached{nullptr};

inline int Start() noexcept {
  if (const char* const path = std::getenv("QV_MUTANT_REACHED")) {
    const int file = open(path, O_RDWR | O_CLOEXEC);
    void* const bytes = mmap(nullptr, kMostMutants, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (bytes != MAP_FAILED) reached = static_cast<unsigned char*>(bytes);
    if (file != -1) close(file);
  }
  const char* const text = std::getenv("QV_MUTANT");
  const int number = text == nullptr ? 0 : std::atoi(text);
  chosen.store(number, std::memory_order_relaxed);
  return number;
}

inline bool On(int number) noexcept {
  int active = chosen.load(std::memory_order_relaxed);
  if (active == -1) active = Start();
  if (unsigned char* const bytes = reached.load(std::memory_order_relaxed)) bytes[number] = 1;
  return active == number;
}

// For mutants whose wrong code leaves the error record of an earlier failure, in place of clearing it.
template <class Operation>
auto KeepingErrorRecord(const Operation& operation) noexcept {
  qv::ErrorInfo earlier, own;
  const bool had = qv::GetErrorInfo(&earlier);
  const auto result = operation();
  const bool has = qv::GetErrorInfo(&own);
  if (had || has) qv::SetErrorInfo(has ? own : earlier);
  return result;
}

}  // namespace mutation
