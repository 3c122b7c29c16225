// An object that is called by name.
#pragma once

#include <pybind11/pybind11.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apartment.h"
#include "qvscriptwells/dispatch.h"

namespace scriptwells::late {

// Where a member is: the interface, as an index, and its id there.
using Place = std::pair<std::size_t, qv::DISPID>;

class LateObject {
 public:
  // `object` must not be null.
  explicit LateObject(const qv::IUnknownPtr& object);

  // A member or an argument; nothing if no interface of the object knows the name.
  std::optional<Place> Find(pybind11::handle name) const;
  // The same in one interface.
  std::optional<qv::DISPID> FindIn(std::size_t face, pybind11::handle name) const;

  // The last of `arguments` are named by `names`. Other threads of Python run meanwhile. `member` is for
  // messages.
  pybind11::object Invoke(const std::string& member, const Place& place, std::uint16_t flags,
                          const pybind11::tuple& arguments, const std::vector<qv::DISPID>& names) const;

  // As a value for a call.
  qv::Variant ToVariant() const;
  // The record list as a capsule with one reference, None for an object that is none.
  pybind11::object RecordList() const;

  // Whether both are the same object. Any thread.
  bool IsSame(const LateObject& other) const noexcept {
    return identity_.Address() == other.identity_.Address();
  }
  const void* Address() const noexcept { return identity_.Address(); }

 private:
  ThreadBound<qv::IUnknown> identity_;
  std::vector<ThreadBound<qv::IDispatch>> faces_;
};

void DefineObject(pybind11::module_& module);

}  // namespace scriptwells::late
