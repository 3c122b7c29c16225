// What Invoke returns: the result under the tag of its member, even if the member failed, and the record of
// the failure.
#include <gtest/gtest.h>

#include "automation/noting_faces.h"
#include "fixtures/counting_object.h"
#include "fixtures/waiting_record.h"

namespace qv {
namespace {

// The expected result of a member that returned its prepared result, and of one that wrote nothing.
struct Kind {
  const char* prepared;
  const char* nothing;
};
constexpr Kind kNone = {"VT_EMPTY", "VT_EMPTY"};
constexpr Kind kText = {"VT_BSTR given", "VT_BSTR <null>"};
constexpr Kind kShort = {"VT_I2 -1", "VT_I2 0"};
constexpr Kind kLong = {"VT_I4 70000", "VT_I4 0"};
constexpr Kind kReal = {"VT_R8 2.5", "VT_R8 0"};
constexpr Kind kBool = {"VT_BOOL -1", "VT_BOOL 0"};
constexpr Kind kAny = {"VT_INT 9", "VT_EMPTY"};
constexpr Kind kObject = {"VT_DISPATCH null", "VT_DISPATCH null"};

// Members that are called in the same way: `arguments` are texts "1" and, where the last one is an object, a
// list.
struct Members {
  Face face;
  std::vector<DISPID> ids;
  std::uint16_t flags;
  std::size_t arguments;
  Kind kind;
  bool lastIsObject = false;
};

const Members kMembers[] = {
    {Face::kQvScriptwells, {1, 2, 3, 4, 5, 6}, DISPATCH_METHOD, 0, kObject},
    {Face::kQvScriptwells, {7, 8}, DISPATCH_PROPERTYGET, 0, kText},
    {Face::kQvScriptwells, {7, 8}, DISPATCH_PROPERTYPUT, 1, kNone},
    {Face::kQvClientServiceRaw, {1}, DISPATCH_METHOD, 1, kNone, true},
    {Face::kConnectionModel, {1, 5}, DISPATCH_METHOD, 1, kNone},
    {Face::kConnectionModel, {2}, DISPATCH_METHOD, 0, kNone},
    {Face::kConnectionModel, {3}, DISPATCH_METHOD, 3, kAny, true},
    {Face::kConnectionModel, {4}, DISPATCH_METHOD, 2, kAny, true},
    {Face::kConnectionModel, {7}, DISPATCH_METHOD, 2, kText},
    {Face::kConnectionString, {1, 2, 3, 4, 5}, DISPATCH_PROPERTYGET, 0, kText},
    {Face::kConnectionString, {1, 2, 3, 4, 5}, DISPATCH_PROPERTYPUT, 1, kNone},
    {Face::kConnectionString, {6, 2}, DISPATCH_METHOD, 0, kText},  // ToString; 2 falls through to it
    {Face::kConnectionStringRaw, {1}, DISPATCH_METHOD, 1, kNone},
    {Face::kDuration, {3, 4, 5, 6, 7}, DISPATCH_PROPERTYGET, 0, kShort},
    {Face::kDuration, {8}, DISPATCH_PROPERTYGET, 0, kReal},
    {Face::kDuration, {9}, DISPATCH_PROPERTYGET, 0, kBool},
    {Face::kDuration, {3, 4, 5, 6, 7, 8, 9}, DISPATCH_PROPERTYPUT, 1, kNone},
    {Face::kUrl, {2, 3}, DISPATCH_PROPERTYGET, 0, kText},
    {Face::kUrl, {2, 3}, DISPATCH_PROPERTYPUT, 1, kNone},
    {Face::kUrl, {4}, DISPATCH_METHOD, 0, kText},
    {Face::kAttachedFile, {1}, DISPATCH_METHOD, 1, kNone},
    {Face::kAttachedFile, {2, 3, 6}, DISPATCH_PROPERTYGET, 0, kText},
    {Face::kAttachedFile, {4, 5}, DISPATCH_PROPERTYGET, 0, kLong},
    {Face::kAttachedFile, {2, 3, 4, 5, 6}, DISPATCH_PROPERTYPUT, 1, kNone},
    {Face::kAttachedFile, {7, 4}, DISPATCH_METHOD, 0, kBool},  // IsTicketId; 4 falls through to it
    {Face::kParameter, {1}, DISPATCH_METHOD, 2, kNone},
    {Face::kParameter, {2, 4}, DISPATCH_PROPERTYGET, 0, kText},
    {Face::kParameter, {3}, DISPATCH_PROPERTYGET, 0, kAny},
    {Face::kParameters, {1}, DISPATCH_METHOD, 2, kObject},
    {Face::kParameters, {2}, DISPATCH_METHOD, 1, kNone},
    {Face::kParameters, {3}, DISPATCH_METHOD, 1, kObject},
    {Face::kParameters, {4}, DISPATCH_METHOD, 0, kShort},
    {Face::kParameters, {5}, DISPATCH_METHOD, 0, kNone},
};

class DispatchResults : public testing::Test {
 protected:
  // Runs the check for each member, whose object is new and has its results prepared.
  template <class Check>
  void ForEachMember(const Check& check) {
    for (const Members& row : kMembers) {
      for (const DISPID id : row.ids) {
        SCOPED_TRACE(NameOf(row.face) + " " + std::to_string(id) + " flags " + std::to_string(row.flags));
        ClearErrorInfo();
        script_ = {};
        script_.text = u"given";
        script_.shortValue = -1;
        script_.longValue = 70000;
        script_.realValue = 2.5;
        script_.value = Int(9);
        const IDispatchPtr object = MakeNoting(row.face, &script_);
        LateCall call(object.get(), id, row.flags);
        std::vector<Variant> arguments(row.arguments, Text(u"1"));
        if (row.lastIsObject) arguments.back() = FromDispatch(list_.get());
        check(call.With(arguments), row.kind);
      }
    }
  }

  Script listScript_;
  const IDispatchPtr list_ = MakeNoting(Face::kParameters, &listScript_);
  Script script_;
};

TEST_F(DispatchResults, SuccessGivesTheResultAndLeavesTheFailureAlone) {
  for (const HRESULT code : {S_OK, S_FALSE}) {
    ForEachMember([&](LateCall& call, const Kind& kind) {
      script_.code = code;
      EXPECT_EQ(call.Run(), code);
      EXPECT_EQ(ShownValue(call.result), kind.prepared);
      EXPECT_EQ(call.index, kUntouchedIndex);
      EXPECT_TRUE(call.FailureUntouched());
    });
  }
}

TEST_F(DispatchResults, FailureGivesTheResultToo) {
  for (const bool writes : {true, false}) {
    ForEachMember([&](LateCall& call, const Kind& kind) {
      script_.code = MakeResult(0x80040123);
      script_.writeNothing = !writes;
      EXPECT_EQ(call.Code(), "0x80040123");
      EXPECT_EQ(ShownValue(call.result), writes ? kind.prepared : kind.nothing);
    });
  }
}

TEST_F(DispatchResults, EveryOutputParameterIsOptional) {
  ForEachMember([this](LateCall& call, const Kind&) {
    EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), S_OK);
    script_.code = E_FAIL;
    EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), E_FAIL);
    EXPECT_EQ(script_.calls.size(), 2U);
  });
}

// Null texts are copied as well.
TEST_F(DispatchResults, FailureIsFilledFromTheWaitingRecord) {
  for (const ErrorInfo& record :
       {ErrorInfo{Guid{}, u"a source", u"some words", u"a file", 77}, ErrorInfo{}}) {
    ForEachMember([&](LateCall& call, const Kind&) {
      script_.code = MakeResult(0x80040123);
      script_.leaveRecord = true;
      script_.record = record;
      EXPECT_EQ(call.Code(), "0x80040123");
      EXPECT_EQ(Shown(call.failure.bstrSource), Shown(record.source));
      EXPECT_EQ(Shown(call.failure.bstrDescription), Shown(record.description));
      EXPECT_EQ(Shown(call.failure.bstrHelpFile), Shown(record.helpFile));
      EXPECT_EQ(call.failure.dwHelpContext, record.helpContext);
      EXPECT_EQ(static_cast<std::uint32_t>(call.failure.scode), 0x80040123U);
      EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
      EXPECT_EQ(TakenWords(), "no record");
    });
  }
}

TEST_F(DispatchResults, FailureWithoutRecordKeepsTheOtherFields) {
  ForEachMember([this](LateCall& call, const Kind&) {
    script_.code = E_FAIL;
    call.Run();
    EXPECT_EQ(call.failure.scode, E_FAIL);
    EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
    call.failure.scode = 14;
    call.failure.pfnDeferredFillIn = DeferredFillIn;
    EXPECT_TRUE(call.FailureUntouched());
  });
}

TEST_F(DispatchResults, RecordWaitsForAHostWithoutFailureParameter) {
  ForEachMember([this](LateCall& call, const Kind&) {
    script_.code = E_FAIL;
    script_.leaveRecord = true;
    script_.record.description = u"some words";
    EXPECT_EQ(call.Run(&call.result, nullptr, &call.index), E_FAIL);
    EXPECT_EQ(TakenWords(), "some words");
  });
}

// Results that own something.

TEST_F(DispatchResults, ObjectComesWithItsReference) {
  Script inner;
  const boost::intrusive_ptr<NotingParameter> found(new NotingParameter(&inner));
  Script script;
  script.object = found.get();
  for (const HRESULT code : {S_OK, E_FAIL}) {
    script.code = code;
    const IDispatchPtr list = MakeNoting(Face::kParameters, &script);
    LateCall call(list.get(), 3);
    EXPECT_EQ(call.With({I2(0)}).Run(), code);
    EXPECT_EQ(ShownValue(call.result), "VT_DISPATCH object");
    EXPECT_EQ(DispatchOf(call.result), static_cast<IDispatch*>(found.get()));
    EXPECT_EQ(found->AddRef(), 3U);
    found->Release();
    call.result.Clear();
    // Without an output parameter the reference is released.
    call.Run(nullptr, nullptr, nullptr);
    EXPECT_EQ(found->AddRef(), 2U);
    found->Release();
  }
}

TEST_F(DispatchResults, ObjectsOfTheClientComeWithTheirReferences) {
  const Face kinds[] = {Face::kConnectionModel,  Face::kUrl,          Face::kDuration,
                        Face::kConnectionString, Face::kAttachedFile, Face::kParameters};
  DISPID id = 1;
  for (const Face kind : kinds) {
    Script inner;
    const IDispatchPtr made = MakeNoting(kind, &inner);
    Script script;
    script.object = made.get();
    const IDispatchPtr client = MakeNoting(Face::kQvScriptwells, &script);
    LateCall call(client.get(), id++);
    EXPECT_EQ(call.Code(), "0x00000000");
    EXPECT_EQ(DispatchOf(call.result), made.get()) << NameOf(kind);
    EXPECT_EQ(made->AddRef(), 3U);
    made->Release();
  }
}

TEST_F(DispatchResults, ValueKeepsItsTagAndItsObject) {
  const CountingObjectPtr content(new CountingObject);
  Script script;
  const IDispatchPtr parameter = MakeNoting(Face::kParameter, &script);
  for (const Variant& value : {Variant(), Variant::Null(), I2(3), Text(u"t"),
                               Variant::FromObject(content.get()), Variant::FromObject(nullptr)}) {
    script.value = value;
    LateCall call(parameter.get(), 3, DISPATCH_PROPERTYGET);
    EXPECT_EQ(call.Code(), "0x00000000");
    EXPECT_EQ(ShownValue(call.result), ShownValue(value));
    EXPECT_EQ(call.result.Object(), value.Object());
  }
}

TEST_F(DispatchResults, OldContentIsReleased) {
  const CountingObjectPtr old(new CountingObject);
  Script script;
  const IDispatchPtr list = MakeNoting(Face::kParameters, &script);
  LateCall call(list.get(), 4);
  call.result = Variant::FromObject(old.get());
  EXPECT_EQ(old->References(), 2U);
  EXPECT_EQ(call.Code(), "0x00000000");
  EXPECT_EQ(old->References(), 1U);
  // Also by a call that fails after the test of the limit.
  LateCall refused(list.get(), 9);
  refused.result = Variant::FromObject(old.get());
  EXPECT_EQ(refused.Code(), "0x80020003");
  EXPECT_EQ(old->References(), 1U);
}

// The result is cleared before the arguments are read; a host that uses one Variant for both loses the
// argument, and nothing else.
TEST_F(DispatchResults, ArgumentMayBeTheResult) {
  Script script;
  for (const FaceRow& row : kFaces) {
    const IDispatchPtr object = row.make(&script);
    for (DISPID id = 0; id < 10; ++id) {
      Variant shared = Text(u"1");
      DISPPARAMS block;
      block.rgvarg = &shared;
      block.cArgs = 1;
      object->Invoke(id, Guid{}, 0, DISPATCH_PROPERTYPUT, &block, &shared, nullptr, nullptr);
    }
  }
  for (const std::string& line : script.calls) EXPECT_EQ(line.find("(1"), std::string::npos) << line;
}

TEST_F(DispatchResults, EarlyRefusalLeavesTheRecordAndTheFailure) {
  const IDispatchPtr span = MakeNoting(Face::kDuration, &script_);
  const std::vector<Variant> none;
  const std::vector<Variant> noNumber = {Text(u"abc")};
  for (const auto& [id, arguments] : {std::pair{3, noNumber}, std::pair{3, none}, std::pair{77, none}}) {
    LateCall call(span.get(), id, DISPATCH_PROPERTYPUT);
    EXPECT_TRUE(Failed(call.With(arguments).Run()));
    EXPECT_TRUE(call.FailureUntouched());
    EXPECT_EQ(TakenWords(), "no record");
  }
}

TEST(DispatchResult, NothingIsLeftAlive) {
  EXPECT_EQ(Noting::Live(), 0);
  EXPECT_EQ(CountingObject::Live(), 0);
}

}  // namespace
}  // namespace qv
