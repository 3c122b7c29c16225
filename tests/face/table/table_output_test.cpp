// Tables as CSV, JSON and text.
#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

#include "tests/face/table/sample_table.h"

namespace scriptwells {
namespace {

Table OfTexts(const std::vector<const char16_t*>& texts) {
  std::vector<qv::cli::testing::BuiltRow> rows;
  rows.reserve(texts.size());
  for (const char16_t* text : texts) rows.push_back({text == nullptr ? qv::Variant() : qv::Text(text)});
  return BuiltTable({{u"a", qv::kColumnString}}, rows);
}

TEST(TableCsv, NamesThenRows) {
  const std::string rows =
      "city,people,founded\r\n"
      "Rome,2748109,0001-01-01\r\n"
      "\"Brasilia, DF\",-1,1960-04-21\r\n";
  EXPECT_EQ(Cities().ToCsv(), rows + ",,\r\n");
  EXPECT_EQ(Cities().ToCsv("NULL"), rows + "NULL,NULL,NULL\r\n");
}

TEST(TableCsv, EmptyTextIsNotAnEmptyCell) {
  EXPECT_EQ(OfTexts({u"", nullptr, u"x"}).ToCsv(), "a\r\n\"\"\r\n\r\nx\r\n");
  EXPECT_EQ(OfTexts({u"", nullptr, u"NULL", u"NULLS"}).ToCsv("NULL"),
            "a\r\n\"\"\r\nNULL\r\n\"NULL\"\r\nNULLS\r\n");
  const Table two = BuiltTable({{u"a", qv::kColumnString}, {u"b", qv::kColumnString}}, {{qv::Text(u"")}});
  EXPECT_EQ(two.ToCsv(), "a,b\r\n\"\",\r\n");
  EXPECT_EQ(two.ToCsv("-"), "a,b\r\n,-\r\n");
}

TEST(TableCsv, QuotesWhatReadersWouldSplit) {
  EXPECT_EQ(
      OfTexts({u"a,b", u"say \"x\"", u"a\nb", u"a\rb", u" a", u"a\t", u"=1+1", u"a b"}).ToCsv(),
      "a\r\n\"a,b\"\r\n\"say \"\"x\"\"\"\r\n\"a\nb\"\r\n\"a\rb\"\r\n\" a\"\r\n\"a\t\"\r\n=1+1\r\na b\r\n");
  EXPECT_EQ(BuiltTable({{u"a,b", qv::kColumnInt}, {u"", qv::kColumnInt}, {u"c\"", qv::kColumnInt}}, {})
                .ToCsv("NULL"),
            "\"a,b\",\"\",\"c\"\"\"\r\n");
}

TEST(TableCsv, NullMustNotNeedQuotes) {
  for (const char* null : {"a,b", " ", "x\n", "\"", "\xFF"}) {
    std::ostringstream out;
    EXPECT_EQ(Failure([&] { Cities().WriteCsv(out, null); }).substr(0, 16), "conversion: the ") << null;
    EXPECT_EQ(out.str(), "");
  }
}

TEST(TableCsv, IsUtf8WithoutByteOrderMark) {
  EXPECT_EQ(OfTexts({u"\u00E9\u2603\U0001F600"}).ToCsv(), "a\r\n\xC3\xA9\xE2\x98\x83\xF0\x9F\x98\x80\r\n");
}

TEST(TableJson, ColumnsThenRows) {
  EXPECT_EQ(Cities().ToJson(),
            R"({"columns":[{"name":"city","displayName":"city","type":"string"},)"
            R"({"name":"people","displayName":"people","type":"int"},)"
            R"({"name":"founded","displayName":"founded","type":"date"}],)"
            R"("rows":[["Rome",2748109,"0001-01-01"],["Brasilia, DF",-1,"1960-04-21"],[null,null,null]]})");
  EXPECT_EQ(BuiltTable({{u"a\"b", qv::kColumnString}}, {{qv::Text(u"c\\d\n\u2603")}}).ToJson(),
            R"({"columns":[{"name":"a\"b","displayName":"a\"b","type":"string"}],)"
            R"("rows":[["c\\d\n)"
            "\xE2\x98\x83\"]]}");
}

TEST(TableJson, CellsHaveTheFormOfTheirColumn) {
  const Table table =
      BuiltTable({{u"d", qv::kColumnDouble}, {u"t", qv::kColumnDateTime}, {u"s", qv::kColumnDuration}},
                 {{qv::R8(std::nan("")), qv::Date(45356), DurationCell(u"P1DT2H")},
                  {qv::R8(-std::numeric_limits<double>::infinity()), qv::Date(0)},
                  {qv::R8(1e300)}});
  const std::string json = table.ToJson();
  EXPECT_EQ(json.substr(json.find("\"rows\"")),
            R"("rows":[["NaN","2024-03-05T00:00:00","P1DT2H"],["-INF","1899-12-30T00:00:00",null],)"
            R"([1e+300,null,null]]})");
}

TEST(TableJson, WithoutColumns) {
  EXPECT_EQ(BuiltTable({}, {{}, {}}).ToJson(), R"({"columns":[],"rows":[[],[]]})");
  EXPECT_EQ(BuiltTable({}, {{}, {}}).ToCsv(), "\r\n\r\n\r\n");
}

TEST(TableJson, ValueWithATableIsTheSame) {
  EXPECT_EQ(Value(Cities()).ToJson(), Cities().ToJson());
}

TEST(TableText, AlignsAndPutsNumbersToTheRight) {
  EXPECT_EQ(Cities().ToString(),
            "city           people  founded\n"
            "Rome          2748109  0001-01-01\n"
            "Brasilia, DF       -1  1960-04-21\n");
  EXPECT_EQ(BuiltTable({{u"a", qv::kColumnInt}, {u"b", qv::kColumnDouble}}, {{qv::Int(10), qv::R8(0.5)}})
                .ToString(),
            " a    b\n10  0.5");
  EXPECT_EQ(BuiltTable({{u"a", qv::kColumnInt}}, {}).ToString(), "a");
}

TEST(TableText, EscapesWhatWouldBreakTheLine) {
  EXPECT_EQ(OfTexts({u"x\u001b[2Jy\nz", u"a\tb\r", u"\u202E"}).ToString(),
            "a\nx\\x1b[2Jy\\nz\na\\tb\\x0d\n\\u202e");
}

TEST(TableText, CountsCharactersNotBytes) {
  EXPECT_EQ(BuiltTable({{u"a", qv::kColumnString}, {u"b", qv::kColumnString}},
                       {{qv::Text(u"\u00E9\u2603"), qv::Text(u"x")}, {qv::Text(u"abc"), qv::Text(u"y")}})
                .ToString(),
            "a    b\n\xC3\xA9\xE2\x98\x83   x\nabc  y");
}

TEST(TableText, StreamHasTheSame) {
  std::ostringstream out;
  out << Cities();
  EXPECT_EQ(out.str(), Cities().ToString());
  EXPECT_EQ(Value(Cities()).ToString(), Cities().ToString());
}

// Takes this many bytes and then no more; counts the writes.
class FullDisk : public std::stringbuf {
 public:
  explicit FullDisk(std::size_t room) : room_(room) {}
  int Writes() const { return writes_; }

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    ++writes_;
    const auto taken = std::min<std::size_t>(room_, static_cast<std::size_t>(count));
    room_ -= taken;
    return std::stringbuf::xsputn(text, static_cast<std::streamsize>(taken));
  }

 private:
  std::size_t room_;
  int writes_ = 0;
};

TEST(TableStream, EndsWhenTheStreamFails) {
  const Table table = OfTexts(std::vector<const char16_t*>(1000, u"x"));
  FullDisk csvDisk(4);
  std::ostream csv(&csvDisk);
  table.WriteCsv(csv);
  EXPECT_FALSE(csv);
  EXPECT_EQ(csvDisk.Writes(), 2);
  FullDisk jsonDisk(70);
  std::ostream json(&jsonDisk);
  table.WriteJson(json);
  EXPECT_FALSE(json);
  EXPECT_LT(jsonDisk.Writes(), 7);
}

TEST(TableStream, FormatFlagsAreIgnored) {
  std::ostringstream out;
  out << std::setw(500) << std::setfill('*');
  Cities().WriteCsv(out);
  EXPECT_EQ(out.str(), Cities().ToCsv());
}

}  // namespace
}  // namespace scriptwells
