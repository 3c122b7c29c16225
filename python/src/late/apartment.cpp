#include "apartment.h"

#include "late_failure.h"

namespace scriptwells::late {

namespace {

struct ApartmentOfThread {
  ApartmentOfThread() : apartment(std::make_shared<Apartment>()) {}
  ApartmentOfThread(const ApartmentOfThread&) = delete;
  ApartmentOfThread& operator=(const ApartmentOfThread&) = delete;
  ~ApartmentOfThread() { apartment->End(); }

  std::shared_ptr<Apartment> apartment;
};

}  // namespace

const std::shared_ptr<Apartment>& Apartment::OfThisThread() {
  thread_local const ApartmentOfThread own;
  return own.apartment;
}

bool Apartment::IsOfThisThread() const noexcept {
  return OfThisThread().get() == this;
}

void Apartment::Enter() {
  if (!IsOfThisThread())
    throw LateFailure{kWrongThread,
                      u"the object belongs to another thread: use it on the thread that made it"};
  std::vector<qv::IUnknownPtr> waiting;
  const std::lock_guard<std::mutex> lock(mutex_);
  waiting.swap(waiting_);
}

void Apartment::Release(qv::IUnknown* reference) noexcept {
  qv::IUnknownPtr object(reference, false);
  if (IsOfThisThread()) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (hasEnded_)
    object.reset();  // under the lock, as everything of this thread from now on
  else
    waiting_.push_back(std::move(object));
}

void Apartment::End() noexcept {
  const std::lock_guard<std::mutex> lock(mutex_);
  hasEnded_ = true;
  waiting_.clear();
}

}  // namespace scriptwells::late
