// The logic of Parameters: an ordered list. Failure: EQvException with code 0, or `_com_error`.
//
// Values may be objects of a host that call back on their release. They then find the list in its state after
// the operation, and may change it.
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
