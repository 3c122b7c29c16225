// From an answer's text to its value, beside the XML library's parse of the same bytes.
#include <benchmark/benchmark.h>

#include "bare_parse.h"
#include "samples.h"
#include "soap/soap_response.h"

namespace qv::bench {
namespace {

void Read(benchmark::State& state) {
  const WideString answer = FromUtf8(StringAnswer());
  for (auto _ : state) {
    CSOAPResponse response;
    response.SetText(u"Execute", answer, false);
    response.ParseText();
    if (response.Value().Text() != u"hello") state.SkipWithError("wrong answer");
  }
}

void Bare(benchmark::State& state) {
  const std::string answer = StringAnswer();
  for (auto _ : state) benchmark::DoNotOptimize(BareParse(answer));
}

BENCHMARK(Read)->Name("read_string/response");
BENCHMARK(Bare)->Name("read_string/bare_parse");

}  // namespace
}  // namespace qv::bench
