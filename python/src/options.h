// Options of sessions and calls, as the package passes them.
#pragma once

#include <pybind11/pybind11.h>

#include "scriptwells/options.h"

namespace scriptwells::python {

// `given` has the names of connect(), and "listens" for a session with a listener. Both listeners pass on
// what happens to the RunningCall of the thread.
Options ToOptions(const pybind11::dict& given);

// Options of a call, as of Session.with_options.
struct CallOptions {
  RunOptions run;
  std::optional<bool> strict;
};

CallOptions ToCallOptions(const pybind11::dict& given);

// Seconds as a number or a datetime.timedelta. Raises ValueError for a time that is negative or no number.
std::chrono::milliseconds ToSpan(pybind11::handle seconds);

}  // namespace scriptwells::python
