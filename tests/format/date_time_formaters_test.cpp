// The formaters of dates, times, and both: they read alike and differ in what they write.
#include "format/date_time_formaters.h"

#include <limits>
#include <vector>

#include <xercesc/dom/DOM.hpp>

#include "fixtures/shown_text.h"
#include "format/date_time_texts.h"
#include "format/factory_fixture.h"
#include "support/comma_locale.h"
#include "values/parameter_impl.h"

namespace qv {
namespace {

namespace xml = XERCES_CPP_NAMESPACE;

constexpr double kMorningAnd7Milliseconds = 36930007.0 / 86400000.0;
constexpr char kDateNotDecoded[] = "EQvException 0x00000000 Invalid argument to date decode";
constexpr char kTimeNotDecoded[] = "EQvException 0x00000000 Invalid argument to time decode";

struct Written {
  double serial;
  const char* text;
};

class DateTimeFormaters : public FactoryFixture {
 protected:
  // The content of <v>...</v>, which all three must read alike.
  void ExpectRead(double serial, TextList contents) {
    for (const std::u16string_view content : contents) {
      for (FormaterSerializer* formater : all_) {
        const Variant value = ReadContent(formater, std::u16string(content));
        EXPECT_EQ(value.Tag(), VT_DATE) << Printed(content);
        EXPECT_EQ(value.Data().date, serial) << Printed(content);
      }
    }
  }
  void ExpectRefused(const std::string& thrown, const XmlNode& node) {
    for (FormaterSerializer* formater : all_) EXPECT_EQ(Thrown([&] { formater->ReadValue(node); }), thrown);
  }
  void ExpectRefused(const std::string& thrown, TextList contents) {
    for (const std::u16string_view content : contents) {
      SCOPED_TRACE(Printed(content));
      ExpectRefused(thrown, XmlText(u"<v>" + std::u16string(content) + u"</v>").Root());
    }
  }
  static std::string TextOf(FormaterSerializer* formater, double serial) {
    return Shown(formater->WriteValue(Variant::FromDate(serial)));
  }
  static void ExpectWritten(FormaterSerializer* formater, const std::vector<Written>& rows) {
    for (const Written& row : rows) EXPECT_EQ(TextOf(formater, row.serial), row.text) << row.serial;
  }
  // Written, put into an element and read by the same formater.
  static double RoundTrip(FormaterSerializer* formater, double serial) {
    const WideString text = formater->WriteValue(Variant::FromDate(serial));
    return ReadContent(formater, std::u16string(text.view())).Data().date;
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
  ExpectRead(45356.0, {u"2024-03-05", u"\n  2024-03-05\n", u"2024&#45;03&#x2D;05"});
  ExpectRead(45356.0 + kMorning,
             {u"2024-03-05T10:15:30", u"2024-03-05T10:15:30.7Z", u"2024-03-05T10:15:30+02:00"});
  ExpectRead(45356.0 + kMorning + 1.0, {u"2024-03-05T10:15:30-24:00"});
  ExpectRead(kQuarter, {u"10:15"});
  ExpectRead(kMorning, {u"10:15:30.5Z"});
  ExpectRead(0.0, {u"1899-12-30"});
  ExpectRead(-0.5, {u"1899-12-29T12:00"});
}

// Without a text child it is the value of the last child.
TEST_F(DateTimeFormaters, ReadTheFirstTextChild) {
  ExpectRead(45356.0, {u"2024-03-05<b/>2024-03-06", u"<b>2024-03-06</b>2024-03-05",
                       u"<![CDATA[2024-03-06]]><b/>2024-03-05", u"2024-03-05<![CDATA[T10:15:30]]>",
                       u"<![CDATA[2024-03-05]]>"});
}

TEST_F(DateTimeFormaters, ReadTheValueOfATextNodeOrAnAttribute) {
  const XmlText text(u"<v a='2024-03-05'>10:15:30</v>");
  for (FormaterSerializer* formater : all_) {
    EXPECT_EQ(formater->ReadValue(text.Root().FirstChild()).Data().date, kMorning);
    EXPECT_EQ(formater->ReadValue(text.Root().Attribute(u"a")).Data().date, 45356.0);
  }
}

TEST_F(DateTimeFormaters, RefuseOtherTextsWithTheMessageOfTheConversion) {
  ExpectRefused(kWrongAccuracy, {u"", u" ", u"2024", u"2024-03", u"--05--", u"today", u"<b>2024-03-05</b>",
                                 u"<![CDATA[2024-03-05]]><b/>", u"2024<b/>-03-05", u"+24:00"});
  ExpectRefused(kNoFullDate, {u"2024-03T10:15"});
  ExpectRefused(kInvalidDate, {u"2024-02-30"});
  ExpectRefused(kInvalidTime, {u"24:00:00"});
  ExpectRefused(kInvalidFormat, {u"10:15+5"});
  ExpectRefused(kNaN, {u"10:15:NaN"});
  ExpectRefused(kInf, {u"10:15:INF"});
  ExpectRefused(kWrongAccuracy, XmlNode());
}

// No parser lets a lone surrogate pass, so this document is made by hand.
TEST_F(DateTimeFormaters, ReadTextThatNoParserWouldGive) {
  const XmlLibraryHold hold;
  xml::DOMDocument* document = xml::DOMImplementation::getImplementation()->createDocument();
  ExpectRefused(kWrongAccuracy, XmlNode(document->createTextNode(u"\xD800")));
  ExpectRefused(kInvalidDate, XmlNode(document->createTextNode(u"\xD800-\xD800-\xD800")));
  document->release();
}

TEST_F(DateTimeFormaters, DateWritesTheDayOnly) {
  const std::vector<Written> rows = {{45356.0, "2024-03-05"},
                                     {45356.75, "2024-03-05"},
                                     {0.0, "1899-12-30"},
                                     {-0.25, "1899-12-29"},
                                     {-693593.0, "0001-01-01"},
                                     {2958465.0, "9999-12-31"},
                                     {45356.0 + 86399.6 / 86400.0, "2024-03-06"}};
  ExpectWritten(&date_, rows);
}

TEST_F(DateTimeFormaters, DateTimeWritesDayAndTimeInZ) {
  ExpectWritten(&dateTime_,
                {{45356.0 + kMorning, "2024-03-05T10:15:30.0Z"},
                 {45356.0, "2024-03-05T00:00:00.0Z"},
                 {45356.75, "2024-03-05T18:00:00.0Z"},
                 {45356.0 + kMorningAnd7Milliseconds, "2024-03-05T10:15:30.7Z"},
                 {0.25, "1899-12-30T06:00:00.0Z"},
                 {2958465.5, "9999-12-31T12:00:00.0Z"},
                 // The day is found by rounding to the second, and the time is what the cut value leaves.
                 {45356.0 + 86399.6 / 86400.0, "2024-03-06T23:59:59.600Z"},
                 {45356.999999999993, "2024-03-06T24:00:00.0Z"}});
}

TEST_F(DateTimeFormaters, DateTimeBeforeDayZeroCountsTheTimeFromTheStartOfItsDay) {
  ExpectWritten(&dateTime_, {{-0.25, "1899-12-29T18:00:00.0Z"},
                             {-1.0, "1899-12-29T00:00:00.0Z"},
                             {-1.25, "1899-12-28T18:00:00.0Z"},
                             {-18260.0 + kMorningAnd7Milliseconds, "1850-01-01T10:15:30.7Z"},
                             {-693593.0 + 1.0 / 86400.0, "0001-01-01T00:00:01.0Z"},
                             {-693593.0, "0001-01-01T00:00:00.0Z"},
                             // In the last half second before a day, that day begins after the value.
                             {-1.0 - 0.499 / 86400.0, "1899-12-29T00:00:00.0Z"},
                             {-1.0 - 0.501 / 86400.0, "1899-12-28T23:59:59.499Z"},
                             {-1e-12, "1899-12-30T00:00:00.0Z"}});
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
  const std::vector<Written> rows = {{kMorning, "10:15:30.0Z"},
                                     {45356.0 + kMorning, "10:15:30.0Z"},
                                     {0.0, "00:00:00.0Z"},
                                     {45356.0, "00:00:00.0Z"},
                                     {kMorningAnd7Milliseconds, "10:15:30.7Z"},
                                     {-0.25, "-5:-59:-59.-999Z"},
                                     {0.999999999999, "24:00:00.0Z"},
                                     {1e300, "00:00:00.0Z"}};
  ExpectWritten(&time_, rows);
}

TEST_F(DateTimeFormaters, WriteDoesNotLookAtTheTag) {
  EXPECT_EQ(Shown(date_.WriteValue(Variant::FromDouble(45356.0))), "2024-03-05");
  EXPECT_EQ(Shown(dateTime_.WriteValue(Variant())), "1899-12-30T00:00:00.0Z");
  EXPECT_EQ(Shown(time_.WriteValue(Variant::FromDouble(0.5))), "12:00:00.0Z");
}

TEST_F(DateTimeFormaters, WriteRefusesOtherNumbers) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  for (const double serial : {notANumber, infinity, -infinity})
    EXPECT_EQ(Thrown([&] { TextOf(&time_, serial); }), kTimeNotDecoded);
  for (const double serial :
       {notANumber, infinity, -infinity, 1e300, -1e300, 1e10, -1e10, 2958466.0, -693595.0}) {
    EXPECT_EQ(Thrown([&] { TextOf(&date_, serial); }), kDateNotDecoded) << serial;
    EXPECT_EQ(Thrown([&] { TextOf(&dateTime_, serial); }), kDateNotDecoded) << serial;
  }
}

TEST_F(DateTimeFormaters, RoundTripKeepsWhatTheFormCarriesAndMayChangeTheTypeName) {
  const struct {
    FormaterSerializer* formater;
    double before, after;
    const char* typeName;
  } rows[] = {{&date_, 45356.0, 45356.0, "date"},
              {&date_, 45356.75, 45356.0, "date"},
              {&date_, 0.0, 0.0, "time"},
              {&dateTime_, 45356.0, 45356.0, "date"},
              {&dateTime_, 0.5, 0.5, "time"},
              {&dateTime_, 45356.0 + kMorning, 45356.0 + kMorning, "datetime"},
              {&dateTime_, 45356.0 + kMorningAnd7Milliseconds, 45356.0 + kMorning, "datetime"},
              {&time_, kMorning, kMorning, "time"},
              {&time_, 45356.5, 0.5, "time"},
              {&time_, 45356.0, 0.0, "time"}};
  for (const auto& row : rows) {
    const double after = RoundTrip(row.formater, row.before);
    EXPECT_EQ(after, row.after) << row.before;
    EXPECT_EQ(TypeNameOf(after), row.typeName) << row.before;
  }
}

TEST_F(DateTimeFormaters, KnowNoLocale) {
  const CommaLocale comma;
  ExpectRead(45356.0 + kMorning, {u"2024-03-05T10:15:3.0e1Z"});
  ExpectWritten(&date_, {{45356.0, "2024-03-05"}});
  ExpectWritten(&dateTime_, {{45356.0 + kMorningAnd7Milliseconds, "2024-03-05T10:15:30.7Z"}});
  ExpectWritten(&time_, {{36930999.0 / 86400000.0, "10:15:30.999Z"}});
}

TEST_F(DateTimeFormaters, CreatorsRegisterOneFormaterUnderTheirName) {
  FormaterDateCreator date(u"probe date");
  FormaterDateTimeCreator dateTime(u"probe datetime");
  FormaterTimeCreator time(u"probe time");
  EXPECT_EQ(Get(u"PROBE Date"), date.GetSerializer());
  EXPECT_EQ(Get(u"probe datetime"), dateTime.GetSerializer());
  EXPECT_EQ(Get(u"probe time"), time.GetSerializer());
  ExpectWritten(date.GetSerializer(), {{45356.5, "2024-03-05"}});
  ExpectWritten(dateTime.GetSerializer(), {{45356.5, "2024-03-05T12:00:00.0Z"}});
  ExpectWritten(time.GetSerializer(), {{45356.5, "12:00:00.0Z"}});
}

}  // namespace
}  // namespace qv
