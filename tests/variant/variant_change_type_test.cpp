// What holds for a change to any tag: copies, source and destination in one, and failures.
#include <gtest/gtest.h>

#include "qvscriptwells/error_info.h"
#include "variant/valued_object.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

TEST(VariantChangeType, OwnTagIsACopy) {
  ExpectChanged({{Text(u"abc"), Text(u"abc")}, {R8(0.1), R8(0.1)}});
  ValuedObject object;
  {
    Variant held;
    EXPECT_EQ(VariantChangeType(&held, Variant::FromObject(&object), VT_UNKNOWN), S_OK);
    EXPECT_EQ(held.Object(), &object);
    EXPECT_EQ(object.count, 2U);
  }
}

TEST(VariantChangeType, SourceMayBeTheDestination) {
  Variant value = Text(u" 1,234.5 ");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(VariantChangeType(&value, value, VT_INT), S_OK);
    EXPECT_TRUE(IsSame(value, Int(1234)));
  }
  EXPECT_EQ(VariantChangeType(&value, value, VT_I1), DISP_E_OVERFLOW);
  EXPECT_TRUE(IsSame(value, Int(1234)));
}

TEST(VariantChangeType, ResultLeavesUnusedBytesZero) {
  Variant value = I8(-1);
  EXPECT_EQ(VariantChangeType(&value, value, VT_I1), S_OK);
  EXPECT_EQ(value.Data().llVal, 0xFF);
}

TEST(VariantChangeType, UnknownSourceTagFailsAndLeavesTheDestination) {
  Variant value = Int(5);
  EXPECT_EQ(VariantChangeType(&value, Raw(77, 5), VT_INT), DISP_E_BADVARTYPE);
  EXPECT_TRUE(IsSame(value, Int(5)));
}

TEST(VariantChangeType, FailureLeavesNoMessageOfAnEarlierOne) {
  ErrorInfo record;
  record.description = u"stale message";
  SetErrorInfo(record);
  Variant value;
  EXPECT_EQ(VariantChangeType(&value, Variant::Null(), VT_I4), DISP_E_TYPEMISMATCH);
  EXPECT_FALSE(GetErrorInfo(&record));
}

TEST(VariantChangeType, NothingAndNullAreOnlyThemselves) {
  ExpectChanged({{Variant(), Variant()}, {Variant::Null(), Variant::Null()}, {Variant(), Text(u"")}});
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_EMPTY, {Variant::Null(), Int(0), Text(u""), Date(0.0)});
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_NULL, {Variant(), Int(0), Text(u""), Bool(false)});
  for (const VARTYPE tag : {VT_I2, VT_INT, VT_UI8, VT_R4, VT_R8, VT_BOOL, VT_DATE, VT_BSTR})
    ExpectRefused(DISP_E_TYPEMISMATCH, tag, {Variant::Null()});
}

TEST(VariantChangeType, OtherTargetsAreBad) {
  const VARTYPE tags[] = {6,  10,     12,     14,     15,     24,     25,     31,    36,
                          77, 0x2000, 0x2003, 0x4000, 0x4003, 0x400C, 0x8003, 0xFFFF};
  for (const VARTYPE tag : tags)
    ExpectRefused(DISP_E_BADVARTYPE, tag, {Variant(), Variant::Null(), Int(5), Text(u"5")});
  std::int32_t number = 5;
  ExpectRefused(DISP_E_BADVARTYPE, VT_BYREF | VT_I4, {Pointer(VT_I4, &number)});
}

TEST(VariantChangeType, OtherSourcesAreBad) {
  const VARTYPE tags[] = {10,     12,     15,     24,     31,     77,     0x2000,
                          0x2003, 0x6003, 0x8003, 0x4000, 0x4001, 0x404D, 0xFFFF};
  std::int64_t number[2] = {5, 5};
  VariantData data;
  data.byref = number;
  const auto expectBad = [](const Variant& source, VARTYPE target) {
    Variant destination = Text(u"old");
    EXPECT_EQ(VariantChangeType(&destination, source, target), DISP_E_BADVARTYPE) << ShownValue(source);
    EXPECT_TRUE(IsSame(destination, Text(u"old"))) << ShownValue(source) << " to " << target;
  };
  for (const VARTYPE tag : tags) {
    const Variant source = Variant::FromRaw(tag, data);
    for (const VARTYPE target : {VT_I4, VT_BSTR, VT_NULL, tag}) expectBad(source, target);
    expectBad(PointerToVariant(source), VT_I4);
  }
}

}  // namespace
}  // namespace qv
