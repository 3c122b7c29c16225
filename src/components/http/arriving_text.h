// The text of a body, decoded while its bytes arrive, so that memory never has all bytes and all text.
#pragma once

#include <cstddef>

#include "qvscriptwells/wide_string.h"

namespace qv {

// The text may contain a session id, so memory is cleared when the text moves to a larger block.
class ArrivingText {
 public:
  // `announced` units are expected. Beyond 64 MB the capacity is limited to a multiple of what has arrived.
  explicit ArrivingText(std::size_t announced) noexcept : announced_(announced) {}
  ~ArrivingText();
  ArrivingText(const ArrivingText&) = delete;
  ArrivingText& operator=(const ArrivingText&) = delete;

  // Space for `units` more units. Throws `_com_error`, E_OUTOFMEMORY.
  char16_t* Room(std::size_t units);
  void Wrote(const char16_t* end) noexcept;
  // Never null. Throws as Room.
  WideString Take();

 private:
  std::size_t announced_;
  BStr text_ = nullptr;
  std::size_t capacity_ = 0;
};

}  // namespace qv
