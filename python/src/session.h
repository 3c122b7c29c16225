// The C++ half of the class Session (scriptwells/_session.py).
#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <string>

#include "options.h"
#include "running_call.h"
#include "scriptwells/session.h"

namespace scriptwells::python {

class SessionHandle {
 public:
  // Opens a session, or adopts the one of the id, if it is not empty.
  SessionHandle(const std::string& url, const Credentials& credentials, const std::string& id,
                const pybind11::dict& given, const pybind11::tuple& watch);
  ~SessionHandle();
  SessionHandle(const SessionHandle&) = delete;
  SessionHandle& operator=(const SessionHandle&) = delete;

  // `watch` of all: see WatchOf.
  pybind11::object Run(pybind11::handle code, pybind11::handle parameters, const pybind11::dict& named,
                       const CallOptions& options, const pybind11::tuple& watch);
  pybind11::object RunDocument(pybind11::handle path, pybind11::handle parameters,
                               const pybind11::dict& named, const CallOptions& options,
                               const pybind11::tuple& watch);
  pybind11::object Download(pybind11::handle url, pybind11::handle directory, const CallOptions& options,
                            const pybind11::tuple& watch);
  void Close(pybind11::handle timeout, const pybind11::tuple& watch);
  // Within the options' time. Only Python errors leave it; an adopted session stays open.
  void CloseQuietly(const pybind11::tuple& watch);
  pybind11::str Release();
  pybind11::str Id() const;
  pybind11::str Server() const;

 private:
  Watch OwnWatch(const pybind11::tuple& watch) const;
  bool IsStrict(const CallOptions& options) const { return options.strict.value_or(strict_); }

  const bool isAdopted_;
  bool strict_ = false;
  std::chrono::milliseconds closeTimeout_{};
  std::unique_ptr<Session> session_;
};

void DefineSession(pybind11::module_& module);

}  // namespace scriptwells::python
