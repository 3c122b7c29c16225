// qv_bench [name filter...]: see README.md here.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "qvscriptwells/xml_library_hold.h"
#include "ratio_reporter.h"
#include "recordlist/register_formaters.h"

namespace {

void WarnAboutBuild() {
  if (std::strcmp(QV_BUILD_TYPE, "Release") != 0 && std::strcmp(QV_BUILD_TYPE, "RelWithDebInfo") != 0)
    std::puts("WARNING: built without optimisation (" QV_BUILD_TYPE "); the figures say little");
  if (std::strlen(QV_SANITIZE) != 0) std::puts("WARNING: built with sanitizers; the figures say nothing");
#ifndef NDEBUG
  std::puts("WARNING: assertions are on");
#endif
}

}  // namespace

int main(int argc, char** argv) {
  WarnAboutBuild();
  // Nine repetitions in random order, so that a slow moment of the machine strikes both sides of a ratio.
  char repetitions[] = "--benchmark_repetitions=9";
  char interleaving[] = "--benchmark_enable_random_interleaving=true";
  char aggregates[] = "--benchmark_report_aggregates_only=true";
  std::vector<char*> arguments(argv, argv + 1);
  arguments.insert(arguments.end(), {repetitions, interleaving, aggregates});
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  const qv::XmlLibraryHold hold;
  qv::RegisterFormaters();
  qv::bench::RatioReporter reporter(isatty(STDOUT_FILENO) == 1);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
