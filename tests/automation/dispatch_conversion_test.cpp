// Conversion of arguments, and which one is reported as the bad one.
#include <gtest/gtest.h>

#include "automation/late_rows.h"

namespace qv {
namespace {

Variant Currency(std::int64_t tenThousandths) {
  VariantData data;
  data.cyVal = tenThousandths;
  return Variant::FromRaw(VT_CY, data);
}

// A property that is written, and a method with its arguments in the member's order.
LateRow Put(Face face, DISPID id, const Variant& value, const char* noted) {
  return Taken("", face, id, DISPATCH_PROPERTYPUT, {value}, noted);
}
LateRow Called(Face face, DISPID id, const std::vector<Variant>& arguments, const char* noted) {
  return Taken("", face, id, DISPATCH_METHOD, {arguments.rbegin(), arguments.rend()}, noted);
}
LateRow Mismatch(Face face, DISPID id, const std::vector<Variant>& arguments, std::uint32_t index) {
  return Refused("", face, id, DISPATCH_METHOD, {arguments.rbegin(), arguments.rend()}, DISP_E_TYPEMISMATCH,
                 index);
}

TEST(DispatchConversion, BringsTheTypeOfTheProperty) {
  const Variant yes = Bool(true);
  ExpectRows({
      Put(Face::kDuration, 3, I2(-7), "put_Day(-7)"),
      Put(Face::kDuration, 3, Text(u"12"), "put_Day(12)"),
      Put(Face::kDuration, 4, I4(300), "put_Month(300)"),
      Put(Face::kDuration, 5, yes, "put_Year(-1)"),
      Put(Face::kDuration, 6, Variant(), "put_Hour(0)"),
      Put(Face::kDuration, 8, I2(3), "put_Sec(3)"),
      Put(Face::kDuration, 8, R8(2.25), "put_Sec(2.25)"),
      Put(Face::kDuration, 8, Text(u"1.5"), "put_Sec(1.5)"),
      Put(Face::kDuration, 9, yes, "put_Negative(-1)"),
      Put(Face::kDuration, 9, I2(5), "put_Negative(-1)"),
      Put(Face::kDuration, 9, I4(0), "put_Negative(0)"),
      Put(Face::kDuration, 9, Text(u"True"), "put_Negative(-1)"),
      Put(Face::kAttachedFile, 4, I2(-2), "put_SourceFileLifeTime(-2)"),
      Put(Face::kAttachedFile, 5, I4(70000), "put_CleanUp(70000)"),
      Put(Face::kAttachedFile, 5, Text(u"70000"), "put_CleanUp(70000)"),
      Put(Face::kUrl, 2, I2(5), "put_UrlCaption(5)"),
      Put(Face::kUrl, 2, R8(1.5), "put_UrlCaption(1.5)"),
      Put(Face::kUrl, 3, Variant(), "put_Url()"),
      Put(Face::kUrl, 3, NullText(), "put_Url(<null>)"),
      Put(Face::kQvScriptwells, 8, Text(u""), "put_Proxy()"),
      Put(Face::kDuration, 3, Text(u"&H1F"), "put_Day(31)"),
      Put(Face::kDuration, 8, Text(u"(1.5)"), "put_Sec(-1.5)"),
      Put(Face::kDuration, 8, Text(u"- 1.5"), "put_Sec(-1.5)"),
      Put(Face::kDuration, 8, Currency(15000), "put_Sec(1.5)"),
      Put(Face::kUrl, 2, Variant::FromDecimal({0, 1, 0, 0, 15}), "put_UrlCaption(1.5)"),
  });
}

TEST(DispatchConversion, BringsTheTypesOfTheMethod) {
  ExpectRows({
      Called(Face::kParameters, 2, {Text(u"2")}, "Remove(2)"),
      Called(Face::kParameters, 3, {I4(-1)}, "Find(-1)"),
      Called(Face::kConnectionModel, 7, {Text(u"url"), Text(u"target")}, "DownloadFile(url, target)"),
      Called(Face::kConnectionModel, 7, {I2(1), I2(2)}, "DownloadFile(1, 2)"),
      // Any value keeps its tag.
      Called(Face::kParameters, 1, {I2(1), I2(2)}, "Add(1, VT_I2 2)"),
      Called(Face::kParameters, 1, {Text(u"k"), Variant()}, "Add(k, VT_EMPTY)"),
      Called(Face::kParameters, 1, {Text(u"k"), Variant::Null()}, "Add(k, VT_NULL)"),
      Called(Face::kParameter, 1, {Text(u"k"), R8(0.5)}, "SetValues(k, VT_R8 0.5)"),
      Called(Face::kParameter, 1, {Text(u"k"), Bool(true)}, "SetValues(k, VT_BOOL -1)"),
      Called(Face::kParameter, 1, {Text(u"k"), FromDispatch(nullptr)}, "SetValues(k, VT_DISPATCH null)"),
      Called(Face::kParameter, 1, {Text(u"k"), Variant::FromObject(nullptr)},
             "SetValues(k, VT_UNKNOWN null)"),
  });
}

TEST(DispatchConversion, RefusesAPropertyOfAnotherType) {
  const Variant text = Text(u"x");
  const Variant null = Variant::Null();
  struct {
    Face face;
    std::vector<DISPID> ids;
    Variant value;
  } const rows[] = {
      {Face::kDuration, {3}, Text(u"abc")},
      {Face::kDuration, {3}, Text(u"70000")},
      {Face::kDuration, {3}, I4(32768)},
      {Face::kDuration, {3}, null},
      {Face::kDuration, {3}, FromDispatch(nullptr)},
      {Face::kDuration, {4, 5, 6, 7, 8, 9}, text},
      {Face::kQvScriptwells, {7}, null},
      {Face::kQvScriptwells, {8}, FromDispatch(nullptr)},
      {Face::kConnectionString, {1, 2, 3, 4, 5}, null},
      {Face::kUrl, {2, 3}, null},
      {Face::kAttachedFile, {2, 3, 6}, null},
      {Face::kAttachedFile, {4, 5}, text},
  };
  for (const auto& row : rows)
    for (const DISPID id : row.ids)
      ExpectRows({Refused(ShownValue(row.value), row.face, id, DISPATCH_PROPERTYPUT, {row.value},
                          DISP_E_TYPEMISMATCH, 0)});
}

TEST(DispatchConversion, RefusesAnArgumentOfAnotherType) {
  const Variant text = Text(u"x");
  const Variant null = Variant::Null();
  const Variant object = FromDispatch(nullptr);
  ExpectRows({
      Mismatch(Face::kQvClientServiceRaw, 1, {text}, 0),
      Mismatch(Face::kQvClientServiceRaw, 1, {Variant()}, 0),
      Mismatch(Face::kQvClientServiceRaw, 1, {null}, 0),
      Mismatch(Face::kConnectionModel, 1, {null}, 0),
      Mismatch(Face::kConnectionModel, 5, {null}, 0),
      Mismatch(Face::kConnectionModel, 7, {null, Text(u"t")}, 1),
      Mismatch(Face::kConnectionModel, 7, {Text(u"u"), null}, 0),
      Mismatch(Face::kConnectionModel, 7, {null, null}, 1),
      Mismatch(Face::kConnectionModel, 3, {Text(u"l"), Text(u"s"), object}, 0),
      Mismatch(Face::kConnectionModel, 3, {Text(u"l"), Text(u"s"), Variant::FromObject(nullptr)}, 0),
      Mismatch(Face::kConnectionModel, 3, {Text(u"l"), Text(u"s"), null}, 0),
      Mismatch(Face::kConnectionModel, 3, {Text(u"l"), Text(u"s"), Variant()}, 0),
      Mismatch(Face::kConnectionModel, 3, {Text(u"l"), Text(u"s"), Text(u"p")}, 0),
      Mismatch(Face::kConnectionModel, 3, {null, Text(u"s"), object}, 2),
      Mismatch(Face::kConnectionModel, 3, {Text(u"l"), null, object}, 1),
      Mismatch(Face::kConnectionModel, 4, {Text(u"f"), object}, 0),
      Mismatch(Face::kConnectionModel, 4, {null, object}, 1),
      Mismatch(Face::kConnectionStringRaw, 1, {null}, 0),
      Mismatch(Face::kAttachedFile, 1, {null}, 0),
      Mismatch(Face::kParameter, 1, {null, Text(u"v")}, 1),
      Mismatch(Face::kParameters, 1, {null, Text(u"v")}, 1),
      Mismatch(Face::kParameters, 2, {text}, 0),
      Mismatch(Face::kParameters, 2, {I4(100000)}, 0),
      Mismatch(Face::kParameters, 3, {I4(100000)}, 0),
  });
}

TEST(DispatchConversion, ComesAfterTheCount) {
  const Variant null = Variant::Null();
  ExpectRows({Refused("two nulls", Face::kConnectionModel, 3, 1, {null, null}, DISP_E_BADPARAMCOUNT)});
}

TEST(DispatchConversion, IndexOfAMismatchIsOptional) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kDuration, &script);
  LateCall call(object.get(), 3, DISPATCH_PROPERTYPUT);
  call.With({Text(u"abc")});
  EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), DISP_E_TYPEMISMATCH);
}

TEST(DispatchConversion, LeavesTheArgumentsOfTheHost) {
  Script script;
  const IDispatchPtr object = MakeNoting(Face::kDuration, &script);
  const Variant text = Text(u"12");
  DISPPARAMS block;
  block.rgvarg = &text;
  block.cArgs = 1;
  EXPECT_EQ(object->Invoke(3, Guid{}, 0, DISPATCH_PROPERTYPUT, &block, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(ShownValue(text), "VT_BSTR 12");
}

TEST(DispatchConversion, FollowsPointers) {
  std::int16_t number = 9;
  std::int32_t large = 10;
  Variant text = Text(u"11");
  Variant noNumber = Text(u"abc");
  BStr twelve = AllocString(u"12", 2);
  BStr link = AllocString(u"http://a/b", 10);
  ExpectRows({
      Put(Face::kDuration, 3, Pointer(VT_I2, &number), "put_Day(9)"),
      Put(Face::kDuration, 3, Pointer(VT_I4, &large), "put_Day(10)"),
      Put(Face::kDuration, 3, Pointer(VT_VARIANT, &text), "put_Day(11)"),
      Put(Face::kDuration, 3, Pointer(VT_BSTR, &twelve), "put_Day(12)"),
      Put(Face::kUrl, 3, Pointer(VT_BSTR, &link), "put_Url(http://a/b)"),
      Put(Face::kUrl, 2, Pointer(VT_VARIANT, &text), "put_UrlCaption(11)"),
      Refused("no number", Face::kDuration, 3, DISPATCH_PROPERTYPUT, {Pointer(VT_VARIANT, &noNumber)},
              DISP_E_TYPEMISMATCH, 0),
  });
  FreeString(twelve);
  FreeString(link);
}

// A value that may be anything is followed one step from pointer to Variant, and is not changed.
TEST(DispatchConversion, FollowsOnePointerToAnyValue) {
  Variant inner = I2(5);
  Variant outer = Pointer(VT_VARIANT, &inner);
  std::int32_t number = 6;
  ExpectRows({
      Called(Face::kParameter, 1, {Text(u"a"), Pointer(VT_VARIANT, &inner)}, "SetValues(a, VT_I2 5)"),
      Called(Face::kParameters, 1, {Text(u"b"), Pointer(VT_VARIANT, &outer)}, "Add(b, tag 16396)"),
      Called(Face::kParameters, 1, {Text(u"c"), Pointer(VT_I4, &number)}, "Add(c, tag 16387)"),
      Called(Face::kParameter, 1, {Pointer(VT_VARIANT, &inner), Text(u"d")}, "SetValues(d, VT_I2 5)")
          .Named({0, 1}),
  });
}

TEST(DispatchConversion, SurvivesNullPointers) {
  Script script;
  for (const Face face : {Face::kParameter, Face::kParameters}) {
    const IDispatchPtr object = MakeNoting(face, &script);
    LateCall value(object.get(), 1);
    value.With({Text(u"k"), Pointer(VT_VARIANT, nullptr)}).Run();
    ExpectRows({Mismatch(face, 1, {Pointer(VT_VARIANT, nullptr), Text(u"v")}, 1)});
  }
  ExpectRows({Refused("null number", Face::kDuration, 3, DISPATCH_PROPERTYPUT, {Pointer(VT_I2, nullptr)},
                      DISP_E_TYPEMISMATCH, 0)});
}

}  // namespace
}  // namespace qv
