// The script of the benchmarks, and the session that it runs in.
#pragma once

#include <cstddef>

#include "qvscriptwells/wide_string.h"

namespace qv::bench {

constexpr char kSampleSession[] = "5f3c6f1e0f8d4c3ba1d2e3f405162738";
constexpr std::size_t kSmallScript = 200;

// A script of `units` characters, made of a line that people could have written.
WideString Script(std::size_t units);

}  // namespace qv::bench
