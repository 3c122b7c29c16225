// One pointer for each thread, dropped with its thread.
#include "system/thread_slot.h"

#include <gtest/gtest.h>

#include <new>
#include <thread>

namespace qv {
namespace {

int dropped = 0;

void Count(void* /*place*/) {
  ++dropped;
}

class ThreadSlotTest : public testing::Test {
 protected:
  ThreadSlotTest() { dropped = 0; }
};

TEST_F(ThreadSlotTest, KeepsOnePointerForEachThread) {
  ThreadSlot slot(&Count);
  int mine = 0;
  int theirs = 0;
  EXPECT_EQ(slot.Get(), nullptr);
  EXPECT_TRUE(slot.Set(&mine));
  std::thread([&] {
    EXPECT_EQ(slot.Get(), nullptr);
    EXPECT_TRUE(slot.Set(&theirs));
    EXPECT_EQ(slot.Get(), &theirs);
  }).join();
  EXPECT_EQ(dropped, 1);
  EXPECT_EQ(slot.Get(), &mine);
  EXPECT_TRUE(slot.Set(nullptr));
}

TEST_F(ThreadSlotTest, PointerThatIsTakenOutIsNotDropped) {
  ThreadSlot slot(&Count);
  int place = 0;
  std::thread([&] {
    EXPECT_TRUE(slot.Set(&place));
    EXPECT_TRUE(slot.Set(nullptr));
  }).join();
  EXPECT_EQ(dropped, 0);
}

TEST_F(ThreadSlotTest, EndDropsThePointerOfItsThread) {
  int place = 0;
  {
    ThreadSlot slot(&Count);
    EXPECT_TRUE(slot.Set(&place));
  }
  EXPECT_EQ(dropped, 1);
}

// Objects in globals may be released after it.
TEST_F(ThreadSlotTest, KeepsNothingAfterItsEnd) {
  alignas(ThreadSlot) unsigned char memory[sizeof(ThreadSlot)];
  auto* const slot = new (memory) ThreadSlot(&Count);
  int place = 0;
  slot->~ThreadSlot();
  EXPECT_FALSE(slot->Set(&place));
  EXPECT_EQ(slot->Get(), nullptr);
  EXPECT_TRUE(slot->Set(nullptr));
}

}  // namespace
}  // namespace qv
