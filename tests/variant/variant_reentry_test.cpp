// Variants whose objects call back while they are released or copied, and reach the same Variant.
#include <gtest/gtest.h>

#include <utility>

#include "fixtures/calling_object.h"
#include "qvscriptwells/variant.h"

namespace qv {
namespace {

class VariantReentry : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(CallingObject::Live(), 0); }

  static Variant Object(const CallingObject::Call& onEnd) {
    auto* const object = new CallingObject;
    object->OnEnd(onEnd);
    return Variant::FromObject(object);
  }
  static Variant Object() { return Object(nullptr); }
};

TEST_F(VariantReentry, ReleaseInMoveAssignmentFindsTheNewValue) {
  Variant value;
  VARTYPE found = VT_EMPTY;
  value = Object([&] { found = value.Tag(); });
  value = Variant::FromInt(7);
  EXPECT_EQ(found, VT_INT);
  EXPECT_EQ(value.Data().intVal, 7);
}

TEST_F(VariantReentry, AssignmentInsideMoveAssignmentStays) {
  Variant value;
  value = Object([&] { value = Object(); });
  value = Object();
  EXPECT_EQ(value.Tag(), VT_UNKNOWN);
  EXPECT_EQ(CallingObject::Live(), 1);
}

TEST_F(VariantReentry, AssignmentInsideCopyAssignmentStays) {
  Variant value;
  value = Object([&] { value = Variant::FromShort(2); });
  const Variant other = Object();
  value = other;
  EXPECT_EQ(value.Tag(), VT_I2);
  EXPECT_EQ(value.Data().iVal, 2);
}

TEST_F(VariantReentry, AssignmentInsideClearStays) {
  Variant value;
  value = Object([&] { value = Variant::FromShort(2); });
  value.Clear();
  EXPECT_EQ(value.Data().iVal, 2);
}

TEST_F(VariantReentry, ClearInsideMoveAssignmentEmptiesIt) {
  Variant value;
  value = Object([&] { value.Clear(); });
  value = Object();
  EXPECT_EQ(value.Tag(), VT_EMPTY);
  EXPECT_EQ(CallingObject::Live(), 0);
}

TEST_F(VariantReentry, SwapReleasesNothing) {
  int ended = 0;
  Variant first = Object([&] { ++ended; });
  Variant second = Variant::FromInt(7);
  std::swap(first, second);
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(first.Tag(), VT_INT);
  EXPECT_EQ(second.Tag(), VT_UNKNOWN);
  second.Clear();
  EXPECT_EQ(ended, 1);
}

TEST_F(VariantReentry, MovedOntoItselfItStays) {
  Variant value = Object();
  Variant& same = value;
  value = std::move(same);
  EXPECT_EQ(value.Tag(), VT_UNKNOWN);
  EXPECT_EQ(CallingObject::Live(), 1);
}

// The source changes while it is copied; the copy is what stood there before.
TEST_F(VariantReentry, SourceThatChangesWhileItIsCopiedIsCopiedWhole) {
  auto* const object = new CallingObject;
  Variant source = Variant::FromObject(object);
  object->OnAddRef([&] { source = Variant::FromInt(7); });
  {
    const Variant copy(source);  // NOLINT(performance-unnecessary-copy-initialization): the copy is tested
    EXPECT_EQ(copy.Tag(), VT_UNKNOWN);
    EXPECT_EQ(copy.Object(), object);
  }
  EXPECT_EQ(source.Tag(), VT_INT);
}

}  // namespace
}  // namespace qv
