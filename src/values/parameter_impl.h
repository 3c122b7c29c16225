// The logic of a Parameter: one named value. Failure: exceptions (`_com_error`).
#pragma once

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

class ParameterImpl {
 public:
  ParameterImpl() = default;
  ParameterImpl(const ParameterImpl&) = delete;
  ParameterImpl& operator=(const ParameterImpl&) = delete;
  // An object that calls back on its release finds no value here.
  virtual ~ParameterImpl() { value_.Clear(); }
  // Replaces the key first. If the value cannot be copied, throws, and the old value stays.
  virtual void SetValues(WideString key, const Variant& value);
  virtual WideString get_ParamKey();
  virtual Variant get_ParamValue();
  virtual WideString get_ParamTypeAsString();

 private:
  WideString key_;
  Variant value_;
};

}  // namespace qv
