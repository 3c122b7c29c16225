// The list of parameters: its order, its indexes, and who holds what.
#include "values/parameters_impl.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "com/asked_object.h"
#include "fixtures/shown_value.h"
#include "fixtures/thrown.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr char kDone[] = "nothing";  // what Thrown says of a call that succeeds
constexpr char kNoParameters[] = "EQvException 0x00000000 The are no parameters.";
constexpr char kOutOfRange[] = "EQvException 0x00000000 The index is out of range.";
constexpr char kCannotFind[] = "EQvException 0x00000000 Cannot find parameter in the current index.";
constexpr char kCannotRemove[] = "EQvException 0x00000000 Cannot remove parameter.";

using Keys = std::vector<WideString>;

WideString KeyOf(const IParameterPtr& parameter) {
  WideString key;
  EXPECT_EQ(parameter->get_ParamKey(&key), S_OK);
  return key;
}

Keys KeysOf(ParametersImpl& list) {
  Keys keys;
  for (std::int16_t i = 0; i < list.Size(); ++i) keys.push_back(KeyOf(list.Find(i)));
  return keys;
}

void Fill(ParametersImpl& list, int count) {
  const char16_t* const keys[] = {u"a", u"b", u"c", u"d"};
  for (int i = 0; i < count; ++i) list.Add(keys[i], Variant::FromInt(i));
}

std::string Finding(ParametersImpl& list, std::int16_t index) {
  return Thrown([&] { list.Find(index); });
}
std::string Removing(ParametersImpl& list, std::int16_t index) {
  return Thrown([&] { list.Remove(index); });
}

TEST(ParametersImpl, AddAppendsANewParameterAndReturnsIt) {
  ParametersImpl list;
  EXPECT_EQ(list.Size(), 0);
  const IParameterPtr added = list.Add(u"key", Variant::FromInt(7));
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(KeyOf(added), u"key");
  Variant value;
  EXPECT_EQ(added->get_ParamValue(&value), S_OK);
  EXPECT_EQ(ShownValue(value), "VT_INT 7");
  EXPECT_EQ(list.Size(), 1);
  EXPECT_EQ(list.Find(0), added);
}

TEST(ParametersImpl, EqualKeysStandSideBySideInOrder) {
  ParametersImpl list;
  const IParameterPtr first = list.Add(u"key", Variant::FromInt(1));
  const IParameterPtr second = list.Add(u"key", Variant::FromInt(2));
  EXPECT_EQ(list.Size(), 2);
  EXPECT_NE(first, second);
  EXPECT_EQ(list.Find(0), first);
  EXPECT_EQ(list.Find(1), second);
}

TEST(ParametersImpl, NullKeyIsTaken) {
  ParametersImpl list;
  list.Add(WideString(), Variant());
  EXPECT_EQ(list.Size(), 1);
  EXPECT_TRUE(KeyOf(list.Find(0)).IsNull());
}

TEST(ParametersImpl, FailedAddRaisesTheCodeAndAppendsNothing) {
  ParametersImpl list;
  Fill(list, 1);
  EXPECT_EQ(Thrown([&] { list.Add(u"bad", Variant::FromRaw(77, VariantData())); }).substr(0, 21),
            "_com_error 0x80020008");
  EXPECT_EQ(KeysOf(list), (Keys{u"a"}));
}

void ExpectOutcomes(int size, const char* finding, const char* removing,
                    std::initializer_list<std::int16_t> indexes) {
  for (const std::int16_t index : indexes) {
    SCOPED_TRACE(std::to_string(size) + " elements, index " + std::to_string(index));
    ParametersImpl list;
    Fill(list, size);
    const Keys before = KeysOf(list);
    EXPECT_EQ(Finding(list, index), finding);
    EXPECT_EQ(KeysOf(list), before);
    EXPECT_EQ(Removing(list, index), removing);
    EXPECT_EQ(KeysOf(list) == before, removing != kDone);
    EXPECT_EQ(list.Size(), removing == kDone ? size - 1 : size);
  }
}

TEST(ParametersImpl, FindAndRemoveHaveTheirMessageForEachIndex) {
  ExpectOutcomes(0, kNoParameters, kNoParameters, {0, -1, 1, 32767, -32768});
  ExpectOutcomes(1, kDone, kDone, {0});
  ExpectOutcomes(1, kCannotFind, kCannotRemove, {1, -1});
  ExpectOutcomes(1, kOutOfRange, kOutOfRange, {2});
  ExpectOutcomes(3, kDone, kDone, {0, 2});
  ExpectOutcomes(3, kCannotFind, kCannotRemove, {3, -1, -3, -32768});
  ExpectOutcomes(3, kOutOfRange, kOutOfRange, {4, 32767});
}

TEST(ParametersImpl, RemoveMovesTheOthersDownInOrder) {
  ParametersImpl list;
  Fill(list, 4);
  list.Remove(1);
  EXPECT_EQ(KeysOf(list), (Keys{u"a", u"c", u"d"}));
  list.Remove(2);
  EXPECT_EQ(KeysOf(list), (Keys{u"a", u"c"}));
  list.Remove(0);
  EXPECT_EQ(KeysOf(list), (Keys{u"c"}));
  list.Remove(0);
  EXPECT_EQ(list.Size(), 0);
  EXPECT_EQ(Removing(list, 0), kNoParameters);
}

TEST(ParametersImpl, ClearEmptiesTheListAndMayBeRepeated) {
  ParametersImpl list;
  Fill(list, 3);
  for (int i = 0; i < 2; ++i) {
    list.Clear();
    EXPECT_EQ(list.Size(), 0);
  }
  EXPECT_EQ(Finding(list, 0), kNoParameters);
  Fill(list, 2);
  EXPECT_EQ(KeysOf(list), (Keys{u"a", u"b"}));
}

TEST(ParametersImpl, FoundParameterOutlivesClear) {
  ParametersImpl list;
  Fill(list, 2);
  const IParameterPtr found = list.Find(1);
  list.Clear();
  EXPECT_EQ(KeyOf(found), u"b");
  EXPECT_EQ(found->AddRef(), 2U) << "the list still holds a reference";
  found->Release();
}

TEST(ParametersImpl, EachReferenceIsCounted) {
  ParametersImpl list;
  const IParameterPtr added = list.Add(u"key", Variant());
  EXPECT_EQ(added->AddRef(), 3U);  // the list's, ours, this one
  added->Release();
  {
    const IParameterPtr found = list.Find(0);
    EXPECT_EQ(added->AddRef(), 4U);
    added->Release();
  }
  list.Remove(0);
  EXPECT_EQ(added->AddRef(), 2U);
  added->Release();
}

TEST(ParametersImpl, ValuesAreReleasedWithTheList) {
  AskedObject object;
  {
    ParametersImpl list;
    list.Add(u"a", Variant::FromObject(&object));
    list.Add(u"b", Variant::FromObject(&object));
    EXPECT_EQ(object.count, 3U);
    list.Remove(0);
    EXPECT_EQ(object.count, 2U);
  }
  EXPECT_EQ(object.count, 1U);
}

TEST(ParametersImpl, HoldsManyParametersInOrder) {
  ParametersImpl list;
  for (int i = 0; i < 1000; ++i) list.Add(u"key", Variant::FromInt(i));
  EXPECT_EQ(list.Size(), 1000);
  for (const std::int16_t index : std::initializer_list<std::int16_t>{0, 1, 499, 998, 999}) {
    Variant value;
    EXPECT_EQ(list.Find(index)->get_ParamValue(&value), S_OK);
    EXPECT_EQ(value.Data().intVal, index);
  }
}

}  // namespace
}  // namespace qv
