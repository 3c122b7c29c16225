// One pointer for each thread, which a function takes when the thread ends. A thread_local object with a
// destructor would ask the C library for memory on its first use in each thread, and the C library ends the
// process when there is none; here the first use reports it. One thread each; a slot is a static object.
#pragma once

#include <pthread.h>

#include <atomic>

namespace qv {

class ThreadSlot {
 public:
  using Drop = void (*)(void*);

  // `drop` gets each pointer that is left when its thread ends. At the end of the program, and when the
  // library is unloaded, it gets that of the thread which runs these ends.
  explicit ThreadSlot(Drop drop) noexcept;
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;
  // Objects that outlive it find an empty slot that keeps nothing.
  ~ThreadSlot();

  // Null when there is none.
  void* Get() const noexcept;
  // Does not drop what was there. False without memory, and nothing is changed; never false for null.
  bool Set(void* value) noexcept;

 private:
  Drop drop_;
  pthread_key_t key_ = 0;
  std::atomic<bool> usable_;
};

}  // namespace qv
