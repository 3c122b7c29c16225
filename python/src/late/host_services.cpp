#include "host_services.h"

#include "python_text.h"
#include "qvscriptwells/com_call.h"

namespace scriptwells::late {

namespace {

namespace py = pybind11;

qv::WideString OrNull(const py::str& text) {
  return py::len(text) == 0 ? qv::WideString() : WideOf(text);
}

}  // namespace

HostServices::HostServices(const qv::SimpleHostUser& user) : HostServices(qv::CreateSimpleHost(user)) {}

HostServices::HostServices(const qv::IQvClientServicesPtr& services)
    : host_(qv::As<qv::ISimpleHost>(services)), provider_(qv::CreateSimpleServiceProvider(services.get())) {}

qv::SimpleHostSession HostServices::Session() const {
  qv::SimpleHostSession session;
  qv::ThrowIfFailed(host_.Get()->GetSession(&session));
  return session;
}

qv::Variant HostServices::ToVariant() const {
  return qv::Variant::FromObject(provider_.Get());
}

void DefineHostServices(py::module_& module) {
  py::class_<HostServices>(
      module, "HostServices",
      "HostServices(user='', *, database_id='', replica_id='', session_id='')\n--\n\n"
      "What a host tells the client of its user, for `client.Init(HostServices(\"joe\"))`.\n\n"
      "session_id: of a session that is open already, which the client takes over.")
      .def(
          py::init([](const py::str& user, const py::str& databaseId, const py::str& replicaId,
                      const py::str& sessionId) {
            return new HostServices({OrNull(user), OrNull(databaseId), OrNull(replicaId), OrNull(sessionId)});
          }),
          py::arg("user") = "", py::kw_only(), py::arg("database_id") = "", py::arg("replica_id") = "",
          py::arg("session_id") = "",
          "__init__(self, user='', *, database_id='', replica_id='', session_id='')\n--\n\n")
      .def_property_readonly(
          "session_id",
          [](const HostServices& services) -> py::object {
            const qv::SimpleHostSession session = services.Session();
            return session.open ? py::object(TextOf(session.usid)) : py::none();
          },
          "The id of the session that the client has open; None without one.");
}

}  // namespace scriptwells::late
