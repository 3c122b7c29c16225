#include "running_call.h"

#include <stdexcept>

#include "python_types.h"
#include "scriptwells/error.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;
using Clock = std::chrono::steady_clock;

// The lock is only taken so often, or a short call would wait for other threads of the program.
constexpr std::chrono::milliseconds kBetweenLooks{100};

thread_local RunningCall* current = nullptr;

// Python handles signals on this thread only.
bool IsMainThread() {
  thread_local const bool isMain =
      py::module_::import("threading").attr("main_thread")().attr("ident").cast<unsigned long>() ==
      PyThread_get_thread_ident();
  return isMain;
}

}  // namespace

Watch WatchOf(const py::tuple& watch) {
  if (watch.size() != 3) throw py::value_error("a watch has three parts");
  return {watch[0], watch[1], watch[2].cast<const CancelToken*>(), nullptr};
}

RunningCall::RunningCall(const Watch& watch)
    : watch_(watch),
      outer_(current),
      nextLook_(IsMainThread() ? Clock::now() + kBetweenLooks : Clock::time_point::max()) {
  // It would wait for the end of that call, and so for itself.
  for (const RunningCall* call = outer_; call != nullptr; call = call->outer_)
    if (watch.session != nullptr && call->watch_.session == watch.session)
      throw std::runtime_error("a function that a call of a session calls cannot use that session");
  current = this;
}

RunningCall::~RunningCall() {
  current = outer_;
  for (PyObject* part : error_) Py_XDECREF(part);
}

RunningCall* RunningCall::Current() noexcept {
  return current;
}

void RunningCall::OnProgress(const Progress& progress) {
  if (watch_.stop != nullptr && watch_.stop->IsCancelled())
    throw CancelledError(Phase::kCancelled, "the call was cancelled");
  if (Clock::now() >= nextLook_) LookForSignals();
  Tell(watch_.progress, progress);
}

void RunningCall::OnExchange(const Exchange& exchange) {
  Tell(watch_.listener, exchange);
}

template <class Event>
void RunningCall::Tell(py::handle function, const Event& event) {
  if (!function || function.is_none()) return;
  const py::gil_scoped_acquire lock;
  try {
    function(FromEvent(event));
  } catch (py::error_already_set& error) {
    error.restore();
    End();
  }
}

void RunningCall::LookForSignals() {
  const py::gil_scoped_acquire lock;
  nextLook_ = Clock::now() + kBetweenLooks;
  if (PyErr_CheckSignals() != 0) End();
}

// Keeps the Python error.
void RunningCall::End() {
  PyErr_Fetch(&error_[0], &error_[1], &error_[2]);
  throw CallEnded();
}

void RunningCall::RaiseKeptError() {
  PyErr_Restore(error_[0], error_[1], error_[2]);
  for (PyObject*& part : error_) part = nullptr;
  throw py::error_already_set();
}

}  // namespace scriptwells::python
