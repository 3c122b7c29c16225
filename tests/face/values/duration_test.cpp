// Durations as text.
#include <limits>

#include "qvscriptwells/create_objects.h"
#include "scriptwells/types.h"
#include "tests/face/refusal.h"
#include "tests/tools/words.h"

namespace scriptwells {
namespace {

using qv::cli::testing::Each;
using testing::RefusalOf;

// Each of the texts is rejected with this reason, after its own text in quotes.
void ExpectRefusals(const std::string& texts, const std::string& reason) {
  for (const std::string& text : Each(texts))
    EXPECT_EQ(RefusalOf([&] { Duration::Parse(text); }),
              std::string("'").append(text).append("' ").append(reason));
}

TEST(DurationText, IsParsedAndPrinted) {
  for (const std::string& text :
       Each("P1DT2H|P1Y2M3DT4H5M6.5S|-P1Y2M3DT4H5M6.5S|P0|-P0|P1Y|P1M|PT1M|P1MT1M|P3Y5D|PT3H5S|PT90S|P32767D|"
            "P32767Y32767M32767DT32767H32767M1S|PT0.5S|PT0.0001S|PT12345.6S|PT999999S|PT40000S"))
    EXPECT_EQ(Duration::Parse(text).ToString(), text);
  const std::pair<const char*, const char*> rows[] = {
      {"P0D", "P0"},     {"PT0S", "P0"},     {"P0Y0M0DT0H0M0S", "P0"},      {"P007D", "P7D"},
      {"P1DT0H", "P1D"}, {"PT5.0S", "PT5S"}, {"PT12345.678S", "PT12345.7S"}};
  for (const auto& [text, printed] : rows) EXPECT_EQ(Duration::Parse(text).ToString(), printed);
  EXPECT_EQ(Duration::Parse("-P1Y2M3DT4H5M6.5S"), (Duration{true, 1, 2, 3, 4, 5, 6.5}));
}

// Also for counts that an answer brought changed.
TEST(DurationText, IsTheTextThatIsSent) {
  for (const char16_t* text : {u"P1Y2M3DT4H5M6.5S", u"-P0", u"PT1000000S", u"PT0.00001S", u"PTNANS",
                               u"-PTINFS", u"P40000D", u"P1YT65535H"}) {
    const qv::IDurationPtr object = qv::CreateDuration(text);
    Duration duration;
    qv::VARIANT_BOOL negative = 0;
    std::int16_t counts[5] = {};
    ASSERT_EQ(object->get_Negative(&negative), qv::S_OK);
    ASSERT_EQ(object->get_Year(&counts[0]) + object->get_Month(&counts[1]) + object->get_Day(&counts[2]) +
                  object->get_Hour(&counts[3]) + object->get_Min(&counts[4]) +
                  object->get_Sec(&duration.seconds),
              qv::S_OK);
    duration.negative = negative != 0;
    duration.years = counts[0];
    duration.months = counts[1];
    duration.days = counts[2];
    duration.hours = counts[3];
    duration.minutes = counts[4];
    qv::WideString sent;
    ASSERT_EQ(qv::As<qv::IDurationRaw>(object)->GetText(&sent), qv::S_OK);
    EXPECT_EQ(duration.ToString(), qv::ToUtf8(sent));
  }
}

TEST(DurationText, RejectsOtherTexts) {
  ExpectRefusals(
      "|P|-P|PT|P1DT|1D|p1d|P1d|pt1h|P-1D|+P1D|--P1D|P1|P00|P0T|P1W|P1D1Y|P1D2D|P5H|PT5D|PT5Y|P1DT2HT3M|"
      "PT1S2M|PT.5S|PT5.S|PT1e3S|PT1E3S|PT-1S|PTNANS|PTINFS| P1D|P1D |P 1D|P1,5D|PT1,5S|PD|PTS|P1DX|P0x1D|"
      "P1D-|T1H|PT1H1|P\xD9\xA1\x44",
      "is not a duration (such as P1DT2H, or -P1Y2M3DT4H5M6.5S with all its units)");
  ExpectRefusals("P32768D", "has more than 32767 days");
  ExpectRefusals("P65536Y", "has more than 32767 years");
  ExpectRefusals("PT99999999999999999999M", "has more than 32767 minutes");
  EXPECT_EQ(RefusalOf([] { Duration::Parse("P" + std::string(300, '9') + "D"); }),
            "a duration of more than 200 characters");
  const std::pair<const char*, const char*> rows[] = {
      {"P1.5D", "days"}, {"P0.5Y", "years"}, {"PT1.5H", "hours"}, {"PT1.0M", "minutes"}};
  for (const auto& [text, unit] : rows)
    ExpectRefusals(text, std::string("has a fraction of its ") + unit + "; only seconds may have one");
}

TEST(DurationText, OfAnyCounts) {
  const int least = std::numeric_limits<int>::min();
  EXPECT_EQ((Duration{false, least, 0, 0, 0, least, -1}.ToString()), "P-2147483648YT-2147483648M-1S");
}

TEST(Durations, AreComparedPartByPart) {
  EXPECT_NE(Duration::Parse("PT60M"), Duration::Parse("PT1H"));
  EXPECT_LT(Duration::Parse("P1D"), Duration::Parse("P2D"));
  EXPECT_NE(Duration::Parse("P1D"), Duration::Parse("-P1D"));
}

}  // namespace
}  // namespace scriptwells
