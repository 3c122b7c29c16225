#include "session.h"

#include <string_view>

#include "from_value.h"
#include "python_types.h"
#include "running_call.h"
#include "to_value.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

std::string_view View(const py::str& text) {
  py::ssize_t size = 0;
  const char* const bytes = PyUnicode_AsUTF8AndSize(text.ptr(), &size);
  if (bytes == nullptr) throw py::error_already_set();
  return {bytes, static_cast<std::size_t>(size)};
}

std::filesystem::path PathOf(py::handle path) {
  PyObject* bytes = nullptr;
  if (PyUnicode_FSConverter(path.ptr(), &bytes) == 0) throw py::error_already_set();
  return std::string(py::reinterpret_steal<py::bytes>(bytes));
}

}  // namespace

SessionHandle::SessionHandle(const std::string& url, const Credentials& credentials, const std::string& id,
                             const py::dict& given)
    : isAdopted_(!id.empty()) {
  Options options = ToOptions(given);
  strict_ = options.strict;
  closeTimeout_ = options.closeTimeout;
  session_ = WithoutLock([&] {
    return isAdopted_ ? std::make_unique<Session>(Session::Adopt(url, id, std::move(options)))
                      : std::make_unique<Session>(url, credentials, std::move(options));
  });
}

// Closing may wait for the server.
SessionHandle::~SessionHandle() {
  const py::gil_scoped_release unlocked;
  session_.reset();
}

py::object SessionHandle::Run(const py::str& code, py::handle parameters, const py::dict& named,
                              const CallOptions& options, const CancelToken* stop) {
  const std::string_view script = View(code);
  const Arguments arguments = ToArguments(parameters, named, IsStrict(options));
  return FromValue(
      WithoutLock(options.progress, stop, [&] { return session_->Run(script, arguments, options.run); }));
}

py::object SessionHandle::RunDocument(py::handle path, py::handle parameters, const py::dict& named,
                                      const CallOptions& options) {
  const std::filesystem::path document = PathOf(path);
  const Arguments arguments = ToArguments(parameters, named, IsStrict(options));
  return FromValue(WithoutLock(options.progress, nullptr,
                               [&] { return session_->RunDocument(document, arguments, options.run); }));
}

py::object SessionHandle::Download(const std::string& url, py::handle directory, const CallOptions& options) {
  const std::filesystem::path target = PathOf(directory);
  const std::string path = WithoutLock(options.progress, nullptr,
                                       [&] { return session_->Download(url, target, options.run).string(); });
  return py::reinterpret_steal<py::object>(
      PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<py::ssize_t>(path.size())));
}

void SessionHandle::Close(py::handle timeout) {
  const auto within = timeout.is_none() ? std::chrono::milliseconds() : ToSpan(timeout);
  WithoutLock([&] { session_->Close(within); });
}

void SessionHandle::CloseQuietly() {
  WithoutLock([this] {
    try {
      isAdopted_ ? static_cast<void>(session_->Release()) : session_->Close(closeTimeout_);
    } catch (const Error&) {  // nothing of the caller's work depends on it
    }
  });
}

py::str SessionHandle::Release() {
  return Text(WithoutLock([this] { return session_->Release(); }));
}

py::str SessionHandle::Id() const {
  return Text(session_->Id());
}

py::str SessionHandle::Server() const {
  return Text(session_->Server());
}

void DefineSession(py::module_& module) {
  py::class_<CancelToken>(module, "CancelToken",
                          "Cancels running calls, from any thread: Session.with_options(cancel=token).")
      .def(py::init<>())
      .def("cancel", &CancelToken::Cancel, "Cancels the calls that use the token, and later ones.")
      .def("reset", &CancelToken::Reset, "Later calls work again.")
      .def_property_readonly("cancelled", &CancelToken::IsCancelled, "Whether cancel() was called.");
  py::class_<CallOptions>(module, "CallOptions").def(py::init(&ToCallOptions));
  py::class_<SessionHandle>(module, "Session")
      .def(py::init([](const std::string& url, const std::string& user, const std::string& password,
                       const std::string& replica, const std::string& id, const py::dict& options) {
        return std::make_unique<SessionHandle>(url, Credentials{user, password, replica}, id, options);
      }))
      .def("run", &SessionHandle::Run)
      .def("run_document", &SessionHandle::RunDocument)
      .def("download", &SessionHandle::Download)
      .def("close", &SessionHandle::Close)
      .def("close_quietly", &SessionHandle::CloseQuietly)
      .def("release", &SessionHandle::Release)
      .def_property_readonly("id", &SessionHandle::Id)
      .def_property_readonly("server", &SessionHandle::Server);
}

}  // namespace scriptwells::python
