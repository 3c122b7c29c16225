// Keeps the XML library started for as long as the shared library is loaded. Hosts that call late-bound
// cannot make an XmlLibraryHold, and without one each call starts the XML library anew. Only the entry points
// of the shared library use it, so a program that links the archive is not affected. Any thread.
#pragma once

namespace qv {

// "1" behind this key asks for it. An installation writes that.
constexpr char16_t kHoldWhileLoadedKey[] = u"SOFTWARE\\Quorvane\\Quorvane\\XmlLibrary\\HoldWhileLoaded";

// The first call reads the registry. Takes the hold if it is asked for and not taken. When that fails, the
// next call tries again; until then each call starts the XML library for itself and reports its failure.
void HoldXmlLibraryIfAsked() noexcept;
// Before the library is unloaded.
void DropXmlLibraryHold() noexcept;

}  // namespace qv
