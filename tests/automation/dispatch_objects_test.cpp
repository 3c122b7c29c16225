// Arguments of Invoke that are objects.
#include <gtest/gtest.h>

#include "automation/late_rows.h"
#include "fixtures/counting_object.h"

namespace qv {
namespace {

class DispatchObjects : public testing::Test {
 protected:
  // Execute and ExecuteFile with this parameter list have this code, and note `noted` calls.
  static void ExpectRan(const Variant& parameters, HRESULT code) {
    const bool taken = Succeeded(code);
    const std::uint32_t index = taken ? kUntouchedIndex : 0;
    ExpectRows({{"",
                 Face::kConnectionModel,
                 3,
                 1,
                 {parameters, Text(u"s"), Text(u"l")},
                 code,
                 index,
                 taken ? "Execute(l, s, object)" : nullptr},
                {"",
                 Face::kConnectionModel,
                 4,
                 1,
                 {parameters, Text(u"f")},
                 code,
                 index,
                 taken ? "ExecuteFile(f, object)" : nullptr}});
  }
  static void ExpectMismatch(const CountingObjectPtr& object) {
    ExpectRan(Variant::FromObject(object.get()), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(object->References(), 1U);
  }

  Script listScript_;
  const IDispatchPtr list_ = MakeNoting(Face::kParameters, &listScript_);
};

TEST_F(DispatchObjects, ListIsTakenUnderEitherTagAndThroughPointers) {
  ExpectRan(FromDispatch(list_.get()), S_OK);
  ExpectRan(Variant::FromObject(list_.get()), S_OK);
  Variant held = FromDispatch(list_.get());
  ExpectRan(Pointer(VT_VARIANT, &held), S_OK);
  IUnknown* pointer = list_.get();
  ExpectRan(Pointer(VT_UNKNOWN, &pointer), S_OK);
}

TEST_F(DispatchObjects, ReferencesAreReturned) {
  Script script;
  const IDispatchPtr model = MakeNoting(Face::kConnectionModel, &script);
  for (const Variant& language : {Text(u"l"), Variant::Null()}) {  // the second one is refused
    LateCall call(model.get(), 3);
    call.With({language, Text(u"s"), FromDispatch(list_.get())}).Run();
  }
  EXPECT_EQ(list_->AddRef(), 2U);
  EXPECT_EQ(list_->Release(), 1U);
}

TEST_F(DispatchObjects, ObjectsOfOtherTypesAreMismatches) {
  ExpectMismatch(new CountingObject);
  ExpectMismatch(new CountingObject({IDispatch::kIid}));
  const CountingObjectPtr broken(new CountingObject({IDispatch::kIid, IParameters::kIid}));
  broken->FailQueries(E_FAIL);
  ExpectMismatch(broken);
  Script script;
  ExpectRan(FromDispatch(MakeNoting(Face::kDuration, &script).get()), DISP_E_TYPEMISMATCH);
}

TEST_F(DispatchObjects, InitTakesAnyObjectAndNull) {
  const CountingObjectPtr stranger(new CountingObject);
  ExpectRows({
      Taken("unknown", Face::kQvClientServiceRaw, 1, 1, {Variant::FromObject(stranger.get())},
            "Init(object)"),
      Taken("dispatch", Face::kQvClientServiceRaw, 1, 1, {FromDispatch(list_.get())}, "Init(object)"),
      Taken("null unknown", Face::kQvClientServiceRaw, 1, 1, {Variant::FromObject(nullptr)}, "Init(null)"),
      Taken("null dispatch", Face::kQvClientServiceRaw, 1, 1, {FromDispatch(nullptr)}, "Init(null)"),
  });
}

}  // namespace
}  // namespace qv
