// From and to VT_DATE. Times of the rows are such that a double holds their fraction of a day.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

#include "variant/variant_rows.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(VariantChangeTypeDate, NumbersAreSerialDates) {
  ExpectAllBecome(Date(0.0), {Variant(), Bool(false)});
  ExpectAllBecome(Date(-1.0), {Bool(true), I1(-1)});
  const Changes rows = {
      {I2(32767), Date(32767.0)},     {I4(45356), Date(45356.0)},  {I4(2958465), Date(2958465.0)},
      {I4(-657434), Date(-657434.0)}, {Int(1), Date(1.0)},         {I8(36526), Date(36526.0)},
      {UI1(255), Date(255.0)},        {UI2(65535), Date(65535.0)}, {UI4(100000), Date(100000.0)},
      {UInt(2), Date(2.0)},           {UI8(3), Date(3.0)},         {R4(1.5F), Date(1.5)}};
  ExpectChanged(rows);
  for (const double date : {45356.25, 2958465.9375, -657434.9375}) ExpectChanged({{R8(date), Date(date)}});
  ExpectRefused(
      DISP_E_OVERFLOW, VT_DATE,
      {I4(2958466), I4(-657435), I8(9223372036854775807), UI4(4294967295), UI8(18446744073709551615U),
       R4(1e10F), R8(2958466.0), R8(-657435.0), R8(1e300), R8(kInfinity), R8(kNan)});
}

TEST(VariantChangeTypeDate, ReadsDays) {
  ExpectAllBecome(Date(45356.0), Texts({u"3/5/2024", u"03/05/2024", u" 3/5/2024 ", u"3-5-2024", u"2024-03-05",
                                        u"2024-3-5", u"2024/03/05"}));
  ExpectAllBecome(Date(-657434.0), Texts({u"1/1/0100", u"1/1/100", u"0100-01-01", u"100-01-01"}));
  const Reads rows = {{u"2/29/2000", Date(36585.0)},  {u"2/28/1900", Date(60.0)},
                      {u"3/1/1900", Date(61.0)},      {u"12/30/1899", Date(0.0)},
                      {u"12/29/1899", Date(-1.0)},    {u"1/1/1601", Date(-109205.0)},
                      {u"2/29/400", Date(-547803.0)}, {u"12/31/9999", Date(2958465.0)}};
  ExpectRead(rows);
}

TEST(VariantChangeTypeDate, YearsOfTwoDigitsAreFrom1930To2029) {
  ExpectAllBecome(Date(36526.0), Texts({u"1/1/2000", u"1/1/00"}));
  ExpectRead({{u"12/31/29", Date(47483.0)},
              {u"1/1/30", Date(10959.0)},
              {u"12/31/99", Date(36525.0)},
              {u"5/3/4", Date(38110.0)}});
}

TEST(VariantChangeTypeDate, ReadsTimes) {
  ExpectAllBecome(Date(45356.0), Texts({u"3/5/2024 12:00 AM", u"3/5/2024 0:00"}));
  ExpectAllBecome(Date(45356.25), Texts({u"3/5/2024 6:00", u"3/5/2024 06:00:00", u"3/5/2024 6:00:00 AM"}));
  ExpectAllBecome(Date(45356.75),
                  Texts({u"3/5/2024 6:00:00 PM", u"3/5/2024   6:00 pm", u"2024-03-05 18:00:00"}));
  ExpectAllBecome(Date(0.0), Texts({u"0:00", u"12:00:00 AM"}));
  ExpectAllBecome(Date(0.9375), Texts({u"10:30PM", u"22:30", u" 22:30 "}));
  ExpectAllBecome(Date(0.0078125), Texts({u"0:11:15", u"12:11:15 AM"}));
  ExpectAllBecome(Date(0.25), Texts({u"6:00", u"12/30/1899 6:00 AM"}));
  ExpectRead({{u"3/5/2024 12:00 PM", Date(45356.5)},
              {u"0:45", Date(0.03125)},
              {u"10:30 Am", Date(0.4375)},
              {u"12/29/1899 6:00 AM", Date(-1.25)},
              {u"3/5/2024 10:15:30 AM", Date(45356.0 + 36930.0 / 86400.0)}});
}

TEST(VariantChangeTypeDate, OtherTextsAreNoDates) {
  const auto expectNoDates = [](std::initializer_list<std::u16string_view> texts) {
    ExpectRefused(DISP_E_TYPEMISMATCH, VT_DATE, Texts(texts));
  };
  expectNoDates({u"", u"  ", u"abc", u"45356", u"1.5", u"True", u"March 5, 2024", u"5 Mar 2024",
                 u"3/5/2024\0"sv, u"\xD800/5/2024", u"\uFF13/5/2024"});
  expectNoDates({u"3/5", u"3/5/", u"/3/5/2024", u"3/5/2024/1", u"3//2024", u"3/5-2024", u"2024-03/05",
                 u"-3/5/2024", u"3/5/-2024"});
  expectNoDates({u"13/5/2024", u"0/5/2024", u"3/0/2024", u"4/31/2024", u"2/29/2023", u"2/29/1900",
                 u"2024-13-01", u"2024-02-30", u"1/1/99999", u"1/1/0099", u"0024-03-05", u"2024-03-2024",
                 u"2024-03-005", u"003/5/2024x", u"99999999999999999999/1/2024"});
  expectNoDates({u"3/5/2024T10:15", u"2024-03-05T10:15:30", u"2024-03-05Z", u"3/5/202410:15", u"3/5/2024 10",
                 u"3/5/2024 10:", u"3/5/2024 x", u"3/5/2024 24:00", u"3/5/2024 10:60", u"3/5/2024 10:15:60",
                 u"3/5/2024 10:15:30.5", u"3/5/2024 10:15:30:1"});
  expectNoDates({u"3/5/2024 13:00 PM", u"3/5/2024 0:30 AM", u"3/5/2024 10:15 XM", u"3/5/2024 10:15 A",
                 u"3/5/2024 10:15 AMx", u"3/5/2024 10:15 AM PM", u"10:15 3/5/2024", u"10:150", u"100:15",
                 u":15", u"10::15", u"-10:15", u"10 AM"});
  ExpectRefused(DISP_E_TYPEMISMATCH, VT_DATE, {NullText()});
}

TEST(VariantChangeTypeDate, WritesTheEnglishForm) {
  const Writes days = {{Date(45356.0), u"3/5/2024"},   {Date(35430.0), u"12/31/1996"},
                       {Date(60.0), u"2/28/1900"},     {Date(61.0), u"3/1/1900"},
                       {Date(1.0), u"12/31/1899"},     {Date(-1.0), u"12/29/1899"},
                       {Date(-109205.0), u"1/1/1601"}, {Date(-547803.0), u"2/29/0400"},
                       {Date(-657434.0), u"1/1/0100"}, {Date(2958465.0), u"12/31/9999"}};
  ExpectWritten(days);
  const Writes times = {{Date(0.0), u"12:00:00 AM"},
                        {Date(-0.0), u"12:00:00 AM"},
                        {Date(0.25), u"6:00:00 AM"},
                        {Date(-0.25), u"6:00:00 AM"},
                        {Date(0.5), u"12:00:00 PM"}};
  ExpectWritten(times);
  const Writes both = {
      {Date(45356.25), u"3/5/2024 6:00:00 AM"},       {Date(45356.427430555559), u"3/5/2024 10:15:30 AM"},
      {Date(45356.5), u"3/5/2024 12:00:00 PM"},       {Date(45356.75), u"3/5/2024 6:00:00 PM"},
      {Date(45356.0078125), u"3/5/2024 12:11:15 AM"}, {Date(36585.9375), u"2/29/2000 10:30:00 PM"},
      {Date(-1.25), u"12/29/1899 6:00:00 AM"},        {Date(-657434.9375), u"1/1/0100 10:30:00 PM"}};
  ExpectWritten(both);
}

TEST(VariantChangeTypeDate, IsWrittenToTheNearestSecond) {
  ExpectWritten({{Date(45356.0 + 36930.4 / 86400), u"3/5/2024 10:15:30 AM"},
                 {Date(45356.0 + 36930.6 / 86400), u"3/5/2024 10:15:31 AM"},
                 {Date(45356.0 + 0.4 / 86400), u"3/5/2024"},
                 {Date(45356.0 + 86399.6 / 86400), u"3/6/2024"},
                 {Date(45356.0 + 86399.4 / 86400), u"3/5/2024 11:59:59 PM"},
                 {Date(86399.6 / 86400), u"12/31/1899"},
                 {Date(-1.0 - 86399.6 / 86400), u"12:00:00 AM"}});
}

TEST(VariantChangeTypeDate, OutOfTheYearsHasNoText) {
  ExpectRefused(
      DISP_E_TYPEMISMATCH, VT_BSTR,
      {Date(2958466.0), Date(2958465.99999999), Date(-657435.0), Date(1e300), Date(-kInfinity), Date(kNan)});
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
