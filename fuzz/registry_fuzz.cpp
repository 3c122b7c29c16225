// Tests the parser of registry files, which people edit by hand. Nothing may crash; in a valid file, writing
// and removing a key must leave every other key unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "registry/registry_file.h"

namespace {

const qv::WideString kKey(u"SOFTWARE\\Fuzz");

void Require(bool holds) {
  if (!holds) std::abort();
}

// `after` has all values of `before`, except that of this test's key.
void RequireKept(const qv::RegistryContent& before, const qv::RegistryContent& after) {
  for (const qv::RegistryEntry& entry : before.entries) {
    const qv::WideString own = qv::FindRegistryValue({{entry.key, u"x"}}, kKey);
    Require(!own.IsNull() || qv::FindRegistryValue(after.entries, entry.key) == entry.value);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const qv::RegistryContent content = qv::ParseRegistryFile(bytes);
  if (!content.damage.empty()) {
    Require(content.entries.empty());
    return 0;
  }
  const std::string written = qv::WithRegistryValue(bytes, kKey, u"a \"b\" \\ c");
  const qv::RegistryContent with = qv::ParseRegistryFile(written);
  Require(with.damage.empty());
  Require(qv::FindRegistryValue(with.entries, kKey) == qv::WideString(u"a \"b\" \\ c"));
  RequireKept(content, with);
  const qv::RegistryContent without = qv::ParseRegistryFile(qv::WithoutRegistryValue(written, kKey));
  Require(without.damage.empty() && qv::FindRegistryValue(without.entries, kKey).IsNull());
  RequireKept(content, without);
  return 0;
}
