// Marks what the shared library libscriptwells.so exports. Everything else in it is hidden.
#pragma once

#define SCRIPTWELLS_API __attribute__((visibility("default")))
