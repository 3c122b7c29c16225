// Starts and stops the real XML library. The first two are called by the guard, one thread at a time.
#pragma once

namespace qv {

struct XmlParts;  // xml_parts.h

// As InitializeXmlLibrary and TerminateXmlLibrary (linked_start.h).
void StartXmlLibrary();
void StopXmlLibrary();

// From now on a start is put off until the first parser is made, since the answers of most servers need none.
// For a program in which nothing looks whether the library is started; hosts do. Before the first start.
void PutOffXmlLibraryStart() noexcept;
// Starts what was put off, and returns what needs it. While the library is started; any thread; throws as
// StartXmlLibrary.
const XmlParts& RequireXmlLibrary();

// Defined in linked_parts.cpp, for programs that link the XML library. One that loads it defines both itself:
// the first then loads it, or throws EQvException.
const XmlParts& RequireXmlParts();
const XmlParts* PresentXmlParts() noexcept;  // null before they are loaded

}  // namespace qv
