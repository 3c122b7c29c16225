// A table of 1,000 rows from a script that really runs: a warm Execute against the development service,
// beside libcurl alone with the same request.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bare_client.h"
#include "devservice/service.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/simple_host.h"
#include "samples.h"

namespace qv::bench {
namespace {

constexpr char16_t kScript[] =
    u"Array.from({length: 1000}, (_, i) => ({id: i, name: 'customer ' + i, balance: i * 1.25, active: i % 2 "
    u"== 0}))";

// The service, and one session on it. Never ended: the end of any model removes the formaters of the process.
struct Table {
  Table() : service(Options()) {
    service.Start();
    const IQvClientServicesPtr services = CreateSimpleHost({});
    model = CreateConnectionModel(FromUtf8(service.Url()), u"", services.get()).detach();
    ThrowIfFailed(model->CreateUserSession(u"Username=joe;Password=secret;"));
    const ISimpleHostPtr host = As<ISimpleHost>(services);
    SimpleHostSession session;
    host->GetSession(&session);
    usid = ToUtf8(session.usid);
  }

  static devservice::ServiceOptions Options() {
    devservice::ServiceOptions options;
    options.workerCommand = {SCRIPT_WORKER_PATH};
    return options;
  }

  devservice::Service service;
  IConnectionModel* model = nullptr;
  std::string usid;
};

Table& TheTable() {
  static Table* const table = new Table;
  return *table;
}

void Execute(benchmark::State& state) {
  Table& table = TheTable();
  const IParametersPtr parameters = ThreeParameters();
  Variant answer;
  for (auto _ : state) {
    if (Failed(table.model->Execute(u"JavaScript", kScript, parameters.get(), &answer)))
      state.SkipWithError("failed");
    if (answer.Tag() != VT_UNKNOWN) state.SkipWithError("wrong answer");
  }
}

std::string Body(const std::string& usid) {
  std::string body = ExecuteBody(kScript, ThreeParameters());
  return body.replace(body.find(kSampleSession), sizeof kSampleSession - 1, usid);
}

void BareCurl(benchmark::State& state) {
  Table& table = TheTable();
  const std::string body = Body(table.usid);
  BareClient client(table.service.Url(), body);
  for (auto _ : state) {
    std::string answer;
    if (!client.Post(&answer)) state.SkipWithError("failed");
    if (answer.find("customer 999") == std::string::npos) state.SkipWithError("wrong answer");
  }
}

BENCHMARK(Execute)->Name("service_table_1k/execute")->UseRealTime();
BENCHMARK(BareCurl)->Name("service_table_1k/bare_curl")->UseRealTime();

}  // namespace
}  // namespace qv::bench
