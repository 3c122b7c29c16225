// A call of the library that runs without the interpreter's lock, on the thread that started it.
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>

#include "scriptwells/options.h"

namespace scriptwells::python {

// Ends a call because Python code failed, or because Ctrl-C was pressed. The Python error is kept by the
// call.
struct CallEnded {};

class RunningCall {
 public:
  // `progress` is called, unless it is null or None. `stop` cancels the call, if it is not null.
  RunningCall(pybind11::handle progress, const CancelToken* stop);
  ~RunningCall();
  RunningCall(const RunningCall&) = delete;
  RunningCall& operator=(const RunningCall&) = delete;

  // The call of this thread; null without one.
  static RunningCall* Current() noexcept;

  // For Options::progress. Throws CallEnded and CancelledError.
  void OnProgress(const Progress& progress);
  // In a catch block for a Python error, with the lock.
  [[noreturn]] void EndWithPythonError();
  [[noreturn]] void RaiseKeptError();

 private:
  void LookForSignals();

  const pybind11::handle progress_;
  const CancelToken* const stop_;
  RunningCall* const outer_;
  std::chrono::steady_clock::time_point nextLook_;
  PyObject* error_[3] = {};  // as of PyErr_Fetch
};

// The result of `call`, which runs without the lock.
template <class Call>
auto WithoutLock(pybind11::handle progress, const CancelToken* stop, Call call) {
  RunningCall running(progress, stop);
  try {
    const pybind11::gil_scoped_release unlocked;
    return call();
  } catch (const CallEnded&) {
    running.RaiseKeptError();
  }
}

template <class Call>
auto WithoutLock(Call call) {
  return WithoutLock(pybind11::handle(), nullptr, std::move(call));
}

}  // namespace scriptwells::python
