// One object per process, made on first use. No lock: used on the thread of the library's objects.
#pragma once

#include <map>

#include "format/formater_creator.h"
#include "format/formater_serializer.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

template <class T>
class QvSingleton {
 public:
  virtual ~QvSingleton() = default;
  static T* Instance() {
    if (instance_ == nullptr) instance_ = new T;
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
  // The first registration of a name stays; a later one does nothing. `creator` is borrowed.
  void Register(const WideString& name, FormaterCreator* creator);
  // Borrowed; null for a name that nobody registered. Any name that stands inside "idref" or "language" means
  // "string".
  FormaterSerializer* GetFormater(const WideString& typeName);
  // Forgets all names.
  void Clear() { creators_.clear(); }

 private:
  std::map<WideString, FormaterCreator*> creators_;
};

}  // namespace qv
