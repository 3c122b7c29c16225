// qv_bench_peer NAME ROWS URL: one client, measured. 0 rows: the answer is a string.
#include <cstdlib>
#include <cstring>

#include "peer.h"

namespace {

struct Row {
  const char* name;
  qv::bench::MakePeer make;
};

constexpr Row kPeers[] = {
    {"curl", &qv::bench::MakeCurl},
    {"stock_tree", &qv::bench::MakeStockTree},
    {"ours", &qv::bench::MakeOurs},
    {"ours_walk", &qv::bench::MakeOursWalk},
    {"ours_walk_only", &qv::bench::MakeOursWalkOnly},
    {"face", &qv::bench::MakeFace},
    {"face_walk", &qv::bench::MakeFaceWalk},
    {"one_thread", &qv::bench::MakeOneThread},
    {"eight_threads", &qv::bench::MakeEightThreads},
    {"writer", &qv::bench::MakeWriter},
#ifdef QV_BENCH_GSOAP
    {"gsoap", &qv::bench::MakeGsoap},
    {"gsoap_walk", &qv::bench::MakeGsoapWalk},
#endif
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  for (const Row& row : kPeers)
    if (std::strcmp(row.name, argv[1]) == 0)
      return qv::bench::Measure(row.make, {argv[3], std::strtoul(argv[2], nullptr, 10)});
  return 3;  // not built
}
