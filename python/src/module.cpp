// The extension module scriptwells._core: what the package's Python files use of the C++ library.
#include <pybind11/pybind11.h>

#include "errors.h"
#include "makers.h"
#include "scriptwells/session.h"
#include "service.h"
#include "session.h"
#include "table.h"

PYBIND11_MODULE(_core, module) {
  using namespace scriptwells::python;
  pybind11::options options;
  options.disable_function_signatures();  // _core.pyi has them
  module.attr("version") = scriptwells::Version();
  TranslateErrors();
  DefineTable(module);
  DefineMakers(module);
  DefineSession(module);
  DefineService(module);
}
