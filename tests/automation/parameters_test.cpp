// The Parameters and Parameter objects as a host meets them.
#include <gtest/gtest.h>

#include "automation/waiting_record.h"
#include "fixtures/counting_object.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

class ParametersObject : public testing::Test {
 protected:
  ParametersObject() : list_(CreateParameters()) { ClearErrorInfo(); }
  void TearDown() override {
    list_.reset();
    EXPECT_EQ(CountingObject::Live(), 0);
    ClearErrorInfo();
  }

  void Fill(int count) {
    for (int i = 0; i < count; ++i) EXPECT_EQ(list_->Add(u"k", Variant::FromInt(i), nullptr), S_OK);
  }
  std::int16_t Size() {
    std::int16_t size = -1;
    EXPECT_EQ(list_->Size(&size), S_OK);
    return size;
  }
  // Code and words of a failed Find, whose place must stay as it was.
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

  IParametersPtr list_;
};

TEST_F(ParametersObject, AddedParameterIsHandedOutAndFound) {
  IParameter* added = nullptr;
  ASSERT_EQ(list_->Add(u"k", Variant::FromInt(7), &added), S_OK);
  const IParameterPtr owned(added, false);
  IParameter* found = nullptr;
  ASSERT_EQ(list_->Find(0, &found), S_OK);
  const IParameterPtr alsoOwned(found, false);
  EXPECT_EQ(found, added);
  WideString key;
  EXPECT_EQ(found->get_ParamKey(&key), S_OK);
  EXPECT_EQ(Shown(key), "k");
}

TEST_F(ParametersObject, EmptyListFailsWithItsWords) {
  EXPECT_EQ(FindFails(0), "The are no parameters.");
  EXPECT_EQ(FindFails(-1), "The are no parameters.");
  EXPECT_EQ(FindFails(100), "The are no parameters.");
  EXPECT_EQ(RemoveFails(0), "The are no parameters.");
}

TEST_F(ParametersObject, IndexesOutsideFailWithTheirWords) {
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

TEST_F(ParametersObject, StaleRecordIsClearedByEveryMember) {
  LeaveStaleRecord();
  Fill(2);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(Size(), 2);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  IParameter* found = nullptr;
  EXPECT_EQ(list_->Find(0, &found), S_OK);
  found->Release();
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(list_->Remove(0), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(list_->Clear(), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(ParametersObject, MissingPlacesAreRefused) {
  Fill(1);
  EXPECT_EQ(list_->Size(nullptr), E_POINTER);
  EXPECT_EQ(list_->Find(0, nullptr), E_POINTER);
}

TEST_F(ParametersObject, ValueThatCannotBeCopiedIsNotAppended) {
  EXPECT_EQ(list_->Add(u"k", Variant::FromRaw(0x77, VariantData()), nullptr), DISP_E_BADVARTYPE);
  EXPECT_EQ(TakenWords(), "Unknown Error");
  EXPECT_EQ(Size(), 0);
}

TEST_F(ParametersObject, ValuesAreReleasedWithTheList) {
  EXPECT_EQ(list_->Add(u"k", Variant::FromObject(CountingObjectPtr(new CountingObject).get()), nullptr),
            S_OK);
  EXPECT_EQ(CountingObject::Live(), 1);
  EXPECT_EQ(list_->Clear(), S_OK);
  EXPECT_EQ(CountingObject::Live(), 0);
}

TEST_F(ParametersObject, FoundParameterOutlivesItsList) {
  EXPECT_EQ(list_->Add(u"k", Variant::FromObject(CountingObjectPtr(new CountingObject).get()), nullptr),
            S_OK);
  IParameter* found = nullptr;
  ASSERT_EQ(list_->Find(0, &found), S_OK);
  IParameterPtr owned(found, false);
  list_.reset();
  EXPECT_EQ(CountingObject::Live(), 1);
  WideString key;
  EXPECT_EQ(owned->get_ParamKey(&key), S_OK);
  EXPECT_EQ(Shown(key), "k");
}

class ParameterObject : public ParametersObject {
 protected:
  ParameterObject() : parameter_(CreateParameter()) {}
  void TearDown() override {
    parameter_.reset();
    ParametersObject::TearDown();
  }
  std::string TypeName() {
    WideString name(u"before");
    EXPECT_EQ(parameter_->get_ParamTypeAsString(&name), S_OK);
    return Shown(name);
  }

  IParameterPtr parameter_;
};

TEST_F(ParameterObject, NewParameterIsEmpty) {
  WideString key(u"before");
  Variant value = Variant::FromInt(1);
  EXPECT_EQ(parameter_->get_ParamKey(&key), S_OK);
  EXPECT_EQ(parameter_->get_ParamValue(&value), S_OK);
  EXPECT_TRUE(key.IsNull());
  EXPECT_EQ(value.Tag(), VT_EMPTY);
  EXPECT_EQ(TypeName(), "no type");
}

TEST_F(ParameterObject, ValuesAreStoredAndTyped) {
  EXPECT_EQ(parameter_->SetValues(u"k", Variant::FromString(u"v")), S_OK);
  Variant value;
  EXPECT_EQ(parameter_->get_ParamValue(&value), S_OK);
  EXPECT_EQ(Shown(value.Text()), "v");
  EXPECT_EQ(TypeName(), "string");
}

TEST_F(ParameterObject, UnsignedByteHasNullTypeName) {
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
  Variant value;
  EXPECT_EQ(parameter_->get_ParamValue(&value), S_OK);
  EXPECT_EQ(value.Tag(), VT_UNKNOWN);
  EXPECT_EQ(value.Object(), object.get());
  value.Clear();
  EXPECT_EQ(object->References(), 2u);
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
  EXPECT_EQ(parameter_->SetValues(u"new", Variant::FromRaw(0x77, VariantData())), DISP_E_BADVARTYPE);
  EXPECT_EQ(TakenWords(), "Unknown Error");
  EXPECT_EQ(TypeName(), "int");
  WideString key;
  EXPECT_EQ(parameter_->get_ParamKey(&key), S_OK);
  EXPECT_EQ(Shown(key), "new");
}

TEST_F(ParameterObject, MissingPlacesAreRefused) {
  EXPECT_EQ(parameter_->get_ParamKey(nullptr), E_POINTER);
  EXPECT_EQ(parameter_->get_ParamValue(nullptr), E_POINTER);
  EXPECT_EQ(parameter_->get_ParamTypeAsString(nullptr), E_POINTER);
}

TEST_F(ParameterObject, StaleRecordIsClearedByEveryMember) {
  LeaveStaleRecord();
  EXPECT_EQ(parameter_->SetValues(u"k", Variant()), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  WideString text;
  EXPECT_EQ(parameter_->get_ParamKey(&text), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  Variant value;
  EXPECT_EQ(parameter_->get_ParamValue(&value), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(parameter_->get_ParamTypeAsString(&text), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
}

}  // namespace
}  // namespace qv
