#include "memory_search.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace qv::test {
namespace {

constexpr unsigned char kDisguise = 0x80;
constexpr std::size_t kSlice = 16;
constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr std::size_t kOverlap = 2 * kSlice;

struct Mapping {
  std::uintptr_t begin;
  std::uintptr_t end;
  std::string name;
};

std::vector<Mapping> ReadableMappings() {
  std::vector<Mapping> all;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    std::istringstream fields(line);
    Mapping one{};
    char dash = 0;
    std::string rights;
    std::string offset;
    std::string device;
    std::string inode;
    fields >> std::hex >> one.begin >> dash >> one.end >> rights >> offset >> device >> inode >> one.name;
    if (!rights.empty() && rights.front() == 'r') all.push_back(one);
  }
  return all;
}

// What is searched is copied here; hits in the copy itself do not count.
class Window {
 public:
  Window()
      : memory_(::open("/proc/self/mem", O_RDONLY | O_CLOEXEC)),
        bytes_(mmap(nullptr, kPiece, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    if (memory_ < 0 || bytes_ == MAP_FAILED) throw std::runtime_error("the memory cannot be read");
  }
  ~Window() {
    munmap(bytes_, kPiece);
    ::close(memory_);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Empty where the system lets nobody read.
  std::basic_string_view<unsigned char> Read(std::uintptr_t begin, std::uintptr_t end) {
    const std::size_t wanted = end - begin < kPiece ? end - begin : kPiece;
    const ssize_t count = pread(memory_, bytes_, wanted, static_cast<off_t>(begin));
    return {static_cast<unsigned char*>(bytes_), count < 0 ? 0 : static_cast<std::size_t>(count)};
  }
  bool Holds(std::uintptr_t address) const {
    const auto begin = reinterpret_cast<std::uintptr_t>(bytes_);
    return address >= begin && address < begin + kPiece;
  }

 private:
  int memory_;
  void* bytes_;
};

struct Wanted {
  const char* name;
  std::size_t at;     // of the first letter
  std::size_t width;  // bytes of a letter
};

constexpr Wanted kWanted[] = {{"UTF-8 front", 0, 1},
                              {"UTF-8 back", MarkedText::kLetters - kSlice, 1},
                              {"UTF-16 front", 0, 2},
                              {"UTF-16 back", MarkedText::kLetters - kSlice, 2}};

bool Matches(std::basic_string_view<unsigned char> bytes, const std::string& disguised,
             const Wanted& wanted) {
  if (bytes.size() < kSlice * wanted.width) return false;
  for (std::size_t i = 0; i < kSlice; ++i) {
    const unsigned char* const letter = bytes.data() + i * wanted.width;
    if ((letter[0] ^ kDisguise) != static_cast<unsigned char>(disguised[wanted.at + i])) return false;
    if (wanted.width == 2 && letter[1] != 0) return false;
  }
  return true;
}

bool MayBegin(unsigned char byte, const std::string& disguised) {
  const char letter = static_cast<char>(byte ^ kDisguise);
  return letter == disguised.front() || letter == disguised[MarkedText::kLetters - kSlice];
}

}  // namespace

MarkedText::MarkedText() : disguised_(kLetters, '\0') {
  if (getrandom(disguised_.data(), kLetters, 0) != static_cast<ssize_t>(kLetters))
    throw std::runtime_error("no random bytes");
  for (char& letter : disguised_)
    letter = static_cast<char>(('a' + static_cast<unsigned char>(letter) % 26) ^ kDisguise);
}

void MarkedText::Reveal(char16_t* letters) const {
  for (std::size_t i = 0; i < kLetters; ++i)
    letters[i] = static_cast<unsigned char>(disguised_[i]) ^ kDisguise;
}

std::string MarkedText::Text() const {
  std::string text = disguised_;
  for (char& letter : text) letter = static_cast<char>(static_cast<unsigned char>(letter) ^ kDisguise);
  return text;
}

std::vector<std::string> MarkedText::FindInMemory() const {
  std::vector<std::string> found;
  Window window;
  for (const Mapping& mapping : ReadableMappings()) {
    for (std::uintptr_t at = mapping.begin; at < mapping.end; at += kPiece - kOverlap) {
      const auto bytes = window.Read(at, mapping.end);
      for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (!MayBegin(bytes[i], disguised_)) continue;
        for (const Wanted& wanted : kWanted)
          if (Matches(bytes.substr(i), disguised_, wanted) && !window.Holds(at + i))
            found.push_back(mapping.name + " " + wanted.name);
      }
      if (at + bytes.size() >= mapping.end || bytes.empty()) break;
    }
  }
  return found;
}

}  // namespace qv::test
