// Replaces secrets in what listeners see.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace scriptwells {

// Finds each secret as it is and escaped for XML, URLs and JSON, also twice (an URL in XML); in UTF-8,
// Latin-1 and UTF-16; and, from 4 bytes on, within a text in base64.
class Masking {
 public:
  // Empty texts are left out. UTF-8.
  void Add(const std::string& secret);
  // The text with "***" in place of each secret.
  std::string Masked(std::string text) const;

 private:
  struct Needle {
    std::u16string units;
    bool isBase64;
  };

  void AddBase64(std::string_view bytes);
  void AddNeedle(std::u16string units, bool isBase64);

  std::vector<Needle> needles_;
};

}  // namespace scriptwells
