// The logic behind Parameters: an ordered list. Failure: EQvException with code 0, or `_com_error`.
#pragma once

#include <cstdint>
#include <vector>

#include "qvscriptwells/objects.h"

namespace qv {

class ParametersImpl {
 public:
  virtual ~ParametersImpl() = default;
  virtual IParameterPtr Add(WideString key, Variant value);
  virtual void Remove(std::int16_t index);
  virtual IParameterPtr Find(std::int16_t index);
  virtual std::int16_t Size();
  virtual void Clear();

 private:
  std::vector<IParameterPtr> parameters_;
};

}  // namespace qv
