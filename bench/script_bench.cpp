// A warm Execute with a large script, beside what libcurl alone needs for the same bytes.
#include <benchmark/benchmark.h>

#include "bare_client.h"
#include "canned_server.h"
#include "sample_model.h"
#include "samples.h"

namespace qv::bench {
namespace {

constexpr std::size_t kLarge = 1'000'000;

CannedServer& Server() {
  static CannedServer server(StringAnswer());
  return server;
}

// The model is never destroyed: the end of any model removes the formaters of the process.
void Execute(benchmark::State& state) {
  static IConnectionModel* const model = SampleModel(Server().Url()).detach();
  const WideString script = Script(kLarge);
  const IParametersPtr parameters = ThreeParameters();
  Variant answer;
  for (auto _ : state) {
    if (Failed(model->Execute(u"JavaScript", script, parameters.get(), &answer)))
      state.SkipWithError("failed");
    if (answer.Text() != u"hello") state.SkipWithError("wrong answer");
  }
}

void BareCurl(benchmark::State& state) {
  const std::string body = ExecuteBody(Script(kLarge), ThreeParameters());
  BareClient client(Server().Url(), body);
  for (auto _ : state)
    if (!client.Post(nullptr)) state.SkipWithError("failed");
}

BENCHMARK(Execute)->Name("script_1MB/execute")->UseRealTime();
BENCHMARK(BareCurl)->Name("script_1MB/bare_curl")->UseRealTime();

}  // namespace
}  // namespace qv::bench
