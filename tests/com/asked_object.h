// An object that counts its references and notes the interfaces of its queries. It lives on the stack of a
// test, starts with one reference, and reports references that were left or lost when it is destroyed.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "qvscriptwells/unknown.h"

namespace qv {

class AskedObject final : public IUnknown {
 public:
  AskedObject() = default;
  AskedObject(const AskedObject&) = delete;
  AskedObject& operator=(const AskedObject&) = delete;
  ~AskedObject() { EXPECT_EQ(count, 1U) << "references were left or lost"; }

  // The result of queries for `iid`. With S_OK the object is returned, though only its IUnknown part is real.
  void Answer(const Guid& iid, HRESULT code) { answers_[iid] = code; }

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    asked.push_back(iid);
    const auto found = answers_.find(iid);
    const HRESULT code = iid == IUnknown::kIid     ? S_OK
                         : found == answers_.end() ? E_NOINTERFACE
                                                   : found->second;
    *object = Failed(code) ? nullptr : static_cast<IUnknown*>(this);
    if (Succeeded(code)) AddRef();
    return code;
  }
  std::uint32_t AddRef() noexcept override { return ++count; }
  std::uint32_t Release() noexcept override { return --count; }

  std::uint32_t count = 1;
  std::vector<Guid> asked;

 private:
  std::map<Guid, HRESULT> answers_;
};

}  // namespace qv
