// Reading of texts of fixed form, piece by piece.
#pragma once

#include <cstddef>
#include <string_view>

namespace qv::devservice {

// The text without the white space of XML (space, tab, line ends) at both ends.
std::string_view Trim(std::string_view text);

bool StartsWith(std::string_view text, std::string_view start);
bool EndsWith(std::string_view text, std::string_view end);

// Borrows the text. A copy is a second reader at the same place.
class TextScanner {
 public:
  explicit TextScanner(std::string_view text) : rest_(text) {}
  // What is not read yet.
  std::string_view Rest() const { return rest_; }

  // Reads the character if it comes next; false, and nothing read, otherwise.
  bool Take(char wanted);
  // Reads exactly this many digits, at most nine; false, and nothing read, when fewer stand there.
  bool TakeNumber(std::size_t digits, int& value);
  // Reads all digits that come next, which may be none.
  std::string_view TakeDigits();

 private:
  std::string_view rest_;
};

}  // namespace qv::devservice
