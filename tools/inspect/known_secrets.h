// What must not be shown: passwords, session ids, upload tickets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qv::cli {

// Clears its texts at the end.
class KnownSecrets {
 public:
  KnownSecrets() = default;
  ~KnownSecrets();
  KnownSecrets(const KnownSecrets&) = delete;
  KnownSecrets& operator=(const KnownSecrets&) = delete;

  // With its forms in XML, URLs and UTF-16. Nothing for an empty text.
  void Add(std::string_view secret);
  // "***" in place of each.
  std::string Masked(std::string_view text) const;
  // The bytes of `text` from `begin` to `end`, masked. A secret that is cut there is masked, too.
  std::string MaskedPart(std::string_view text, std::size_t begin, std::size_t end) const;

 private:
  std::vector<std::string> forms_;
};

}  // namespace qv::cli
