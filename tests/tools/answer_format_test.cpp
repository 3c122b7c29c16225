#include "tools/answer_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qvscriptwells/create_objects.h"

namespace qv::cli {
namespace {

std::string Json(const Variant& value) {
  return FormatAnswer(OutputFormat::kJson, value);
}
std::string Text(const Variant& value) {
  return FormatAnswer(OutputFormat::kText, value);
}

TEST(AnswerFormat, WholeNumbers) {
  EXPECT_EQ(Json(Variant::FromInt(42)), "{\"type\":\"int\",\"value\":42,\"tag\":22}\n");
  EXPECT_EQ(Json(Variant::FromByte(-128)), "{\"type\":\"byte\",\"value\":-128,\"tag\":16}\n");
  EXPECT_EQ(Json(Variant::FromShort(32767)), "{\"type\":\"short\",\"value\":32767,\"tag\":2}\n");
  EXPECT_EQ(Text(Variant::FromInt(-7)), "-7\n");
  EXPECT_EQ(Text(Variant::FromByte(65)), "65\n");
}

TEST(AnswerFormat, LongThatReadersWouldRoundIsAString) {
  EXPECT_EQ(Json(Variant::FromLong(9007199254740991)),
            "{\"type\":\"long\",\"value\":9007199254740991,\"tag\":20}\n");
  EXPECT_EQ(Json(Variant::FromLong(9007199254740992)),
            "{\"type\":\"long\",\"value\":\"9007199254740992\",\"tag\":20}\n");
  EXPECT_EQ(Json(Variant::FromLong(-9007199254740992)),
            "{\"type\":\"long\",\"value\":\"-9007199254740992\",\"tag\":20}\n");
  EXPECT_EQ(Text(Variant::FromLong(9223372036854775807)), "9223372036854775807\n");
}

TEST(AnswerFormat, NumbersHaveTheFewestDigitsThatReadBack) {
  EXPECT_EQ(Text(Variant::FromDouble(0.1)), "0.1\n");
  EXPECT_EQ(Text(Variant::FromDouble(0.30000000000000004)), "0.30000000000000004\n");
  EXPECT_EQ(Text(Variant::FromFloat(0.1F)), "0.1\n");
  EXPECT_EQ(Text(Variant::FromDouble(3.0)), "3\n");
  EXPECT_EQ(Json(Variant::FromDouble(0.30000000000000004)),
            "{\"type\":\"double\",\"value\":0.30000000000000004,\"tag\":5}\n");
  EXPECT_EQ(Json(Variant::FromFloat(0.1F)), "{\"type\":\"float\",\"value\":0.1,\"tag\":4}\n");
}

TEST(AnswerFormat, NumbersBeyondJsonAreStrings) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Json(Variant::FromDouble(std::nan(""))), "{\"type\":\"double\",\"value\":\"NaN\",\"tag\":5}\n");
  EXPECT_EQ(Json(Variant::FromDouble(-infinity)), "{\"type\":\"double\",\"value\":\"-INF\",\"tag\":5}\n");
  EXPECT_EQ(Json(Variant::FromFloat(std::numeric_limits<float>::infinity())),
            "{\"type\":\"float\",\"value\":\"INF\",\"tag\":4}\n");
  EXPECT_EQ(Text(Variant::FromDouble(infinity)), "INF\n");
}

TEST(AnswerFormat, Booleans) {
  EXPECT_EQ(Json(Variant::FromBool(true)), "{\"type\":\"boolean\",\"value\":true,\"tag\":11}\n");
  EXPECT_EQ(Text(Variant::FromBool(false)), "false\n");
}

TEST(AnswerFormat, StringsKeepEveryCharacter) {
  EXPECT_EQ(Json(Variant::FromString(u"a\"b\\\n\u00E9\U0001F600")),
            "{\"type\":\"string\",\"value\":\"a\\\"b\\\\\\n\xC3\xA9\xF0\x9F\x98\x80\",\"tag\":8}\n");
  EXPECT_EQ(Text(Variant::FromString(u"two\nlines")), "two\nlines\n");
  EXPECT_EQ(Json(Variant::FromString(u"")), "{\"type\":\"string\",\"value\":\"\",\"tag\":8}\n");
  EXPECT_EQ(Json(Variant::FromString(nullptr)), "{\"type\":\"string\",\"value\":null,\"tag\":8}\n");
}

TEST(AnswerFormat, EmptyAndNullAreTold) {
  EXPECT_EQ(Json(Variant()), "{\"type\":\"empty\",\"value\":null,\"tag\":0}\n");
  EXPECT_EQ(Json(Variant::Null()), "{\"type\":\"null\",\"value\":null,\"tag\":1}\n");
  EXPECT_EQ(Text(Variant()), "\n");
}

TEST(AnswerFormat, DatesAndTimesAreIsoTexts) {
  EXPECT_EQ(Text(Variant::FromDate(45356)), "2024-03-05\n");
  EXPECT_EQ(Text(Variant::FromDate(45356.5)), "2024-03-05T12:00:00\n");
  EXPECT_EQ(Text(Variant::FromDate(0.25)), "06:00:00\n");
  EXPECT_EQ(Json(Variant::FromDate(45356)),
            "{\"type\":\"date\",\"value\":\"2024-03-05\",\"tag\":7,\"serial\":45356.0}\n");
  EXPECT_EQ(
      Json(Variant::FromDate(45356.42743055556)),
      "{\"type\":\"datetime\",\"value\":\"2024-03-05T10:15:30\",\"tag\":7,\"serial\":45356.42743055556}\n");
  EXPECT_EQ(Json(Variant::FromDate(0.25)),
            "{\"type\":\"time\",\"value\":\"06:00:00\",\"tag\":7,\"serial\":0.25}\n");
  EXPECT_EQ(FormatAnswer(OutputFormat::kTable, Variant::FromDate(45356.5)),
            "NAME   TYPE     VALUE\nanswer datetime 2024-03-05T12:00:00\n");
}

TEST(AnswerFormat, DayBeforeDayZeroIsAPointInTime) {
  EXPECT_EQ(Text(Variant::FromDate(-0.25)), "1899-12-29T18:00:00\n");
  EXPECT_EQ(Json(Variant::FromDate(-0.25)),
            "{\"type\":\"datetime\",\"value\":\"1899-12-29T18:00:00\",\"tag\":7,\"serial\":-0.25}\n");
}

TEST(AnswerFormat, DateThatIsNoneIsItsNumber) {
  EXPECT_EQ(Text(Variant::FromDate(2958466)), "2958466\n");
  EXPECT_EQ(Json(Variant::FromDate(2958466.5)),
            "{\"type\":\"datetime\",\"value\":\"2958466.5\",\"tag\":7,\"serial\":2958466.5}\n");
  EXPECT_EQ(Json(Variant::FromDate(std::nan(""))),
            "{\"type\":\"datetime\",\"value\":\"NaN\",\"tag\":7,\"serial\":\"NaN\"}\n");
}

TEST(AnswerFormat, DurationsHaveTheirCounts) {
  const Variant span = Variant::FromObject(CreateDuration(u"P1DT2H").get());
  EXPECT_EQ(Text(span), "P1DT2H\n");
  EXPECT_EQ(
      Json(span),
      "{\"type\":\"duration\",\"value\":\"P1DT2H\",\"tag\":13,\"negative\":false,\"years\":0,\"months\":0,"
      "\"days\":1,\"hours\":2,\"minutes\":0,\"seconds\":0}\n");
  EXPECT_EQ(FormatAnswer(OutputFormat::kTable, span), "NAME   TYPE     VALUE\nanswer duration P1DT2H\n");
}

// The text has 6 significant digits, the number all of them.
TEST(AnswerFormat, SecondsOfADurationKeepTheirDigitsInJson) {
  EXPECT_EQ(
      Json(Variant::FromObject(CreateDuration(u"-P1Y2M3DT4H5M12345.678S").get())),
      "{\"type\":\"duration\",\"value\":\"-P1Y2M3DT4H5M12345.7S\",\"tag\":13,\"negative\":true,\"years\":1,"
      "\"months\":2,\"days\":3,\"hours\":4,\"minutes\":5,\"seconds\":12345.678}\n");
}

// What another party's text makes of a lenient reader must not end in bad JSON.
TEST(AnswerFormat, SecondsThatAreNoNumberAreStrings) {
  EXPECT_NE(Json(Variant::FromObject(CreateDuration(u"PTINFS").get())).find(",\"seconds\":\"INF\"}"),
            std::string::npos);
  EXPECT_NE(Json(Variant::FromObject(CreateDuration(u"PTNANS").get())).find(",\"seconds\":\"NaN\"}"),
            std::string::npos);
}

TEST(AnswerFormat, UrlsHaveLinkAndCaption) {
  EXPECT_EQ(Json(Variant::FromObject(CreateUrl().get())),
            "{\"type\":\"url\",\"value\":\"\",\"tag\":13,\"caption\":\"\"}\n");
  EXPECT_EQ(Text(Variant::FromObject(CreateUrl().get())), "\n");
}

TEST(AnswerFormat, TablesHaveATypeName) {
  EXPECT_EQ(TypeName(Variant::FromObject(CreateRecordList().get())), "recordlist");
}

TEST(AnswerFormat, OtherObjectsHaveNoText) {
  EXPECT_EQ(Json(Variant::FromObject(nullptr)), "{\"type\":\"object\",\"value\":null,\"tag\":13}\n");
  EXPECT_EQ(Json(Variant::FromObject(CreateParameters().get())),
            "{\"type\":\"object\",\"value\":\"\",\"tag\":13}\n");
}

TEST(AnswerFormat, UnknownTagIsToldByItsNumber) {
  EXPECT_EQ(Json(Variant::FromRaw(VT_UI1, VariantData())),
            "{\"type\":\"unknown\",\"value\":null,\"tag\":17}\n");
}

TEST(AnswerFormat, CsvHasAHeadAndOneField) {
  const auto csv = [](const Variant& value) { return FormatAnswer(OutputFormat::kCsv, value); };
  EXPECT_EQ(csv(Variant::FromInt(42)), "value\r\n42\r\n");
  EXPECT_EQ(csv(Variant::FromString(u"a,\"b\"")), "value\r\n\"a,\"\"b\"\"\"\r\n");
  EXPECT_EQ(csv(Variant::FromDate(45356.5)), "value\r\n2024-03-05T12:00:00\r\n");
  EXPECT_EQ(csv(Variant::FromString(u"")), "value\r\n\"\"\r\n");
  EXPECT_EQ(csv(Variant()), "value\r\n\r\n");
  EXPECT_EQ(FormatAnswer(OutputFormat::kCsv, Variant(), "NULL"), "value\r\nNULL\r\n");
  EXPECT_EQ(FormatAnswer(OutputFormat::kCsv, Variant::FromString(u""), "NULL"), "value\r\n\"\"\r\n");
  EXPECT_EQ(FormatAnswer(OutputFormat::kCsv, Variant::FromString(u"NULL"), "NULL"), "value\r\n\"NULL\"\r\n");
}

TEST(AnswerFormat, NoValueIsEmptyOrNull) {
  EXPECT_FALSE(HasValue(Variant()));
  EXPECT_FALSE(HasValue(Variant::Null()));
  EXPECT_FALSE(HasValue(Variant::FromString(nullptr)));
  EXPECT_FALSE(HasValue(Variant::FromObject(nullptr)));
  EXPECT_FALSE(HasValue(Variant::FromRaw(VT_UI1, VariantData())));
  EXPECT_TRUE(HasValue(Variant::FromString(u"")));
  EXPECT_TRUE(HasValue(Variant::FromInt(0)));
  EXPECT_TRUE(HasValue(Variant::FromBool(false)));
}

TEST(AnswerFormat, TableHasOneRow) {
  EXPECT_EQ(FormatAnswer(OutputFormat::kTable, Variant::FromInt(42)), "NAME   TYPE VALUE\nanswer int  42\n");
}

}  // namespace
}  // namespace qv::cli
