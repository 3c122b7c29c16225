// A pipe's end, file or socket that is closed with its object.
#pragma once

#include <unistd.h>

#include <utility>

namespace scriptwells::testing {

class Descriptor {
 public:
  // Takes it over; a negative number is none.
  explicit Descriptor(int number = -1) noexcept : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  int Number() const noexcept { return number_; }
  bool IsOpen() const noexcept { return number_ >= 0; }
  void Close() noexcept {
    if (IsOpen()) close(std::exchange(number_, -1));
  }

 private:
  int number_;
};

}  // namespace scriptwells::testing
