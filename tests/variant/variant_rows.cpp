#include "variant/variant_rows.h"

#include <gtest/gtest.h>

#include <functional>

#include "variant/valued_object.h"

namespace qv {
namespace {

using Check = std::function<void(const Variant& source, Variant* destination, const char* way)>;

bool HasPointerForm(const Variant& value) {
  return value.Tag() != VT_EMPTY && value.Tag() != VT_NULL && (value.Tag() & VT_BYREF) == 0;
}

void TryEachWay(const Variant& source, const Check& check) {
  Variant destination = Text(u"old");
  check(source, &destination, "into another");
  Variant itself = source;
  check(itself, &itself, "onto itself");
  Variant pointedAt = source;
  check(PointerToVariant(pointedAt), &pointedAt, "by a pointer to the destination");
  if (!HasPointerForm(source)) return;
  Variant value = source;
  check(PointerTo(value), &value, "by a pointer to the destination's value");
}

std::string RowName(const Variant& source, VARTYPE tag, const char* way) {
  return ShownValue(source) + " to " + std::to_string(tag) + ", " + way;
}

void ExpectChange(const Variant& source, const Variant& result) {
  TryEachWay(source, [&](const Variant& from, Variant* destination, const char* way) {
    EXPECT_EQ(VariantChangeType(destination, from, result.Tag()), S_OK) << RowName(source, result.Tag(), way);
    EXPECT_TRUE(IsSame(*destination, result))
        << RowName(source, result.Tag(), way) << ": " << ShownValue(*destination) << " instead of "
        << ShownValue(result);
  });
}

void ExpectRefusal(HRESULT code, VARTYPE tag, const Variant& source) {
  const auto check = [&](const Variant& from, Variant* destination, const char* way) {
    const Variant before = *destination;
    EXPECT_EQ(VariantChangeType(destination, from, tag), code) << RowName(source, tag, way);
    EXPECT_TRUE(IsSame(*destination, before))
        << RowName(source, tag, way) << " left " << ShownValue(*destination);
  };
  TryEachWay(source, check);
  ValuedObject object;
  Variant held = Variant::FromObject(&object);
  check(source, &held, "onto an object");
  EXPECT_EQ(object.count, 2U) << RowName(source, tag, "onto an object");
}

}  // namespace

bool IsSame(const Variant& a, const Variant& b) {
  if (a.Tag() != b.Tag()) return false;
  if (a.Tag() != VT_BSTR) return a.Data().llVal == b.Data().llVal;
  return a.Text().IsNull() == b.Text().IsNull() && a.Text() == b.Text();
}

std::vector<Variant> Texts(std::initializer_list<std::u16string_view> texts) {
  std::vector<Variant> values;
  for (const std::u16string_view text : texts) values.push_back(Text(text));
  return values;
}

void ExpectChanged(const Changes& rows) {
  for (const auto& [source, result] : rows) ExpectChange(source, result);
}

void ExpectRead(const Reads& rows) {
  for (const auto& [text, result] : rows) ExpectChange(Text(text), result);
}

void ExpectWritten(const Writes& rows) {
  for (const auto& [source, text] : rows) ExpectChange(source, Text(text));
}

void ExpectAllBecome(const Variant& result, const std::vector<Variant>& sources) {
  for (const Variant& source : sources) ExpectChange(source, result);
}

void ExpectRefused(HRESULT code, VARTYPE tag, const std::vector<Variant>& sources) {
  for (const Variant& source : sources) ExpectRefusal(code, tag, source);
}

}  // namespace qv
