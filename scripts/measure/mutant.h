#pragma once

// The switch of scripts/mutants: one wrong variant of the sources is on in a process, or none. Nothing
// allocates here, since tests refuse memory and count it.
#include <atomic>
#include <cstdlib>

namespace mutants {

inline std::atomic<int> chosen{-1};

inline bool On(int number) noexcept {
  int active = chosen.load(std::memory_order_relaxed);
  if (active == -1) {
    const char* const text = std::getenv("QV_MUTANT");
    active = text == nullptr ? 0 : std::atoi(text);
    chosen.store(active, std::memory_order_relaxed);
  }
  return active == number;
}

}  // namespace mutants
