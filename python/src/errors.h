// The library's errors as Python exceptions (scriptwells/_errors.py).
#pragma once

namespace scriptwells::python {

// From now on every Error that leaves a function of this module becomes the exception of its class's name.
void TranslateErrors();

}  // namespace scriptwells::python
