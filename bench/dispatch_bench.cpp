// A member reached by id and by name, beside the plain call.
#include <benchmark/benchmark.h>

#include "qvscriptwells/create_objects.h"

namespace qv::bench {
namespace {

constexpr DISPID kServerName = 7;

IQvScriptwellsPtr Client() {
  IQvScriptwellsPtr client = CreateQvScriptwells();
  client->put_ServerName(u"http://127.0.0.1:8080");
  return client;
}

void Plain(benchmark::State& state) {
  const IQvScriptwellsPtr client = Client();
  for (auto _ : state) {
    WideString text;
    if (Failed(client->get_ServerName(&text))) state.SkipWithError("failed");
    benchmark::DoNotOptimize(text.data());
  }
}

void ById(benchmark::State& state) {
  const IQvScriptwellsPtr client = Client();
  const DISPPARAMS none;
  for (auto _ : state) {
    Variant text;
    if (Failed(client->Invoke(kServerName, Guid{}, 0, DISPATCH_PROPERTYGET, &none, &text, nullptr, nullptr)))
      state.SkipWithError("failed");
    benchmark::DoNotOptimize(text.Data().bstrVal);
  }
}

// The last row of the client's table, and of the longest one.
void FindName(benchmark::State& state, IDispatch* object, const char16_t* name) {
  for (auto _ : state) {
    DISPID id = 0;
    if (Failed(object->GetIDsOfNames(Guid{}, &name, 1, 0, &id))) state.SkipWithError("failed");
    benchmark::DoNotOptimize(id);
  }
}
void FindInClient(benchmark::State& state) {
  FindName(state, Client().get(), u"put_proxy");
}
void FindInDuration(benchmark::State& state) {
  FindName(state, CreateDuration().get(), u"put_negative");
}

BENCHMARK(Plain)->Name("dispatch/plain_call")->Iterations(1'000'000);
BENCHMARK(ById)->Name("dispatch/invoke_by_id")->Iterations(1'000'000);
BENCHMARK(FindInClient)->Name("dispatch/id_of_name_client")->Iterations(1'000'000);
BENCHMARK(FindInDuration)->Name("dispatch/id_of_name_duration")->Iterations(1'000'000);

}  // namespace
}  // namespace qv::bench
