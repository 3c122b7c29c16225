// Characters that are not sent as well-formed XML.
#include "face/text/wire_characters.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

TEST(WireCharacters, FirstOneIsNamed) {
  const std::pair<std::string, const char*> rows[] = {
      {"", ""},
      {"a\t\r\n\x7F \xC2\x85 \xC3\xA9 \xEF\xBF\xBD \xEE\x80\x80", ""},
      {std::string("a\0b", 3), "U+0000"},
      {"a\x01\x02", "U+0001"},
      {"\x1B[0m", "U+001B"},
      {"\xEF\xBF\xBE", "U+FFFE"},
      {"\xEF\xBF\xBF", "U+FFFF"},
      {"\xF0\x90\x80\x80", "U+10000"},
      {"\xF0\x9F\x98\x80", "U+1F600"},
      {"\xF4\x8F\xBF\xBF", "U+10FFFF"},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(FirstRefusedCharacter(text), expected) << text;
}

TEST(WireCharacters, NoteNamesTheCharacter) {
  EXPECT_EQ(RefusedCharacterNote("a\x01"),
            "holds U+0001, which does not travel as well-formed XML, so most servers refuse it");
  EXPECT_EQ(RefusedCharacterNote("caf\xC3\xA9"), "");
}

}  // namespace
}  // namespace scriptwells
