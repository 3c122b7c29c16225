// Where an operation stands in the table of its interface: programs that were compiled against another header
// call by place, not by name.
#pragma once

#include <cstddef>
#include <cstring>

namespace qv {

// `operation` points at a variable that holds a pointer to a virtual member. Only differences between two of
// one interface mean something; the compilers of this platform keep the place in the first word.
inline std::ptrdiff_t PlaceOf(const void* operation) {
  std::ptrdiff_t place = 0;
  std::memcpy(&place, operation, sizeof place);
  return place;
}

constexpr std::ptrdiff_t kSlot = sizeof(void*);

}  // namespace qv
