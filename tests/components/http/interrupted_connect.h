// Makes connect() fail on this thread. A non-blocking connect is hardly ever interrupted by a real signal, so
// the test program puts its own connect() in front of the C library's.
#pragma once

namespace qv::test {

class FailingConnects {
 public:
  // The next `times` calls fail with `error`; those after them work again.
  FailingConnects(int error, int times) noexcept;
  ~FailingConnects();
  FailingConnects(const FailingConnects&) = delete;
  FailingConnects& operator=(const FailingConnects&) = delete;

  // How many have not failed yet.
  int Left() const noexcept;
};

}  // namespace qv::test
