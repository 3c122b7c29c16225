// A warm Execute through everything, beside what libcurl alone needs for the same bytes.
#include <benchmark/benchmark.h>

#include "bare_client.h"
#include "bare_parse.h"
#include "canned_server.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/simple_host.h"
#include "samples.h"

namespace qv::bench {
namespace {

constexpr std::size_t kSmall = 200;
constexpr std::size_t kLarge = 1'000'000;

// A model with a session that the server did not open, so that every request is an Execute. Never destroyed:
// the end of any model removes the formaters of the process.
IConnectionModel* Model(const std::string& server) {
  IConnectionModel* const model = CreateConnectionModel().detach();
  const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model);
  ThrowIfFailed(raw->SetServer(FromUtf8(server), u""), model, IConnectionModel::kIid);
  ThrowIfFailed(model->SetUSID(u"5f3c6f1e0f8d4c3ba1d2e3f405162738"), model, IConnectionModel::kIid);
  return model;
}

CannedServer& Server() {
  static CannedServer server(StringAnswer());
  return server;
}

void Execute(benchmark::State& state, std::size_t units) {
  static IConnectionModel* const model = Model(Server().Url());
  const WideString script = Script(units);
  const IParametersPtr parameters = ThreeParameters();
  Variant answer;
  for (auto _ : state) {
    if (Failed(model->Execute(u"JavaScript", script, parameters.get(), &answer)))
      state.SkipWithError("failed");
    if (answer.Text() != u"hello") state.SkipWithError("wrong answer");
  }
}

void BareCurl(benchmark::State& state, std::size_t units) {
  const std::string body = ExecuteBody(Script(units), ThreeParameters());
  BareClient client(Server().Url(), body);
  for (auto _ : state)
    if (!client.Post(nullptr)) state.SkipWithError("failed");
}

void BareCurlAndParse(benchmark::State& state) {
  const std::string body = ExecuteBody(Script(kSmall), ThreeParameters());
  BareClient client(Server().Url(), body);
  for (auto _ : state) {
    std::string answer;
    if (!client.Post(&answer)) state.SkipWithError("failed");
    benchmark::DoNotOptimize(BareParse(answer));
  }
}

BENCHMARK_CAPTURE(Execute, small, kSmall)->Name("round_trip/execute")->UseRealTime();
BENCHMARK_CAPTURE(BareCurl, small, kSmall)->Name("round_trip/bare_curl")->UseRealTime();
BENCHMARK(BareCurlAndParse)->Name("round_trip/bare_curl_and_parse")->UseRealTime();
BENCHMARK_CAPTURE(Execute, large, kLarge)->Name("script_1MB/execute")->UseRealTime();
BENCHMARK_CAPTURE(BareCurl, large, kLarge)->Name("script_1MB/bare_curl")->UseRealTime();

}  // namespace
}  // namespace qv::bench
