// Dates, times and points in time as parameters of a request.
#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

#include "fixtures/fake_http.h"
#include "fixtures/thrown.h"
#include "format/factory_fixture.h"
#include "qvscriptwells/create_objects.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "soap/soap_call.h"

namespace qv {
namespace {

constexpr char kNoDate[] = "EQvException 0x00000000 Invalid argument to date decode";
constexpr char kNoTime[] = "EQvException 0x00000000 Invalid argument to time decode";
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kHalfPastTenAndThirty = 36930000.0 / 86400000.0;  // 10:15:30
constexpr double kMillisecond = 1.0 / 86400000.0;
constexpr char16_t kDone[] =
    u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"xsd:int\">1</r></ExecuteResponse></soap:Body>"
    u"</soap:Envelope>";

class DatesOnWire : public FactoryFixture {
 protected:
  void SetUp() override {
    map_ = {{u"ContextHandle", Variant::FromString(u"u1")},
            {u"ScriptLanguage", Variant::FromString(u"VBScript")},
            {u"Script", Variant::FromString(u"a<b")}};
  }
  void TearDown() override {
    map_.clear();
    EXPECT_EQ(http_.LiveObjects(), 0);
  }

  void Run(IUnknown* parameters) {
    map_[u"parameters"] = Variant::FromObject(parameters);
    CSOAPCall().Run(CQvUrl(u"http://srv/a"), u"Execute", u"", map_);
  }
  std::string Sent(IUnknown* parameters) {
    http_.Answer(kDone);
    Run(parameters);
    return http_.Bodies().back();
  }
  // The request for one parameter "k" of this value.
  std::string SentDate(double serialDate) { return Sent(OneDate(serialDate).get()); }
  // The same from a list that gives the type's name itself.
  std::string SentAs(double serialDate, const WideString& typeName) {
    return Sent(OneDateAs(serialDate, typeName).get());
  }
  // Refused with the conversion's words before the component is even made.
  void ExpectRefused(IUnknown* parameters, const std::string& thrown) {
    EXPECT_EQ(Thrown([&] { Run(parameters); }), thrown);
    EXPECT_TRUE(http_.Calls().empty());
  }
  static IParametersPtr OneDate(double serialDate) {
    IParametersPtr list = CreateParameters();
    EXPECT_EQ(list->Add(u"k", Variant::FromDate(serialDate), nullptr), S_OK);
    return list;
  }
  FakeParametersPtr OneDateAs(double serialDate, const WideString& typeName) {
    FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", Variant::FromDate(serialDate), typeName);
    return list;
  }

  FakeLog log_;
  FakeHttp http_;
  NamedArguments map_;
};

std::string Single(const std::string& type, const std::string& content) {
  return RequestWith(ParameterArray("1", ParameterElement("k", type, content)));
}

TEST_F(DatesOnWire, WholeElementsStandLikeThis) {
  const IParametersPtr list = CreateParameters();
  EXPECT_EQ(list->Add(u"d", Variant::FromDate(45356.0), nullptr), S_OK);
  EXPECT_EQ(list->Add(u"t", Variant::FromDate(kHalfPastTenAndThirty), nullptr), S_OK);
  EXPECT_EQ(list->Add(u"m", Variant::FromDate(45356.0 + kHalfPastTenAndThirty), nullptr), S_OK);
  EXPECT_EQ(Sent(list.get()),
            RequestWith("<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
                        "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" "
                        "ns1:arrayType=\"ns2:Parameter[3]\">"
                        "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                        "<Name xsi:type=\"xsd:string\">d</Name>"
                        "<Value xsi:type=\"xsd:date\">2024-03-05</Value>"
                        "</Parameter>"
                        "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                        "<Name xsi:type=\"xsd:string\">t</Name>"
                        "<Value xsi:type=\"xsd:time\">10:15:30.0Z</Value>"
                        "</Parameter>"
                        "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                        "<Name xsi:type=\"xsd:string\">m</Name>"
                        "<Value xsi:type=\"xsd:datetime\">2024-03-05T10:15:30.0Z</Value>"
                        "</Parameter>"
                        "</parameters>"));
}

struct Row {
  const char* name;
  double serialDate;
  const char* type;
  const char* content;
};
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class DateOnWire : public DatesOnWire, public testing::WithParamInterface<Row> {};

TEST_P(DateOnWire, IsWrittenLikeThis) {
  EXPECT_EQ(SentDate(GetParam().serialDate), Single(GetParam().type, GetParam().content));
}

constexpr Row kRows[] = {
    {"LeapDay", 45351, "xsd:date", "2024-02-29"},
    {"FirstDay", -693593, "xsd:date", "0001-01-01"},
    {"LastDay", 2958465, "xsd:date", "9999-12-31"},
    {"DayBefore1970", 25568, "xsd:date", "1969-12-31"},
    {"DayBefore1900", 1, "xsd:date", "1899-12-31"},
    {"NegativeDay", -1, "xsd:date", "1899-12-29"},
    {"DayZero", 0.0, "xsd:time", "00:00:00.0Z"},
    {"NegativeZero", -0.0, "xsd:time", "00:00:00.0Z"},
    {"Noon", 0.5, "xsd:time", "12:00:00.0Z"},
    {"NoonOfDayOne", 1.5, "xsd:datetime", "1899-12-31T12:00:00.0Z"},
    {"OneMillisecond", kMillisecond, "xsd:time", "00:00:00.1Z"},
    {"SevenMilliseconds", kHalfPastTenAndThirty + 7 * kMillisecond, "xsd:time", "10:15:30.7Z"},
    {"SeventyMilliseconds", kHalfPastTenAndThirty + 70 * kMillisecond, "xsd:time", "10:15:30.70Z"},
    {"SevenHundredMilliseconds", kHalfPastTenAndThirty + 700 * kMillisecond, "xsd:time", "10:15:30.700Z"},
    {"MillisecondsOfADay", 45356 + kHalfPastTenAndThirty + 7 * kMillisecond, "xsd:datetime",
     "2024-03-05T10:15:30.7Z"},
    // The date is that of the nearest second, the time that of the nearest millisecond.
    {"LateBelowHalfASecond", 45357 - 600 * kMillisecond, "xsd:datetime", "2024-03-05T23:59:59.400Z"},
    {"LateAboveHalfASecond", 45357 - 400 * kMillisecond, "xsd:datetime", "2024-03-06T23:59:59.600Z"},
    {"LateWithinAMillisecond", 45357 - 0.3 * kMillisecond, "xsd:datetime", "2024-03-06T24:00:00.0Z"},
    {"TimeWithinAMillisecond", 1 - 0.3 * kMillisecond, "xsd:time", "24:00:00.0Z"},
    // All fields of a negative time are negative, and half a millisecond is added towards zero.
    {"NegativeTime", -0.25, "xsd:time", "-5:-59:-59.-999Z"},
    {"DateTimeBeforeDayZero", -1.25, "xsd:datetime", "1899-12-28T18:00:00.0Z"},
};

INSTANTIATE_TEST_SUITE_P(Values, DateOnWire, testing::ValuesIn(kRows),
                         [](const testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

TEST_F(DatesOnWire, ForeignTypeNameChoosesTheForm) {
  const double moment = 45356 + kHalfPastTenAndThirty;
  EXPECT_EQ(SentAs(moment, u"date"), Single("xsd:date", "2024-03-05"));
  EXPECT_EQ(SentAs(moment, u"time"), Single("xsd:time", "10:15:30.0Z"));
  EXPECT_EQ(SentAs(45356, u"datetime"), Single("xsd:datetime", "2024-03-05T00:00:00.0Z"));
  EXPECT_EQ(SentAs(0.0, u"date"), Single("xsd:date", "1899-12-30"));
}

TEST_F(DatesOnWire, ForeignTypeNameGoesOutAsGivenWhateverItsCase) {
  EXPECT_EQ(SentAs(45356, u"dateTime"), Single("xsd:dateTime", "2024-03-05T00:00:00.0Z"));
  EXPECT_EQ(SentAs(45356, u"xsd:date"), Single("xsd:xsd:date", "2024-03-05"));
}

TEST_F(DatesOnWire, ValueOutsideTheCalendarIsRefused) {
  for (const double serialDate : {-693594.0, 2958466.0, -693594.5, 2958466.5, 2958466 - 400 * kMillisecond,
                                  1e300, -1e300, kInfinity, -kInfinity, kNotANumber})
    ExpectRefused(OneDate(serialDate).get(), kNoDate);
}

TEST_F(DatesOnWire, TimeThatIsNoNumberIsRefused) {
  for (const double serialDate : {kInfinity, -kInfinity, kNotANumber})
    ExpectRefused(OneDateAs(serialDate, u"time").get(), kNoTime);
}

}  // namespace
}  // namespace qv
