// Identifiers: their texts, their order, and those that are published.
#include "qvscriptwells/guid.h"

#include <gtest/gtest.h>

#include <set>

#include "qvscriptwells/objects.h"
#include "qvscriptwells/unknown.h"

namespace qv {
namespace {

constexpr Guid kSample = {0x6f628f7a, 0xb972, 0x4929, {0x83, 0xda, 0xc3, 0xc1, 0x6a, 0xc0, 0x02, 0x2f}};

TEST(Guid, TextIsReadInAnyCase) {
  EXPECT_TRUE(ParseGuid("6f628f7a-b972-4929-83da-c3c16ac0022f") == kSample);
  EXPECT_TRUE(ParseGuid("6F628F7A-B972-4929-83DA-C3C16AC0022F") == kSample);
  EXPECT_TRUE(ParseGuid("6f628F7a-B972-4929-83dA-c3C16aC0022f") == kSample);
}

TEST(Guid, IsReadAtCompileTime) {
  static_assert(ParseGuid("00000126-0000-0000-c000-000000000046").data1 == 0x126, "a constant expression");
  EXPECT_EQ(ParseGuid("00000126-0000-0000-c000-000000000046").data4[7], 0x46);
}

// One sample per field, each differing from kSample in that field alone.
const Guid kNeighbours[] = {
    {0x6f628f7b, 0xb972, 0x4929, {0x83, 0xda, 0xc3, 0xc1, 0x6a, 0xc0, 0x02, 0x2f}},
    {0x6f628f7a, 0xb973, 0x4929, {0x83, 0xda, 0xc3, 0xc1, 0x6a, 0xc0, 0x02, 0x2f}},
    {0x6f628f7a, 0xb972, 0x492a, {0x83, 0xda, 0xc3, 0xc1, 0x6a, 0xc0, 0x02, 0x2f}},
    {0x6f628f7a, 0xb972, 0x4929, {0x84, 0xda, 0xc3, 0xc1, 0x6a, 0xc0, 0x02, 0x2f}},
    {0x6f628f7a, 0xb972, 0x4929, {0x83, 0xda, 0xc3, 0xc1, 0x6a, 0xc0, 0x02, 0x30}},
};

TEST(Guid, EveryFieldCountsForEquality) {
  EXPECT_FALSE(kSample != ParseGuid("6f628f7a-b972-4929-83da-c3c16ac0022f"));
  for (const Guid& other : kNeighbours) {
    EXPECT_FALSE(kSample == other);
    EXPECT_TRUE(kSample != other);
  }
}

TEST(Guid, OrderIsStrictAndLooksAtEveryField) {
  EXPECT_FALSE(kSample < kSample);
  for (const Guid& other : kNeighbours) EXPECT_NE(kSample < other, other < kSample);
  std::set<Guid> all(std::begin(kNeighbours), std::end(kNeighbours));
  all.insert(kSample);
  EXPECT_EQ(all.size(), 6U);
}

TEST(Guid, PublishedInterfacesHavePublishedIds) {
  const Guid unknown = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  EXPECT_TRUE(IUnknown::kIid == unknown);
  const Guid supportErrorInfo = {
      0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
  EXPECT_TRUE(ISupportErrorInfo::kIid == supportErrorInfo);
  const Guid runnable = {0x126, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  EXPECT_TRUE(IRunnableObject::kIid == runnable);
}

TEST(Guid, InterfacesOfTheLibraryDiffer) {
  const std::set<Guid> ids = {IID_IAttachedFile,       IID_IDuration,
                              IParameter::kIid,        IParameters::kIid,
                              IConnectionString::kIid, IConnectionStringRaw::kIid,
                              IConnectionModel::kIid,  IConnectionModelRaw::kIid,
                              IUnknown::kIid,          ISupportErrorInfo::kIid,
                              IRunnableObject::kIid};
  EXPECT_EQ(ids.size(), 11U);
}

}  // namespace
}  // namespace qv
