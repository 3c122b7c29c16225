#include "qvscriptwells/secret_text.h"

#include <gtest/gtest.h>

#include "platform/string_block.h"

namespace qv {
namespace {

TEST(SecretText, NoTextIsOneUnlessItIsMarked) {
  EXPECT_FALSE(IsSecret(WideString(u"plain").data()));
}

TEST(SecretText, MarkIsOnAllCopies) {
  const WideString before(u"word");
  const WideString marked = before;
  MarkSecret(marked);
  const WideString after = marked;
  EXPECT_TRUE(IsSecret(before.data()));
  EXPECT_TRUE(IsSecret(after.data()));
  EXPECT_EQ(before, WideString(u"word"));
}

TEST(SecretText, NullIsLeftAlone) {
  MarkSecret(nullptr);
  MarkSecret(WideString());
  EXPECT_FALSE(IsSecret(nullptr));
}

TEST(SecretText, CopyThatDetachMakesIsMarked) {
  WideString text(u"word");
  const WideString other = text;
  MarkSecret(text);
  BStr detached = text.Detach();
  EXPECT_NE(detached, other.data());
  EXPECT_TRUE(IsSecret(detached));
  FreeString(detached);
}

TEST(SecretText, TextInItsPlaceIsMarked) {
  BStr text = AllocString(u"word", 4);
  MarkSecret(text);
  ASSERT_TRUE(ReplaceString(&text, u"other"));
  EXPECT_TRUE(IsSecret(text));
  EXPECT_EQ(StringLength(text), 5u);
  FreeString(text);
}

TEST(SecretText, ResizedBlockKeepsMarkUnitsAndLength) {
  BStr text = AllocString(u"word", 4);
  MarkSecret(text);
  text = ResizeStringBlock(text, 1000);
  EXPECT_TRUE(IsSecret(text));
  EXPECT_EQ(std::u16string_view(text, StringLength(text)), u"word");
  EXPECT_EQ(text[4], u'\0');
  text = ResizeStringBlock(text, 2);
  EXPECT_EQ(std::u16string_view(text, StringLength(text)), u"wo");
  FreeString(text);
}

}  // namespace
}  // namespace qv
