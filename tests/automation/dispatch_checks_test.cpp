// What Invoke refuses before it looks at an argument, and in which order.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/noting_faces.h"
#include "fixtures/counting_object.h"

namespace qv {
namespace {

// Codes as the tests below write them.
constexpr char kMemberNotFound[] = "0x80020003";
constexpr char kParamNotFound[] = "0x80020004";
constexpr char kNoNamedArgs[] = "0x80020007";
constexpr char kBadVarType[] = "0x80020008";
constexpr char kBadParamCount[] = "0x8002000E";

struct Limit {
  Face face;
  std::size_t arguments;
  DISPID last;  // the highest id that has a member
};
const Limit kLimits[] = {{Face::kQvScriptwells, 1, 8},
                         {Face::kQvClientServiceRaw, 1, 1},
                         {Face::kConnectionModel, 4, 7},
                         {Face::kConnectionString, 1, 6},
                         {Face::kConnectionStringRaw, 1, 1},
                         {Face::kDuration, 1, 9},
                         {Face::kUrl, 1, 4},
                         {Face::kAttachedFile, 1, 7},
                         {Face::kParameter, 2, 4},
                         {Face::kParameters, 3, 5}};
void PrintTo(const Limit& row, std::ostream* out) {
  *out << NameOf(row.face);
}

class DispatchChecks : public testing::TestWithParam<Limit> {
 protected:
  DispatchChecks() : object_(MakeNoting(GetParam().face, &script_)) {}
  bool Refuses() const {
    return GetParam().face == Face::kConnectionModel || GetParam().face == Face::kParameters;
  }

  Script script_;
  IDispatchPtr object_;
};

TEST_P(DispatchChecks, MissingArgumentBlockComesFirstAndKeepsTheResult) {
  for (DISPID id = -1; id <= GetParam().last + 1; ++id) {
    for (const int flags : {0, 1, 2, 4, 8, 6, 3}) {
      LateCall call(object_.get(), id, static_cast<std::uint16_t>(flags));
      EXPECT_EQ(ShownCode(object_->Invoke(id, Guid{}, 0, static_cast<std::uint16_t>(flags), nullptr,
                                          &call.result, &call.failure, &call.index)),
                kBadVarType);
      EXPECT_EQ(ShownValue(call.result), "VT_BSTR untouched");
      EXPECT_EQ(call.index, kUntouchedIndex);
      EXPECT_TRUE(call.FailureUntouched());
    }
  }
  EXPECT_EQ(ShownCode(object_->Invoke(1, Guid{}, 0, 1, nullptr, nullptr, nullptr, nullptr)), kBadVarType);
  EXPECT_TRUE(script_.calls.empty());
}

TEST_P(DispatchChecks, TooManyForTheInterfaceKeepsTheResult) {
  for (const std::size_t more : {1u, 2u, 50u}) {
    for (DISPID id = -1; id <= GetParam().last + 1; ++id) {
      LateCall call(object_.get(), id, DISPATCH_PROPERTYGET);
      call.With(std::vector<Variant>(GetParam().arguments + more, Text(u"1")));
      EXPECT_EQ(call.Code(), kBadParamCount) << id;
      EXPECT_EQ(ShownValue(call.result), "VT_BSTR untouched");
      EXPECT_EQ(call.index, kUntouchedIndex);
      EXPECT_TRUE(call.FailureUntouched());
    }
  }
  EXPECT_TRUE(script_.calls.empty());
}

TEST_P(DispatchChecks, TooManyAreRefusedWithoutALookAtThem) {
  DISPPARAMS block;
  block.cArgs = 0xFFFFFFFF;
  EXPECT_EQ(object_->Invoke(1, Guid{}, 0, 1, &block, nullptr, nullptr, nullptr), DISP_E_BADPARAMCOUNT);
}

TEST_P(DispatchChecks, CountIsTestedBeforeNamedArguments) {
  LateCall call(object_.get(), 1);
  call.With(std::vector<Variant>(GetParam().arguments + 1, Text(u"1"))).Named({99});
  EXPECT_EQ(call.Code(), kBadParamCount);
  EXPECT_EQ(ShownValue(call.result), "VT_BSTR untouched");
  EXPECT_EQ(call.index, kUntouchedIndex);
}

TEST_P(DispatchChecks, UnknownIdClearsTheResult) {
  LateCall call(object_.get(), 100);
  EXPECT_EQ(call.With({Text(u"1")}).Code(), kMemberNotFound);
  EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
}

TEST_P(DispatchChecks, NamedArgumentsOfAnUnknownId) {
  LateCall call(object_.get(), 100);
  const std::string code = call.With({Text(u"1")}).Named({5}).Code();
  if (Refuses()) {
    EXPECT_EQ(code, kNoNamedArgs);
  }
  if (GetParam().face == Face::kParameter) {
    EXPECT_EQ(code, kParamNotFound);
  }
  if (!Refuses() && GetParam().face != Face::kParameter) {
    EXPECT_EQ(code, kMemberNotFound);
  }
  EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
  EXPECT_TRUE(call.FailureUntouched());
}

TEST_P(DispatchChecks, MissingArgumentsBehindACountAreRefused) {
  DISPPARAMS block;
  block.cArgs = 1;
  for (DISPID id = 1; id <= GetParam().last; ++id)
    for (const int flags : {1, 2, 4})
      EXPECT_TRUE(Failed(object_->Invoke(id, Guid{}, 0, static_cast<std::uint16_t>(flags), &block, nullptr,
                                         nullptr, nullptr)));
  EXPECT_TRUE(script_.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(Interfaces, DispatchChecks, testing::ValuesIn(kLimits),
                         [](const testing::TestParamInfo<Limit>& row) {
                           return std::string(NameOf(row.param.face));
                         });

}  // namespace
}  // namespace qv
