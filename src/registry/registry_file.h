// One registry file's text: its entries, and the text with one entry changed. Pure functions over bytes, any
// thread. qvscriptwells/registry.h describes the format.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "qvscriptwells/registry.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

struct RegistryContent {
  std::vector<RegistryEntry> entries;  // each key once: of several values the last one counts
  std::vector<RegistryValue> named;    // all, in the order of the file
  std::string damage;  // the first, such as "line 3: the quote is not closed"; all else is then empty
};

RegistryContent ParseRegistryFile(std::string_view bytes);

// The value of `key`, ignoring the case of ASCII letters; null if there is none.
WideString FindRegistryValue(const std::vector<RegistryEntry>& entries, const WideString& key);
// The last value of that name, also ignoring case; null if there is none.
WideString FindNamedRegistryValue(const std::vector<RegistryValue>& named, const WideString& key,
                                  const WideString& name);

// `bytes` with `value` as the value of `key`, or without its value. All other lines are unchanged, but a
// section of the key that then has only blank lines is removed, with the blank line before it. Key and value
// have no control characters. Throws RegistryDamage.
std::string WithRegistryValue(std::string_view bytes, const WideString& key, const WideString& value);
std::string WithoutRegistryValue(std::string_view bytes, const WideString& key);

// The same for a value of any name; a null value creates the key only.
std::string WithRegistryValue(std::string_view bytes, const RegistryValue& value);

// `bytes` without the sections that are `key` or below it, and without the values in them. Comments stay.
// Also removes the blank line before such a section.
std::string WithoutRegistryKey(std::string_view bytes, const WideString& key);

}  // namespace qv
