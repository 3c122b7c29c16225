// The rule for threads: objects count references without atomic operations, so each belongs to the thread
// that got it. Python may drop the last reference to a wrapper on any thread; the object's own reference then
// waits here for its thread.
#pragma once

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "qvscriptwells/unknown.h"

namespace scriptwells::late {

// The objects of one thread.
class Apartment {
 public:
  static const std::shared_ptr<Apartment>& OfThisThread();

  // Throws LateFailure on any other thread. Releases what waits.
  void Enter();
  // Takes over one reference. Any thread.
  void Release(qv::IUnknown* reference) noexcept;
  // Its thread ends: whoever lets go of an object from now on releases it.
  void End() noexcept;

 private:
  bool IsOfThisThread() const noexcept;

  std::mutex mutex_;
  bool hasEnded_ = false;
  std::vector<qv::IUnknownPtr> waiting_;
};

// A reference that belongs to the thread that made this.
template <class Interface>
class ThreadBound {
 public:
  explicit ThreadBound(boost::intrusive_ptr<Interface> object)
      : apartment_(Apartment::OfThisThread()), object_(std::move(object)) {}
  ThreadBound(ThreadBound&&) noexcept = default;
  ThreadBound& operator=(ThreadBound&&) = delete;
  ~ThreadBound() {
    if (object_) apartment_->Release(object_.detach());
  }

  // Throws LateFailure on another thread.
  Interface* Get() const {
    apartment_->Enter();
    return object_.get();
  }
  // For comparison only. Any thread.
  const void* Address() const noexcept { return object_.get(); }

 private:
  std::shared_ptr<Apartment> apartment_;
  boost::intrusive_ptr<Interface> object_;
};

}  // namespace scriptwells::late
