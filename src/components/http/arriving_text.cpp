#include "components/http/arriving_text.h"

#include <algorithm>
#include <utility>

#include "qvscriptwells/secret_text.h"
#include "text/string_block.h"

namespace qv {
namespace {

// A server may announce more than it sends, so beyond the first of these the capacity is at most a multiple
// of what has arrived. Unused capacity takes no memory, and an eighth of the text or less is copied.
constexpr std::size_t kUnitsAtOnce = std::size_t{32} << 20;
constexpr std::size_t kGrowth = 8;

}  // namespace

ArrivingText::~ArrivingText() {
  FreeString(text_);
}

char16_t* ArrivingText::Room(std::size_t units) {
  const std::size_t needed = StringLength(text_) + units;
  if (text_ == nullptr || needed > capacity_) {
    const bool isExpected = announced_ <= std::max(kUnitsAtOnce, needed * kGrowth);
    const std::size_t larger = std::max(needed, isExpected ? announced_ : needed * kGrowth);
    if (text_ == nullptr) {
      text_ = NewStringBlock(larger);
      MarkSecret(text_);
    } else {
      text_ = ResizeStringBlock(text_, larger);
    }
    capacity_ = larger;
  }
  return text_ + StringLength(text_);
}

void ArrivingText::Wrote(const char16_t* end) noexcept {
  SetStringLength(text_, static_cast<std::size_t>(end - text_));
}

WideString ArrivingText::Take() {
  Room(0);
  MarkSecretFront(text_, 0);
  return WideString::Attach(std::exchange(text_, nullptr));
}

}  // namespace qv
