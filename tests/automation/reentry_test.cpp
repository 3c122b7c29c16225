// Host objects that call back while the library releases, copies or queries them: on the same list or
// parameter.
#include <gtest/gtest.h>

#include <string>

#include "fixtures/calling_object.h"
#include "fixtures/shown_text.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

Variant Object(const CallingObject::Call& onEnd) {
  auto* const object = new CallingObject;
  object->OnEnd(onEnd);
  return Variant::FromObject(object);
}

class Reentry : public testing::Test {
 protected:
  void TearDown() override {
    list_.reset();
    EXPECT_EQ(CallingObject::Live(), 0);
  }

  void Add(const char16_t* key, const Variant& value) { EXPECT_EQ(list_->Add(key, value, nullptr), S_OK); }
  std::int16_t Size() {
    std::int16_t size = -1;
    EXPECT_EQ(list_->Size(&size), S_OK);
    return size;
  }
  // The keys in order, such as "a b".
  std::string Keys() {
    std::string keys;
    for (std::int16_t i = 0; i < Size(); ++i) {
      IParameterPtr found;
      EXPECT_EQ(list_->Find(i, Put(found)), S_OK);
      if (found == nullptr) return keys + "?";
      WideString key;
      EXPECT_EQ(found->get_ParamKey(&key), S_OK);
      keys += (keys.empty() ? "" : " ") + Shown(key);
    }
    return keys;
  }

  IParametersPtr list_ = CreateParameters();
};

TEST_F(Reentry, ClearShowsAnEmptyListToItsValues) {
  std::string seen = "not called";
  Add(u"a", Object([&] { seen = Keys(); }));
  Add(u"b", Int(2));
  EXPECT_EQ(list_->Clear(), S_OK);
  EXPECT_EQ(seen, "");
  EXPECT_EQ(Size(), 0);
}

TEST_F(Reentry, ClearInsideClearFindsNothingToDo) {
  int ended = 0;
  const auto clear = [&] {
    ++ended;
    EXPECT_EQ(list_->Clear(), S_OK);
  };
  Add(u"a", Object(clear));
  Add(u"b", Object(clear));
  EXPECT_EQ(list_->Clear(), S_OK);
  EXPECT_EQ(ended, 2);
  EXPECT_EQ(Size(), 0);
}

TEST_F(Reentry, ValuesAddedDuringClearStay) {
  Add(u"a", Object([&] { Add(u"c", Int(3)); }));
  Add(u"b", Object([&] { Add(u"d", Int(4)); }));
  EXPECT_EQ(list_->Clear(), S_OK);
  EXPECT_EQ(Keys(), "c d");
}

TEST_F(Reentry, RemoveShowsTheListWithoutTheElement) {
  std::string seen;
  Add(u"a", Int(1));
  Add(u"b", Object([&] { seen = Keys(); }));
  Add(u"c", Int(3));
  EXPECT_EQ(list_->Remove(1), S_OK);
  EXPECT_EQ(seen, "a c");
  EXPECT_EQ(Keys(), "a c");
}

TEST_F(Reentry, RemoveInsideRemoveTakesTheNextOne) {
  Add(u"a", Object([&] { EXPECT_EQ(list_->Remove(0), S_OK); }));
  Add(u"b", Object([&] { EXPECT_EQ(list_->Remove(0), S_OK); }));
  Add(u"c", Int(3));
  Add(u"d", Int(4));
  EXPECT_EQ(list_->Remove(0), S_OK);
  EXPECT_EQ(Keys(), "d");
}

TEST_F(Reentry, ClearInsideRemoveEmptiesTheList) {
  Add(u"a", Object([&] { EXPECT_EQ(list_->Clear(), S_OK); }));
  Add(u"b", Object([&] { EXPECT_EQ(list_->Clear(), S_OK); }));
  EXPECT_EQ(list_->Remove(0), S_OK);
  EXPECT_EQ(Size(), 0);
}

TEST_F(Reentry, ValuesAddedDuringRemoveComeLast) {
  Add(u"a", Object([&] {
        for (int i = 0; i < 100; ++i) Add(u"x", Int(i));
      }));
  Add(u"b", Int(2));
  EXPECT_EQ(list_->Remove(0), S_OK);
  EXPECT_EQ(Size(), 101);
  EXPECT_EQ(Keys().substr(0, 3), "b x");
}

TEST_F(Reentry, AddInsideAddMakesBoth) {
  auto* const object = new CallingObject;
  const Variant value = Variant::FromObject(object);
  object->OnAddRef([&] {
    for (int i = 0; i < 100; ++i) Add(u"x", Int(i));
  });
  Add(u"a", value);
  EXPECT_EQ(Size(), 101);
  EXPECT_EQ(Keys().substr(198), "x a");
}

TEST_F(Reentry, ListReleasedInsideItsOwnCallEndsAfterwards) {
  for (const bool clears : {true, false}) {
    int ended = 0;
    list_ = CreateParameters();
    IParameters* const list = list_.get();
    Add(u"a", Object([&] {
          ++ended;
          list_.reset();
        }));
    Add(u"b", Object([&] { ++ended; }));
    EXPECT_EQ(clears ? list->Clear() : list->Remove(0), S_OK);
    EXPECT_EQ(ended, 2);
  }
}

// A value that knows the list, but holds no reference to it, as that would be a circle.
TEST_F(Reentry, ListThatEndsIsEmptyToItsValues) {
  IParameters* const list = list_.get();
  std::int16_t size = -1;
  HRESULT found = S_OK;
  Add(u"a", Object([&] {
        IParameter* none = nullptr;
        found = list->Find(0, &none);
        EXPECT_EQ(list->Size(&size), S_OK);
        EXPECT_EQ(list->Clear(), S_OK);
        EXPECT_EQ(list->Add(u"x", Object([] {}), nullptr), S_OK);
      }));
  Add(u"b", Object([&] { EXPECT_EQ(list->Clear(), S_OK); }));
  list_.reset();
  EXPECT_EQ(size, 0);
  EXPECT_EQ(found, DISP_E_EXCEPTION);
  EXPECT_EQ(CallingObject::Live(), 0);
}

class ParameterReentry : public testing::Test {
 protected:
  void TearDown() override {
    parameter_.reset();
    EXPECT_EQ(CallingObject::Live(), 0);
  }
  VARTYPE Tag() {
    Variant value;
    EXPECT_EQ(parameter_->get_ParamValue(&value), S_OK);
    return value.Tag();
  }

  IParameterPtr parameter_ = CreateParameter();
};

TEST_F(ParameterReentry, OldValueFindsTheNewOneAndMaySetAnother) {
  VARTYPE seen = VT_EMPTY;
  parameter_->SetValues(u"a", Object([&] {
                          seen = Tag();
                          parameter_->SetValues(u"c", Int(3));
                        }));
  EXPECT_EQ(parameter_->SetValues(u"b", I2(2)), S_OK);
  EXPECT_EQ(seen, VT_I2);
  EXPECT_EQ(Tag(), VT_INT);
}

// Everybody sees objects as VT_UNKNOWN, also who is called in the middle.
TEST_F(ParameterReentry, DispatchObjectIsNeverSeenUnderItsOldTag) {
  VARTYPE seen = VT_EMPTY;
  parameter_->SetValues(u"a", Object([&] { seen = Tag(); }));
  IDispatch* const object = CreateParameters().detach();
  VariantData data;
  data.punkVal = object;
  EXPECT_EQ(parameter_->SetValues(u"b", Variant::FromRaw(VT_DISPATCH, data)), S_OK);
  EXPECT_EQ(seen, VT_UNKNOWN);
}

TEST_F(ParameterReentry, ParameterReleasedByItsOldValueEndsAfterwards) {
  IParameter* const parameter = parameter_.get();
  parameter->SetValues(u"a", Object([&] { parameter_.reset(); }));
  EXPECT_EQ(parameter->SetValues(u"b", Object([] {})), S_OK);
}

TEST_F(ParameterReentry, ValueReplacedWhileItIsAskedForItsTypeStaysForTheQuestion) {
  const auto replace = [&] { parameter_->SetValues(u"b", Int(2)); };
  auto* const object = new CallingObject;
  parameter_->SetValues(u"a", Variant::FromObject(object));
  object->OnQuery(replace);
  WideString name;
  EXPECT_EQ(parameter_->get_ParamTypeAsString(&name), S_OK);
  EXPECT_TRUE(name.IsNull());
  EXPECT_EQ(Tag(), VT_INT);
}

TEST_F(ParameterReentry, ParameterReleasedWhileItsValueIsCopiedEndsAfterwards) {
  auto* const object = new CallingObject;
  parameter_->SetValues(u"a", Variant::FromObject(object));
  IParameter* const parameter = parameter_.get();
  object->OnAddRef([&] { parameter_.reset(); });
  Variant value;
  EXPECT_EQ(parameter->get_ParamValue(&value), S_OK);
  EXPECT_EQ(value.Object(), object);
}

// The host's result holds the last reference to the object that is called.
TEST_F(ParameterReentry, LateCallOutlivesTheReferenceInItsResult) {
  Variant result = FromDispatch(parameter_.get());
  IDispatch* const parameter = parameter_.get();
  parameter_->SetValues(u"key", Int(1));
  parameter_.reset();
  const DISPPARAMS none;
  EXPECT_EQ(parameter->Invoke(2, Guid{}, 0, DISPATCH_METHOD, &none, &result, nullptr, nullptr), S_OK);
  EXPECT_EQ(Shown(result.Text()), "key");
}

}  // namespace
}  // namespace qv
