// Documents by chance for comparing two parsers. The same seed gives the same documents everywhere.
#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace qv {

class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}
  // From 0 to `bound` - 1. The library's distributions differ between systems, so none is used.
  std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(engine_()) % bound; }
  bool OneIn(std::uint32_t chances) { return Below(chances) == 0; }

 private:
  std::mt19937 engine_;
};

// A document in UTF-8 that any parser takes, with or without a document type (declared elements, default
// attributes, entities), comments, instructions, CDATA, references, prefixes, white space; few are long or
// deep. One of them may not be valid against its own document type.
std::string RandomDocument(Random* random);

// The document with one thing wrong, so that nearly every parser refuses it somewhere.
std::string Damaged(const std::string& document, Random* random);

}  // namespace qv
