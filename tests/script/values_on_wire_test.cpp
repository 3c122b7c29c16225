// Values of each type as parameters of a request.
#include <limits>

#include "script/call_fixture.h"

namespace qv {
namespace {

constexpr char kNoDate[] = "EQvException 0x00000000 Invalid argument to date decode";
constexpr char kNoTime[] = "EQvException 0x00000000 Invalid argument to time decode";
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kHalfPastTenAndThirty = 36930000.0 / 86400000.0;  // 10:15:30
constexpr double kMoment = 45356 + kHalfPastTenAndThirty;
constexpr double kMillisecond = 1.0 / 86400000.0;

Variant Duration(const WideString& text) {
  return Object(CreateDuration(text));
}
IUrlPtr FilledUrl() {
  IUrlPtr url = CreateUrl();
  EXPECT_EQ(url->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(url->put_UrlCaption(u"caption"), S_OK);
  return url;
}

class ValuesOnWire : public CallFixture {
 protected:
  ValuesOnWire() { PutScript(); }

  // Null for the type name: a list of the library's, which finds the type.
  IUnknownPtr One(const Variant& value, const char16_t* typeName) {
    if (typeName == nullptr) return List({{u"k", value}});
    return Foreign(value, typeName);
  }
  IUnknownPtr Second(const Variant& value, const char16_t* typeName) {
    if (typeName == nullptr) return List({{u"before", Int(1)}, {u"bad", value}});
    return Foreign(value, typeName);
  }
};

TEST_F(ValuesOnWire, EachValueIsWrittenLikeThis) {
  const struct {
    const char* name;
    Variant value;
    const char16_t* typeName;  // that a foreign list gives
    const char* type;
    const char* content;
  } rows[] = {
      {"byte", I1(-128), nullptr, "xsd:byte", "-128"},
      {"upper byte", I1(127), nullptr, "xsd:byte", "127"},
      {"short", I2(-32768), nullptr, "xsd:short", "-32768"},
      {"int", Int(-2147483647 - 1), nullptr, "xsd:int", "-2147483648"},
      {"int under VT_I4", I4(42), nullptr, "xsd:int", "42"},
      {"long", I8(9223372036854775807), nullptr, "xsd:long", "9223372036854775807"},
      {"true", Bool(true), nullptr, "xsd:boolean", "1"},
      {"false", Bool(false), nullptr, "xsd:boolean", "0"},
      {"float", R4(3.14159265F), nullptr, "xsd:float", "3.14159"},
      {"small float", R4(1e-7F), nullptr, "xsd:float", "1e-07"},
      {"double", R8(0.1), nullptr, "xsd:double", "0.1"},
      {"double that loses digits", R8(123456.789), nullptr, "xsd:double", "123457"},
      {"large double", R8(1234567.0), nullptr, "xsd:double", "1.23457e+06"},
      {"zero", R8(0.0), nullptr, "xsd:double", "0"},
      {"not a number", R8(kNotANumber), nullptr, "xsd:double", "nan"},
      {"infinity", R8(-kInfinity), nullptr, "xsd:double", "-inf"},
      {"type name in any case", Int(5), u"iNT", "xsd:iNT", "5"},
      {"type name with prefix", Int(5), u"xsd:int", "xsd:xsd:int", "5"},

      {"string", Text(u"text"), nullptr, "xsd:string", "text"},
      {"escaped once", Text(u"\"&'<>\u00E9"), nullptr, "xsd:string", "&quot;&amp;&apos;&lt;&gt;&#233;"},
      {"ends at a null unit", Text(std::u16string_view(u"a\0b", 3)), nullptr, "xsd:string", "a"},
      {"null string", NullText(), nullptr, "xsd:string", ""},
      {"empty string", Text(u""), nullptr, "xsd:string", ""},
      {"type name inside \"language\"", Text(u"a<b"), u"lang", "xsd:lang", "a&lt;b"},

      {"leap day", Date(45351), nullptr, "xsd:date", "2024-02-29"},
      {"first day", Date(-693593), nullptr, "xsd:date", "0001-01-01"},
      {"last day", Date(2958465), nullptr, "xsd:date", "9999-12-31"},
      {"day before 1970", Date(25568), nullptr, "xsd:date", "1969-12-31"},
      {"day before 1900", Date(1), nullptr, "xsd:date", "1899-12-31"},
      {"negative day", Date(-1), nullptr, "xsd:date", "1899-12-29"},
      {"day zero", Date(0.0), nullptr, "xsd:time", "00:00:00.0Z"},
      {"negative zero", Date(-0.0), nullptr, "xsd:time", "00:00:00.0Z"},
      {"noon", Date(0.5), nullptr, "xsd:time", "12:00:00.0Z"},
      {"noon of day one", Date(1.5), nullptr, "xsd:datetime", "1899-12-31T12:00:00.0Z"},
      {"1 ms", Date(kMillisecond), nullptr, "xsd:time", "00:00:00.1Z"},
      {"7 ms", Date(kHalfPastTenAndThirty + 7 * kMillisecond), nullptr, "xsd:time", "10:15:30.7Z"},
      {"70 ms", Date(kHalfPastTenAndThirty + 70 * kMillisecond), nullptr, "xsd:time", "10:15:30.70Z"},
      {"700 ms", Date(kHalfPastTenAndThirty + 700 * kMillisecond), nullptr, "xsd:time", "10:15:30.700Z"},
      {"7 ms of a day", Date(kMoment + 7 * kMillisecond), nullptr, "xsd:datetime", "2024-03-05T10:15:30.7Z"},
      // The date is that of the nearest second, the time that of the nearest millisecond.
      {"0.6 s before midnight", Date(45357 - 600 * kMillisecond), nullptr, "xsd:datetime",
       "2024-03-05T23:59:59.400Z"},
      {"0.4 s before midnight", Date(45357 - 400 * kMillisecond), nullptr, "xsd:datetime",
       "2024-03-06T23:59:59.600Z"},
      {"0.3 ms before midnight", Date(45357 - 0.3 * kMillisecond), nullptr, "xsd:datetime",
       "2024-03-06T24:00:00.0Z"},
      {"time of 0.3 ms before midnight", Date(1 - 0.3 * kMillisecond), nullptr, "xsd:time", "24:00:00.0Z"},
      // All fields of a negative time are negative, and half a millisecond is added towards zero.
      {"negative time", Date(-0.25), nullptr, "xsd:time", "-5:-59:-59.-999Z"},
      {"moment before day zero", Date(-1.25), nullptr, "xsd:datetime", "1899-12-28T18:00:00.0Z"},
      {"moment as a date", Date(kMoment), u"date", "xsd:date", "2024-03-05"},
      {"moment as a time", Date(kMoment), u"time", "xsd:time", "10:15:30.0Z"},
      {"day as a moment", Date(45356), u"datetime", "xsd:datetime", "2024-03-05T00:00:00.0Z"},
      {"day zero as a date", Date(0.0), u"date", "xsd:date", "1899-12-30"},
      {"moment in another case", Date(45356), u"dateTime", "xsd:dateTime", "2024-03-05T00:00:00.0Z"},
      {"date with prefix", Date(45356), u"xsd:date", "xsd:xsd:date", "2024-03-05"},

      {"date", Date(45356), nullptr, "xsd:date", "2024-03-05"},
      {"time", Date(kHalfPastTenAndThirty), nullptr, "xsd:time", "10:15:30.0Z"},
      {"moment", Date(kMoment), nullptr, "xsd:datetime", "2024-03-05T10:15:30.0Z"},

      {"whole duration", Duration(u"P1Y2M3DT4H5M6.5S"), nullptr, "xsd:duration", "P1Y2M3DT4H5M6.5S"},
      {"negative duration", Duration(u"-P1D"), nullptr, "xsd:duration", "-P1D"},
      {"90 seconds", Duration(u"PT90S"), nullptr, "xsd:duration", "PT90S"},
      {"duration zero", Duration(u"P0"), nullptr, "xsd:duration", "P0"},
      {"negative duration zero", Duration(u"-P0"), nullptr, "xsd:duration", "-P0"},
      {"longest duration", Duration(u"P32767Y"), nullptr, "xsd:duration", "P32767Y"},
      {"half a second", Duration(u"PT0.5S"), nullptr, "xsd:duration", "PT0.5S"},
      {"null text of a foreign duration", Object(FakeDurationPtr(new FakeDuration(WideString()))), nullptr,
       "xsd:duration", ""},
      {"duration in another case", Duration(u"P1D"), u"dURATION", "xsd:dURATION", "P1D"},
      {"URL that a foreign list names so", Object(FilledUrl()), u"url", "xsd:url", ""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Sent(One(row.value, row.typeName)), RequestWithOne(row.type, row.content)) << row.name;
}

TEST_F(ValuesOnWire, OtherValuesAreRefusedBeforeAnythingIsSent) {
  const CountingObjectPtr failing(new CountingObject);
  failing->FailQueries(E_FAIL);
  // Says that it is a duration, but has no text.
  const CountingObjectPtr textless(new CountingObject({IID_IDuration}));
  const CountingObjectPtr stranger(new CountingObject);
  const struct {
    const char* name;
    Variant value;
    const char16_t* typeName = nullptr;
    const char* thrown = kNoDocument;
  } rows[] = {
      {"empty", Variant()},
      {"null", Variant::Null()},
      {"unsigned byte", UI1(5)},
      {"null object", Object(nullptr)},
      {"object of no kind", Object(stranger)},
      {"object whose query fails", Object(failing)},
      {"duration without text", Object(textless)},
      {"empty URL", Object(CreateUrl())},
      {"URL", Object(FilledUrl())},
      {"text as a byte", Text(u"abc"), u"byte"},
      {"text as a duration", Text(u"P1D"), u"duration"},
      {"empty as a duration", Variant(), u"duration"},
      {"null object as a duration", Object(nullptr), u"duration"},
      {"URL as a duration", Object(CreateUrl()), u"duration"},
      {"object of no kind as a duration", Object(stranger), u"duration"},
      {"type name \"no type\"", Int(5), u"no type"},
      {"empty type name", Int(5), u""},
      {"float with prefix", Int(5), u"xsd:float"},
      {"decimal", Int(5), u"decimal"},
      {"type name inside \"xsd:id\"", Int(5), u"xsd:idref"},
      {"day before the first", Date(-693594), nullptr, kNoDate},
      {"day after the last", Date(2958466), nullptr, kNoDate},
      {"moment before the first day", Date(-693594.5), nullptr, kNoDate},
      {"moment after the last day", Date(2958466.5), nullptr, kNoDate},
      {"moment that rounds to the day after the last", Date(2958466 - 400 * kMillisecond), nullptr, kNoDate},
      {"huge date", Date(1e300), nullptr, kNoDate},
      {"huge negative date", Date(-1e300), nullptr, kNoDate},
      {"infinite date", Date(kInfinity), nullptr, kNoDate},
      {"negative infinite date", Date(-kInfinity), nullptr, kNoDate},
      {"date that is not a number", Date(kNotANumber), nullptr, kNoDate},
      {"infinite time", Date(kInfinity), u"time", kNoTime},
      {"negative infinite time", Date(-kInfinity), u"time", kNoTime},
      {"time that is not a number", Date(kNotANumber), u"time", kNoTime},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectRefused(Second(row.value, row.typeName), row.thrown);
  }
  ExpectRefused(Foreign(Int(5), WideString()));
}

TEST_F(ValuesOnWire, SecondsLoseDigitsOnTheWireOnly) {
  const IDurationPtr duration = CreateDuration();
  EXPECT_EQ(duration->put_Sec(12345678.9), S_OK);
  EXPECT_EQ(Sent(List({{u"k", Object(duration)}})), RequestWithOne("xsd:duration", "PT1.23457e+07S"));
  double seconds = 0;
  EXPECT_EQ(duration->get_Sec(&seconds), S_OK);
  EXPECT_EQ(seconds, 12345678.9);
}

TEST_F(ValuesOnWire, DurationIsWrittenAsItIsWhenTheRequestIsMade) {
  const IDurationPtr duration = CreateDuration(u"P1D");
  const IParametersPtr list = List({{u"k", Object(duration)}});
  EXPECT_EQ(duration->put_Negative(VARIANT_TRUE), S_OK);
  EXPECT_EQ(duration->put_Hour(3), S_OK);
  EXPECT_EQ(Sent(list), RequestWithOne("xsd:duration", "-P1DT3H"));
  EXPECT_EQ(duration->put_Day(2), S_OK);
  EXPECT_EQ(Sent(list), RequestWithOne("xsd:duration", "-P2DT3H"));
}

TEST_F(ValuesOnWire, TextOfAForeignDurationIsEscapedOnce) {
  const FakeDurationPtr foreign(new FakeDuration(u"<&\"'>\u00E9"));
  EXPECT_EQ(Sent(List({{u"k", Object(foreign)}})),
            RequestWithOne("xsd:duration", "&lt;&amp;&quot;&apos;&gt;&#233;"));
  EXPECT_EQ(foreign->References(), 1U);
}

TEST_F(ValuesOnWire, ForeignDurationWithoutATextIsRefused) {
  const FakeDurationPtr foreign(new FakeDuration(u"P1D"));
  foreign->AnswerRaw(E_NOINTERFACE);
  ExpectRefused(Second(Object(foreign), nullptr));
  foreign->AnswerRaw(E_OUTOFMEMORY);
  ExpectRefused(Second(Object(foreign), nullptr));
  foreign->AnswerRaw(S_OK);
  foreign->FailGetText(E_FAIL);
  ExpectRefused(Second(Object(foreign), nullptr));
  EXPECT_EQ(foreign->References(), 1U);
}

}  // namespace
}  // namespace qv
