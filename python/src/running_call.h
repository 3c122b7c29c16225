// A call of the library that runs without the interpreter's lock, on the thread that started it.
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>

#include "scriptwells/options.h"

namespace scriptwells::python {

// Ends a call because Python code failed, or because Ctrl-C was pressed. The Python error is kept by the
// call.
struct CallEnded {};

// Who looks at a call; each may be missing. The functions are those of Python and are not kept: a reference
// from C++ code would hide a circle from the garbage collector.
struct Watch {
  pybind11::handle progress;  // null or None for none
  pybind11::handle listener;
  const CancelToken* stop = nullptr;  // cancels the call
  const void* session = nullptr;      // whose call it is; null for none
};

// Of a tuple (progress, listener, CancelToken or None), which must live as long.
Watch WatchOf(const pybind11::tuple& watch);

class RunningCall {
 public:
  // Raises RuntimeError if a call of the same session runs on this thread, as in a function that it calls.
  explicit RunningCall(const Watch& watch);
  ~RunningCall();
  RunningCall(const RunningCall&) = delete;
  RunningCall& operator=(const RunningCall&) = delete;

  // The call of this thread; null without one.
  static RunningCall* Current() noexcept;

  // For the listeners of Options. Throw CallEnded and CancelledError.
  void OnProgress(const Progress& progress);
  void OnExchange(const Exchange& exchange);
  [[noreturn]] void RaiseKeptError();

 private:
  void LookForSignals();
  template <class Event>
  void Tell(pybind11::handle function, const Event& event);
  [[noreturn]] void End();

  const Watch watch_;
  RunningCall* const outer_;
  std::chrono::steady_clock::time_point nextLook_;
  PyObject* error_[3] = {};  // as of PyErr_Fetch
};

// The result of `call`, which runs without the lock.
template <class Call>
auto WithoutLock(const Watch& watch, Call call) {
  RunningCall running(watch);
  try {
    const pybind11::gil_scoped_release unlocked;
    return call();
  } catch (const CallEnded&) {
    running.RaiseKeptError();
  }
}

template <class Call>
auto WithoutLock(Call call) {
  return WithoutLock(Watch(), std::move(call));
}

}  // namespace scriptwells::python
