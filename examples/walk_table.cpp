// Walks a table that a script answers: its columns, its rows, one column alone, rows as tuples, and as CSV.
//   walk_table http://127.0.0.1:8080
#include <iostream>
#include <numeric>
#include <optional>

#include <scriptwells/scriptwells.h>

namespace {

constexpr char kScript[] = "[{city: 'Rome', people: 2748109}, {city: 'Bern', people: 134591}]";

void WalkTable(const scriptwells::Table& table) {
  for (const scriptwells::Column& column : table.Columns())
    std::cout << column.name << " (" << column.typeName << ")\n";

  for (const auto& row : table) std::cout << row["city"] << " " << row["people"] << "\n";

  for (auto [city, people] : table.As<std::string, std::optional<int>>())
    if (people && *people > 1'000'000) std::cout << city << " is large\n";

  const std::vector<int> people = table.ColumnAs<int>("people");
  std::cout << std::accumulate(people.begin(), people.end(), 0) << " in all\n";

  table.WriteCsv(std::cout);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    scriptwells::Session session(argc > 1 ? argv[1] : "http://127.0.0.1:8080", {"joe", "secret"});
    WalkTable(session.Run(kScript).AsTable());
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
