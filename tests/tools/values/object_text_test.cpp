// Durations on the command line, and what the program reads of values that are objects.
#include "tools/values/object_text.h"

#include <cmath>

#include "fixtures/variant_makers.h"
#include "qvscriptwells/create_objects.h"
#include "tests/tools/refusal.h"
#include "tests/tools/words.h"

namespace qv::cli {
namespace {

using testing::Each;
using testing::ExpectRefusals;

void ExpectSent(const std::string& text, const std::string& sent) {
  const Variant value = ParseDuration(text);
  EXPECT_EQ(value.Tag(), VT_UNKNOWN) << text;
  EXPECT_EQ(ObjectText(value), sent) << text;
}

TEST(ParseDuration, IsSentWithoutZerosAndSeventhDigits) {
  for (const std::string& text :
       Each("P1DT2H|P1Y2M3DT4H5M6.5S|-P1Y2M3DT4H5M6.5S|P0|-P0|P1Y|P1M|PT1M|P1MT1M|P3Y5D|PT3H5S|PT90S|P32767D|"
            "P32767Y32767M32767DT32767H32767M1S|PT0.5S|PT0.0001S|PT12345.6S|PT999999S|PT40000S"))
    ExpectSent(text, text);
  const std::pair<const char*, const char*> rows[] = {
      {"P0D", "P0"},     {"PT0S", "P0"},     {"P0Y0M0DT0H0M0S", "P0"},      {"P007D", "P7D"},
      {"P1DT0H", "P1D"}, {"PT5.0S", "PT5S"}, {"PT12345.678S", "PT12345.7S"}};
  for (const auto& [text, sent] : rows) ExpectSent(text, sent);
}

TEST(ParseDuration, RejectsOtherTexts) {
  ExpectRefusals(
      ParseDuration,
      "|P|-P|PT|P1DT|1D|p1d|P1d|pt1h|P-1D|+P1D|--P1D|P1|P00|P0T|P1W|P1D1Y|P1D2D|P5H|PT5D|PT5Y|P1DT2HT3M|"
      "PT1S2M|"
      "PT.5S|PT5.S|PT1e3S|PT1E3S|PT-1S|PTNANS|PTINFS| P1D|P1D |P "
      "1D|P1,5D|PT1,5S|PD|PTS|P1DX|P0x1D|P1D-|T1H|PT1H1|"
      "P\xD9\xA1\x44",
      "is not a duration (such as P1DT2H, or -P1Y2M3DT4H5M6.5S with all its units)");
  ExpectRefusals(ParseDuration, "P32768D", "has more than 32767 days");
  ExpectRefusals(ParseDuration, "P65536Y", "has more than 32767 years");
  ExpectRefusals(ParseDuration, "PT99999999999999999999M", "has more than 32767 minutes");
  EXPECT_EQ(testing::RefusalOf([] { ParseDuration("P" + std::string(300, '9') + "D"); }),
            "a duration of more than 200 characters");
  const std::pair<const char*, const char*> rows[] = {
      {"P1.5D", "days"}, {"P0.5Y", "years"}, {"PT1.5H", "hours"}, {"PT1.0M", "minutes"}};
  for (const auto& [text, unit] : rows)
    ExpectRefusals(ParseDuration, text,
                   std::string("has a fraction of its ") + unit + "; only seconds may have one");
  ExpectRefusals(ParseDuration, "PT1000000S|PT999999.7S",
                 "would travel as 'PT1e+06S'; write it in other units");
  ExpectRefusals(ParseDuration, "PT0.00001S", "would travel as 'PT1e-05S'; write it in other units");
}

TEST(ReadDuration, ReturnsAllFields) {
  const auto fields = ReadDuration(ParseDuration("-P1Y2M3DT4H5M6.5S"));
  ASSERT_TRUE(fields.has_value());
  EXPECT_TRUE(fields->negative);
  EXPECT_EQ(fields->years, 1);
  EXPECT_EQ(fields->months, 2);
  EXPECT_EQ(fields->days, 3);
  EXPECT_EQ(fields->hours, 4);
  EXPECT_EQ(fields->minutes, 5);
  EXPECT_EQ(fields->seconds, 6.5);
}

TEST(ReadDuration, WrappedCountIsNegative) {
  const auto wrapped = [](const char16_t* text) {
    return HasWrappedCount(Variant::FromObject(CreateDuration(text).get()));
  };
  for (const char16_t* text : {u"P32768Y", u"P40000M", u"P65535D", u"PT40000H", u"-P1DT40000M"})
    EXPECT_TRUE(wrapped(text));
  for (const char16_t* text : {u"P32767Y", u"-P1DT2H", u"P0", u"PT40000S", u"P65537D"})
    EXPECT_FALSE(wrapped(text));
  EXPECT_FALSE(HasWrappedCount(Int(-1)));
  EXPECT_FALSE(HasWrappedCount(Variant::FromObject(nullptr)));
}

TEST(ReadObject, OtherValuesHaveNoFields) {
  for (const Variant& value : {Int(1), Variant::FromObject(nullptr), Variant::FromObject(CreateUrl().get())})
    EXPECT_FALSE(ReadDuration(value).has_value());
  EXPECT_FALSE(ReadUrl(ParseDuration("P1D")).has_value());
  EXPECT_STREQ(ObjectType(ParseDuration("P1D")), "duration");
  EXPECT_STREQ(ObjectType(Variant::FromObject(CreateUrl().get())), "url");
  EXPECT_STREQ(ObjectType(Variant::FromObject(CreateParameters().get())), "object");
  EXPECT_STREQ(ObjectType(Variant::FromObject(nullptr)), "object");
}

TEST(ReadObject, UrlHasLinkAndCaption) {
  const IUrlPtr url = CreateUrl();
  ASSERT_EQ(url->put_Url(u"http://srv/a"), S_OK);
  ASSERT_EQ(url->put_UrlCaption(u"here"), S_OK);
  const Variant value = Variant::FromObject(url.get());
  const auto fields = ReadUrl(value);
  ASSERT_TRUE(fields.has_value());
  EXPECT_EQ(fields->url, "http://srv/a");
  EXPECT_EQ(fields->caption, "here");
  EXPECT_EQ(ObjectText(value), "http://srv/a");
}

}  // namespace
}  // namespace qv::cli
