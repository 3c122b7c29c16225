// A parameter list and its parameters as another program might bring them: they note their calls, return what
// a test puts in, and fail where it says.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "automation/dispatch_faces.h"
#include "fixtures/fake_object.h"

namespace qv {

using FakeLog = std::vector<std::string>;

class FakeParameter final : public FakeObject<ParameterDispatch> {
 public:
  FakeParameter(FakeLog* log, const WideString& key, const Variant& value, const WideString& typeName)
      : log_(log), key_(key), value_(value), typeName_(typeName) {}
  // The operation of this name fails.
  void Fail(const std::string& operation, HRESULT code) { failures_[operation] = code; }

  HRESULT SetValues(const WideString&, const Variant&) noexcept override { return Note("SetValues"); }
  HRESULT get_ParamKey(WideString* key) noexcept override {
    *key = key_;
    return Note("get_ParamKey");
  }
  HRESULT get_ParamValue(Variant* value) noexcept override {
    *value = value_;
    return Note("get_ParamValue");
  }
  HRESULT get_ParamTypeAsString(WideString* typeName) noexcept override {
    *typeName = typeName_;
    return Note("get_ParamTypeAsString");
  }

 private:
  HRESULT Note(const std::string& operation) {
    log_->push_back(operation);
    const auto failure = failures_.find(operation);
    return failure == failures_.end() ? S_OK : failure->second;
  }

  FakeLog* log_;
  WideString key_;
  Variant value_;
  WideString typeName_;
  std::map<std::string, HRESULT> failures_;
};

class FakeParameters final : public FakeObject<ParametersDispatch> {
 public:
  explicit FakeParameters(FakeLog* log) : log_(log) {}
  FakeParameter* Put(const WideString& key, const Variant& value, const WideString& typeName) {
    list_.emplace_back(new FakeParameter(log_, key, value, typeName));
    return static_cast<FakeParameter*>(list_.back().get());
  }
  // A place that Find answers with success and null.
  void PutNull() { list_.emplace_back(); }
  void SayNegativeSize(std::int16_t size) { size_ = size; }
  void FailSize(HRESULT code) { sizeFailure_ = code; }
  void FailFind(std::size_t index, HRESULT code) { findFailures_[index] = code; }

  HRESULT Add(const WideString&, const Variant&, IParameter**) noexcept override { return Unwanted("Add"); }
  HRESULT Remove(std::int16_t) noexcept override { return Unwanted("Remove"); }
  HRESULT Clear() noexcept override { return Unwanted("Clear"); }
  HRESULT Find(std::int16_t index, IParameter** found) noexcept override {
    log_->push_back("Find(" + std::to_string(index) + ")");
    *found = nullptr;
    const std::size_t place = static_cast<std::size_t>(index);
    if (findFailures_.count(place) != 0) return findFailures_[place];
    if (place >= list_.size()) return E_INVALIDARG;
    *found = list_[place].get();
    if (*found != nullptr) (*found)->AddRef();
    return S_OK;
  }
  HRESULT Size(std::int16_t* size) noexcept override {
    log_->push_back("Size");
    *size = size_ < 0 ? size_ : static_cast<std::int16_t>(list_.size());
    return sizeFailure_;
  }

 private:
  HRESULT Unwanted(const char* operation) {
    log_->push_back(operation);
    return E_NOTIMPL;
  }

  FakeLog* log_;
  std::vector<IParameterPtr> list_;
  std::int16_t size_ = 0;
  HRESULT sizeFailure_ = S_OK;
  std::map<std::size_t, HRESULT> findFailures_;
};

using FakeParametersPtr = boost::intrusive_ptr<FakeParameters>;

}  // namespace qv
