// The C++ program that the package is measured against: the same calls on the same service.
//   face_calls URL     for each number on standard input makes so many calls, and prints their CPU
//   time in ns
// A call reads each cell of a table once.
#include <ctime>
#include <iostream>

#include "scriptwells/scriptwells.h"

namespace {

long long CpuTime() {
  timespec time = {};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

std::size_t ReadCells(const scriptwells::Table& table) {
  std::size_t full = 0;
  for (const scriptwells::Row& row : table)
    for (std::size_t column = 0; column < row.size(); ++column) full += row[column].Get().IsEmpty() ? 0 : 1;
  return full;
}

std::size_t Call(scriptwells::Session& session) {
  const scriptwells::Value answer = session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}});
  return answer.Is<scriptwells::Table>() ? ReadCells(answer.AsTable()) : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    scriptwells::Session session = scriptwells::Session::Adopt(argv[1], "A");
    std::size_t seen = Call(session);
    for (long calls = 0; std::cin >> calls;) {
      const long long start = CpuTime();
      for (long i = 0; i < calls; ++i) seen += Call(session);
      std::cout << CpuTime() - start << std::endl;
    }
    return seen > 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
