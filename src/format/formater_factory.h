// A singleton that is created on first use, and the factory of the formaters, which is one. Lack of memory
// throws `_com_error`, E_OUTOFMEMORY. Neither has a lock: use the functions at the end.
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
  // Deletes the object; the next Instance() creates a new one.
  static void Destroy() {
    delete instance_;
    instance_ = nullptr;
  }

 private:
  static inline T* instance_ = nullptr;
};

// Maps type names, ignoring case, to formaters.
class FormaterFactory : public QvSingleton<FormaterFactory> {
 public:
  // The first registration of a name stays; a later one does nothing. `creator` is borrowed. Throws
  // `_com_error`, E_OUTOFMEMORY.
  void Register(const WideString& name, FormaterCreator* creator);
  // Borrowed; null for an unregistered name. Any name that is a substring of "idref" or "language" means
  // "string".
  FormaterSerializer* GetFormater(const WideString& typeName);
  // Forgets all names.
  void Clear() { creators_.clear(); }
  // Registers all names of `other`, or none if it throws.
  void RegisterAll(const FormaterFactory& other);

 private:
  std::map<WideString, FormaterCreator*> creators_;
};

// Models on several threads share the factory. Hold this lock to fill or destroy it.
std::mutex& FormaterMutex() noexcept;
// FormaterFactory::GetFormater of the process's factory. Any thread; the formater is valid until the process
// ends.
FormaterSerializer* FindFormater(const WideString& typeName);

}  // namespace qv
