#include "session.h"

#include <string_view>

#include "from_value.h"
#include "python_types.h"
#include "running_call.h"
#include "to_value.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

// Not by type, since a call that is refused would show the password.
std::unique_ptr<SessionHandle> Open(py::handle url, py::handle user, py::handle password, py::handle replica,
                                    py::handle id, const py::dict& options, const py::tuple& watch) {
  const Credentials credentials{std::string(TextOf(user, "user")), std::string(TextOf(password, "password")),
                                std::string(TextOf(replica, "replica"))};
  return std::make_unique<SessionHandle>(std::string(TextOf(url, "url")), credentials,
                                         std::string(TextOf(id, "session_id")), options, watch);
}

std::filesystem::path PathOf(py::handle path) {
  PyObject* bytes = nullptr;
  if (PyUnicode_FSConverter(path.ptr(), &bytes) == 0) throw py::error_already_set();
  return std::string(py::reinterpret_steal<py::bytes>(bytes));
}

}  // namespace

SessionHandle::SessionHandle(const std::string& url, const Credentials& credentials, const std::string& id,
                             const py::dict& given, const py::tuple& watch)
    : isAdopted_(!id.empty()) {
  Options options = ToOptions(given);
  strict_ = options.strict;
  closeTimeout_ = options.closeTimeout;
  session_ = WithoutLock(WatchOf(watch), [&] {
    return isAdopted_ ? std::make_unique<Session>(Session::Adopt(url, id, std::move(options)))
                      : std::make_unique<Session>(url, credentials, std::move(options));
  });
}

// Closing may wait for the server.
SessionHandle::~SessionHandle() {
  const py::gil_scoped_release unlocked;
  session_.reset();
}

Watch SessionHandle::OwnWatch(const py::tuple& watch) const {
  Watch own = WatchOf(watch);
  own.session = this;
  return own;
}

py::object SessionHandle::Run(py::handle code, py::handle parameters, const py::dict& named,
                              const CallOptions& options, const py::tuple& watch) {
  const std::string_view script = TextOf(code, "script");
  const Arguments arguments = ToArguments(parameters, named, IsStrict(options));
  return FromValue(
      WithoutLock(OwnWatch(watch), [&] { return session_->Run(script, arguments, options.run); }));
}

py::object SessionHandle::RunDocument(py::handle path, py::handle parameters, const py::dict& named,
                                      const CallOptions& options, const py::tuple& watch) {
  const std::filesystem::path document = PathOf(path);
  const Arguments arguments = ToArguments(parameters, named, IsStrict(options));
  return FromValue(
      WithoutLock(OwnWatch(watch), [&] { return session_->RunDocument(document, arguments, options.run); }));
}

py::object SessionHandle::Download(py::handle url, py::handle directory, const CallOptions& options,
                                   const py::tuple& watch) {
  const std::string source(TextOf(url, "url"));
  const std::filesystem::path target = PathOf(directory);
  const std::string path =
      WithoutLock(OwnWatch(watch), [&] { return session_->Download(source, target, options.run).string(); });
  return py::reinterpret_steal<py::object>(
      PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<py::ssize_t>(path.size())));
}

void SessionHandle::Close(py::handle timeout, const py::tuple& watch) {
  const auto within = timeout.is_none() ? std::chrono::milliseconds() : ToSpan(timeout);
  WithoutLock(OwnWatch(watch), [&] { session_->Close(within); });
}

void SessionHandle::CloseQuietly(const py::tuple& watch) {
  WithoutLock(OwnWatch(watch), [this] {
    try {
      isAdopted_ ? static_cast<void>(session_->Release()) : session_->Close(closeTimeout_);
    } catch (const Error&) {  // nothing of the caller's work depends on it
    }
  });
}

py::str SessionHandle::Release() {
  return Text(WithoutLock(Watch{{}, {}, nullptr, this}, [this] { return session_->Release(); }));
}

py::str SessionHandle::Id() const {
  return Text(session_->Id());
}

py::str SessionHandle::Server() const {
  return Text(session_->Server());
}

void DefineSession(py::module_& module) {
  py::class_<CancelToken>(module, "CancelToken",
                          "CancelToken()\n--\n\n"
                          "Cancels running calls, from any thread: Session.with_options(cancel=token).")
      .def(py::init<>(), "__init__(self, /)\n--\n\n")
      .def("cancel", &CancelToken::Cancel,
           "cancel(self, /)\n--\n\nCancels the calls that use the token, and later ones.")
      .def("reset", &CancelToken::Reset, "reset(self, /)\n--\n\nLater calls work again.")
      .def_property_readonly("cancelled", &CancelToken::IsCancelled, "Whether cancel() was called.");
  py::class_<CallOptions>(module, "CallOptions").def(py::init(&ToCallOptions));
  py::class_<SessionHandle>(module, "Session")
      .def(py::init(&Open))
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
