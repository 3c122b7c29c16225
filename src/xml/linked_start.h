// Starts and stops the XML library that is linked, one thread at a time.
#pragma once

namespace qv {

// Throws the XML library's exceptions, or std::bad_alloc for lack of memory before the start, which can be
// tried again. A start that fails inside the XML library leaves it half started, and a second start or a stop
// would crash: from then on each call throws, and this module stays loaded.
void InitializeXmlLibrary();
void TerminateXmlLibrary();

}  // namespace qv
