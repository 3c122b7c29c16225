#include "values/parameters_impl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/asked_object.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr const char16_t* kNoParameters = u"The are no parameters.";
constexpr const char16_t* kOutOfRange = u"The index is out of range.";
constexpr const char16_t* kCannotFind = u"Cannot find parameter in the current index.";
constexpr const char16_t* kCannotRemove = u"Cannot remove parameter.";

WideString KeyOf(const IParameterPtr& parameter) {
  WideString key;
  EXPECT_EQ(parameter->get_ParamKey(&key), S_OK);
  return key;
}

std::vector<WideString> KeysOf(ParametersImpl& list) {
  std::vector<WideString> keys;
  for (std::int16_t i = 0; i < list.Size(); ++i) keys.push_back(KeyOf(list.Find(i)));
  return keys;
}

void Fill(ParametersImpl& list, int count) {
  const char16_t* const keys[] = {u"a", u"b", u"c", u"d"};
  for (int i = 0; i < count; ++i) list.Add(keys[i], Variant::FromInt(i));
}

// Null when the call did not fail.
WideString MessageOfFind(ParametersImpl& list, std::int16_t index) {
  try {
    list.Find(index);
  } catch (const EQvException& error) {
    EXPECT_EQ(error.Code(), 0);
    return error.Description();
  }
  return WideString();
}

WideString MessageOfRemove(ParametersImpl& list, std::int16_t index) {
  try {
    list.Remove(index);
  } catch (const EQvException& error) {
    EXPECT_EQ(error.Code(), 0);
    return error.Description();
  }
  return WideString();
}

TEST(ParametersImpl, FreshListIsEmpty) {
  ParametersImpl list;
  EXPECT_EQ(list.Size(), 0);
}

TEST(ParametersImpl, AddAppendsANewParameterAndReturnsIt) {
  ParametersImpl list;
  const IParameterPtr added = list.Add(u"key", Variant::FromInt(7));
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(KeyOf(added), u"key");
  Variant value;
  EXPECT_EQ(added->get_ParamValue(&value), S_OK);
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 7);
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
  try {
    list.Add(u"bad", Variant::FromRaw(77, VariantData()));
    FAIL() << "nothing was thrown";
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), DISP_E_BADVARTYPE);
  }
  EXPECT_EQ(KeysOf(list), (std::vector<WideString>{u"a"}));
}

struct IndexRow {
  int size;
  std::int16_t index;
  const char16_t* findMessage;  // null: found
  const char16_t* removeMessage;
};

const IndexRow kIndexRows[] = {
    {0, 0, kNoParameters, kNoParameters},
    {0, -1, kNoParameters, kNoParameters},
    {0, 1, kNoParameters, kNoParameters},
    {0, 32767, kNoParameters, kNoParameters},
    {0, -32768, kNoParameters, kNoParameters},
    {1, 0, nullptr, nullptr},
    {1, 1, kCannotFind, kCannotRemove},
    {1, 2, kOutOfRange, kOutOfRange},
    {1, -1, kCannotFind, kCannotRemove},
    {3, 0, nullptr, nullptr},
    {3, 2, nullptr, nullptr},
    {3, 3, kCannotFind, kCannotRemove},
    {3, 4, kOutOfRange, kOutOfRange},
    {3, 32767, kOutOfRange, kOutOfRange},
    {3, -1, kCannotFind, kCannotRemove},
    {3, -3, kCannotFind, kCannotRemove},
    {3, -32768, kCannotFind, kCannotRemove},
};

void ExpectMessage(const WideString& message, const char16_t* expected, const IndexRow& row) {
  EXPECT_EQ(message.IsNull(), expected == nullptr) << row.size << " elements, index " << row.index;
  EXPECT_EQ(message, WideString(expected)) << row.size << " elements, index " << row.index;
}

TEST(ParametersImpl, FindHasItsMessageForEachIndex) {
  for (const IndexRow& row : kIndexRows) {
    ParametersImpl list;
    Fill(list, row.size);
    ExpectMessage(MessageOfFind(list, row.index), row.findMessage, row);
    EXPECT_EQ(list.Size(), row.size);
  }
}

TEST(ParametersImpl, RemoveHasItsMessageForEachIndex) {
  for (const IndexRow& row : kIndexRows) {
    ParametersImpl list;
    Fill(list, row.size);
    ExpectMessage(MessageOfRemove(list, row.index), row.removeMessage, row);
    EXPECT_EQ(list.Size(), row.removeMessage == nullptr ? row.size - 1 : row.size);
  }
}

const std::int16_t kBadIndexesOfThree[] = {-32768, -1, 3, 4, 32767};

TEST(ParametersImpl, FailuresLeaveTheListUnchanged) {
  ParametersImpl list;
  Fill(list, 3);
  for (const std::int16_t index : kBadIndexesOfThree) {
    EXPECT_FALSE(MessageOfFind(list, index).IsNull());
    EXPECT_FALSE(MessageOfRemove(list, index).IsNull());
  }
  EXPECT_EQ(KeysOf(list), (std::vector<WideString>{u"a", u"b", u"c"}));
}

TEST(ParametersImpl, RemoveMovesTheOthersDownInOrder) {
  ParametersImpl list;
  Fill(list, 4);
  list.Remove(1);
  EXPECT_EQ(KeysOf(list), (std::vector<WideString>{u"a", u"c", u"d"}));
  list.Remove(2);
  EXPECT_EQ(KeysOf(list), (std::vector<WideString>{u"a", u"c"}));
  list.Remove(0);
  EXPECT_EQ(KeysOf(list), (std::vector<WideString>{u"c"}));
}

TEST(ParametersImpl, RemovingTheOnlyOneLeavesNoParameters) {
  ParametersImpl list;
  Fill(list, 1);
  list.Remove(0);
  EXPECT_EQ(list.Size(), 0);
  EXPECT_EQ(MessageOfRemove(list, 0), u"The are no parameters.");
}

TEST(ParametersImpl, ClearEmptiesTheListAndMayBeRepeated) {
  ParametersImpl list;
  Fill(list, 3);
  list.Clear();
  EXPECT_EQ(list.Size(), 0);
  list.Clear();
  EXPECT_EQ(list.Size(), 0);
  EXPECT_EQ(MessageOfFind(list, 0), u"The are no parameters.");
  Fill(list, 2);
  EXPECT_EQ(KeysOf(list), (std::vector<WideString>{u"a", u"b"}));
}

TEST(ParametersImpl, FoundParameterOutlivesClear) {
  ParametersImpl list;
  Fill(list, 2);
  const IParameterPtr found = list.Find(1);
  list.Clear();
  EXPECT_EQ(KeyOf(found), u"b");
  EXPECT_EQ(found->AddRef(), 2u) << "the list still holds a reference";
  found->Release();
}

TEST(ParametersImpl, EachReferenceIsCounted) {
  ParametersImpl list;
  const IParameterPtr added = list.Add(u"key", Variant());
  EXPECT_EQ(added->AddRef(), 3u);  // the list's, ours, this one
  added->Release();
  {
    const IParameterPtr found = list.Find(0);
    EXPECT_EQ(added->AddRef(), 4u);
    added->Release();
  }
  list.Remove(0);
  EXPECT_EQ(added->AddRef(), 2u);
  added->Release();
}

TEST(ParametersImpl, ValuesAreReleasedWithTheList) {
  AskedObject object;
  {
    ParametersImpl list;
    list.Add(u"a", Variant::FromObject(&object));
    list.Add(u"b", Variant::FromObject(&object));
    EXPECT_EQ(object.count, 3u);
    list.Remove(0);
    EXPECT_EQ(object.count, 2u);
  }
  EXPECT_EQ(object.count, 1u);
}

TEST(ParametersImpl, HoldsManyParametersInOrder) {
  ParametersImpl list;
  for (int i = 0; i < 1000; ++i) list.Add(u"key", Variant::FromInt(i));
  EXPECT_EQ(list.Size(), 1000);
  const std::int16_t kSamples[] = {0, 1, 499, 998, 999};
  for (const std::int16_t index : kSamples) {
    Variant value;
    EXPECT_EQ(list.Find(index)->get_ParamValue(&value), S_OK);
    EXPECT_EQ(value.Data().intVal, index);
  }
}

}  // namespace
}  // namespace qv
