#include "devservice/http/connection_threads.h"

#include <sys/socket.h>
#include <unistd.h>

namespace qv::devservice {

void ConnectionThreads::enqueue(std::function<void()> task) {
  const std::lock_guard<std::mutex> lock(mutex_);
  tasks_.push_back(std::move(task));
  if (tasks_.size() > free_ && threads_.size() < most_) {
    threads_.emplace_back(&ConnectionThreads::Work, this);
    ++free_;
  }
  changed_.notify_one();
}

void ConnectionThreads::shutdown() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    ended_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void ConnectionThreads::Work() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ended_ || !tasks_.empty(); });
    if (tasks_.empty()) return;
    const std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    --free_;
    lock.unlock();
    task();
    lock.lock();
    ++free_;
  }
}

bool OpenSockets::Add(socket_t socket) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (!stopping_) sockets_.insert(socket);
  return !stopping_;
}

void OpenSockets::Close(socket_t socket) {
  const std::lock_guard<std::mutex> lock(mutex_);
  sockets_.erase(socket);
  close(socket);
}

void OpenSockets::ShutdownAll() {
  const std::lock_guard<std::mutex> lock(mutex_);
  stopping_ = true;
  for (const socket_t socket : sockets_) shutdown(socket, SHUT_RDWR);
}

}  // namespace qv::devservice
