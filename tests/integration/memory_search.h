// A text that this process can look for in its own memory without holding it there.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qv::test {

// Forty random letters, kept in a disguise. Whoever takes them in the clear clears his copy.
class MarkedText {
 public:
  static constexpr std::size_t kLetters = 40;

  MarkedText();
  // kLetters of them.
  void Reveal(char16_t* letters) const;
  // In the clear, for another process.
  std::string Text() const;

  // Where the memory of this process holds the front or the back of the text, in UTF-8 or UTF-16: the name of
  // the mapping and what was found there, such as "[heap] UTF-16 front". Throws std::runtime_error when the
  // memory cannot be read.
  std::vector<std::string> FindInMemory() const;

 private:
  std::string disguised_;
};

}  // namespace qv::test
