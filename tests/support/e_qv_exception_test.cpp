#include "qvscriptwells/e_qv_exception.h"

#include <gtest/gtest.h>

#include "support/print_wide_string.h"

namespace qv {
namespace {

struct Merged {
  std::uint32_t given;
  std::uint32_t stored;
};

const Merged kMerged[] = {
    {0x00000000, 0x00000000}, {0x00000001, 0x80040001}, {0x00000005, 0x80040005}, {0x00040000, 0x80040000},
    {0x80000000, 0x80040000}, {0x80004005, 0x80044005}, {0x80020009, 0x80060009}, {0x80040005, 0x80040005},
    {0x80070057, 0x80070057}, {0x7FFFFFFF, 0xFFFFFFFF}, {0xFFFFFFFF, 0xFFFFFFFF}, {0x000003E8, 0x800403E8},
};

TEST(EQvException, CodeGetsTheBitsOfItsFacilityUnlessItIsZero) {
  for (const Merged& row : kMerged) {
    const EQvException error(u"words", static_cast<HRESULT>(row.given));
    EXPECT_EQ(static_cast<std::uint32_t>(error.Code()), row.stored) << std::hex << row.given;
  }
}

TEST(EQvException, CodeIsZeroWhenNotGiven) {
  EXPECT_EQ(EQvException(u"words").Code(), 0);
}

TEST(EQvException, WordsStayAsTheyAre) {
  EXPECT_EQ(EQvException(u"The are no parameters.").Description(), u"The are no parameters.");
  EXPECT_TRUE(EQvException(WideString(), 5).Description().IsNull());
  EXPECT_FALSE(EQvException(u"").Description().IsNull());
}

TEST(EQvException, IsAStandardExceptionWithAFixedText) {
  const EQvException error(u"words", 5);
  const std::exception& base = error;
  ASSERT_NE(base.what(), nullptr);
  EXPECT_STRNE(base.what(), "");
  EXPECT_STREQ(base.what(), EQvException(u"other words").what());
}

TEST(EQvException, CopyKeepsWordsAndCode) {
  const EQvException error(u"words", 5);
  const EQvException copy(error);
  EXPECT_EQ(copy.Description(), u"words");
  EXPECT_EQ(static_cast<std::uint32_t>(copy.Code()), 0x80040005u);
}

}  // namespace
}  // namespace qv
