// What Invoke refuses before it looks at an argument, and in which order.
#include <gtest/gtest.h>

#include "automation/noting_faces.h"

namespace qv {
namespace {

struct Limit {
  Face face;
  std::size_t arguments;
  DISPID last;                            // the highest id that has a member
  HRESULT named = DISP_E_MEMBERNOTFOUND;  // what a named argument of an unknown id comes to
};
const Limit kLimits[] = {{Face::kQvScriptwells, 1, 8},
                         {Face::kQvClientServiceRaw, 1, 1},
                         {Face::kConnectionModel, 4, 7, DISP_E_NONAMEDARGS},
                         {Face::kConnectionString, 1, 6},
                         {Face::kConnectionStringRaw, 1, 1},
                         {Face::kDuration, 1, 9},
                         {Face::kUrl, 1, 4},
                         {Face::kAttachedFile, 1, 7},
                         {Face::kParameter, 2, 4, DISP_E_PARAMNOTFOUND},
                         {Face::kParameters, 3, 5, DISP_E_NONAMEDARGS}};

class DispatchChecks : public testing::Test {
 protected:
  template <class Check>
  void ForEachFace(const Check& check) {
    for (const Limit& limit : kLimits) {
      SCOPED_TRACE(NameOf(limit.face));
      object_ = MakeNoting(limit.face, &script_);
      check(limit);
      EXPECT_TRUE(script_.calls.empty());
    }
  }
  static void ExpectUntouched(const LateCall& call) {
    EXPECT_EQ(ShownValue(call.result), "VT_BSTR untouched");
    EXPECT_EQ(call.index, kUntouchedIndex);
    EXPECT_TRUE(call.FailureUntouched());
  }

  Script script_;
  IDispatchPtr object_;
};

TEST_F(DispatchChecks, MissingArgumentBlockComesFirstAndKeepsTheResult) {
  ForEachFace([this](const Limit& limit) {
    for (DISPID id = -1; id <= limit.last + 1; ++id) {
      for (const std::uint16_t flags : std::initializer_list<std::uint16_t>{0, 1, 2, 4, 8, 6, 3}) {
        LateCall call(object_.get(), id, flags);
        EXPECT_EQ(object_->Invoke(id, Guid{}, 0, flags, nullptr, &call.result, &call.failure, &call.index),
                  DISP_E_BADVARTYPE);
        ExpectUntouched(call);
      }
    }
    EXPECT_EQ(object_->Invoke(1, Guid{}, 0, 1, nullptr, nullptr, nullptr, nullptr), DISP_E_BADVARTYPE);
  });
}

TEST_F(DispatchChecks, TooManyForTheInterfaceKeepsTheResult) {
  ForEachFace([this](const Limit& limit) {
    for (const std::size_t more : {1U, 2U, 50U}) {
      for (DISPID id = -1; id <= limit.last + 1; ++id) {
        LateCall call(object_.get(), id, DISPATCH_PROPERTYGET);
        call.With(std::vector<Variant>(limit.arguments + more, Text(u"1")));
        EXPECT_EQ(call.Run(), DISP_E_BADPARAMCOUNT) << id;
        ExpectUntouched(call);
      }
    }
    DISPPARAMS block;  // whose arguments nobody looks at
    block.cArgs = 0xFFFFFFFF;
    EXPECT_EQ(object_->Invoke(1, Guid{}, 0, 1, &block, nullptr, nullptr, nullptr), DISP_E_BADPARAMCOUNT);
  });
}

TEST_F(DispatchChecks, CountIsTestedBeforeNamedArguments) {
  ForEachFace([this](const Limit& limit) {
    LateCall call(object_.get(), 1);
    call.With(std::vector<Variant>(limit.arguments + 1, Text(u"1"))).Named({99});
    EXPECT_EQ(call.Run(), DISP_E_BADPARAMCOUNT);
    ExpectUntouched(call);
  });
}

TEST_F(DispatchChecks, UnknownIdClearsTheResult) {
  ForEachFace([this](const Limit& limit) {
    LateCall call(object_.get(), 100);
    EXPECT_EQ(call.With({Text(u"1")}).Run(), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
    LateCall named(object_.get(), 100);
    EXPECT_EQ(named.With({Text(u"1")}).Named({5}).Run(), limit.named);
    EXPECT_EQ(ShownValue(named.result), "VT_EMPTY");
    EXPECT_TRUE(named.FailureUntouched());
  });
}

TEST_F(DispatchChecks, CountWithoutArgumentsIsRefused) {
  ForEachFace([this](const Limit& limit) {
    DISPPARAMS block;
    block.cArgs = 1;
    for (DISPID id = 1; id <= limit.last; ++id)
      for (const std::uint16_t flags : std::initializer_list<std::uint16_t>{1, 2, 4})
        EXPECT_TRUE(Failed(object_->Invoke(id, Guid{}, 0, flags, &block, nullptr, nullptr, nullptr)));
  });
}

}  // namespace
}  // namespace qv
