// Replaces secrets in what listeners see.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace scriptwells {

// Finds each secret as it is and escaped for XML, URLs, JSON and scripts, also twice (an URL in XML); in
// UTF-8, Latin-1 and UTF-16; and, from 4 bytes on, within a text in base64.
class Masking {
 public:
  struct Found {
    std::size_t begin, end;
    std::size_t secret;  // as Add counts them
  };

  // Empty texts are left out, but counted. UTF-8.
  void Add(const std::string& secret);
  // Where secrets are, in any order. They may overlap.
  std::vector<Found> FindIn(std::string_view text) const;
  // The text with "***" in place of each secret.
  std::string Masked(std::string text) const;

 private:
  struct Needle {
    std::u16string units;
    bool isBase64;
    std::size_t secret;
  };

  void AddBase64(std::string_view bytes);
  void AddNeedle(std::u16string units, bool isBase64);

  std::vector<Needle> needles_;
  std::size_t secrets_ = 0;
};

}  // namespace scriptwells
