// Base classes of objects with interfaces: QueryInterface and the reference count.
//
//   class Url final : public CountedObject<IUrl, SupportsErrorInfo<IUrl>> { ... };
//   IUrlPtr url(new Url);
//
// Threads: one at a time per object.
#pragma once

#include <type_traits>

#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/unknown.h"

namespace qv {

// Implements QueryInterface for `First` and `Others`. `First` also serves IUnknown, and IDispatch if it
// derives from it.
template <class First, class... Others>
class ComObject : public First, public Others... {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = FindInterface(iid);
    if (*object == nullptr) return E_NOINTERFACE;
    static_cast<First*>(this)->AddRef();
    return S_OK;
  }

 protected:
  ~ComObject() = default;

 private:
  static bool IsFirst(const Guid& iid) noexcept {
    return iid == First::kIid || iid == IUnknown::kIid ||
           (std::is_base_of_v<IDispatch, First> && iid == IDispatch::kIid);
  }
  void* FindInterface(const Guid& iid) noexcept {
    if (IsFirst(iid)) return static_cast<First*>(this);
    void* found = nullptr;
    static_cast<void>(((iid == Others::kIid && (found = static_cast<Others*>(this)) != nullptr) || ...));
    return found;
  }
};

// Starts at 0. Not atomic: for one thread.
class ReferenceCount {
 public:
  std::uint32_t Add() noexcept { return ++count_; }
  // The remaining references. Returns 0, which means that the object must be destroyed, only once: a host
  // that is called during the destruction may still add and release references.
  std::uint32_t Drop() noexcept {
    const std::uint32_t left = --count_;
    if (left == 0) count_ = kEnding;
    return left;
  }
  // For an object that continues to exist after its last release: sets the count to one reference.
  void Restart() noexcept { count_ = 1; }
  bool IsOne() const noexcept { return count_ == 1; }

 private:
  static constexpr std::uint32_t kEnding = 0x40000000;
  std::uint32_t count_ = 0;
};

// An object on the heap that counts its references and deletes itself with the last one.
template <class... Interfaces>
class CountedObject : public ComObject<Interfaces...> {
 public:
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = count_.Drop();
    if (left == 0) OnLastRelease();
    return left;
  }

  // For counted pointers to the object itself, which has several IUnknown bases.
  friend void intrusive_ptr_add_ref(CountedObject* object) noexcept { object->AddRef(); }
  friend void intrusive_ptr_release(CountedObject* object) noexcept { object->Release(); }

 protected:
  virtual ~CountedObject() = default;
  virtual void OnLastRelease() noexcept { delete this; }

  ReferenceCount count_;
};

// The interface that says which of an object's interfaces leave error records.
template <class... Interfaces>
class SupportsErrorInfo : public ISupportErrorInfo {
 public:
  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override {
    return (... || (iid == Interfaces::kIid)) ? S_OK : S_FALSE;
  }

 protected:
  ~SupportsErrorInfo() = default;
};

}  // namespace qv
