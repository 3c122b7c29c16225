// The exception of the library: its code, its message, and copies of it.
#include "qvscriptwells/e_qv_exception.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>

#include "fixtures/scarce_memory.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

TEST(EQvException, CodeGetsTheBitsOfItsFacilityUnlessItIsZero) {
  const std::pair<std::uint32_t, std::uint32_t> rows[] = {
      {0x00000000, 0x00000000}, {0x00000001, 0x80040001}, {0x00000005, 0x80040005}, {0x00040000, 0x80040000},
      {0x80000000, 0x80040000}, {0x80004005, 0x80044005}, {0x80020009, 0x80060009}, {0x80040005, 0x80040005},
      {0x80070057, 0x80070057}, {0x7FFFFFFF, 0xFFFFFFFF}, {0xFFFFFFFF, 0xFFFFFFFF}, {0x000003E8, 0x800403E8}};
  for (const auto& [given, stored] : rows)
    EXPECT_EQ(static_cast<std::uint32_t>(EQvException(u"message", static_cast<HRESULT>(given)).Code()),
              stored)
        << std::hex << given;
  EXPECT_EQ(EQvException(u"message").Code(), 0);
}

TEST(EQvException, MessageStaysAsItIs) {
  EXPECT_EQ(EQvException(u"The are no parameters.").Description(), u"The are no parameters.");
  EXPECT_TRUE(EQvException(WideString(), 5).Description().IsNull());
  EXPECT_FALSE(EQvException(u"").Description().IsNull());
}

TEST(EQvException, WhatIsTheMessageInUtf8OrTheCode) {
  const EQvException error(u"Can\u2019t find caf\u00E9", 5);
  const std::exception& base = error;
  EXPECT_STREQ(base.what(), "Can\xE2\x80\x99t find caf\xC3\xA9");
  EXPECT_STREQ(EQvException(WideString(), 5).what(), "0x80040005");
  EXPECT_STREQ(EQvException(u"", 5).what(), "0x80040005");
  EXPECT_STREQ(EQvException(WideString()).what(), "0x00000000");
}

TEST(EQvException, WhatWithoutMemoryIsAFixedText) {
  const WideString message(u"a message that no small text holds");
  for (const long granted : {0L, 1L}) {
    const EQvException error = [&] {
      const ScarceMemory scarce(Memory::kObjects, granted);
      return EQvException(message);
    }();
    EXPECT_STREQ(error.what(), "the call of a script service failed") << granted;
    EXPECT_EQ(error.Description(), message);
  }
}

TEST(EQvException, CopyCostsNoMemoryAndKeepsTheText) {
  static_assert(std::is_nothrow_copy_constructible_v<EQvException>);
  auto error = std::make_unique<EQvException>(u"a message that no small text holds");
  const ScarceMemory scarce(Memory::kBoth, 0);
  const EQvException copy(*error);
  error.reset();
  EXPECT_STREQ(copy.what(), "a message that no small text holds");
  EXPECT_FALSE(ScarceMemory::HasRefused());
}

TEST(EQvException, CopyKeepsMessageAndCode) {
  const EQvException error(u"message", 5);
  const EQvException copy(error);  // NOLINT(performance-unnecessary-copy-initialization): the copy is tested
  EXPECT_EQ(copy.Description(), u"message");
  EXPECT_EQ(static_cast<std::uint32_t>(copy.Code()), 0x80040005U);
}

}  // namespace
}  // namespace qv
