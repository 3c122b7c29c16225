// qv_bench_server ROWS...: a canned server for each number of rows, 0 for the answer that is a string. Prints
// their addresses, one a line, and serves until standard input ends.
#include <cstdio>
#include <cstdlib>
#include <list>

#include "canned_server.h"
#include "samples.h"
#include "table_samples.h"

int main(int argc, char** argv) {
  std::list<qv::bench::CannedServer> servers;
  for (int i = 1; i < argc; ++i) {
    const std::size_t rows = std::strtoul(argv[i], nullptr, 10);
    servers.emplace_back(rows == 0 ? qv::bench::StringAnswer() : qv::bench::TableAnswer(rows));
    std::printf("%s\n", servers.back().Url().c_str());
  }
  static_cast<void>(std::fflush(stdout));
  while (std::getchar() != EOF) continue;
  return 0;
}
