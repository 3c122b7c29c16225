// The error record of a thread.
#include "qvscriptwells/error_info.h"

#include <gtest/gtest.h>

#include <thread>

#include "fixtures/scarce_memory.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr Guid kSomeInterface = ParseGuid("9d152496-5e82-4675-86e6-caaef442f767");

ErrorInfo Message(const char16_t* description) {
  ErrorInfo info;
  info.description = description;
  return info;
}

class ErrorInfoTest : public testing::Test {
 protected:
  ErrorInfoTest() { ClearErrorInfo(); }
  ~ErrorInfoTest() override { ClearErrorInfo(); }
};

TEST_F(ErrorInfoTest, NewRecordIsEmpty) {
  const ErrorInfo info;
  EXPECT_TRUE(info.interfaceId == Guid{});
  EXPECT_TRUE(info.source.IsNull());
  EXPECT_TRUE(info.description.IsNull());
  EXPECT_TRUE(info.helpFile.IsNull());
  EXPECT_EQ(info.helpContext, 0U);
}

TEST_F(ErrorInfoTest, PostedRecordIsTakenOnceWithAllFields) {
  SetErrorInfo({kSomeInterface, u"Class.1", u"words", u"help", 4000000000U});
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  for (int round = 0; round < 2; ++round) {  // the second one finds no record and leaves its argument
    EXPECT_TRUE(info.interfaceId == kSomeInterface);
    EXPECT_EQ(info.source, u"Class.1");
    EXPECT_EQ(info.description, u"words");
    EXPECT_EQ(info.helpFile, u"help");
    EXPECT_EQ(info.helpContext, 4000000000U);
    EXPECT_FALSE(GetErrorInfo(&info));
  }
}

TEST_F(ErrorInfoTest, LaterRecordReplacesTheWaitingOne) {
  ErrorInfo first = Message(u"first");
  first.source = u"Class.1";
  SetErrorInfo(first);
  SetErrorInfo(Message(u"second"));
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(info.description, u"second");
  EXPECT_TRUE(info.source.IsNull());
  EXPECT_FALSE(GetErrorInfo(&info));
}

TEST_F(ErrorInfoTest, ClearDropsTheWaitingRecord) {
  SetErrorInfo(Message(u"words"));
  ClearErrorInfo();
  ErrorInfo info;
  EXPECT_FALSE(GetErrorInfo(&info));
  ClearErrorInfo();
}

TEST_F(ErrorInfoTest, NullAndEmptyDescriptionsStayApart) {
  ErrorInfo info;
  SetErrorInfo(Message(u""));
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_FALSE(info.description.IsNull());
  SetErrorInfo(ErrorInfo{});
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_TRUE(info.description.IsNull());
}

TEST_F(ErrorInfoTest, EachThreadHasItsOwnRecord) {
  SetErrorInfo(Message(u"mine"));
  bool seenThere = true;
  bool takenThere = false;
  std::thread([&] {
    ErrorInfo info;
    seenThere = GetErrorInfo(&info);
    SetErrorInfo(Message(u"theirs"));
    takenThere = GetErrorInfo(&info) && info.description == u"theirs";
    SetErrorInfo(Message(u"left"));
  }).join();
  EXPECT_FALSE(seenThere);
  EXPECT_TRUE(takenThere);
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(info.description, u"mine");
}

// The first record of a thread: a failure for lack of memory has its message.
TEST_F(ErrorInfoTest, RecordNeedsNoMemory) {
  bool waits = false;
  ErrorInfo taken;
  std::thread([&] {
    const ErrorInfo info = Message(u"words");
    const ScarceMemory scarce(Memory::kBoth, 0);
    ClearErrorInfo();
    SetErrorInfo(info);
    waits = GetErrorInfo(&taken);
  }).join();
  EXPECT_TRUE(waits);
  EXPECT_EQ(taken.description, u"words");
}

TEST_F(ErrorInfoTest, RecordWithoutMemoryReplacesTheOldOne) {
  SetErrorInfo(Message(u"old"));
  ErrorInfo info = Message(u"new");
  {
    const ScarceMemory scarce(Memory::kBoth, 0);
    SetErrorInfo(info);
  }
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(info.description, u"new");
}

}  // namespace
}  // namespace qv
