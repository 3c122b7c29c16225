// The extension module scriptwells._dispatch: calls by name, through the platform layer alone. The classes
// are in a library that it loads, so it must not link the client library, which has them too.
#include <pybind11/pybind11.h>

#include "create_object.h"
#include "host_services.h"
#include "late_failure.h"
#include "late_object.h"

PYBIND11_MODULE(_dispatch, module) {
  using namespace scriptwells::late;
  pybind11::options options;
  options.disable_function_signatures();  // _dispatch.pyi has them
  TranslateFailures();
  DefineObject(module);
  DefineHostServices(module);
  DefineCreation(module);
}
