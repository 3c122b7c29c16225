#include <gtest/gtest.h>

#include <cmath>

#include "qvscriptwells/create_objects.h"
#include "tools/failure.h"
#include "tools/object_text.h"

namespace qv::cli {
namespace {

std::string Refusal(const std::string& text) {
  try {
    ParseDuration(text);
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

struct SentRow {
  const char* text;
  const char* sent;
};

TEST(DurationText, DurationsTravelWithoutZeros) {
  const SentRow rows[] = {{"P1DT2H", "P1DT2H"},
                          {"P1Y2M3DT4H5M6.5S", "P1Y2M3DT4H5M6.5S"},
                          {"-P1Y2M3DT4H5M6.5S", "-P1Y2M3DT4H5M6.5S"},
                          {"P0", "P0"},
                          {"-P0", "-P0"},
                          {"P0D", "P0"},
                          {"PT0S", "P0"},
                          {"P0Y0M0DT0H0M0S", "P0"},
                          {"P1Y", "P1Y"},
                          {"P1M", "P1M"},
                          {"PT1M", "PT1M"},
                          {"P1MT1M", "P1MT1M"},
                          {"P3Y5D", "P3Y5D"},
                          {"PT3H5S", "PT3H5S"},
                          {"PT90S", "PT90S"},
                          {"P007D", "P7D"},
                          {"P1DT0H", "P1D"},
                          {"P32767D", "P32767D"},
                          {"P32767Y32767M32767DT32767H32767M1S", "P32767Y32767M32767DT32767H32767M1S"},
                          {"PT0.5S", "PT0.5S"},
                          {"PT0.0001S", "PT0.0001S"},
                          {"PT5.0S", "PT5S"},
                          {"PT12345.6S", "PT12345.6S"},
                          {"PT999999S", "PT999999S"},
                          {"PT40000S", "PT40000S"},
                          {"PT12345.678S", "PT12345.7S"}};
  for (const SentRow& row : rows) {
    const Variant value = ParseDuration(row.text);
    EXPECT_EQ(value.Tag(), VT_UNKNOWN) << row.text;
    EXPECT_EQ(ObjectText(value), row.sent) << row.text;
  }
}

TEST(DurationText, FieldsAreReadBack) {
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

TEST(DurationText, WrappedCountIsNegative) {
  const auto wrapped = [](const char16_t* text) {
    return HasWrappedCount(Variant::FromObject(CreateDuration(text).get()));
  };
  for (const char16_t* text : {u"P32768Y", u"P40000M", u"P65535D", u"PT40000H", u"-P1DT40000M"})
    EXPECT_TRUE(wrapped(text));
  for (const char16_t* text : {u"P32767Y", u"-P1DT2H", u"P0", u"PT40000S", u"P65537D"})
    EXPECT_FALSE(wrapped(text));
  EXPECT_FALSE(HasWrappedCount(Variant::FromInt(-1)));
  EXPECT_FALSE(HasWrappedCount(Variant::FromObject(nullptr)));
}

TEST(DurationText, OtherFormsAreRefused) {
  for (const char* text : {"",
                           "P",
                           "-P",
                           "PT",
                           "P1DT",
                           "1D",
                           "p1d",
                           "P1d",
                           "pt1h",
                           "P-1D",
                           "+P1D",
                           "--P1D",
                           "P1",
                           "P00",
                           "P0T",
                           "P1W",
                           "P1D1Y",
                           "P1D2D",
                           "P5H",
                           "PT5D",
                           "PT5Y",
                           "P1DT2HT3M",
                           "PT1S2M",
                           "PT.5S",
                           "PT5.S",
                           "PT1e3S",
                           "PT1E3S",
                           "PT-1S",
                           "PTNANS",
                           "PTINFS",
                           " P1D",
                           "P1D ",
                           "P 1D",
                           "P1,5D",
                           "PT1,5S",
                           "PD",
                           "PTS",
                           "P1DX",
                           "P0x1D",
                           "P1D-",
                           "T1H",
                           "PT1H1",
                           "P\xD9\xA1"
                           "D"})
    EXPECT_EQ(Refusal(text),
              std::string("'") + text +
                  "' is not a duration (such as P1DT2H, or -P1Y2M3DT4H5M6.5S with all its units)");
}

TEST(DurationText, FractionsOfOtherUnitsAreRefused) {
  EXPECT_EQ(Refusal("P1.5D"), "'P1.5D' has a fraction of its days; only seconds may have one");
  EXPECT_EQ(Refusal("P0.5Y"), "'P0.5Y' has a fraction of its years; only seconds may have one");
  EXPECT_EQ(Refusal("PT1.5H"), "'PT1.5H' has a fraction of its hours; only seconds may have one");
  EXPECT_EQ(Refusal("PT1.0M"), "'PT1.0M' has a fraction of its minutes; only seconds may have one");
}

TEST(DurationText, CountsBeyondTheRangeAreRefused) {
  EXPECT_EQ(Refusal("P32768D"), "'P32768D' has more than 32767 days");
  EXPECT_EQ(Refusal("P65536Y"), "'P65536Y' has more than 32767 years");
  EXPECT_EQ(Refusal("PT99999999999999999999M"), "'PT99999999999999999999M' has more than 32767 minutes");
  EXPECT_EQ(Refusal("P" + std::string(300, '9') + "D"), "a duration of more than 200 characters");
}

TEST(DurationText, SecondsThatNeedAnExponentAreRefused) {
  EXPECT_EQ(Refusal("PT1000000S"), "'PT1000000S' would travel as 'PT1e+06S'; write it in other units");
  EXPECT_EQ(Refusal("PT999999.7S"), "'PT999999.7S' would travel as 'PT1e+06S'; write it in other units");
  EXPECT_EQ(Refusal("PT0.00001S"), "'PT0.00001S' would travel as 'PT1e-05S'; write it in other units");
}

TEST(ObjectText, OtherValuesAreNoDurations) {
  EXPECT_FALSE(ReadDuration(Variant::FromInt(1)).has_value());
  EXPECT_FALSE(ReadDuration(Variant::FromObject(nullptr)).has_value());
  EXPECT_FALSE(ReadDuration(Variant::FromObject(CreateUrl().get())).has_value());
  EXPECT_FALSE(ReadUrl(ParseDuration("P1D")).has_value());
}

TEST(ObjectText, ObjectsAreNamed) {
  EXPECT_STREQ(ObjectType(ParseDuration("P1D")), "duration");
  EXPECT_STREQ(ObjectType(Variant::FromObject(CreateUrl().get())), "url");
  EXPECT_STREQ(ObjectType(Variant::FromObject(CreateParameters().get())), "object");
  EXPECT_STREQ(ObjectType(Variant::FromObject(nullptr)), "object");
}

TEST(ObjectText, UrlIsItsLinkAndCaption) {
  const IUrlPtr url = CreateUrl();
  ASSERT_EQ(url->put_Url(u"http://srv/a"), S_OK);
  ASSERT_EQ(url->put_UrlCaption(u"here"), S_OK);
  const auto fields = ReadUrl(Variant::FromObject(url.get()));
  ASSERT_TRUE(fields.has_value());
  EXPECT_EQ(fields->url, "http://srv/a");
  EXPECT_EQ(fields->caption, "here");
  EXPECT_EQ(ObjectText(Variant::FromObject(url.get())), "http://srv/a");
}

}  // namespace
}  // namespace qv::cli
