// Named arguments of Invoke: one interface honours them, two refuse them, the others ignore them.
#include <gtest/gtest.h>

#include "automation/late_rows.h"

namespace qv {
namespace {

// The block of SetValues and Add, and what they note of it.
const std::vector<Variant> kBlock = {I2(7), Text(u"k")};
constexpr char kSet[] = "SetValues(k, VT_I2 7)";

constexpr DISPID kLowest = -2147483647 - 1;
constexpr DISPID kHighest = 2147483647;

// SetValues(key, value) of a parameter.
LateRow Set(const char* name, const std::vector<DISPID>& named, int flags = 1,
            const std::vector<Variant>& block = kBlock) {
  return Taken(name, Face::kParameter, 1, flags, block, kSet).Named(named);
}
LateRow NotFound(const char* name, const std::vector<DISPID>& named, std::uint32_t index) {
  return Refused(name, Face::kParameter, 1, 1, kBlock, DISP_E_PARAMNOTFOUND, index).Named(named);
}

TEST(DispatchNamed, AreHonouredByAParameter) {
  const std::vector<Variant> key = {Text(u"k")};
  ExpectRows(
      {Set("none named", {}),
       // `value` goes to the second place, wherever it is in the block.
       Set("value named", {1}), Set("both named", {1, 0}),
       Set("both named in the other order", {0, 1}, 1, {Text(u"k"), I2(7)}),
       Set("property put stays in its place", {-3}, 4), Set("property put and key", {-3, 0}, 4),
       NotFound("first id is the count", {2}, 0), NotFound("first id is negative", {-1}, 0),
       NotFound("second id is the count", {1, 2}, 1), NotFound("second id is property put", {1, -3}, 1),
       NotFound("second id after property put is the count", {-3, 2}, 1), NotFound("lowest id", {kLowest}, 0),
       NotFound("highest id", {kHighest}, 0),
       Refused("key of one argument", Face::kParameter, 1, 1, key, DISP_E_BADPARAMCOUNT).Named({0}),
       Refused("value of one argument", Face::kParameter, 1, 1, key, DISP_E_PARAMNOTFOUND, 0).Named({1}),
       Refused("checked for a property too", Face::kParameter, 2, 2, key, DISP_E_PARAMNOTFOUND, 0).Named({1}),
       Refused("checked for an unknown id too", Face::kParameter, 9, 1, key, DISP_E_PARAMNOTFOUND, 0)
           .Named({7}),
       // A key that does not convert is reported by its place among the arguments in reverse.
       Refused("bad key", Face::kParameter, 1, 1, {Variant::Null(), I2(7)}, DISP_E_TYPEMISMATCH, 1)
           .Named({0, 1})});
}

TEST(DispatchNamed, AreRefusedByAListAndAModel) {
  constexpr Face kList = Face::kParameters;
  constexpr Face kModel = Face::kConnectionModel;
  const std::vector<Variant> texts = {Text(u"t"), Text(u"u")};
  ExpectRows(
      {Refused("Add", kList, 1, 1, kBlock, DISP_E_NONAMEDARGS).Named({1}),
       Refused("Add with both", kList, 1, 1, kBlock, DISP_E_NONAMEDARGS).Named({1, 0}),
       Taken("Add as a property", kList, 1, 4, kBlock, "Add(k, VT_I2 7)").Named({-3}),
       Refused("two with property put", kList, 1, 4, kBlock, DISP_E_NONAMEDARGS).Named({-3, 0}),
       Refused("two property puts", kList, 1, 4, kBlock, DISP_E_NONAMEDARGS).Named({-3, -3}),
       Refused("before the count", kList, 4, 1, {I2(7)}, DISP_E_NONAMEDARGS).Named({0}),
       Refused("before the id", kList, 9, 1, {I2(7)}, DISP_E_NONAMEDARGS).Named({0}),
       Refused("property put of an unknown id", kList, 9, 1, {I2(7)}, DISP_E_MEMBERNOTFOUND).Named({-3}),
       Refused("SetUSID", kModel, 5, 1, {Text(u"u")}, DISP_E_NONAMEDARGS).Named({0}),
       Taken("SetUSID as a property", kModel, 5, 4, {Text(u"u")}, "SetUSID(u)").Named({-3}),
       Refused("two with property put", kModel, 7, 4, texts, DISP_E_NONAMEDARGS).Named({-3, 0}),
       Refused("before the conversion", kModel, 5, 1, {Variant::Null()}, DISP_E_NONAMEDARGS).Named({0})});
}

TEST(DispatchNamed, AreIgnoredByTheOthers) {
  const std::vector<Variant> text = {Text(u"s")};
  ExpectRows({Taken("client", Face::kQvScriptwells, 7, 4, text, "put_ServerName(s)").Named({5}),
              Taken("client read", Face::kQvScriptwells, 8, 2, {}, "get_Proxy").Named({0, 1, 2}),
              Taken("connection string", Face::kConnectionString, 1, 4, text, "put_UserName(s)").Named({-3}),
              Taken("raw", Face::kConnectionStringRaw, 1, 1, text, "Initialize(s)").Named({9, 9}),
              Taken("duration", Face::kDuration, 3, 4, {I2(7)}, "put_Day(7)").Named({-3}),
              Taken("link", Face::kUrl, 3, 4, text, "put_Url(s)").Named({77}),
              Taken("file", Face::kAttachedFile, 1, 1, text, "Init(s)").Named({-1})});
}

TEST(DispatchNamed, MoreThanArgumentsAreNotFound) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kParameter, &script);
  for (const DISPID first : {0, -3}) {
    LateCall call(object.get(), 1);
    EXPECT_EQ(call.WithBlock(kBlock).Named({first, 0, 1}).Run(), DISP_E_PARAMNOTFOUND);
    LateCall none(object.get(), 2, DISPATCH_PROPERTYGET);
    EXPECT_EQ(none.Named({first}).Run(), DISP_E_PARAMNOTFOUND);
  }
  EXPECT_TRUE(script.calls.empty());
}

TEST(DispatchNamed, IndexIsOptional) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kParameter, &script);
  LateCall call(object.get(), 1);
  call.WithBlock(kBlock).Named({9});
  EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), DISP_E_PARAMNOTFOUND);
}

TEST(DispatchNamed, UnfilledPlaceIsEmpty) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kParameter, &script);
  // Both go to the place of the value, the later one stays; the key converts from nothing to no text.
  LateCall values(object.get(), 1);
  EXPECT_EQ(values.WithBlock({I2(7), I2(8)}).Named({1, 1}).Run(), S_OK);
  // Both go to the place of the key.
  LateCall keys(object.get(), 1);
  EXPECT_EQ(keys.WithBlock({Text(u"a"), Text(u"b")}).Named({0, 0}).Run(), S_OK);
  EXPECT_EQ(script.calls, (std::vector<std::string>{"SetValues(, VT_I2 8)", "SetValues(b, VT_EMPTY)"}));
}

TEST(DispatchNamed, MissingIdsAreHarmless) {
  for (const FaceRow& row : kFaces) {
    Script script;
    const Variant value = Text(u"1");
    DISPPARAMS block;
    block.rgvarg = &value;
    block.cArgs = 1;
    block.cNamedArgs = 1;
    const HRESULT code = row.make(&script)->Invoke(100, Guid{}, 0, 1, &block, nullptr, nullptr, nullptr);
    EXPECT_TRUE(Failed(code)) << row.name;
  }
}

}  // namespace
}  // namespace qv
