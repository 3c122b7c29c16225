// One registry file's text: its entries, and the text with one entry changed. Pure functions over bytes, any
// thread. The form stands in qvscriptwells/registry.h.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "qvscriptwells/registry.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

struct RegistryContent {
  std::vector<RegistryEntry> entries;  // each key once: of several values the last one counts
  std::string damage;  // the first, such as "line 3: the quote is not closed"; no entries then
};

RegistryContent ParseRegistryFile(std::string_view bytes);

// The value of `key`, ASCII letters in any case; null when there is none.
WideString FindRegistryValue(const std::vector<RegistryEntry>& entries, const WideString& key);

// `bytes` with `value` behind `key`, or without the value of `key`. Every other line stays as it is, the
// key's own section and comments included. Key and value have no control characters. Throws RegistryDamage.
std::string WithRegistryValue(std::string_view bytes, const WideString& key, const WideString& value);
std::string WithoutRegistryValue(std::string_view bytes, const WideString& key);

}  // namespace qv
