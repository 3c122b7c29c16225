// Keeps the XML library started while the shared library is loaded. Late-bound hosts cannot create an
// XmlLibraryHold, and without one each call starts the XML library again. Only the entry points of the shared
// library use it, so a program that links the static library is not affected. Any thread.
#pragma once

namespace qv {

// The value "1" enables it; the installation writes it.
constexpr char16_t kHoldWhileLoadedKey[] = u"SOFTWARE\\Quorvane\\Quorvane\\XmlLibrary\\HoldWhileLoaded";

// The first call reads the registry. Takes the hold if it is enabled and not yet taken. If that fails, the
// next call tries again; until then each call starts the XML library itself and reports the failure.
void HoldXmlLibraryIfAsked() noexcept;
// Before the library is unloaded.
void DropXmlLibraryHold() noexcept;

}  // namespace qv
