// What an installation writes into the registry file is what the library registers for itself.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "automation/registration.h"
#include "registry/registry_file.h"

namespace qv {
namespace {

constexpr char kPath[] = "/lib/libqvscriptwells.so.1";

// The text that the script appends, with its quoting undone.
std::string InstalledText() {
  std::ifstream file(QV_SOURCE_DIR "/cmake/install_registry.cmake.in");
  const std::string script((std::istreambuf_iterator<char>(file)), {});
  const std::string start = "string(APPEND text \"";
  const std::size_t at = script.find(start) + start.size();
  std::string text;
  for (std::size_t i = at; i < script.size() && script[i] != '"'; ++i) {
    if (script[i] == '\\') ++i;
    text += script[i];
  }
  const std::string place = "${library}";
  return text.replace(text.find(place), place.size(), '"' + std::string(kPath) + '"');
}

std::string RegisteredText() {
  std::string text;
  for (const RegistryValue& value : ClassEntries(FromUtf8(kPath))) text = WithRegistryValue(text, value);
  return text;
}

std::multiset<std::string> Lines(const RegistryContent& content) {
  std::multiset<std::string> lines;
  for (const RegistryEntry& entry : content.entries)
    lines.insert(ToUtf8(entry.key) + " = " + ToUtf8(entry.value));
  for (const RegistryValue& value : content.named)
    lines.insert(ToUtf8(value.key) + " " + ToUtf8(value.name) + " = " + ToUtf8(value.value));
  return lines;
}

TEST(InstalledRegistration, IsWhatTheLibraryRegisters) {
  const RegistryContent installed = ParseRegistryFile(InstalledText());
  EXPECT_EQ(installed.damage, "");
  EXPECT_EQ(installed.named.size(), 3U);
  EXPECT_EQ(Lines(installed), Lines(ParseRegistryFile(RegisteredText())));
}

}  // namespace
}  // namespace qv
