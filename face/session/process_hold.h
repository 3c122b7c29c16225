// What all sessions of the process share.
#pragma once

namespace scriptwells {

// From the first call on, keeps the XML library started and the value types registered until the process
// ends, so that sessions come and go on any thread. Throws Error if the XML library cannot start; a later
// call tries again.
void HoldLibrary();

}  // namespace scriptwells
