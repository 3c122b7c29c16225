// Starts and stops the real XML library. The first two are called by the guard, one thread at a time.
#pragma once

namespace qv {

// Throws the XML library's exceptions, or std::bad_alloc for lack of memory before the start, which can be
// tried again. A start that fails inside the XML library leaves it half started, and a second start or a stop
// would crash: from then on each call throws, and this module stays loaded.
void StartXmlLibrary();
void StopXmlLibrary();

// From now on a start is put off until the first parser is made, since the answers of most servers need none.
// For a program in which nothing looks whether the library is started; hosts do. Before the first start.
void PutOffXmlLibraryStart() noexcept;
// Starts what was put off. While the library is started; any thread; throws as StartXmlLibrary.
void RequireXmlLibrary();

}  // namespace qv
