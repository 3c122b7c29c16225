#include "values/parameters_impl.h"

#include <algorithm>
#include <utility>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"

namespace qv {
namespace {

// An index equal to the size, or a negative one, passes the range test and fails in the access, with another
// message.
std::size_t CheckedIndex(std::int16_t index, std::size_t size, const char16_t* accessFailure) {
  if (size == 0) throw EQvException(u"The are no parameters.");
  if (index > static_cast<std::int16_t>(size)) throw EQvException(u"The index is out of range.");
  if (index < 0 || static_cast<std::size_t>(index) >= size) throw EQvException(accessFailure);
  return static_cast<std::size_t>(index);
}

}  // namespace

// A value may add others during its release.
ParametersImpl::~ParametersImpl() {
  while (!parameters_.empty()) ParametersImpl::Clear();
}

IParameterPtr ParametersImpl::Add(WideString key, const Variant& value) {
  IParameterPtr parameter = CreateParameter();
  ThrowIfFailed(parameter->SetValues(key, value), parameter.get(), IParameter::kIid);
  if (parameters_.size() == parameters_.capacity())
    parameters_.reserve(
        std::max(parameters_.capacity() + parameters_.capacity() / 2, parameters_.size() + 1));
  parameters_.push_back(parameter);
  return parameter;
}

void ParametersImpl::Remove(std::int16_t index) {
  const std::size_t at = CheckedIndex(index, parameters_.size(), u"Cannot remove parameter.");
  const IParameterPtr gone = std::move(parameters_[at]);
  parameters_.erase(parameters_.begin() + static_cast<std::ptrdiff_t>(at));
}

IParameterPtr ParametersImpl::Find(std::int16_t index) {
  return parameters_[CheckedIndex(index, parameters_.size(), u"Cannot find parameter in the current index.")];
}

std::int16_t ParametersImpl::Size() {
  return static_cast<std::int16_t>(parameters_.size());
}

// Reuses the storage, unless the list has new storage meanwhile.
void ParametersImpl::Clear() {
  std::vector<IParameterPtr> gone;
  gone.swap(parameters_);
  gone.clear();
  if (parameters_.capacity() == 0) gone.swap(parameters_);
}

}  // namespace qv
