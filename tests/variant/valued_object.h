// A late-bound object for tests of conversions: it has a configurable QueryInterface result and may have a
// default property. It is on the stack of a test, records the calls, and its destructor reports missing or
// extra references.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "qvscriptwells/dispatch.h"

namespace qv {

class ValuedObject final : public IDispatch {
 public:
  enum class Answer {
    kItself,
    kNothing,           // E_NOINTERFACE
    kNullOnSuccess,     // S_OK with a null pointer
    kPointerOnFailure,  // E_NOINTERFACE with a pointer to nowhere
    kOutOfMemory,       // E_OUTOFMEMORY
  };

  // Without a default property.
  explicit ValuedObject(Answer answer = Answer::kItself) : answer_(answer), code_(E_NOTIMPL) {}
  explicit ValuedObject(Variant value) : value_(std::move(value)) {}
  ValuedObject(const ValuedObject&) = delete;
  ValuedObject& operator=(const ValuedObject&) = delete;
  ~ValuedObject() {
    value_.Clear();
    EXPECT_EQ(count, 1U) << "references were left or lost";
  }
  void Fail(HRESULT code) { code_ = code; }
  void OnAsked(std::function<void()> call) { onAsked_ = std::move(call); }
  const std::string& Asked() const { return asked_; }

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    lastIid = iid;
    *object = nullptr;
    if (answer_ == Answer::kNullOnSuccess) return S_OK;
    if (answer_ == Answer::kPointerOnFailure) *object = &lastIid;
    if (answer_ == Answer::kOutOfMemory) return E_OUTOFMEMORY;
    if (answer_ != Answer::kItself || (iid != IUnknown::kIid && iid != IDispatch::kIid)) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  std::uint32_t AddRef() noexcept override { return ++count; }
  std::uint32_t Release() noexcept override { return --count; }
  HRESULT GetTypeInfoCount(std::uint32_t*) noexcept override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(std::uint32_t, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(const Guid&, const char16_t* const*, std::uint32_t, LCID, DISPID*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO*, std::uint32_t*) noexcept override {
    asked_ += std::to_string(id) + " with flags " + std::to_string(flags) + " and " +
              std::to_string(arguments->cArgs) + " arguments;";
    if (onAsked_) onAsked_();
    if (Succeeded(code_)) *result = value_;
    return code_;
  }

  std::uint32_t count = 1;
  Guid lastIid{};

 private:
  const Answer answer_ = Answer::kItself;
  Variant value_;
  HRESULT code_ = S_OK;
  std::function<void()> onAsked_;
  std::string asked_;
};

}  // namespace qv
