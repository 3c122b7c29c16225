#include "devservice/values/names.h"

#include <gtest/gtest.h>

#include <string>

namespace qv::devservice::testing {
namespace {

TEST(FileName, OrdinaryNamesAreGood) {
  for (const char* name : {"a", "a b.txt", "...", ".hidden", "\xC3\xA9", "\xC2\xA0x", "a,b'(c)%20[d]~"}) {
    EXPECT_TRUE(IsFileName(name)) << name;
  }
  EXPECT_TRUE(IsFileName(std::string(255, 'a')));
}

TEST(FileName, NamesThatMislead) {
  for (const char* name : {"", ".", "..", "a/b", "a\\b", "a\"b", "a;b", "a=b", " a", "a ", "a\nb", "a\rb",
                           "a\x1F", "a\x7F", "a\xC2\x85"}) {
    EXPECT_FALSE(IsFileName(name)) << name;
  }
  EXPECT_FALSE(IsFileName(std::string("a\0b", 3)));
  EXPECT_FALSE(IsFileName(std::string(256, 'a')));
}

}  // namespace
}  // namespace qv::devservice::testing
