// Named arguments of Invoke: honoured by one interface, refused by two, not looked at by the others.
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
constexpr char kBadParamCount[] = "0x8002000E";

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
    EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
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
                 "SetValues(k, VT_I2 7)"},
        // `value` goes to the second place, wherever it stands.
        NamedRow{"ValueNamed",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, VT_I2 7)"},
        NamedRow{"BothNamed",
                 Face::kParameter,
                 1,
                 1,
                 {I2(7), Text(u"k")},
                 {1, 0},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, VT_I2 7)"},
        NamedRow{"BothNamedInTheOtherOrder",
                 Face::kParameter,
                 1,
                 1,
                 {Text(u"k"), I2(7)},
                 {0, 1},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, VT_I2 7)"},
        NamedRow{"PropertyPutStaysInItsPlace",
                 Face::kParameter,
                 1,
                 4,
                 {I2(7), Text(u"k")},
                 {-3},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, VT_I2 7)"},
        NamedRow{"PropertyPutAndKey",
                 Face::kParameter,
                 1,
                 4,
                 {I2(7), Text(u"k")},
                 {-3, 0},
                 kOk,
                 kUntouchedIndex,
                 "SetValues(k, VT_I2 7)"},
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
                 "Add(k, VT_I2 7)"},
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
  EXPECT_EQ(script.calls, (std::vector<std::string>{"SetValues(, VT_I2 8)", "SetValues(b, VT_EMPTY)"}));
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

}  // namespace
}  // namespace qv
