// The memory of one parse: parts of blocks, a limit, and what is given back.
#include "xml/parse_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

#include <xercesc/util/OutOfMemoryException.hpp>

namespace qv {
namespace {

using XERCES_CPP_NAMESPACE::OutOfMemoryException;

TEST(ParseMemory, PartsAreAlignedAndApart) {
  ParseMemory memory;
  std::vector<unsigned char*> parts;
  for (std::size_t size = 0; size < 3000; size += 7) {
    auto* part = static_cast<unsigned char*>(memory.allocate(size));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(part) % alignof(std::max_align_t), 0U);
    std::memset(part, static_cast<int>(parts.size() % 251), size);
    parts.push_back(part);
  }
  for (std::size_t i = 0; i < parts.size(); ++i) {
    for (std::size_t at = 0; at < i * 7; ++at) ASSERT_EQ(parts[i][at], i % 251) << i;
  }
}

TEST(ParseMemory, LargePartsAreGivenBackAtOnceInAnyOrder) {
  ParseMemory memory;
  memory.allocate(1);
  const std::size_t before = memory.BytesInUse();
  const std::size_t large = 1 << 20;
  void* parts[3];
  for (void*& part : parts) part = memory.allocate(large);
  EXPECT_GE(memory.BytesInUse(), before + 3 * large);
  for (const int i : {1, 0, 2}) memory.deallocate(parts[i]);
  EXPECT_EQ(memory.BytesInUse(), before);
}

TEST(ParseMemory, NewestPartIsGivenBackAtOnce) {
  ParseMemory memory;
  memory.deallocate(nullptr);
  EXPECT_EQ(memory.BytesInUse(), 0U);
  void* part = memory.allocate(100);
  memory.deallocate(part);
  EXPECT_EQ(memory.BytesInUse(), 0U);
  EXPECT_EQ(memory.allocate(100), part);
}

TEST(ParseMemory, LimitIsKeptAndARefusalLeavesItUsable) {
  ParseMemory memory;
  memory.SetLimit(10000);
  memory.allocate(9000);
  EXPECT_THROW(memory.allocate(2000), OutOfMemoryException);
  EXPECT_LE(memory.BytesInUse(), 10000U);
  EXPECT_NE(memory.allocate(100), nullptr);
  ParseMemory reached;
  reached.allocate(2000);
  reached.SetLimit(500);
  EXPECT_THROW(reached.allocate(1024), OutOfMemoryException);
}

TEST(ParseMemory, SmallRequestsGoBeyondTheLimitButNotForEver) {
  ParseMemory memory;
  memory.SetLimit(0);
  const auto takeAll = [&] {
    for (int i = 0; i < 20000; ++i) memory.allocate(1000);
  };
  EXPECT_THROW(takeAll(), OutOfMemoryException);
  EXPECT_GT(memory.BytesInUse(), 16000000U);
  EXPECT_LE(memory.BytesInUse(), 16777216U);
}

TEST(ParseMemory, SizesNearTheLargestAreRefused) {
  ParseMemory memory;
  for (const std::size_t size : {SIZE_MAX, SIZE_MAX - 8, SIZE_MAX / 2})
    EXPECT_THROW(memory.allocate(size), OutOfMemoryException);
}

TEST(ParseMemory, ExpectedPartsKeepTheirContentsWhenTheyGrow) {
  for (const std::size_t size : {1U << 10, 1U << 20, 2U << 20, 20U << 20, 40U << 20}) {
    SCOPED_TRACE(size);
    ParseMemory memory;
    ASSERT_TRUE(memory.Expect(size));
    EXPECT_EQ(memory.BytesInUse(), 0U);
    auto* part = static_cast<unsigned char*>(memory.Resize(nullptr, size));
    part[0] = 1;
    part[size - 1] = 2;
    auto* next = static_cast<unsigned char*>(memory.Resize(nullptr, 100));
    next[99] = 3;
    part = static_cast<unsigned char*>(memory.Resize(part, 2 * size));
    part[2 * size - 1] = 4;
    EXPECT_EQ(part[0], 1);
    EXPECT_EQ(part[size - 1], 2);
    EXPECT_EQ(next[99], 3);
  }
}

TEST(ParseMemory, NothingIsExpectedBeyondTheLimitOrAfterTheFirstPart) {
  ParseMemory memory;
  memory.SetLimit(1 << 20);
  EXPECT_FALSE(memory.Expect(1 << 20));
  EXPECT_FALSE(memory.Expect(std::size_t{40} << 20));
  memory.allocate(1);
  EXPECT_FALSE(memory.Expect(1));
}

TEST(ParseMemory, EachThreadHasItsOwnSpareBlock) {
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < 1000; ++i) {
        ParseMemory memory;
        auto* part = static_cast<unsigned char*>(memory.allocate(100));
        std::memset(part, t, 100);
        ASSERT_EQ(part[99], t);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace qv
