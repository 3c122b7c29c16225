// Conversion of arguments, and which one is told as the bad one.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/noting_faces.h"
#include "fixtures/counting_object.h"

namespace qv {
namespace {

// Codes as the tests below write them.
constexpr char kOk[] = "0x00000000";
constexpr char kTypeMismatch[] = "0x80020005";
constexpr char kBadParamCount[] = "0x8002000E";

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
    EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
  }
  EXPECT_TRUE(call.FailureUntouched());
}

Variant Currency(std::int64_t tenThousandths) {
  VariantData data;
  data.cyVal = tenThousandths;
  return Variant::FromRaw(VT_CY, data);
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
    testing::Values(
        Taken("ShortAsItIs", Face::kDuration, 3, 4, {I2(-7)}, "put_Day(-7)"),
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
        Taken("NumbersToTexts", Face::kConnectionModel, 7, 1, {I2(1), I2(2)}, "DownloadFile(1, 2)"),
        Taken("HexadecimalToShort", Face::kDuration, 3, 4, {Text(u"&H1F")}, "put_Day(31)"),
        Taken("ParenthesesToReal", Face::kDuration, 8, 4, {Text(u"(1.5)")}, "put_Sec(-1.5)"),
        Taken("SignAndBlankToReal", Face::kDuration, 8, 4, {Text(u"- 1.5")}, "put_Sec(-1.5)"),
        Taken("CurrencyToReal", Face::kDuration, 8, 4, {Currency(15000)}, "put_Sec(1.5)"),
        Taken("DecimalToText", Face::kUrl, 2, 4, {Variant::FromDecimal({0, 1, 0, 0, 15})},
              "put_UrlCaption(1.5)"),
        // Any value keeps its tag.
        Taken("AnyShort", Face::kParameters, 1, 1, {I2(1), I2(2)}, "Add(1, VT_I2 2)"),
        Taken("AnyNothing", Face::kParameters, 1, 1, {Text(u"k"), Variant()}, "Add(k, VT_EMPTY)"),
        Taken("AnyNull", Face::kParameters, 1, 1, {Text(u"k"), Variant::Null()}, "Add(k, VT_NULL)"),
        Taken("AnyReal", Face::kParameter, 1, 1, {Text(u"k"), R8(0.5)}, "SetValues(k, VT_R8 0.5)"),
        Taken("AnyBool", Face::kParameter, 1, 1, {Text(u"k"), Variant::FromBool(true)},
              "SetValues(k, VT_BOOL -1)"),
        Taken("AnyNullObject", Face::kParameter, 1, 1, {Text(u"k"), FromDispatch(nullptr)},
              "SetValues(k, VT_DISPATCH null)"),
        Taken("AnyNullUnknown", Face::kParameter, 1, 1, {Text(u"k"), Variant::FromObject(nullptr)},
              "SetValues(k, VT_UNKNOWN null)")),
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
  EXPECT_EQ(ShownValue(text), "VT_BSTR 12");
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
  EXPECT_EQ(script.calls, (std::vector<std::string>{"SetValues(a, VT_I2 5)", "Add(b, tag 16396)",
                                                    "Add(c, tag 16387)", "SetValues(d, VT_I2 5)"}));
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

}  // namespace
}  // namespace qv
