#include "format/date_time_formaters.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include <xercesc/dom/DOM.hpp>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "format/text_conversions.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"
#include "values/parameter_impl.h"

namespace qv {
namespace {

namespace xml = XERCES_CPP_NAMESPACE;

constexpr double kMorning = 36930000.0 / 86400000.0;  // 10:15:30
constexpr char kWrongAccuracy[] = "EQvException 0x00000000 Unable to convert a value with the given accuracy";
constexpr char kInvalidDate[] = "EQvException 0x00000000 Invalid argument to date decode";
constexpr char kInvalidTime[] = "EQvException 0x00000000 Invalid argument to time decode";

class DateTimeFormaters : public testing::Test {
 protected:
  // The content of <v>...</v>, which all three must read alike.
  void ExpectRead(const std::u16string& content, double serial) {
    SCOPED_TRACE(testing::PrintToString(WideString(content)));
    const XmlText text(u"<v>" + content + u"</v>");
    for (FormaterSerializer* formater : all_) {
      const Variant value = formater->ReadValue(text.Root());
      EXPECT_EQ(value.Tag(), VT_DATE);
      EXPECT_EQ(value.Data().date, serial);
    }
  }
  void ExpectRefused(const XmlNode& node, const std::string& thrown) {
    for (FormaterSerializer* formater : all_) EXPECT_EQ(Thrown([&] { formater->ReadValue(node); }), thrown);
  }
  static std::string Written(FormaterSerializer* formater, double serial) {
    return Shown(formater->WriteValue(Variant::FromDate(serial)));
  }
  // Written, put into an element and read by the same formater.
  static double RoundTrip(FormaterSerializer* formater, double serial) {
    const WideString text = formater->WriteValue(Variant::FromDate(serial));
    const XmlText document(u"<v>" + std::u16string(text.view()) + u"</v>");
    return formater->ReadValue(document.Root()).Data().date;
  }
  static std::string TypeNameOf(double serial) {
    ParameterImpl parameter;
    parameter.SetValues(u"key", Variant::FromDate(serial));
    return Shown(parameter.get_ParamTypeAsString());
  }

  FormaterDate date_;
  FormaterDateTime dateTime_;
  FormaterTime time_;
  FormaterSerializer* all_[3] = {&date_, &dateTime_, &time_};
};

TEST_F(DateTimeFormaters, ReadWhateverTheTextGivesForAnyOfTheThreeTypes) {
  ExpectRead(u"2024-03-05", 45356.0);
  ExpectRead(u"2024-03-05T10:15:30", 45356.0 + kMorning);
  ExpectRead(u"2024-03-05T10:15:30.7Z", 45356.0 + kMorning);
  ExpectRead(u"2024-03-05T10:15:30+02:00", 45356.0 + kMorning);
  ExpectRead(u"2024-03-05T10:15:30-24:00", 45356.0 + kMorning + 1.0);
  ExpectRead(u"10:15", 36900000.0 / 86400000.0);
  ExpectRead(u"10:15:30.5Z", kMorning);
  ExpectRead(u"1899-12-30", 0.0);
  ExpectRead(u"1899-12-29T12:00", -0.5);
  ExpectRead(u"\n  2024-03-05\n", 45356.0);
  ExpectRead(u"2024&#45;03&#x2D;05", 45356.0);
}

TEST_F(DateTimeFormaters, ReadTheFirstTextChild) {
  ExpectRead(u"2024-03-05<b/>2024-03-06", 45356.0);
  ExpectRead(u"<b>2024-03-06</b>2024-03-05", 45356.0);
  ExpectRead(u"<![CDATA[2024-03-06]]><b/>2024-03-05", 45356.0);
  ExpectRead(u"2024-03-05<![CDATA[T10:15:30]]>", 45356.0);
  ExpectRead(u"<![CDATA[2024-03-05]]>", 45356.0);  // no text child: the last child's value
}

TEST_F(DateTimeFormaters, ReadTheValueOfATextNodeOrAnAttribute) {
  const XmlText text(u"<v a='2024-03-05'>10:15:30</v>");
  for (FormaterSerializer* formater : all_) {
    EXPECT_EQ(formater->ReadValue(text.Root().FirstChild()).Data().date, kMorning);
    EXPECT_EQ(formater->ReadValue(text.Root().Attribute(u"a")).Data().date, 45356.0);
  }
}

TEST_F(DateTimeFormaters, RefuseTextsWithoutFullDateOrTime) {
  for (const char16_t* content : {u"", u" ", u"2024", u"2024-03", u"--05--", u"today", u"<b>2024-03-05</b>",
                                  u"<![CDATA[2024-03-05]]><b/>", u"2024<b/>-03-05", u"+24:00"}) {
    SCOPED_TRACE(testing::PrintToString(WideString(content)));
    const XmlText text(u"<v>" + std::u16string(content) + u"</v>");
    ExpectRefused(text.Root(), kWrongAccuracy);
  }
}

TEST_F(DateTimeFormaters, PassTheWordsOfTheConversionOn) {
  struct Row {
    const char16_t* content;
    const char* words;
  };
  const Row rows[] = {{u"2024-03T10:15", "Expecting a full date value"},
                      {u"2024-02-30", "Invalid argument to date encode"},
                      {u"24:00:00", "Invalid argument to time encode"},
                      {u"10:15+5", "Invalid time format"},
                      {u"10:15:NaN", "Unable to convert NaN float value"},
                      {u"10:15:INF", "Unable to convert INF float value"}};
  for (const Row& row : rows) {
    const XmlText text(u"<v>" + std::u16string(row.content) + u"</v>");
    ExpectRefused(text.Root(), std::string("EQvException 0x00000000 ") + row.words);
  }
}

TEST_F(DateTimeFormaters, ReadNullNodeAsEmptyTextAndRefuseIt) {
  ExpectRefused(XmlNode(), kWrongAccuracy);
}

// No parser lets a lone surrogate pass, so this document is made by hand.
TEST_F(DateTimeFormaters, ReadTextThatNoParserWouldGive) {
  const XmlLibraryHold hold;
  xml::DOMDocument* document = xml::DOMImplementation::getImplementation()->createDocument();
  ExpectRefused(XmlNode(document->createTextNode(u"\xD800")), kWrongAccuracy);
  ExpectRefused(XmlNode(document->createTextNode(u"\xD800-\xD800-\xD800")),
                "EQvException 0x00000000 Invalid argument to date encode");
  document->release();
}

TEST_F(DateTimeFormaters, DateWritesTheDayOnly) {
  EXPECT_EQ(Written(&date_, 45356.0), "2024-03-05");
  EXPECT_EQ(Written(&date_, 45356.75), "2024-03-05");
  EXPECT_EQ(Written(&date_, 0.0), "1899-12-30");
  EXPECT_EQ(Written(&date_, -0.25), "1899-12-29");
  EXPECT_EQ(Written(&date_, -693593.0), "0001-01-01");
  EXPECT_EQ(Written(&date_, 2958465.0), "9999-12-31");
  EXPECT_EQ(Written(&date_, 45356.0 + 86399.6 / 86400.0), "2024-03-06");
}

TEST_F(DateTimeFormaters, DateTimeWritesDayAndTimeInZ) {
  EXPECT_EQ(Written(&dateTime_, 45356.0 + kMorning), "2024-03-05T10:15:30.0Z");
  EXPECT_EQ(Written(&dateTime_, 45356.0), "2024-03-05T00:00:00.0Z");
  EXPECT_EQ(Written(&dateTime_, 45356.75), "2024-03-05T18:00:00.0Z");
  EXPECT_EQ(Written(&dateTime_, 45356.0 + 36930007.0 / 86400000.0), "2024-03-05T10:15:30.7Z");
  EXPECT_EQ(Written(&dateTime_, 0.25), "1899-12-30T06:00:00.0Z");
  EXPECT_EQ(Written(&dateTime_, 2958465.5), "9999-12-31T12:00:00.0Z");
}

// The day is found by rounding to the second, and the time is what the cut value leaves.
TEST_F(DateTimeFormaters, DateTimeWritesEndsOfDaysByItsTwoRules) {
  EXPECT_EQ(Written(&dateTime_, 45356.0 + 86399.6 / 86400.0), "2024-03-06T23:59:59.600Z");
  EXPECT_EQ(Written(&dateTime_, 45356.999999999993), "2024-03-06T24:00:00.0Z");
}

TEST_F(DateTimeFormaters, DateTimeBeforeDayZeroCountsTheTimeFromTheStartOfItsDay) {
  EXPECT_EQ(Written(&dateTime_, -0.25), "1899-12-29T18:00:00.0Z");
  EXPECT_EQ(Written(&dateTime_, -1.0), "1899-12-29T00:00:00.0Z");
  EXPECT_EQ(Written(&dateTime_, -1.25), "1899-12-28T18:00:00.0Z");
  EXPECT_EQ(Written(&dateTime_, -18260.0 + 36930007.0 / 86400000.0), "1850-01-01T10:15:30.7Z");
  EXPECT_EQ(Written(&dateTime_, -693593.0 + 1.0 / 86400.0), "0001-01-01T00:00:01.0Z");
  EXPECT_EQ(Written(&dateTime_, -693593.0), "0001-01-01T00:00:00.0Z");
}

// The day that is found by rounding to the second then begins after the value.
TEST_F(DateTimeFormaters, DateTimeInTheLastHalfSecondBeforeADayIsTheStartOfThatDay) {
  EXPECT_EQ(Written(&dateTime_, -1.0 - 0.499 / 86400.0), "1899-12-29T00:00:00.0Z");
  EXPECT_EQ(Written(&dateTime_, -1.0 - 0.501 / 86400.0), "1899-12-28T23:59:59.499Z");
  EXPECT_EQ(Written(&dateTime_, -1e-12), "1899-12-30T00:00:00.0Z");
}

TEST_F(DateTimeFormaters, DateTimeBeforeDayZeroReadsBackAsItWas) {
  for (const double day : {-693593.0, -18260.0, -2.0, -1.0}) {
    for (int second = 0; second < 86400; second += 7) {
      const double serial = day + second / 86400.0;
      const double back = ParseSerialDate(dateTime_.WriteValue(Variant::FromDate(serial)).view());
      ASSERT_NEAR(back, serial, 1e-9) << day << " + " << second << " s";
    }
  }
}

TEST_F(DateTimeFormaters, TimeWritesTheTimeOfDayInZ) {
  EXPECT_EQ(Written(&time_, kMorning), "10:15:30.0Z");
  EXPECT_EQ(Written(&time_, 45356.0 + kMorning), "10:15:30.0Z");
  EXPECT_EQ(Written(&time_, 0.0), "00:00:00.0Z");
  EXPECT_EQ(Written(&time_, 45356.0), "00:00:00.0Z");
  EXPECT_EQ(Written(&time_, 36930007.0 / 86400000.0), "10:15:30.7Z");
  EXPECT_EQ(Written(&time_, -0.25), "-5:-59:-59.-999Z");
  EXPECT_EQ(Written(&time_, 0.999999999999), "24:00:00.0Z");
  EXPECT_EQ(Written(&time_, 1e300), "00:00:00.0Z");  // no date is asked for
}

TEST_F(DateTimeFormaters, WriteDoesNotLookAtTheTag) {
  EXPECT_EQ(Shown(date_.WriteValue(Variant::FromDouble(45356.0))), "2024-03-05");
  EXPECT_EQ(Shown(dateTime_.WriteValue(Variant())), "1899-12-30T00:00:00.0Z");
  EXPECT_EQ(Shown(time_.WriteValue(Variant::FromDouble(0.5))), "12:00:00.0Z");
}

TEST_F(DateTimeFormaters, WriteRefusesWhatIsNoPointInTime) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double serial : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity}) {
    EXPECT_EQ(Thrown([&] { Written(&date_, serial); }), kInvalidDate);
    EXPECT_EQ(Thrown([&] { Written(&dateTime_, serial); }), kInvalidDate);
    EXPECT_EQ(Thrown([&] { Written(&time_, serial); }), kInvalidTime);
  }
  for (const double serial : {1e300, -1e300, 1e10, -1e10, 2958466.0, -693595.0}) {
    EXPECT_EQ(Thrown([&] { Written(&date_, serial); }), kInvalidDate) << serial;
    EXPECT_EQ(Thrown([&] { Written(&dateTime_, serial); }), kInvalidDate) << serial;
  }
}

TEST_F(DateTimeFormaters, RoundTripKeepsWhatTheFormCarries) {
  EXPECT_EQ(RoundTrip(&date_, 45356.0), 45356.0);
  EXPECT_EQ(RoundTrip(&date_, 45356.75), 45356.0);
  EXPECT_EQ(RoundTrip(&dateTime_, 45356.0 + kMorning), 45356.0 + kMorning);
  EXPECT_EQ(RoundTrip(&dateTime_, 45356.0 + 36930007.0 / 86400000.0), 45356.0 + kMorning);
  EXPECT_EQ(RoundTrip(&time_, kMorning), kMorning);
  EXPECT_EQ(RoundTrip(&time_, 45356.5), 0.5);
}

TEST_F(DateTimeFormaters, RoundTripMayChangeTheTypeName) {
  EXPECT_EQ(TypeNameOf(RoundTrip(&dateTime_, 45356.0 + kMorning)), "datetime");
  EXPECT_EQ(TypeNameOf(RoundTrip(&dateTime_, 45356.0)), "date");
  EXPECT_EQ(TypeNameOf(RoundTrip(&dateTime_, 0.5)), "time");
  EXPECT_EQ(TypeNameOf(RoundTrip(&date_, 45356.0)), "date");
  EXPECT_EQ(TypeNameOf(RoundTrip(&date_, 45356.75)), "date");
  EXPECT_EQ(TypeNameOf(RoundTrip(&date_, 0.0)), "time");
  EXPECT_EQ(TypeNameOf(RoundTrip(&time_, 0.5)), "time");
  EXPECT_EQ(TypeNameOf(RoundTrip(&time_, 45356.0)), "time");
}

TEST_F(DateTimeFormaters, KnowNoLocale) {
  const CommaLocale comma;
  ExpectRead(u"2024-03-05T10:15:3.0e1Z", 45356.0 + kMorning);
  EXPECT_EQ(Written(&date_, 45356.0), "2024-03-05");
  EXPECT_EQ(Written(&dateTime_, 45356.0 + 36930007.0 / 86400000.0), "2024-03-05T10:15:30.7Z");
  EXPECT_EQ(Written(&time_, 36930999.0 / 86400000.0), "10:15:30.999Z");
}

class DateTimeCreators : public FactoryFixture {};

TEST_F(DateTimeCreators, RegisterOneFormaterUnderTheirName) {
  FormaterDateCreator date(u"probe date");
  FormaterDateTimeCreator dateTime(u"probe datetime");
  FormaterTimeCreator time(u"probe time");
  EXPECT_EQ(Get(u"PROBE Date"), date.GetSerializer());
  EXPECT_EQ(Get(u"probe datetime"), dateTime.GetSerializer());
  EXPECT_EQ(Get(u"probe time"), time.GetSerializer());
  const Variant value = Variant::FromDate(45356.5);
  EXPECT_EQ(Shown(date.GetSerializer()->WriteValue(value)), "2024-03-05");
  EXPECT_EQ(Shown(dateTime.GetSerializer()->WriteValue(value)), "2024-03-05T12:00:00.0Z");
  EXPECT_EQ(Shown(time.GetSerializer()->WriteValue(value)), "12:00:00.0Z");
}

}  // namespace
}  // namespace qv
