// One pointer for each thread, with a cleanup function for the end of the thread. The first use of a
// thread_local object with a destructor allocates memory in each thread, and the C library ends the process
// if there is none; here the first use reports the failure. Each thread has its own pointer; a slot is a
// static object.
#pragma once

#include <pthread.h>

#include <atomic>

namespace qv {

class ThreadSlot {
 public:
  using Drop = void (*)(void*);

  // `drop` is called with each remaining pointer when its thread ends. At the end of the program, and when
  // the library is unloaded, it is called with the pointer of the current thread.
  explicit ThreadSlot(Drop drop) noexcept;
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;
  // Objects that outlive it find an empty slot that stores nothing.
  ~ThreadSlot();

  // Null if there is none.
  void* Get() const noexcept;
  // Does not drop the old pointer. False, without a change, for lack of memory; never false for null.
  bool Set(void* value) noexcept;

 private:
  Drop drop_;
  pthread_key_t key_ = 0;
  std::atomic<bool> usable_;
};

}  // namespace qv
