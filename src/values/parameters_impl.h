// The logic behind Parameters: an ordered list. Failure: EQvException with code 0, or `_com_error`.
//
// Values may be objects of a host that call back when they are released. They find the list as it is after
// the operation that released them, and may change it.
#pragma once

#include <cstdint>
#include <vector>

#include "qvscriptwells/objects.h"

namespace qv {

class ParametersImpl {
 public:
  ParametersImpl() = default;
  ParametersImpl(const ParametersImpl&) = delete;
  ParametersImpl& operator=(const ParametersImpl&) = delete;
  virtual ~ParametersImpl();
  virtual IParameterPtr Add(WideString key, const Variant& value);
  virtual void Remove(std::int16_t index);
  virtual IParameterPtr Find(std::int16_t index);
  virtual std::int16_t Size();
  virtual void Clear();

 private:
  std::vector<IParameterPtr> parameters_;
};

}  // namespace qv
