// Starts and stops the real XML library. Called by the guard, one thread at a time.
#pragma once

namespace qv {

// Throws what the XML library throws, std::bad_alloc when the system has no memory for a start, which can be
// tried again. A start that fails inside the XML library leaves it half started, and neither a second start
// nor a stop would survive that: from then on each call throws, and this module stays loaded.
void StartXmlLibrary();
void StopXmlLibrary();

}  // namespace qv
