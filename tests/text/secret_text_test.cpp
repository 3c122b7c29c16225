#include "qvscriptwells/secret_text.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "qvscriptwells/com_error.h"
#include "text/string_block.h"

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

TEST(SecretText, FrontStaysWhereTheRestIsResized) {
  BStr text = AllocString(u"word and more", 13);
  MarkSecretFront(text, 4);
  for (const std::size_t capacity : {std::size_t{100000}, std::size_t{20}, std::size_t{13}}) {
    text = ResizeStringBlock(text, capacity);
    EXPECT_TRUE(IsSecret(text));
    EXPECT_EQ(std::u16string_view(text, StringLength(text)), u"word and more");
    EXPECT_EQ(text[13], u'\0');
  }
  FreeString(text);
}

TEST(SecretText, FrontOfAFailedResizeStays) {
  BStr text = AllocString(u"word and more", 13);
  MarkSecretFront(text, 4);
  EXPECT_THROW(text = ResizeStringBlock(text, SIZE_MAX / 2), _com_error);
  EXPECT_EQ(std::u16string_view(text, StringLength(text)), u"word and more");
  FreeString(text);
}

}  // namespace
}  // namespace qv
