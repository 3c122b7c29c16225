// `scriptwells map` is killed at random moments and goes on: no script runs twice, and no result is lost.
#include <algorithm>
#include <csignal>
#include <random>
#include <thread>
#include <vector>

#include "tests/tools/transfer_server.h"
#include "tools/batch/csv_reader.h"

namespace qv::cli {
namespace {

using namespace testing;

constexpr int kRows = 600;
constexpr int kKills = 6;
// Takes 3 ms.
constexpr char kScript[] =
    "console.log('ran ' + parameters.id);"
    "const end = Date.now() + 3; while (Date.now() < end); parameters.id * 2";

bool Has(const std::vector<int>& sorted, int number) {
  return std::binary_search(sorted.begin(), sorted.end(), number);
}

class MapKilled : public ::testing::Test {
 protected:
  MapKilled() {
    std::string rows = "id:int\n";
    for (int i = 1; i <= kRows; ++i) rows += std::to_string(i) + "\n";
    folder_.Write("rows.csv", rows);
  }

  // The script counts itself: the service prints its console.
  Tool Mapped(const std::string& options = "") const {
    return service_.Joe("map -e", {kScript, folder_.Path("rows.csv")})
        .Add(Line("--jobs 8 --resume --results " + folder_.Path("out.csv") + " " + options));
  }

  // Ends by kill -9, or by itself if it is faster.
  void KillAfter(std::chrono::microseconds time) const {
    Process process(Mapped());
    std::this_thread::sleep_for(time);
    process.Signal(SIGKILL);
    process.Finish();
  }

  // How often the script ran for each row.
  std::vector<int> Runs() {
    service_.Joe("run -e 'console.log(\"the end\")'").Run();
    std::vector<int> runs(kRows + 1);
    for (std::string line; !Holds(line, "the end"); line = service_.Itself().ReadErrorLine()) {
      const std::size_t found = line.find("ran ");
      if (found != std::string::npos) ++runs[static_cast<std::size_t>(std::stoi(line.substr(found + 4)))];
    }
    return runs;
  }

  // The numbers of a column.
  std::vector<int> Column(const std::string& file, std::size_t column) const {
    std::vector<int> numbers;
    if (folder_.Read(file).empty()) return numbers;
    CsvReader reader(folder_.Path(file));
    Words cells;
    reader.Next(cells);
    while (reader.Next(cells)) numbers.push_back(std::stoi(cells[column]));
    return numbers;
  }

  TemporaryDirectory folder_;
  ServeProcess service_;
};

TEST_F(MapKilled, EachRowHasOneResultOrIsNamed) {
  std::mt19937 random(std::random_device{}());
  std::uniform_int_distribution<int> microseconds(0, 400'000);
  for (int kill = 0; kill < kKills; ++kill) KillAfter(std::chrono::microseconds(microseconds(random)));
  const Outcome last = Mapped().Run();
  const std::vector<int> done = Column("out.csv", 0);
  const std::vector<int> unknown = Column("out.failed.csv", 1);
  EXPECT_EQ(last.exit, unknown.empty() ? 0 : 1) << last.err;

  const std::vector<int> runs = Runs();
  for (int row = 1; row <= kRows; ++row) {
    const bool hasResult = Has(done, row);
    const int count = runs[static_cast<std::size_t>(row)];
    EXPECT_NE(hasResult, Has(unknown, row)) << row;
    EXPECT_TRUE(count == 1 || (count == 0 && !hasResult)) << row << " ran " << count << " times";
  }
  EXPECT_EQ(done.size() + unknown.size(), static_cast<std::size_t>(kRows));
  EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
  EXPECT_EQ(Holds(last.err, "it is not known whether the script ran: "), !unknown.empty()) << last.err;
  std::printf("%d kills: %zu rows with a result, %zu unknown\n", kKills, done.size(), unknown.size());

  const Outcome retried = Mapped("--retry-unknown").Run();
  EXPECT_EQ(retried.exit, 0) << retried.err;
  EXPECT_EQ(Column("out.csv", 0).size(), static_cast<std::size_t>(kRows));
}

}  // namespace
}  // namespace qv::cli
