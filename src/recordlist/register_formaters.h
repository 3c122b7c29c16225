// Puts all formaters into the factory, in the order of their table. The creators are static objects: only the
// first call of a process registers anything.
#pragma once

namespace qv {

void RegisterFormaters();

}  // namespace qv
