// One object per process, made on first use, and the factory of the formaters, which is one. Out of memory is
// `_com_error`, E_OUTOFMEMORY. Neither has a lock of its own: the library's rooms go through the functions at
// the end.
#pragma once

#include <map>
#include <mutex>
#include <new>

#include "format/formater_creator.h"
#include "format/formater_serializer.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

template <class T>
class QvSingleton {
 public:
  virtual ~QvSingleton() = default;
  // Throws `_com_error`, E_OUTOFMEMORY.
  static T* Instance() {
    if (instance_ == nullptr) instance_ = new (std::nothrow) T;
    if (instance_ == nullptr) _com_raise_error(E_OUTOFMEMORY);
    return instance_;
  }
  // Deletes the object; the next Instance() makes a new one.
  static void Destroy() {
    delete instance_;
    instance_ = nullptr;
  }

 private:
  static inline T* instance_ = nullptr;
};

// From a type name to its formater, without regard to case.
class FormaterFactory : public QvSingleton<FormaterFactory> {
 public:
  // The first registration of a name stays; a later one does nothing. `creator` is borrowed. Throws
  // `_com_error`, E_OUTOFMEMORY.
  void Register(const WideString& name, FormaterCreator* creator);
  // Borrowed; null for a name that nobody registered. Any name that stands inside "idref" or "language" means
  // "string".
  FormaterSerializer* GetFormater(const WideString& typeName);
  // Forgets all names.
  void Clear() { creators_.clear(); }
  // Registers all names of `other`, or none when it throws.
  void RegisterAll(const FormaterFactory& other);

 private:
  std::map<WideString, FormaterCreator*> creators_;
};

// Models on several threads share the factory. Whoever fills or ends it holds this lock.
std::mutex& FormaterMutex() noexcept;
// FormaterFactory::GetFormater of the process's factory. Any thread; what it gives lives as long as the
// process.
FormaterSerializer* FindFormater(const WideString& typeName);

}  // namespace qv
