// Arguments of Invoke that are objects.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/noting_faces.h"
#include "fixtures/counting_object.h"

namespace qv {
namespace {

// Codes as the tests below write them.
constexpr char kOk[] = "0x00000000";

class DispatchObjects : public testing::Test {
 protected:
  DispatchObjects()
      : list_(new NotingParameters(&listScript_)), model_(MakeNoting(Face::kConnectionModel, &script_)) {}

  // Execute and ExecuteFile with this parameter list; the codes have to be the same.
  std::string Ran(const Variant& parameters) {
    LateCall text(model_.get(), 3);
    const std::string code = text.With({Text(u"l"), Text(u"s"), parameters}).Code();
    LateCall file(model_.get(), 4);
    EXPECT_EQ(file.With({Text(u"f"), parameters}).Code(), code);
    EXPECT_EQ(text.index, file.index);
    return code + " " + std::to_string(text.index);
  }

  Script script_;
  Script listScript_;
  boost::intrusive_ptr<NotingParameters> list_;
  IDispatchPtr model_;
};

TEST_F(DispatchObjects, ListIsTakenUnderEitherTag) {
  EXPECT_EQ(Ran(FromDispatch(list_.get())), "0x00000000 51966");
  EXPECT_EQ(Ran(Variant::FromObject(list_.get())), "0x00000000 51966");
  EXPECT_EQ(script_.calls, (std::vector<std::string>{"Execute(l, s, object)", "ExecuteFile(f, object)",
                                                     "Execute(l, s, object)", "ExecuteFile(f, object)"}));
}

TEST_F(DispatchObjects, ListBehindAPointerIsTaken) {
  Variant held = FromDispatch(list_.get());
  EXPECT_EQ(Ran(Reference(VT_VARIANT, &held)), "0x00000000 51966");
  IUnknown* pointer = list_.get();
  EXPECT_EQ(Ran(Reference(VT_UNKNOWN, &pointer)), "0x00000000 51966");
}

TEST_F(DispatchObjects, ReferencesAreGivenBack) {
  {
    LateCall call(model_.get(), 3);
    call.With({Text(u"l"), Text(u"s"), FromDispatch(list_.get())}).Run();
  }
  {
    // The language is refused, with the list at hand.
    LateCall call(model_.get(), 3);
    call.With({Variant::Null(), Text(u"s"), FromDispatch(list_.get())}).Run();
  }
  EXPECT_EQ(list_->AddRef(), 2u);
  EXPECT_EQ(list_->Release(), 1u);
}

TEST_F(DispatchObjects, StrangerUnderUnknownIsAMismatch) {
  const CountingObjectPtr stranger(new CountingObject);
  EXPECT_EQ(Ran(Variant::FromObject(stranger.get())), "0x80020005 0");
  EXPECT_EQ(stranger->References(), 1u);
  EXPECT_TRUE(script_.calls.empty());
}

TEST_F(DispatchObjects, ObjectThatAnswersDispatchAloneIsAMismatch) {
  const CountingObjectPtr stranger(new CountingObject({IDispatch::kIid}));
  EXPECT_EQ(Ran(Variant::FromObject(stranger.get())), "0x80020005 0");
  EXPECT_EQ(stranger->References(), 1u);
  EXPECT_TRUE(script_.calls.empty());
}

TEST_F(DispatchObjects, ObjectWhoseQueryFailsIsAMismatch) {
  const CountingObjectPtr broken(new CountingObject({IDispatch::kIid, IParameters::kIid}));
  broken->FailQueries(E_FAIL);
  EXPECT_EQ(Ran(Variant::FromObject(broken.get())), "0x80020005 0");
  EXPECT_EQ(broken->References(), 1u);
}

TEST_F(DispatchObjects, AnotherObjectOfTheLibraryIsAMismatch) {
  Script other;
  const IDispatchPtr span = MakeNoting(Face::kDuration, &other);
  EXPECT_EQ(Ran(FromDispatch(span.get())), "0x80020005 0");
}

TEST_F(DispatchObjects, InitTakesAnyObjectAndNull) {
  const IDispatchPtr client = MakeNoting(Face::kQvClientServiceRaw, &script_);
  const CountingObjectPtr stranger(new CountingObject);
  LateCall unknown(client.get(), 1);
  EXPECT_EQ(unknown.With({Variant::FromObject(stranger.get())}).Code(), kOk);
  LateCall dispatch(client.get(), 1);
  EXPECT_EQ(dispatch.With({FromDispatch(list_.get())}).Code(), kOk);
  LateCall nullUnknown(client.get(), 1);
  EXPECT_EQ(nullUnknown.With({Variant::FromObject(nullptr)}).Code(), kOk);
  LateCall nullDispatch(client.get(), 1);
  EXPECT_EQ(nullDispatch.With({FromDispatch(nullptr)}).Code(), kOk);
  EXPECT_EQ(script_.calls,
            (std::vector<std::string>{"Init(object)", "Init(object)", "Init(null)", "Init(null)"}));
}

}  // namespace
}  // namespace qv
