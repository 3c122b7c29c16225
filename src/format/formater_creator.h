// Holds the one formater of a type, under a name in the factory.
#pragma once

#include "format/formater_serializer.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

class FormaterCreator {
 public:
  // Registers this object in the factory under `typeName`. The object must outlive its registration.
  explicit FormaterCreator(const WideString& typeName);
  FormaterCreator(const FormaterCreator&) = delete;
  FormaterCreator& operator=(const FormaterCreator&) = delete;
  virtual ~FormaterCreator() = default;
  // Borrowed: owned by the creator.
  virtual FormaterSerializer* GetSerializer() = 0;
};

}  // namespace qv
