// The tables of the benchmarks: ten columns, two each of strings, whole numbers, broken numbers, points in
// time and booleans.
#pragma once

#include <cstddef>
#include <string>

#include "qvscriptwells/variant.h"

namespace qv::bench {

// An answer of Execute that holds a table of `rows`, in UTF-8. The rows differ, their lengths hardly.
std::string TableAnswer(std::size_t rows);

// The value of that answer: all that CSOAPResponse does, its parser's end included.
Variant ReadAnswer(const WideString& answer);

}  // namespace qv::bench
