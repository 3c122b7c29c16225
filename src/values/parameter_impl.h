// The logic behind a Parameter: one named value. Failure: exceptions (`_com_error`).
#pragma once

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

class ParameterImpl {
 public:
  ParameterImpl() = default;
  ParameterImpl(const ParameterImpl&) = delete;
  ParameterImpl& operator=(const ParameterImpl&) = delete;
  // An object that calls back when it is released finds no value here.
  virtual ~ParameterImpl() { value_.Clear(); }
  // The key is replaced first; a value that cannot be copied then raises, and the old value stays.
  virtual void SetValues(WideString key, const Variant& value);
  virtual WideString get_ParamKey();
  virtual Variant get_ParamValue();
  virtual WideString get_ParamTypeAsString();

 private:
  WideString key_;
  Variant value_;
};

}  // namespace qv
