// Texts of both sides. Python's may hold lone surrogates, as those of the interfaces may.
#pragma once

#include <pybind11/pybind11.h>

#include "qvscriptwells/wide_string.h"

namespace scriptwells::late {

// Null becomes "".
pybind11::str TextOf(const qv::WideString& text);
qv::WideString WideOf(pybind11::handle text);

}  // namespace scriptwells::late
