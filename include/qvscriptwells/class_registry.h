// SPDX-License-Identifier: Apache-2.0
// Creation of objects by class id. A class is looked up in three places, in this order:
//   1. The creators of this process. The library registers its own components at the start. A host or a test
//      may register another class under the same id; the library then uses that one.
//   2. The classes linked into the program: CLSID_QvScriptwells (class_ids.h) with the static library.
//   3. The shared library that the registry (registry.h) names for the class, loaded on demand. Its absolute
//      path is under [HKEY_CLASSES_ROOT\CLSID\{...}\InprocServer32].
// A program that links only the platform library and knows only a class's name creates an object like this:
//
//   Guid classId{};
//   ThrowIfFailed(CLSIDFromProgID(u"QvScriptwells.QvScriptwells", &classId));
//   IDispatchPtr client;
//   ThrowIfFailed(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(client)));
//
// Failure: result codes, including E_OUTOFMEMORY. If a library cannot be used, an error record (error_info.h)
// holds the reason. ThrowIfFailed and Put are in com_call.h. Threads: any; each process has one set of
// tables, protected by a lock.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/unknown.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

constexpr std::uint32_t CLSCTX_ALL = 0x17;

// Creates one object and returns its interface `iid` with one reference, like IUnknown::QueryInterface.
using ClassCreator = HRESULT (*)(const Guid& iid, void** object);

// Registers `creator` for `classId` and returns the previous one, null if there was none. A null `creator`
// removes the class. Throws std::bad_alloc and then changes nothing.
ClassCreator RegisterClassCreator(const Guid& classId, ClassCreator creator);

// E_POINTER for a null `object`; CLASS_E_NOAGGREGATION for an `outer` and a class with a creator; the
// failures of CoGetClassObject; else what the creator or IClassFactory::CreateInstance (class_factory.h)
// returns. A creator that throws fails with the code of a `_com_error`, with E_OUTOFMEMORY for
// std::bad_alloc, else with E_UNEXPECTED. `context` exists for callers that know COM; its value has no
// effect.
HRESULT CoCreateInstance(const Guid& classId, IUnknown* outer, std::uint32_t context, const Guid& iid,
                         void** object) noexcept;

// The class object, usually for IClassFactory::kIid, of a class from place 2 or 3. A reference to it keeps
// its library loaded. E_POINTER; REGDB_E_CLASSNOTREG for a class that no place knows; CO_E_DLLNOTFOUND for a
// library that cannot be opened or whose path is not absolute; CO_E_ERRORINDLL for a file that is not a class
// library or a library that fails to start; else the library's result.
HRESULT CoGetClassObject(const Guid& classId, std::uint32_t context, const Guid& iid, void** object) noexcept;

// Unloads the libraries that are unused. Call it only while no other thread is inside a call of such a
// library's object, a last Release included. A library stays in memory until the threads on which it has made
// requests have ended.
void CoFreeUnusedLibraries() noexcept;

// The class id for a name such as "QvScriptwells.QvScriptwells.1.0"; case is ignored. CO_E_CLASSSTRING, and
// all zero, for a name that the registry does not know or that has no class id; E_POINTER.
HRESULT CLSIDFromProgID(const WideString& progId, Guid* classId) noexcept;

// The name of a class. REGDB_E_CLASSNOTREG, and null, for a class without one; E_POINTER.
HRESULT ProgIDFromCLSID(const Guid& classId, WideString* progId) noexcept;

// Reads "{01932093-F909-400B-B02E-7AEDABA33A36}", hexadecimal digits in any case and nothing around it.
// CO_E_CLASSSTRING, and all zero, for another text; E_POINTER.
HRESULT CLSIDFromString(const WideString& text, Guid* classId) noexcept;

// Starts an object that offers IRunnableObject, and returns the code of its Run; S_OK for one that does not.
// E_POINTER for null.
HRESULT OleRun(IUnknown* object);

// A new, started object of the class. Throws `_com_error` without a message if that fails.
IUnknownPtr CreateComponent(const Guid& classId);

}  // namespace qv
