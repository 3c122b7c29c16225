// The Parameters and Parameter objects as a host meets them.
#include <gtest/gtest.h>

#include "fixtures/counting_object.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

// A tag that cannot be copied.
Variant Strange() {
  return Variant::FromRaw(0x77, VariantData());
}

std::string KeyOf(const IParameterPtr& parameter) {
  WideString key(u"before");
  EXPECT_EQ(parameter->get_ParamKey(&key), S_OK);
  return Shown(key);
}

class ParametersObject : public testing::Test {
 protected:
  ParametersObject() { ClearErrorInfo(); }
  void TearDown() override {
    list_.reset();
    EXPECT_EQ(CountingObject::Live(), 0);
    ClearErrorInfo();
  }

  void Fill(int count) {
    for (int i = 0; i < count; ++i) EXPECT_EQ(list_->Add(u"k", Variant::FromInt(i), nullptr), S_OK);
  }
  void AddCountingObject() {
    const CountingObjectPtr object(new CountingObject);
    EXPECT_EQ(list_->Add(u"k", Variant::FromObject(object.get()), nullptr), S_OK);
  }
  std::int16_t Size() {
    std::int16_t size = -1;
    EXPECT_EQ(list_->Size(&size), S_OK);
    return size;
  }
  IParameterPtr Found(std::int16_t index) {
    IParameterPtr found;
    EXPECT_EQ(list_->Find(index, Put(found)), S_OK);
    return found;
  }
  // The message of a failed Find, whose output parameter must stay unchanged.
  std::string FindFails(std::int16_t index) {
    const IParameterPtr before = CreateParameter();
    IParameter* found = before.get();
    EXPECT_EQ(list_->Find(index, &found), DISP_E_EXCEPTION);
    EXPECT_EQ(found, before.get());
    return TakenWords();
  }
  std::string RemoveFails(std::int16_t index) {
    EXPECT_EQ(list_->Remove(index), DISP_E_EXCEPTION);
    return TakenWords();
  }
  // The operation succeeds and clears the record of an earlier failure.
  static void ExpectClears(HRESULT code) {
    EXPECT_EQ(code, S_OK);
    EXPECT_EQ(TakenWords(), "no record");
    LeaveStaleRecord();
  }

  IParametersPtr list_ = CreateParameters();
};

TEST_F(ParametersObject, AddedParameterIsReturnedAndFound) {
  IParameterPtr added;
  ASSERT_EQ(list_->Add(u"k", Variant::FromInt(7), Put(added)), S_OK);
  EXPECT_EQ(Found(0), added);
  EXPECT_EQ(KeyOf(added), "k");
}

TEST_F(ParametersObject, EmptyListFailsWithItsMessage) {
  for (const std::int16_t index : std::initializer_list<std::int16_t>{0, -1, 100})
    EXPECT_EQ(FindFails(index), "The are no parameters.");
  EXPECT_EQ(RemoveFails(0), "The are no parameters.");
}

TEST_F(ParametersObject, IndexesOutsideFailWithTheirMessages) {
  Fill(3);
  EXPECT_EQ(FindFails(3), "Cannot find parameter in the current index.");
  EXPECT_EQ(FindFails(-1), "Cannot find parameter in the current index.");
  EXPECT_EQ(FindFails(4), "The index is out of range.");
  EXPECT_EQ(FindFails(100), "The index is out of range.");
  EXPECT_EQ(RemoveFails(3), "Cannot remove parameter.");
  EXPECT_EQ(RemoveFails(-32768), "Cannot remove parameter.");
  EXPECT_EQ(RemoveFails(32767), "The index is out of range.");
  EXPECT_EQ(Size(), 3);
}

TEST_F(ParametersObject, EveryMemberClearsTheStaleRecord) {
  LeaveStaleRecord();
  ExpectClears(list_->Add(u"k", Variant(), nullptr));
  std::int16_t size = -1;
  ExpectClears(list_->Size(&size));
  IParameterPtr found;
  ExpectClears(list_->Find(0, Put(found)));
  ExpectClears(list_->Remove(0));
  ExpectClears(list_->Clear());
  EXPECT_EQ(size, 1);
}

TEST_F(ParametersObject, NullOutputParametersAreRefused) {
  Fill(1);
  EXPECT_EQ(list_->Size(nullptr), E_POINTER);
  EXPECT_EQ(list_->Find(0, nullptr), E_POINTER);
}

TEST_F(ParametersObject, ValueThatCannotBeCopiedIsNotAppended) {
  EXPECT_EQ(list_->Add(u"k", Strange(), nullptr), DISP_E_BADVARTYPE);
  EXPECT_EQ(TakenWords(), "Unknown Error");
  EXPECT_EQ(Size(), 0);
}

TEST_F(ParametersObject, ValuesAreReleasedWithTheList) {
  AddCountingObject();
  EXPECT_EQ(CountingObject::Live(), 1);
  EXPECT_EQ(list_->Clear(), S_OK);
  EXPECT_EQ(CountingObject::Live(), 0);
}

TEST_F(ParametersObject, FoundParameterOutlivesItsList) {
  AddCountingObject();
  const IParameterPtr found = Found(0);
  list_.reset();
  EXPECT_EQ(CountingObject::Live(), 1);
  EXPECT_EQ(KeyOf(found), "k");
}

class ParameterObject : public ParametersObject {
 protected:
  void TearDown() override {
    parameter_.reset();
    ParametersObject::TearDown();
  }
  Variant Value() {
    Variant value = Variant::FromInt(1);
    EXPECT_EQ(parameter_->get_ParamValue(&value), S_OK);
    return value;
  }
  std::string TypeName() {
    WideString name(u"before");
    EXPECT_EQ(parameter_->get_ParamTypeAsString(&name), S_OK);
    return Shown(name);
  }

  IParameterPtr parameter_ = CreateParameter();
};

TEST_F(ParameterObject, NewParameterIsEmpty) {
  EXPECT_EQ(KeyOf(parameter_), "<null>");
  EXPECT_EQ(Value().Tag(), VT_EMPTY);
  EXPECT_EQ(TypeName(), "no type");
}

TEST_F(ParameterObject, ValuesAreStoredAndTyped) {
  EXPECT_EQ(parameter_->SetValues(u"k", Variant::FromString(u"v")), S_OK);
  EXPECT_EQ(Shown(Value().Text()), "v");
  EXPECT_EQ(TypeName(), "string");
  EXPECT_EQ(parameter_->SetValues(u"k", Variant::FromRaw(VT_UI1, VariantData())), S_OK);
  EXPECT_EQ(TypeName(), "<null>");
}

TEST_F(ParameterObject, DispatchObjectIsKeptAsUnknown) {
  const CountingObjectPtr object(new CountingObject({IID_IDuration}));
  object->AddRef();
  VariantData data;
  data.punkVal = object.get();
  EXPECT_EQ(parameter_->SetValues(u"k", Variant::FromRaw(VT_DISPATCH, data)), S_OK);
  EXPECT_EQ(TypeName(), "duration");
  Variant value = Value();
  EXPECT_EQ(value.Tag(), VT_UNKNOWN);
  EXPECT_EQ(value.Object(), object.get());
  value.Clear();
  EXPECT_EQ(object->References(), 2U);
}

TEST_F(ParameterObject, ObjectWhoseQueryFailsBringsItsCode) {
  const CountingObjectPtr object(new CountingObject);
  object->FailQueries(E_FAIL);
  EXPECT_EQ(parameter_->SetValues(u"k", Variant::FromObject(object.get())), S_OK);
  WideString name;
  EXPECT_EQ(parameter_->get_ParamTypeAsString(&name), E_FAIL);
  EXPECT_EQ(TakenWords(), "Unknown Error");
}

// Hosts that read the parameter after the failure know it like this.
TEST_F(ParameterObject, ValueThatCannotBeCopiedKeepsTheOldOneUnderTheNewKey) {
  EXPECT_EQ(parameter_->SetValues(u"old", Variant::FromInt(5)), S_OK);
  EXPECT_EQ(parameter_->SetValues(u"new", Strange()), DISP_E_BADVARTYPE);
  EXPECT_EQ(TakenWords(), "Unknown Error");
  EXPECT_EQ(TypeName(), "int");
  EXPECT_EQ(KeyOf(parameter_), "new");
}

TEST_F(ParameterObject, NullOutputParametersAreRefused) {
  EXPECT_EQ(parameter_->get_ParamKey(nullptr), E_POINTER);
  EXPECT_EQ(parameter_->get_ParamValue(nullptr), E_POINTER);
  EXPECT_EQ(parameter_->get_ParamTypeAsString(nullptr), E_POINTER);
}

TEST_F(ParameterObject, EveryMemberClearsTheStaleRecord) {
  LeaveStaleRecord();
  ExpectClears(parameter_->SetValues(u"k", Variant()));
  WideString text;
  ExpectClears(parameter_->get_ParamKey(&text));
  Variant value;
  ExpectClears(parameter_->get_ParamValue(&value));
  ExpectClears(parameter_->get_ParamTypeAsString(&text));
}

}  // namespace
}  // namespace qv
