// From and to VT_DATE. Times of the rows are such that a double holds their fraction of a day.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>

#include "fixtures/shown_text.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

TEST(VariantChangeTypeDate, NumbersAreSerialDates) {
  ExpectChanged({
      {Variant(), VT_DATE, Date(0.0)},
      {Bool(true), VT_DATE, Date(-1.0)},
      {Bool(false), VT_DATE, Date(0.0)},
      {I1(-1), VT_DATE, Date(-1.0)},
      {I2(32767), VT_DATE, Date(32767.0)},
      {I4(45356), VT_DATE, Date(45356.0)},
      {I4(2958465), VT_DATE, Date(2958465.0)},
      {I4(-657434), VT_DATE, Date(-657434.0)},
      {Int(1), VT_DATE, Date(1.0)},
      {I8(36526), VT_DATE, Date(36526.0)},
      {UI1(255), VT_DATE, Date(255.0)},
      {UI2(65535), VT_DATE, Date(65535.0)},
      {UI4(100000), VT_DATE, Date(100000.0)},
      {UInt(2), VT_DATE, Date(2.0)},
      {UI8(3), VT_DATE, Date(3.0)},
      {R4(1.5f), VT_DATE, Date(1.5)},
      {R8(45356.25), VT_DATE, Date(45356.25)},
      {R8(2958465.9375), VT_DATE, Date(2958465.9375)},
      {R8(-657434.9375), VT_DATE, Date(-657434.9375)},
  });
}

TEST(VariantChangeTypeDate, NumbersBeyondTheYearsOverflow) {
  ExpectRefused({
      {I4(2958466), VT_DATE, DISP_E_OVERFLOW},
      {I4(-657435), VT_DATE, DISP_E_OVERFLOW},
      {I8(9223372036854775807), VT_DATE, DISP_E_OVERFLOW},
      {UI4(4294967295), VT_DATE, DISP_E_OVERFLOW},
      {UI8(18446744073709551615u), VT_DATE, DISP_E_OVERFLOW},
      {R4(1e10f), VT_DATE, DISP_E_OVERFLOW},
      {R8(2958466.0), VT_DATE, DISP_E_OVERFLOW},
      {R8(-657435.0), VT_DATE, DISP_E_OVERFLOW},
      {R8(1e300), VT_DATE, DISP_E_OVERFLOW},
      {R8(std::numeric_limits<double>::infinity()), VT_DATE, DISP_E_OVERFLOW},
      {R8(std::numeric_limits<double>::quiet_NaN()), VT_DATE, DISP_E_OVERFLOW},
  });
}

TEST(VariantChangeTypeDate, ReadsDays) {
  ExpectChanged({
      {Text(u"3/5/2024"), VT_DATE, Date(45356.0)},     {Text(u"03/05/2024"), VT_DATE, Date(45356.0)},
      {Text(u" 3/5/2024 "), VT_DATE, Date(45356.0)},   {Text(u"3-5-2024"), VT_DATE, Date(45356.0)},
      {Text(u"2024-03-05"), VT_DATE, Date(45356.0)},   {Text(u"2024-3-5"), VT_DATE, Date(45356.0)},
      {Text(u"2024/03/05"), VT_DATE, Date(45356.0)},   {Text(u"1/1/2000"), VT_DATE, Date(36526.0)},
      {Text(u"2/29/2000"), VT_DATE, Date(36585.0)},    {Text(u"2/28/1900"), VT_DATE, Date(60.0)},
      {Text(u"3/1/1900"), VT_DATE, Date(61.0)},        {Text(u"12/30/1899"), VT_DATE, Date(0.0)},
      {Text(u"12/29/1899"), VT_DATE, Date(-1.0)},      {Text(u"1/1/1601"), VT_DATE, Date(-109205.0)},
      {Text(u"2/29/400"), VT_DATE, Date(-547803.0)},   {Text(u"12/31/9999"), VT_DATE, Date(2958465.0)},
      {Text(u"1/1/0100"), VT_DATE, Date(-657434.0)},   {Text(u"1/1/100"), VT_DATE, Date(-657434.0)},
      {Text(u"0100-01-01"), VT_DATE, Date(-657434.0)}, {Text(u"100-01-01"), VT_DATE, Date(-657434.0)},
  });
}

TEST(VariantChangeTypeDate, YearsOfTwoDigitsAreFrom1930To2029) {
  ExpectChanged({
      {Text(u"1/1/00"), VT_DATE, Date(36526.0)},
      {Text(u"12/31/29"), VT_DATE, Date(47483.0)},
      {Text(u"1/1/30"), VT_DATE, Date(10959.0)},
      {Text(u"12/31/99"), VT_DATE, Date(36525.0)},
      {Text(u"5/3/4"), VT_DATE, Date(38110.0)},
  });
}

TEST(VariantChangeTypeDate, ReadsTimes) {
  ExpectChanged({
      {Text(u"3/5/2024 6:00"), VT_DATE, Date(45356.25)},
      {Text(u"3/5/2024 06:00:00"), VT_DATE, Date(45356.25)},
      {Text(u"3/5/2024 6:00:00 AM"), VT_DATE, Date(45356.25)},
      {Text(u"3/5/2024 6:00:00 PM"), VT_DATE, Date(45356.75)},
      {Text(u"3/5/2024   6:00 pm"), VT_DATE, Date(45356.75)},
      {Text(u"2024-03-05 18:00:00"), VT_DATE, Date(45356.75)},
      {Text(u"3/5/2024 12:00 AM"), VT_DATE, Date(45356.0)},
      {Text(u"3/5/2024 12:00 PM"), VT_DATE, Date(45356.5)},
      {Text(u"3/5/2024 0:00"), VT_DATE, Date(45356.0)},
      {Text(u"6:00"), VT_DATE, Date(0.25)},
      {Text(u"0:00"), VT_DATE, Date(0.0)},
      {Text(u"0:45"), VT_DATE, Date(0.03125)},
      {Text(u"0:11:15"), VT_DATE, Date(0.0078125)},
      {Text(u"12:00:00 AM"), VT_DATE, Date(0.0)},
      {Text(u"12:11:15 AM"), VT_DATE, Date(0.0078125)},
      {Text(u"10:30PM"), VT_DATE, Date(0.9375)},
      {Text(u"10:30 Am"), VT_DATE, Date(0.4375)},
      {Text(u"22:30"), VT_DATE, Date(0.9375)},
      {Text(u" 22:30 "), VT_DATE, Date(0.9375)},
      {Text(u"12/29/1899 6:00 AM"), VT_DATE, Date(-1.25)},
      {Text(u"12/30/1899 6:00 AM"), VT_DATE, Date(0.25)},
      {Text(u"3/5/2024 10:15:30 AM"), VT_DATE, Date(45356.0 + 36930.0 / 86400.0)},
  });
}

TEST(VariantChangeTypeDate, OtherTextsAreNoDates) {
  const std::u16string_view texts[] = {
      u"",
      u"  ",
      u"abc",
      u"45356",
      u"1.5",
      u"3/5",
      u"3/5/",
      u"/3/5/2024",
      u"3/5/2024/1",
      u"3//2024",
      u"3/5-2024",
      u"2024-03/05",
      u"13/5/2024",
      u"0/5/2024",
      u"3/0/2024",
      u"4/31/2024",
      u"2/29/2023",
      u"2/29/1900",
      u"2024-13-01",
      u"2024-02-30",
      u"1/1/99999",
      u"1/1/0099",
      u"0024-03-05",
      u"2024-03-2024",
      u"2024-03-005",
      u"003/5/2024x",
      u"-3/5/2024",
      u"3/5/-2024",
      u"March 5, 2024",
      u"5 Mar 2024",
      u"3/5/2024T10:15",
      u"2024-03-05T10:15:30",
      u"2024-03-05Z",
      u"3/5/202410:15",
      u"3/5/2024 10",
      u"3/5/2024 10:",
      u"3/5/2024 x",
      u"3/5/2024 24:00",
      u"3/5/2024 10:60",
      u"3/5/2024 10:15:60",
      u"3/5/2024 10:15:30.5",
      u"3/5/2024 10:15:30:1",
      u"3/5/2024 13:00 PM",
      u"3/5/2024 0:30 AM",
      u"3/5/2024 10:15 XM",
      u"3/5/2024 10:15 A",
      u"3/5/2024 10:15 AMx",
      u"3/5/2024 10:15 AM PM",
      u"10:15 3/5/2024",
      u"10:150",
      u"100:15",
      u":15",
      u"10::15",
      u"-10:15",
      u"10 AM",
      u"3/5/2024\0"sv,
      u"\xD800/5/2024",
      u"\uFF13/5/2024",
      u"99999999999999999999/1/2024",
      u"True",
  };
  for (const std::u16string_view text : texts) ExpectRefused({{Text(text), VT_DATE, DISP_E_TYPEMISMATCH}});
  ExpectRefused({{Variant::FromString(WideString()), VT_DATE, DISP_E_TYPEMISMATCH}});
}

TEST(VariantChangeTypeDate, WritesTheEnglishForm) {
  ExpectChanged({
      {Date(45356.0), VT_BSTR, Text(u"3/5/2024")},
      {Date(45356.25), VT_BSTR, Text(u"3/5/2024 6:00:00 AM")},
      {Date(45356.427430555559), VT_BSTR, Text(u"3/5/2024 10:15:30 AM")},
      {Date(45356.5), VT_BSTR, Text(u"3/5/2024 12:00:00 PM")},
      {Date(45356.75), VT_BSTR, Text(u"3/5/2024 6:00:00 PM")},
      {Date(45356.0078125), VT_BSTR, Text(u"3/5/2024 12:11:15 AM")},
      {Date(36585.9375), VT_BSTR, Text(u"2/29/2000 10:30:00 PM")},
      {Date(35430.0), VT_BSTR, Text(u"12/31/1996")},
      {Date(60.0), VT_BSTR, Text(u"2/28/1900")},
      {Date(61.0), VT_BSTR, Text(u"3/1/1900")},
      {Date(0.0), VT_BSTR, Text(u"12:00:00 AM")},
      {Date(-0.0), VT_BSTR, Text(u"12:00:00 AM")},
      {Date(0.25), VT_BSTR, Text(u"6:00:00 AM")},
      {Date(-0.25), VT_BSTR, Text(u"6:00:00 AM")},
      {Date(0.5), VT_BSTR, Text(u"12:00:00 PM")},
      {Date(1.0), VT_BSTR, Text(u"12/31/1899")},
      {Date(-1.0), VT_BSTR, Text(u"12/29/1899")},
      {Date(-1.25), VT_BSTR, Text(u"12/29/1899 6:00:00 AM")},
      {Date(-109205.0), VT_BSTR, Text(u"1/1/1601")},
      {Date(-547803.0), VT_BSTR, Text(u"2/29/0400")},
      {Date(-657434.0), VT_BSTR, Text(u"1/1/0100")},
      {Date(-657434.9375), VT_BSTR, Text(u"1/1/0100 10:30:00 PM")},
      {Date(2958465.0), VT_BSTR, Text(u"12/31/9999")},
  });
}

TEST(VariantChangeTypeDate, IsWrittenToTheNearestSecond) {
  ExpectChanged({
      {Date(45356.0 + 36930.4 / 86400), VT_BSTR, Text(u"3/5/2024 10:15:30 AM")},
      {Date(45356.0 + 36930.6 / 86400), VT_BSTR, Text(u"3/5/2024 10:15:31 AM")},
      {Date(45356.0 + 0.4 / 86400), VT_BSTR, Text(u"3/5/2024")},
      {Date(45356.0 + 86399.6 / 86400), VT_BSTR, Text(u"3/6/2024")},
      {Date(45356.0 + 86399.4 / 86400), VT_BSTR, Text(u"3/5/2024 11:59:59 PM")},
      {Date(86399.6 / 86400), VT_BSTR, Text(u"12/31/1899")},
      {Date(-1.0 - 86399.6 / 86400), VT_BSTR, Text(u"12:00:00 AM")},
  });
}

TEST(VariantChangeTypeDate, OutOfTheYearsHasNoText) {
  ExpectRefused({
      {Date(2958466.0), VT_BSTR, DISP_E_TYPEMISMATCH},
      {Date(2958465.99999999), VT_BSTR, DISP_E_TYPEMISMATCH},
      {Date(-657435.0), VT_BSTR, DISP_E_TYPEMISMATCH},
      {Date(1e300), VT_BSTR, DISP_E_TYPEMISMATCH},
      {Date(-std::numeric_limits<double>::infinity()), VT_BSTR, DISP_E_TYPEMISMATCH},
      {Date(std::numeric_limits<double>::quiet_NaN()), VT_BSTR, DISP_E_TYPEMISMATCH},
  });
}

WideString EnglishDate(int year, int month, int day) {
  char text[40];
  const int length = std::snprintf(text, sizeof text, "%d/%d/%04d", month, day, year);
  return WideString(std::u16string(text, text + length));
}

// Goes through 400 years day by day, by a calendar that only counts on.
void ExpectEveryDay(int serial, int year, int month, int day) {
  const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (const int end = serial + 146097; serial < end; ++serial) {
    const WideString text = EnglishDate(year, month, day);
    Variant read;
    ASSERT_EQ(VariantChangeType(&read, Text(text.view()), VT_DATE), S_OK) << Shown(text);
    ASSERT_EQ(read.Data().date, serial) << Shown(text);
    Variant written;
    ASSERT_EQ(VariantChangeType(&written, Date(serial), VT_BSTR), S_OK) << serial;
    ASSERT_EQ(Shown(written.Text()), serial == 0 ? "12:00:00 AM" : Shown(text));
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (++day <= days[month - 1] + (month == 2 && leap ? 1 : 0)) continue;
    day = 1;
    month = month % 12 + 1;
    if (month == 1) ++year;
  }
}

TEST(VariantChangeTypeDate, EveryDayIsReadAndWrittenAsItself) {
  ExpectEveryDay(-657434, 100, 1, 1);
  ExpectEveryDay(-109205, 1601, 1, 1);
  ExpectEveryDay(2958466 - 146097, 9600, 1, 1);
}

}  // namespace
}  // namespace qv
