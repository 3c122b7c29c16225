// Tables in loops, and on several threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "scriptwells/value.h"
#include "tests/face/table/sample_table.h"

namespace scriptwells {
namespace {

Value Answer() {
  return Cities();
}

TEST(TableRows, LoopOverATemporary) {
  std::string cities;
  for (const auto& row : Answer().AsTable()) cities += row["city"].ValueOr<std::string>("-") + ";";
  EXPECT_EQ(cities, "Rome;Brasilia, DF;-;");
  int people = 0;
  for (const Row row : Answer().AsTable()) people += row[1].ValueOr(0);
  EXPECT_EQ(people, 2748108);
}

TEST(TableRows, TypedTuplesOfATemporary) {
  std::string all;
  for (auto [city, people, founded] :
       Answer().AsTable().As<std::optional<std::string>, std::optional<int>, std::optional<Date>>())
    all += city.value_or("-") + " " + std::to_string(people.value_or(0)) + " " +
           (founded ? founded->ToString() : "-") + ";";
  EXPECT_EQ(all, "Rome 2748109 0001-01-01;Brasilia, DF -1 1960-04-21;- 0 -;");
}

TEST(TableRows, TypedTuplesOfNamedColumns) {
  const Table table = Cities();
  std::vector<std::pair<int, std::string>> rows;
  for (auto [people, city] : table.As<std::optional<int>, std::optional<std::string>>("people", "city"))
    rows.emplace_back(people.value_or(0), city.value_or("-"));
  const std::vector<std::pair<int, std::string>> expected = {
      {2748109, "Rome"}, {-1, "Brasilia, DF"}, {0, "-"}};
  EXPECT_EQ(rows, expected);
  EXPECT_EQ(table.As<Value>("founded").size(), 3U);
}

TEST(TableRows, TypedTuplesRefuseWrongTypesAndNames) {
  const Table table = Cities();
  EXPECT_EQ(Failure([&] { table.As<std::string>(); }),
            "error (conversion): 1 type for a table with 3 columns");
  EXPECT_EQ(Failure([] { Table().As<int, int>(); }),
            "error (conversion): 2 types for a table with 0 columns");
  EXPECT_EQ(Failure([&] { table.As<int>("peple"); }).substr(0, 48),
            "error (conversion): there is no column 'peple'; ");
  EXPECT_EQ(Failure([&] {
              for (auto [people] : table.As<int>("people")) static_cast<void>(people);
            }),
            Failure([] { Value().As<int>(); }) + ", in column 'people', row 2");
}

TEST(TableRows, ColumnAsVector) {
  EXPECT_EQ(Cities().ColumnAs<std::optional<int>>("people"),
            (std::vector<std::optional<int>>{2748109, -1, std::nullopt}));
  EXPECT_EQ(Cities().ColumnAs<Value>("city").at(2), Value());
  EXPECT_TRUE(BuiltTable({{u"a", qv::kColumnInt}}, {}).ColumnAs<int>("a").empty());
}

TEST(TableRows, ServeAlgorithms) {
  const Table table = Cities();
  const auto found =
      std::find_if(table.begin(), table.end(), [](const Row& row) { return row["people"].ValueOr(0) < 0; });
  ASSERT_NE(found, table.end());
  EXPECT_EQ((*found).Index(), 1U);
  const std::vector<Row> rows(table.begin(), table.end());
  EXPECT_EQ(rows.at(2).Index(), 2U);
}

// Durations are objects whose counts are not atomic.
TEST(TableRows, AreReadOnThreads) {
  constexpr int kRows = 500;
  std::vector<qv::cli::testing::BuiltRow> rows;
  rows.reserve(kRows);
  for (int i = 0; i < kRows; ++i) rows.push_back({qv::Text(u"text"), DurationCell(u"P1DT2H")});
  const Table table = BuiltTable({{u"text", qv::kColumnString}, {u"span", qv::kColumnDuration}}, rows);
  rows.clear();
  std::vector<int> hours(4);
  std::vector<std::thread> threads;
  threads.reserve(hours.size());
  for (int& sum : hours)
    threads.emplace_back([&sum, table] {
      for (const Row& row : table) {
        if (row["text"].As<std::string>() == "text") sum += row["span"].As<Duration>().hours;
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(hours, std::vector<int>(4, 2 * kRows));
}

TEST(TableRows, EndOnAnotherThread) {
  Table table = BuiltTable({{u"span", qv::kColumnDuration}}, {{DurationCell(u"P1D")}});
  Row row = table[0];
  std::thread([taken = std::move(table)]() mutable { taken = Table(); }).join();
  EXPECT_EQ(row[0].As<Duration>().days, 1);
  std::thread([taken = std::move(row)] { EXPECT_EQ(taken[0].ToString(), "P1D"); }).join();
}

}  // namespace
}  // namespace scriptwells
