// A saved message as a person reads it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/inspect/known_secrets.h"
#include "tools/inspect/saved_message.h"

namespace qv::cli {

struct OutlineLine {
  std::size_t depth = 0;
  std::string label;  // "value int", "header Content-Type"
  std::string text;   // as it is in the message
  bool isHead = false;
  std::size_t at = 0;  // byte of head or body
};

// At most 200 lines of parameters and cells, and then how many more there are.
std::vector<OutlineLine> OutlineOf(const SavedMessage& message);

// Passwords, session ids and tickets, found by their place in the message.
void LearnSecrets(const SavedMessage& message, KnownSecrets& secrets);

}  // namespace qv::cli
