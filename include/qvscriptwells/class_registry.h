// Creation of objects by class id. Three places are asked, in this order:
//   1. The creators of this process. The library's own components are there from the start; a host or a test
//      may put another class behind the same id, and the library then uses that one.
//   2. The classes that the program itself carries: CLSID_QvScriptwells (class_ids.h), when it is linked with
//      the static library.
//   3. The shared library that the registry (registry.h) names for the class, which is loaded on demand:
//      [HKEY_CLASSES_ROOT\CLSID\{...}\InprocServer32] with its absolute path.
// So a program that knows only a name, and links only the platform library, makes an object like this:
//
//   Guid classId{};
//   ThrowIfFailed(CLSIDFromProgID(u"QvScriptwells.QvScriptwells", &classId));
//   IDispatchPtr client;
//   ThrowIfFailed(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(client)));
//
// Failure: result codes, E_OUTOFMEMORY among them. A library that cannot be used leaves an error record
// (error_info.h) with the reason. ThrowIfFailed and Put are in com_call.h. Threads: any; the tables are one
// per process and guarded.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/unknown.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

constexpr std::uint32_t CLSCTX_ALL = 0x17;

// Makes one object and hands out `iid` of it with one reference, as IUnknown::QueryInterface does.
using ClassCreator = HRESULT (*)(const Guid& iid, void** object);

// Puts `creator` behind `classId` and returns the one that stood there, null if none. A null `creator`
// removes the class. Throws std::bad_alloc, and nothing is changed then.
ClassCreator RegisterClassCreator(const Guid& classId, ClassCreator creator);

// E_POINTER for a null `object`; CLASS_E_NOAGGREGATION for an `outer` and a class with a creator; the
// failures of CoGetClassObject; else what the creator or IClassFactory::CreateInstance (class_factory.h)
// returns. A creator that throws fails with the code of a `_com_error`, with E_OUTOFMEMORY for
// std::bad_alloc, else with E_UNEXPECTED. `context` is there for callers that know COM; all values do the
// same.
HRESULT CoCreateInstance(const Guid& classId, IUnknown* outer, std::uint32_t context, const Guid& iid,
                         void** object) noexcept;

// The class object, usually for IClassFactory::kIid, of a class of places 2 and 3. Whoever holds it keeps its
// library loaded. E_POINTER; REGDB_E_CLASSNOTREG for a class that no place knows; CO_E_DLLNOTFOUND for a
// library that cannot be opened, or is not named by an absolute path; CO_E_ERRORINDLL for one that is no
// class library or refuses to start; else what the library returns.
HRESULT CoGetClassObject(const Guid& classId, std::uint32_t context, const Guid& iid, void** object) noexcept;

// Unloads the libraries of which nothing is in use. For a moment when no other thread is inside a call, also
// a last Release, of such a library's object. A library stays in memory beyond this call as long as a thread
// lives on which it has made requests.
void CoFreeUnusedLibraries() noexcept;

// The class id behind a name such as "QvScriptwells.QvScriptwells.1.0", in any case. CO_E_CLASSSTRING, and
// all zero, for a name that the registry does not know or has no class id for; E_POINTER.
HRESULT CLSIDFromProgID(const WideString& progId, Guid* classId) noexcept;

// The name of a class. REGDB_E_CLASSNOTREG, and null, for a class without one; E_POINTER.
HRESULT ProgIDFromCLSID(const Guid& classId, WideString* progId) noexcept;

// Reads "{01932093-F909-400B-B02E-7AEDABA33A36}", hexadecimal digits in any case and nothing around it.
// CO_E_CLASSSTRING, and all zero, for another text; E_POINTER.
HRESULT CLSIDFromString(const WideString& text, Guid* classId) noexcept;

// Starts an object that offers IRunnableObject; S_OK for one that does not. E_POINTER for null.
HRESULT OleRun(IUnknown* object);

// A new object of the class, started. Throws `_com_error`, without words, when it cannot be made or started.
IUnknownPtr CreateComponent(const Guid& classId);

}  // namespace qv
