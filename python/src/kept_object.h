// A Python object that C++ code keeps. Copies share it; they may be made and destroyed by any thread, with or
// without the interpreter's lock.
#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <utility>

namespace scriptwells::python {

class KeptObject {
 public:
  explicit KeptObject(pybind11::object object)
      : object_(new pybind11::object(std::move(object)), [](pybind11::object* kept) {
          const pybind11::gil_scoped_acquire lock;
          delete kept;
        }) {}

  // With the interpreter's lock only.
  pybind11::handle Get() const noexcept { return *object_; }

 private:
  std::shared_ptr<pybind11::object> object_;
};

}  // namespace scriptwells::python
