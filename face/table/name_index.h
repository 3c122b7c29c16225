// Finds columns by name: loops look a name up for each cell, so this is about as fast as one comparison.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace scriptwells {

class NameIndex {
 public:
  // The names are borrowed.
  explicit NameIndex(const std::vector<std::string_view>& names = {});

  // The index of the first one of this name.
  std::optional<std::size_t> Find(std::string_view name) const noexcept {
    const Slot& slot = slots_[SlotOf(name)];
    if (slot.index == kNone) return std::nullopt;
    return slot.index;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Slot {
    std::string_view name;
    std::size_t index = kNone;
  };

  // The one with this name, or the free one in which it would be.
  std::size_t SlotOf(std::string_view name) const noexcept;

  std::vector<Slot> slots_;  // a power of 2; half of them or more are free
};

}  // namespace scriptwells
