#include "late_object.h"

#include <pybind11/stl.h>

#include <algorithm>

#include "late_failure.h"
#include "late_values.h"
#include "python_text.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/record_list.h"

namespace scriptwells::late {

namespace {

namespace py = pybind11;

constexpr char kRecordListCapsule[] = "scriptwells.IRecordList";

// Interfaces that are called by name. A class that has a second one has members that its first does not know.
constexpr qv::Guid kFaces[] = {qv::IDispatch::kIid, qv::IQvClientServiceRaw::kIid,
                               qv::IConnectionStringRaw::kIid};

// In the order of Invoke: named ones first, in their order, then the others, the last one first.
std::vector<qv::Variant> ReversedArguments(const py::tuple& arguments, std::size_t named) {
  const std::size_t unnamed = arguments.size() - named;
  std::vector<qv::Variant> values;
  for (std::size_t i = unnamed; i < arguments.size(); ++i) values.push_back(FromPython(arguments[i]));
  for (std::size_t i = unnamed; i > 0; --i) values.push_back(FromPython(arguments[i - 1]));
  return values;
}

// The position in the call, from 1, of an element of that order.
std::optional<std::size_t> PositionOf(std::uint32_t element, std::size_t count, std::size_t named) {
  if (element >= count) return std::nullopt;
  return element < named ? count - named + element + 1 : count - element;
}

bool BlamesAnArgument(qv::HRESULT code) {
  return code == qv::DISP_E_TYPEMISMATCH || code == qv::DISP_E_PARAMNOTFOUND;
}

}  // namespace

LateObject::LateObject(const qv::IUnknownPtr& object) : identity_(qv::As<qv::IUnknown>(object)) {
  for (const qv::Guid& iid : kFaces)
    if (auto face = qv::As<qv::IDispatch>(object, iid)) faces_.emplace_back(std::move(face));
}

std::optional<Place> LateObject::Find(py::handle name) const {
  for (std::size_t face = 0; face < faces_.size(); ++face)
    if (const auto id = FindIn(face, name)) return Place{face, *id};
  return std::nullopt;
}

std::optional<qv::DISPID> LateObject::FindIn(std::size_t face, py::handle name) const {
  const qv::WideString wide = WideOf(name);
  if (wide.IsEmpty() || wide.view().find(u'\0') != std::u16string_view::npos) return std::nullopt;
  const char16_t* const units = wide.data();
  qv::DISPID id = qv::DISPID_UNKNOWN;
  if (qv::Failed(faces_.at(face).Get()->GetIDsOfNames(qv::Guid{}, &units, 1, 0, &id))) return std::nullopt;
  return id;
}

py::object LateObject::Invoke(const std::string& member, const Place& place, std::uint16_t flags,
                              const py::tuple& arguments, const std::vector<qv::DISPID>& names) const {
  if (place.first >= faces_.size()) {
    static_cast<void>(identity_.Get());
    throw FailureOf(member, qv::DISP_E_MEMBERNOTFOUND, {}, std::nullopt);
  }
  qv::IDispatch* const face = faces_[place.first].Get();
  const std::vector<qv::Variant> values = ReversedArguments(arguments, names.size());
  const qv::DISPPARAMS given{values.data(), names.data(), static_cast<std::uint32_t>(values.size()),
                             static_cast<std::uint32_t>(names.size())};
  qv::Variant result;
  qv::EXCEPINFO record;
  auto element = static_cast<std::uint32_t>(values.size());
  qv::HRESULT code = qv::S_OK;
  {
    const py::gil_scoped_release others;
    code = face->Invoke(place.second, qv::Guid{}, 0, flags, &given, &result, &record, &element);
    if (qv::Failed(code) && record.pfnDeferredFillIn != nullptr)
      static_cast<void>(record.pfnDeferredFillIn(&record));
  }
  if (qv::Failed(code))
    throw FailureOf(member, code, record,
                    BlamesAnArgument(code) ? PositionOf(element, values.size(), names.size()) : std::nullopt);
  return ToPython(std::move(result));
}

qv::Variant LateObject::ToVariant() const {
  return faces_.empty() ? qv::Variant::FromObject(identity_.Get()) : qv::FromDispatch(faces_.front().Get());
}

py::object LateObject::RecordList() const {
  qv::IRecordListPtr list = qv::As<qv::IRecordList>(identity_.Get());
  if (!list) return py::none();
  return py::capsule(list.detach(), kRecordListCapsule, [](PyObject* capsule) {
    static_cast<qv::IRecordList*>(PyCapsule_GetPointer(capsule, kRecordListCapsule))->Release();
  });
}

void DefineObject(py::module_& module) {
  py::class_<LateObject>(module, "Object")
      .def("find", &LateObject::Find)
      .def("find_in", &LateObject::FindIn)
      .def("invoke", &LateObject::Invoke)
      .def("record_list", &LateObject::RecordList)
      .def("__eq__", &LateObject::IsSame)
      .def("__eq__", [](const LateObject&, const py::object&) { return false; })
      .def("__hash__", [](const LateObject& object) { return std::hash<const void*>()(object.Address()); });
}

}  // namespace scriptwells::late
