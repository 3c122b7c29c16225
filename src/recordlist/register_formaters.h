// The value types of the process: registers all formaters in the factory, and removes them. Any thread.
// Failure: `_com_error`, E_OUTOFMEMORY; then nothing is registered, and the next call tries again.
#pragma once

namespace qv {

// In the order of their table. The creators are static objects: only the first call of a process registers
// anything.
void RegisterFormaters();

// As above, but also fills a factory that was emptied since.
void FillFormaters();

// Called by the end of a model: destroys the factory with all its types, unless a ValueTypesHold exists.
void EndFormaters() noexcept;

}  // namespace qv
