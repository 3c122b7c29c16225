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
  std::vector<RegistryValue> named;    // all, in the order of the file
  std::string damage;  // the first, such as "line 3: the quote is not closed"; nothing else then
};

RegistryContent ParseRegistryFile(std::string_view bytes);

// The value of `key`, ASCII letters in any case; null when there is none.
WideString FindRegistryValue(const std::vector<RegistryEntry>& entries, const WideString& key);
// The last value of that name, which is looked for in any case too; null when there is none.
WideString FindNamedRegistryValue(const std::vector<RegistryValue>& named, const WideString& key,
                                  const WideString& name);

// `bytes` with `value` behind `key`, or without the value of `key`. Every other line stays as it is, but a
// section of the key that is left with blank lines only is removed, and so is the blank line before it. Key
// and value have no control characters. Throws RegistryDamage.
std::string WithRegistryValue(std::string_view bytes, const WideString& key, const WideString& value);
std::string WithoutRegistryValue(std::string_view bytes, const WideString& key);

// The same for a value of any name; a null value makes the key alone.
std::string WithRegistryValue(std::string_view bytes, const RegistryValue& value);

// `bytes` without the sections that are `key` or below it, and without the values in them. Comments stay. The
// blank line before such a section goes with it.
std::string WithoutRegistryKey(std::string_view bytes, const WideString& key);

}  // namespace qv
