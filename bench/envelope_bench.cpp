// Writing the envelope of Execute, beside copying the finished text.
#include <benchmark/benchmark.h>

#include <string>

#include "samples.h"
#include "script/execute_command.h"

namespace qv::bench {
namespace {

void Write(benchmark::State& state, std::size_t units) {
  const NamedArguments map = ExecuteArguments(Script(units), ThreeParameters());
  for (auto _ : state) {
    WideTextStream stream;
    CExecuteCommand().Serialize(stream, u"Execute", u"", u"", map);
    benchmark::DoNotOptimize(stream.TakeText().data());
  }
}

void CopyText(benchmark::State& state, std::size_t units) {
  WideTextStream stream;
  CExecuteCommand().Serialize(stream, u"Execute", u"", u"",
                              ExecuteArguments(Script(units), ThreeParameters()));
  const WideString text = stream.TakeText();
  for (auto _ : state) benchmark::DoNotOptimize(WideString(text.view()).data());
}

BENCHMARK_CAPTURE(Write, small, 200)->Name("envelope_200/write");
BENCHMARK_CAPTURE(CopyText, small, 200)->Name("envelope_200/copy");
BENCHMARK_CAPTURE(Write, large, 1'000'000)->Name("envelope_1MB/write");
BENCHMARK_CAPTURE(CopyText, large, 1'000'000)->Name("envelope_1MB/copy");

}  // namespace
}  // namespace qv::bench
