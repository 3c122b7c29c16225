// Arguments of Invoke: the order of its checks, named arguments, conversion, and which argument is told as
// the bad one.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/noting_faces.h"
#include "fixtures/counting_object.h"

namespace qv {
namespace {

// Codes as the tests below write them.
constexpr char kOk[] = "0x00000000";
constexpr char kMemberNotFound[] = "0x80020003";
constexpr char kParamNotFound[] = "0x80020004";
constexpr char kTypeMismatch[] = "0x80020005";
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
      EXPECT_EQ(ShownValue(call.result), "BSTR untouched");
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
      EXPECT_EQ(ShownValue(call.result), "BSTR untouched");
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
  EXPECT_EQ(ShownValue(call.result), "BSTR untouched");
  EXPECT_EQ(call.index, kUntouchedIndex);
}

TEST_P(DispatchChecks, UnknownIdClearsTheResult) {
  LateCall call(object_.get(), 100);
  EXPECT_EQ(call.With({Text(u"1")}).Code(), kMemberNotFound);
  EXPECT_EQ(ShownValue(call.result), "EMPTY");
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
  EXPECT_EQ(ShownValue(call.result), "EMPTY");
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

// Named arguments.

struct NamedRow {
  const char* name;
  Face face;
  DISPID id;
  int flags;
  std::vector<Variant> block;  // as it stands, the last argument first
  std::vector<DISPID> named;
  const char* code;
  std::uint32_t index;
  const char* noted;  // null: nothing ran
};
void PrintTo(const NamedRow& row, std::ostream* out) {
  *out << row.name;
}

class DispatchNamed : public testing::TestWithParam<NamedRow> {};

TEST_P(DispatchNamed, GivesThisCodeAndCall) {
  const NamedRow& row = GetParam();
  Script script;
  const IDispatchPtr object = MakeNoting(row.face, &script);
  LateCall call(object.get(), row.id, static_cast<std::uint16_t>(row.flags));
  EXPECT_EQ(call.WithBlock(row.block).Named(row.named).Code(), row.code);
  EXPECT_EQ(call.index, row.index);
  ASSERT_EQ(script.calls.size(), row.noted == nullptr ? 0u : 1u);
  if (row.noted != nullptr) {
    EXPECT_EQ(script.calls[0], row.noted);
  }
  if (row.noted == nullptr) {
    EXPECT_EQ(ShownValue(call.result), "EMPTY");
  }
  EXPECT_TRUE(call.FailureUntouched());
}

INSTANTIATE_TEST_SUITE_P(
    Honoured, DispatchNamed,
    testing::Values(
        NamedRow{"NoneNamed",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, I2 7)"},
        // `value` goes to the second place, wherever it stands.
        NamedRow{"ValueNamed",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, I2 7)"},
        NamedRow{"BothNamed",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1, 0},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, I2 7)"},
        NamedRow{"BothNamedInTheOtherOrder",
                 Face::kParameter,
                 1,
                 1,
                 {Text(u"k"), I2(7)},
                 {0, 1},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, I2 7)"},
        NamedRow{"PropertyPutStaysInItsPlace",
                 Face::kParameter,
                 1,
                 4,
                 {I2(7), Text(u"k")},
                 {-3},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, I2 7)"},
        NamedRow{"PropertyPutAndKey",
                 Face::kParameter,
                 1,
                 4,
                 {I2(7), Text(u"k")},
                 {-3, 0},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, I2 7)"},
        NamedRow{"FirstIdIsTheCount",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {2},
                 kParamNotFound,
                 0,
                 nullptr},
        NamedRow{"FirstIdIsNegative",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {-1},
                 kParamNotFound,
                 0,
                 nullptr},
        NamedRow{"SecondIdIsTheCount",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1, 2},
                 kParamNotFound,
                 1,
                 nullptr},
        NamedRow{"SecondIdIsPropertyPut",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1, -3},
                 kParamNotFound,
                 1,
                 nullptr},
        NamedRow{"SecondIdBehindPropertyPutIsTheCount",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {-3, 2},
                 kParamNotFound,
                 1,
                 nullptr},
        NamedRow{"LowestId",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {-2147483647 - 1},
                 kParamNotFound,
                 0,
                 nullptr},
        NamedRow{"HighestId",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {2147483647},
                 kParamNotFound,
                 0,
                 nullptr},
        NamedRow{"KeyOfOneArgument",
                 Face::kParameter,
                 1,
                 1,
                 {Text(u"k")},
                 {0},
                 kBadParamCount,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ValueOfOneArgument", Face::kParameter, 1, 1, {Text(u"k")}, {1}, kParamNotFound, 0, nullptr},
        NamedRow{
            "CheckedForAPropertyToo", Face::kParameter, 2, 2, {Text(u"k")}, {1}, kParamNotFound, 0, nullptr},
        NamedRow{"CheckedForAnUnknownIdToo",
                 Face::kParameter,
                 9,
                 1,
                 {Text(u"k")},
                 {7},
                 kParamNotFound,
                 0,
                 nullptr},
        // A key that does not convert is told by its place among the arguments in reverse.
        NamedRow{
            "BadKey", Face::kParameter, 1, 1, {Variant::Null(), I2(7)}, {0, 1}, kTypeMismatch, 1, nullptr}),
    [](const testing::TestParamInfo<NamedRow>& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Refused, DispatchNamed,
    testing::Values(
        NamedRow{"ListAdd",
                 Face::kParameters,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ListAddWithBoth",
                 Face::kParameters,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1, 0},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ListPropertyPut",
                 Face::kParameters,
                 1,
                 4,
                 {I2(7), Text(u"k")},
                 {-3},
                 kOk,
                 kUntouchedIndex,
                 "Add(k, I2 7)"},
        NamedRow{"ListTwoWithPropertyPut",
                 Face::kParameters,
                 1,
                 4,
                 {I2(7), Text(u"k")},
                 {-3, 0},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ListTwoPropertyPuts",
                 Face::kParameters,
                 1,
                 4,
                 {I2(7), Text(u"k")},
                 {-3, -3},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ListBeforeTheCount",
                 Face::kParameters,
                 4,
                 1,
                 {I2(7)},
                 {0},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{
            "ListBeforeTheId", Face::kParameters, 9, 1, {I2(7)}, {0}, kNoNamedArgs, kUntouchedIndex, nullptr},
        NamedRow{"ListPropertyPutOfAnUnknownId",
                 Face::kParameters,
                 9,
                 1,
                 {I2(7)},
                 {-3},
                 kMemberNotFound,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ModelSetUsid",
                 Face::kConnectionModel,
                 5,
                 1,
                 {Text(u"u")},
                 {0},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ModelPropertyPut",
                 Face::kConnectionModel,
                 5,
                 4,
                 {Text(u"u")},
                 {-3},
                 kOk,
                 kUntouchedIndex,
                 "SetUSID(u)"},
        NamedRow{"ModelTwoWithPropertyPut",
                 Face::kConnectionModel,
                 7,
                 4,
                 {Text(u"t"), Text(u"u")},
                 {-3, 0},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr},
        NamedRow{"ModelBeforeTheConversion",
                 Face::kConnectionModel,
                 5,
                 1,
                 {Variant::Null()},
                 {0},
                 kNoNamedArgs,
                 kUntouchedIndex,
                 nullptr}),
    [](const testing::TestParamInfo<NamedRow>& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Ignored, DispatchNamed,
    testing::Values(
        NamedRow{"Client",
                 Face::kQvScriptwells,
                 7,
                 4,
                 {Text(u"s")},
                 {5},
                 kOk,
                 kUntouchedIndex,
                 "put_ServerName(s)"},
        NamedRow{"ClientRead", Face::kQvScriptwells, 8, 2, {}, {0, 1, 2}, kOk, kUntouchedIndex, "get_Proxy"},
        NamedRow{"ConnectionString",
                 Face::kConnectionString,
                 1,
                 4,
                 {Text(u"s")},
                 {-3},
                 kOk,
                 kUntouchedIndex,
                 "put_UserName(s)"},
        NamedRow{"ConnectionStringRaw",
                 Face::kConnectionStringRaw,
                 1,
                 1,
                 {Text(u"s")},
                 {9, 9},
                 kOk,
                 kUntouchedIndex,
                 "Initialize(s)"},
        NamedRow{"Duration", Face::kDuration, 3, 4, {I2(7)}, {-3}, kOk, kUntouchedIndex, "put_Day(7)"},
        NamedRow{"Url", Face::kUrl, 3, 4, {Text(u"s")}, {77}, kOk, kUntouchedIndex, "put_Url(s)"},
        NamedRow{
            "AttachedFile", Face::kAttachedFile, 1, 1, {Text(u"s")}, {-1}, kOk, kUntouchedIndex, "Init(s)"}),
    [](const testing::TestParamInfo<NamedRow>& row) { return std::string(row.param.name); });

TEST(DispatchNamedArguments, MoreThanArgumentsAreNotFound) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kParameter, &script);
  for (const DISPID first : {0, -3}) {
    LateCall call(object.get(), 1);
    EXPECT_EQ(call.WithBlock({I2(7), Text(u"k")}).Named({first, 0, 1}).Code(), kParamNotFound);
    LateCall none(object.get(), 2, DISPATCH_PROPERTYGET);
    EXPECT_EQ(none.Named({first}).Code(), kParamNotFound);
  }
  EXPECT_TRUE(script.calls.empty());
}

TEST(DispatchNamedArguments, IndexMayBeUnwanted) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kParameter, &script);
  LateCall call(object.get(), 1);
  call.WithBlock({I2(7), Text(u"k")}).Named({9});
  EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), DISP_E_PARAMNOTFOUND);
}

TEST(DispatchNamedArguments, PlaceThatNobodyFilledIsEmpty) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kParameter, &script);
  // Both go to the place of the value, the later one stays; the key converts from nothing to no text.
  LateCall values(object.get(), 1);
  EXPECT_EQ(values.WithBlock({I2(7), I2(8)}).Named({1, 1}).Code(), kOk);
  // Both go to the place of the key.
  LateCall keys(object.get(), 1);
  EXPECT_EQ(keys.WithBlock({Text(u"a"), Text(u"b")}).Named({0, 0}).Code(), kOk);
  EXPECT_EQ(script.calls, (std::vector<std::string>{"SetValues(, I2 8)", "SetValues(b, EMPTY)"}));
}

TEST(DispatchNamedArguments, MissingIdsBehindACountDoNotHurt) {
  for (const Face face : kAllFaces) {
    Script script;
    const IDispatchPtr object = MakeNoting(face, &script);
    const Variant value = Text(u"1");
    DISPPARAMS block;
    block.rgvarg = &value;
    block.cArgs = 1;
    block.cNamedArgs = 1;
    const HRESULT code = object->Invoke(100, Guid{}, 0, 1, &block, nullptr, nullptr, nullptr);
    EXPECT_TRUE(Failed(code)) << NameOf(face);
  }
}

// Conversion.

struct ConversionRow {
  const char* name;
  Face face;
  DISPID id;
  int flags;
  std::vector<Variant> arguments;  // in the member's order
  const char* code;
  std::uint32_t index;
  const char* noted;
};
void PrintTo(const ConversionRow& row, std::ostream* out) {
  *out << row.name;
}

class DispatchConversion : public testing::TestWithParam<ConversionRow> {};

TEST_P(DispatchConversion, GivesThisCallOrIndex) {
  const ConversionRow& row = GetParam();
  Script script;
  const IDispatchPtr object = MakeNoting(row.face, &script);
  LateCall call(object.get(), row.id, static_cast<std::uint16_t>(row.flags));
  EXPECT_EQ(call.With(row.arguments).Code(), row.code);
  EXPECT_EQ(call.index, row.index);
  ASSERT_EQ(script.calls.size(), row.noted == nullptr ? 0u : 1u);
  if (row.noted != nullptr) {
    EXPECT_EQ(script.calls[0], row.noted);
  }
  if (row.noted == nullptr) {
    EXPECT_EQ(ShownValue(call.result), "EMPTY");
  }
  EXPECT_TRUE(call.FailureUntouched());
}

ConversionRow Taken(const char* name, Face face, DISPID id, int flags, std::vector<Variant> arguments,
                    const char* noted) {
  return {name, face, id, flags, std::move(arguments), kOk, kUntouchedIndex, noted};
}
ConversionRow Refused(const char* name, Face face, DISPID id, int flags, std::vector<Variant> arguments,
                      std::uint32_t index) {
  return {name, face, id, flags, std::move(arguments), kTypeMismatch, index, nullptr};
}
std::string ConversionName(const testing::TestParamInfo<ConversionRow>& row) {
  return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Taken, DispatchConversion,
    testing::Values(Taken("ShortAsItIs", Face::kDuration, 3, 4, {I2(-7)}, "put_Day(-7)"),
                    Taken("TextToShort", Face::kDuration, 3, 4, {Text(u"12")}, "put_Day(12)"),
                    Taken("LongToShort", Face::kDuration, 4, 4, {I4(300)}, "put_Month(300)"),
                    Taken("BoolToShort", Face::kDuration, 5, 4, {Variant::FromBool(true)}, "put_Year(-1)"),
                    Taken("NothingToShort", Face::kDuration, 6, 4, {Variant()}, "put_Hour(0)"),
                    Taken("ShortToReal", Face::kDuration, 8, 4, {I2(3)}, "put_Sec(3)"),
                    Taken("RealAsItIs", Face::kDuration, 8, 4, {R8(2.25)}, "put_Sec(2.25)"),
                    Taken("TextToReal", Face::kDuration, 8, 4, {Text(u"1.5")}, "put_Sec(1.5)"),
                    Taken("BoolAsItIs", Face::kDuration, 9, 4, {Variant::FromBool(true)}, "put_Negative(-1)"),
                    Taken("ShortToBool", Face::kDuration, 9, 4, {I2(5)}, "put_Negative(-1)"),
                    Taken("ZeroToBool", Face::kDuration, 9, 4, {I4(0)}, "put_Negative(0)"),
                    Taken("TextToBool", Face::kDuration, 9, 4, {Text(u"True")}, "put_Negative(-1)"),
                    Taken("ShortToLong", Face::kAttachedFile, 4, 4, {I2(-2)}, "put_SourceFileLifeTime(-2)"),
                    Taken("LongAsItIs", Face::kAttachedFile, 5, 4, {I4(70000)}, "put_CleanUp(70000)"),
                    Taken("TextToLong", Face::kAttachedFile, 5, 4, {Text(u"70000")}, "put_CleanUp(70000)"),
                    Taken("ShortToText", Face::kUrl, 2, 4, {I2(5)}, "put_UrlCaption(5)"),
                    Taken("RealToText", Face::kUrl, 2, 4, {R8(1.5)}, "put_UrlCaption(1.5)"),
                    Taken("NothingToText", Face::kUrl, 3, 4, {Variant()}, "put_Url()"),
                    Taken("NullTextAsItIs", Face::kUrl, 3, 4, {Text(WideString())}, "put_Url(<null>)"),
                    Taken("EmptyTextAsItIs", Face::kQvScriptwells, 8, 4, {Text(u"")}, "put_Proxy()"),
                    Taken("TextToIndex", Face::kParameters, 2, 1, {Text(u"2")}, "Remove(2)"),
                    Taken("LongToIndex", Face::kParameters, 3, 1, {I4(-1)}, "Find(-1)"),
                    Taken("OrderOfTwo", Face::kConnectionModel, 7, 1, {Text(u"url"), Text(u"target")},
                          "DownloadFile(url, target)"),
                    Taken("NumbersToTexts", Face::kConnectionModel, 7, 1, {I2(1), I2(2)},
                          "DownloadFile(1, 2)"),
                    // Any value keeps its tag.
                    Taken("AnyShort", Face::kParameters, 1, 1, {I2(1), I2(2)}, "Add(1, I2 2)"),
                    Taken("AnyNothing", Face::kParameters, 1, 1, {Text(u"k"), Variant()}, "Add(k, EMPTY)"),
                    Taken("AnyNull", Face::kParameters, 1, 1, {Text(u"k"), Variant::Null()}, "Add(k, NULL)"),
                    Taken("AnyReal", Face::kParameter, 1, 1, {Text(u"k"), R8(0.5)}, "SetValues(k, R8 0.5)"),
                    Taken("AnyBool", Face::kParameter, 1, 1, {Text(u"k"), Variant::FromBool(true)},
                          "SetValues(k, BOOL -1)"),
                    Taken("AnyNullObject", Face::kParameter, 1, 1, {Text(u"k"), FromDispatch(nullptr)},
                          "SetValues(k, DISPATCH null)"),
                    Taken("AnyNullUnknown", Face::kParameter, 1, 1,
                          {Text(u"k"), Variant::FromObject(nullptr)}, "SetValues(k, UNKNOWN null)")),
    ConversionName);

INSTANTIATE_TEST_SUITE_P(
    Refused, DispatchConversion,
    testing::Values(
        Refused("Day", Face::kDuration, 3, 4, {Text(u"abc")}, 0),
        Refused("DayTooLarge", Face::kDuration, 3, 4, {Text(u"70000")}, 0),
        Refused("DayTooLargeAsLong", Face::kDuration, 3, 4, {I4(32768)}, 0),
        Refused("DayNull", Face::kDuration, 3, 4, {Variant::Null()}, 0),
        Refused("DayNullObject", Face::kDuration, 3, 4, {FromDispatch(nullptr)}, 0),
        Refused("Month", Face::kDuration, 4, 4, {Text(u"x")}, 0),
        Refused("Year", Face::kDuration, 5, 4, {Text(u"x")}, 0),
        Refused("Hour", Face::kDuration, 6, 4, {Text(u"x")}, 0),
        Refused("Min", Face::kDuration, 7, 4, {Text(u"x")}, 0),
        Refused("Sec", Face::kDuration, 8, 4, {Text(u"x")}, 0),
        Refused("Negative", Face::kDuration, 9, 4, {Text(u"x")}, 0),
        Refused("ServerName", Face::kQvScriptwells, 7, 4, {Variant::Null()}, 0),
        Refused("Proxy", Face::kQvScriptwells, 8, 4, {FromDispatch(nullptr)}, 0),
        Refused("InitText", Face::kQvClientServiceRaw, 1, 1, {Text(u"x")}, 0),
        Refused("InitNothing", Face::kQvClientServiceRaw, 1, 1, {Variant()}, 0),
        Refused("InitNull", Face::kQvClientServiceRaw, 1, 1, {Variant::Null()}, 0),
        Refused("CreateUserSession", Face::kConnectionModel, 1, 1, {Variant::Null()}, 0),
        Refused("SetUsid", Face::kConnectionModel, 5, 1, {Variant::Null()}, 0),
        Refused("DownloadFileUrl", Face::kConnectionModel, 7, 1, {Variant::Null(), Text(u"t")}, 1),
        Refused("DownloadFileTarget", Face::kConnectionModel, 7, 1, {Text(u"u"), Variant::Null()}, 0),
        Refused("DownloadFileBoth", Face::kConnectionModel, 7, 1, {Variant::Null(), Variant::Null()}, 1),
        Refused("ExecuteNullObject", Face::kConnectionModel, 3, 1,
                {Text(u"l"), Text(u"s"), FromDispatch(nullptr)}, 0),
        Refused("ExecuteNullUnknown", Face::kConnectionModel, 3, 1,
                {Text(u"l"), Text(u"s"), Variant::FromObject(nullptr)}, 0),
        Refused("ExecuteNull", Face::kConnectionModel, 3, 1, {Text(u"l"), Text(u"s"), Variant::Null()}, 0),
        Refused("ExecuteNothing", Face::kConnectionModel, 3, 1, {Text(u"l"), Text(u"s"), Variant()}, 0),
        Refused("ExecuteText", Face::kConnectionModel, 3, 1, {Text(u"l"), Text(u"s"), Text(u"p")}, 0),
        Refused("ExecuteLanguage", Face::kConnectionModel, 3, 1,
                {Variant::Null(), Text(u"s"), FromDispatch(nullptr)}, 2),
        Refused("ExecuteScript", Face::kConnectionModel, 3, 1,
                {Text(u"l"), Variant::Null(), FromDispatch(nullptr)}, 1),
        Refused("ExecuteFileNullObject", Face::kConnectionModel, 4, 1, {Text(u"f"), FromDispatch(nullptr)},
                0),
        Refused("ExecuteFileName", Face::kConnectionModel, 4, 1, {Variant::Null(), FromDispatch(nullptr)}, 1),
        Refused("UserName", Face::kConnectionString, 1, 4, {Variant::Null()}, 0),
        Refused("UserPassword", Face::kConnectionString, 2, 4, {Variant::Null()}, 0),
        Refused("DatabaseName", Face::kConnectionString, 3, 4, {Variant::Null()}, 0),
        Refused("ReplicaID", Face::kConnectionString, 4, 4, {Variant::Null()}, 0),
        Refused("DatabaseID", Face::kConnectionString, 5, 4, {Variant::Null()}, 0),
        Refused("Initialize", Face::kConnectionStringRaw, 1, 1, {Variant::Null()}, 0),
        Refused("UrlCaption", Face::kUrl, 2, 4, {Variant::Null()}, 0),
        Refused("Url", Face::kUrl, 3, 4, {Variant::Null()}, 0),
        Refused("Init", Face::kAttachedFile, 1, 1, {Variant::Null()}, 0),
        Refused("Filename", Face::kAttachedFile, 2, 4, {Variant::Null()}, 0),
        Refused("FileId", Face::kAttachedFile, 3, 4, {Variant::Null()}, 0),
        Refused("SourceFileLifeTime", Face::kAttachedFile, 4, 4, {Text(u"x")}, 0),
        Refused("CleanUp", Face::kAttachedFile, 5, 4, {Text(u"x")}, 0),
        Refused("TicketId", Face::kAttachedFile, 6, 4, {Variant::Null()}, 0),
        Refused("SetValuesKey", Face::kParameter, 1, 1, {Variant::Null(), Text(u"v")}, 1),
        Refused("AddKey", Face::kParameters, 1, 1, {Variant::Null(), Text(u"v")}, 1),
        Refused("Remove", Face::kParameters, 2, 1, {Text(u"x")}, 0),
        Refused("RemoveTooLarge", Face::kParameters, 2, 1, {I4(100000)}, 0),
        Refused("Find", Face::kParameters, 3, 1, {I4(100000)}, 0)),
    ConversionName);

TEST(DispatchArguments, CountIsTestedBeforeConversion) {
  Script script;
  const IDispatchPtr model = MakeNoting(Face::kConnectionModel, &script);
  LateCall call(model.get(), 3);
  EXPECT_EQ(call.With({Variant::Null(), Variant::Null()}).Code(), kBadParamCount);
  EXPECT_EQ(call.index, kUntouchedIndex);
}

TEST(DispatchArguments, IndexOfAMismatchMayBeUnwanted) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kDuration, &script);
  LateCall call(object.get(), 3, DISPATCH_PROPERTYPUT);
  call.With({Text(u"abc")});
  EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), DISP_E_TYPEMISMATCH);
}

TEST(DispatchArguments, ArgumentsOfTheHostStayAsTheyAre) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kDuration, &script);
  const Variant text = Text(u"12");
  DISPPARAMS block;
  block.rgvarg = &text;
  block.cArgs = 1;
  EXPECT_EQ(object->Invoke(3, Guid{}, 0, DISPATCH_PROPERTYPUT, &block, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(ShownValue(text), "BSTR 12");
}

TEST(DispatchArguments, ValuesBehindPointersAreTaken) {
  Script script;
  const IDispatchPtr span = MakeNoting(Face::kDuration, &script);
  std::int16_t number = 9;
  LateCall byShort(span.get(), 3, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(byShort.With({Reference(VT_I2, &number)}).Code(), kOk);
  std::int32_t large = 10;
  LateCall byLong(span.get(), 3, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(byLong.With({Reference(VT_I4, &large)}).Code(), kOk);
  Variant text = Text(u"11");
  LateCall byVariant(span.get(), 3, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(byVariant.With({Reference(VT_VARIANT, &text)}).Code(), kOk);
  BStr raw = AllocString(u"12", 2);
  LateCall byText(span.get(), 3, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(byText.With({Reference(VT_BSTR, &raw)}).Code(), kOk);
  FreeString(raw);
  EXPECT_EQ(script.calls,
            (std::vector<std::string>{"put_Day(9)", "put_Day(10)", "put_Day(11)", "put_Day(12)"}));
}

TEST(DispatchArguments, TextBehindAPointerIsTakenAsText) {
  Script script;
  const IDispatchPtr link = MakeNoting(Face::kUrl, &script);
  BStr raw = AllocString(u"http://a/b", 10);
  Variant text = Text(u"caption");
  LateCall byText(link.get(), 3, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(byText.With({Reference(VT_BSTR, &raw)}).Code(), kOk);
  FreeString(raw);
  LateCall byVariant(link.get(), 2, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(byVariant.With({Reference(VT_VARIANT, &text)}).Code(), kOk);
  EXPECT_EQ(script.calls, (std::vector<std::string>{"put_Url(http://a/b)", "put_UrlCaption(caption)"}));
}

TEST(DispatchArguments, BadValueBehindAPointerIsTold) {
  Script script;
  const IDispatchPtr span = MakeNoting(Face::kDuration, &script);
  Variant text = Text(u"abc");
  LateCall call(span.get(), 3, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(call.With({Reference(VT_VARIANT, &text)}).Code(), kTypeMismatch);
  EXPECT_EQ(call.index, 0u);
}

// A value that may be anything is followed one step from pointer to Variant, and is not changed.
TEST(DispatchArguments, AnyValueBehindAPointerKeepsItsTag) {
  Script script;
  const IDispatchPtr parameter = MakeNoting(Face::kParameter, &script);
  const IDispatchPtr list = MakeNoting(Face::kParameters, &script);
  Variant inner = I2(5);
  Variant outer = Reference(VT_VARIANT, &inner);
  std::int32_t number = 6;
  LateCall one(parameter.get(), 1);
  EXPECT_EQ(one.With({Text(u"a"), Reference(VT_VARIANT, &inner)}).Code(), kOk);
  LateCall two(list.get(), 1);
  EXPECT_EQ(two.With({Text(u"b"), Reference(VT_VARIANT, &outer)}).Code(), kOk);
  LateCall other(list.get(), 1);
  EXPECT_EQ(other.With({Text(u"c"), Reference(VT_I4, &number)}).Code(), kOk);
  LateCall named(parameter.get(), 1);
  EXPECT_EQ(named.WithBlock({Text(u"d"), Reference(VT_VARIANT, &inner)}).Named({0, 1}).Code(), kOk);
  EXPECT_EQ(script.calls, (std::vector<std::string>{"SetValues(a, I2 5)", "Add(b, tag 16396)",
                                                    "Add(c, tag 16387)", "SetValues(d, I2 5)"}));
}

TEST(DispatchArguments, PointerToNothingDoesNotHurt) {
  Script script;
  for (const Face face : {Face::kParameter, Face::kParameters}) {
    const IDispatchPtr object = MakeNoting(face, &script);
    LateCall value(object.get(), 1);
    value.With({Text(u"k"), Reference(VT_VARIANT, nullptr)}).Run();
    LateCall key(object.get(), 1);
    EXPECT_EQ(key.With({Reference(VT_VARIANT, nullptr), Text(u"v")}).Code(), kTypeMismatch);
    EXPECT_EQ(key.index, 1u);
  }
  const IDispatchPtr span = MakeNoting(Face::kDuration, &script);
  LateCall number(span.get(), 3, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(number.With({Reference(VT_I2, nullptr)}).Code(), kTypeMismatch);
}

// Objects.

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
