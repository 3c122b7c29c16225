#include "face/table/name_index.h"

#include <cstdint>
#include <cstring>

namespace scriptwells {

namespace {

template <class Word>
std::uint64_t WordAt(const char* place) noexcept {
  Word word = 0;
  std::memcpy(&word, place, sizeof word);
  return word;
}

// The first and the last bytes, which overlap in a short name.
template <class Word>
std::uint64_t Ends(std::string_view name) noexcept {
  return WordAt<Word>(name.data()) * 31 + WordAt<Word>(name.data() + name.size() - sizeof(Word));
}

// Looks at up to 16 bytes, since a name may be long.
std::uint64_t HashOf(std::string_view name) noexcept {
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
  std::uint64_t ends = 0;
  if (name.size() >= 8)
    ends = Ends<std::uint64_t>(name);
  else if (name.size() >= 4)
    ends = Ends<std::uint32_t>(name);
  else
    for (const char c : name) ends = ends * 31 + static_cast<unsigned char>(c);
  return ((ends + name.size()) * kSpread) >> 32;
}

}  // namespace

NameIndex::NameIndex(const std::vector<std::string_view>& names) {
  std::size_t size = 2;
  while (size < 2 * names.size()) size *= 2;
  slots_.resize(size);
  for (std::size_t i = 0; i < names.size(); ++i) {
    Slot& slot = slots_[SlotOf(names[i])];
    if (slot.index == kNone) slot = {names[i], i};
  }
}

std::size_t NameIndex::SlotOf(std::string_view name) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = HashOf(name) & mask;
  while (slots_[at].index != kNone && slots_[at].name != name) at = (at + 1) & mask;
  return at;
}

}  // namespace scriptwells
