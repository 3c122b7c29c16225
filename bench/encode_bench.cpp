// The XML escape, beside a copy of the same text.
#include <benchmark/benchmark.h>

#include <string>

#include "support/wide_text_stream.h"

namespace qv::bench {
namespace {

constexpr std::size_t kUnits = 1'000'000;

// Every `period`-th unit is one of the five that the escape replaces; 0 means none.
WideString Text(std::size_t period) {
  const std::u16string special = u"<>&\"'";
  std::u16string text(kUnits, u'x');
  for (std::size_t i = 0; period != 0 && i < kUnits; i += period)
    text[i] = special[(i / period) % special.size()];
  return WideString(text);
}

void Encode(benchmark::State& state, std::size_t period) {
  const WideString text = Text(period);
  for (auto _ : state) benchmark::DoNotOptimize(EncodeXmlText(text).data());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kUnits * sizeof(char16_t)));
}

void CopyText(benchmark::State& state) {
  const WideString text = Text(0);
  for (auto _ : state) benchmark::DoNotOptimize(WideString(text.view()).data());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kUnits * sizeof(char16_t)));
}

BENCHMARK_CAPTURE(Encode, plain, 0)->Name("encode/plain");
BENCHMARK_CAPTURE(Encode, special, 20)->Name("encode/special_5_percent");
BENCHMARK(CopyText)->Name("encode/copy");

}  // namespace
}  // namespace qv::bench
