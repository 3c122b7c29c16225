// An object that is bound late, as far as a change of type sees it: it answers QueryInterface as told. It
// lives on the stack of a test and reports references that were left or lost when it dies.
#pragma once

#include <gtest/gtest.h>

#include "qvscriptwells/dispatch.h"

namespace qv {

class AnsweringObject final : public IDispatch {
 public:
  enum class Answer {
    kItself,
    kNothing,           // E_NOINTERFACE
    kNullOnSuccess,     // S_OK with a null pointer
    kPointerOnFailure,  // E_NOINTERFACE with a pointer to nowhere
    kOutOfMemory,       // E_OUTOFMEMORY
  };

  explicit AnsweringObject(Answer answer = Answer::kItself) noexcept : answer_(answer) {}
  AnsweringObject(const AnsweringObject&) = delete;
  AnsweringObject& operator=(const AnsweringObject&) = delete;
  ~AnsweringObject() { EXPECT_EQ(count, 1u) << "references were left or lost"; }

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    lastAsked = iid;
    *object = nullptr;
    if (answer_ == Answer::kNullOnSuccess) return S_OK;
    if (answer_ == Answer::kPointerOnFailure) *object = &lastAsked;
    if (answer_ == Answer::kOutOfMemory) return E_OUTOFMEMORY;
    if (answer_ != Answer::kItself) return E_NOINTERFACE;
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
  HRESULT Invoke(DISPID, const Guid&, LCID, std::uint16_t, const DISPPARAMS*, Variant*, EXCEPINFO*,
                 std::uint32_t*) noexcept override {
    return E_NOTIMPL;
  }

  std::uint32_t count = 1;
  Guid lastAsked{};

 private:
  Answer answer_;
};

}  // namespace qv
