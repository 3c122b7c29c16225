// The value types of the process: puts all formaters into the factory, and takes them out again. Any thread.
// Failure: `_com_error`, E_OUTOFMEMORY; nothing is registered then, and the next call tries again.
#pragma once

namespace qv {

// In the order of their table. The creators are static objects: only the first call of a process registers
// anything.
void RegisterFormaters();

// As above, and a factory that was emptied since gets all of them back.
void FillFormaters();

// What the end of a model does: the factory goes, with all types in it, unless a ValueTypesHold lives.
void EndFormaters() noexcept;

}  // namespace qv
