// An object where a plain value is wanted: its default property is read, once.
#include <gtest/gtest.h>

#include "qvscriptwells/error_info.h"
#include "variant/valued_object.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

constexpr char kAskedOnce[] = "0 with flags 2 and 0 arguments;";

TEST(VariantChangeTypeDefault, PropertyIsReadOnceForEveryPlainTarget) {
  for (const Variant& expected : {I2(12), UI8(12), R8(12), Bool(true), Text(u"12")}) {
    ValuedObject object(Text(u"12"));
    Variant result;
    EXPECT_EQ(VariantChangeType(&result, FromDispatch(&object), expected.Tag()), S_OK);
    EXPECT_TRUE(IsSame(result, expected)) << ShownValue(result);
    EXPECT_EQ(object.Asked(), kAskedOnce);
  }
}

TEST(VariantChangeTypeDefault, PropertyOfAnyObjectIsRead) {
  ValuedObject object(I4(5));
  Variant result;
  EXPECT_EQ(VariantChangeType(&result, Variant::FromObject(&object), VT_I4), S_OK);
  EXPECT_EQ(result.Data().lVal, 5);
  const Variant held = FromDispatch(&object);
  EXPECT_EQ(VariantChangeType(&result, PointerToVariant(held), VT_I4), S_OK);
  EXPECT_EQ(VariantChangeType(&result, PointerTo(held), VT_I4), S_OK);
}

TEST(VariantChangeTypeDefault, ObjectsOfObjectsAreNotAsked) {
  ValuedObject inner(I4(5));
  ValuedObject outer(FromDispatch(&inner));
  Variant result = I4(7);
  EXPECT_EQ(VariantChangeType(&result, FromDispatch(&outer), VT_I4), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(outer.Asked(), kAskedOnce);
  EXPECT_EQ(inner.Asked(), "");
  EXPECT_EQ(result.Data().lVal, 7);
}

TEST(VariantChangeTypeDefault, ObjectsAndNothingAreNoPlainValues) {
  ValuedObject object(I4(5));
  Variant result;
  for (const VARTYPE tag : {VT_UNKNOWN, VT_DISPATCH})
    EXPECT_EQ(VariantChangeType(&result, FromDispatch(&object), tag), S_OK) << tag;
  for (const VARTYPE tag : {VT_NULL, VT_EMPTY})
    EXPECT_EQ(VariantChangeType(&result, FromDispatch(&object), tag), DISP_E_TYPEMISMATCH) << tag;
  EXPECT_EQ(object.Asked(), "");
}

TEST(VariantChangeTypeDefault, PropertyThatFailsMismatchesAndLeavesNoMessage) {
  ValuedObject object(I4(5));
  object.Fail(E_ACCESSDENIED);
  object.OnAsked([] {
    ErrorInfo info;
    info.description = u"message of the object";
    SetErrorInfo(info);
  });
  Variant result = I4(7);
  EXPECT_EQ(VariantChangeType(&result, FromDispatch(&object), VT_I4), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(result.Data().lVal, 7);
  ErrorInfo info;
  EXPECT_FALSE(GetErrorInfo(&info));
}

TEST(VariantChangeTypeDefault, ValueThatDoesNotFitHasItsOwnCode) {
  ValuedObject large(I4(70000));
  ValuedObject words(Text(u"words"));
  Variant result;
  EXPECT_EQ(VariantChangeType(&result, FromDispatch(&large), VT_I2), DISP_E_OVERFLOW);
  EXPECT_EQ(VariantChangeType(&result, FromDispatch(&words), VT_I2), DISP_E_TYPEMISMATCH);
}

TEST(VariantChangeTypeDefault, NullAndUnwillingObjectsMismatch) {
  ValuedObject unwilling(ValuedObject::Answer::kNothing);
  ValuedObject empty(ValuedObject::Answer::kNullOnSuccess);
  ValuedObject wild(ValuedObject::Answer::kPointerOnFailure);
  Variant result;
  for (const Variant& object : {FromDispatch(nullptr), FromDispatch(&unwilling), FromDispatch(&empty),
                                FromDispatch(&wild), Variant::FromObject(nullptr)})
    EXPECT_EQ(VariantChangeType(&result, object, VT_I4), DISP_E_TYPEMISMATCH);
}

// The source goes in the middle; the object stays for the answer.
TEST(VariantChangeTypeDefault, ObjectThatIsReleasedMeanwhileIsKept) {
  ValuedObject object(I4(5));
  Variant source = FromDispatch(&object);
  object.OnAsked([&] {
    source.Clear();
    EXPECT_GE(object.count, 2U);
  });
  Variant result;
  EXPECT_EQ(VariantChangeType(&result, source, VT_I4), S_OK);
  EXPECT_EQ(result.Data().lVal, 5);
}

TEST(VariantChangeTypeDefault, ValueTakesThePlaceOfItsObject) {
  ValuedObject object(Text(u"text"));
  Variant value = FromDispatch(&object);
  EXPECT_EQ(VariantChangeType(&value, value, VT_BSTR), S_OK);
  EXPECT_EQ(value.Text().view(), u"text");
}

}  // namespace
}  // namespace qv
