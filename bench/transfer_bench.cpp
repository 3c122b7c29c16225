// A file of 256 MB up and down through the HTTP component, beside what libcurl's easy interface needs for it.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "bare_client.h"
#include "bulk_server.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/http_component.h"

namespace qv::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kBytes = std::uint64_t{256} << 20;

// The files of both sides.
TemporaryDirectory& Files() {
  static TemporaryDirectory files;
  if (files.Count() == 0) fs::resize_file(files.Write("source", ""), kBytes);
  return files;
}

BulkServer& Server() {
  static BulkServer server(false);
  return server;
}

// One exchange, as the library makes it.
void Exchange(const WideString& verb, const WideString& path, HRESULT (*transfer)(IHttpRequest* request)) {
  IHttpSessionPtr session;
  ThrowIfFailed(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IHttpSession::kIid, Put(session)));
  ThrowIfFailed(session->Open(u"http", u"127.0.0.1", Server().Port(), u"", u"", u""));
  IHttpRequestPtr request;
  ThrowIfFailed(session->OpenRequest(verb, path, u"*/*", 0, Put(request)));
  ThrowIfFailed(transfer(request.get()));
  ThrowIfFailed(request->Close());
  ThrowIfFailed(session->Close());
}

HRESULT SendSource(IHttpRequest* request) {
  return request->SendFile(FromUtf8(Files().Path("source")));
}

HRESULT ReceiveTarget(IHttpRequest* request) {
  const HRESULT sent = request->Send(u"", u"");
  std::int32_t count = 0;
  return Failed(sent) ? sent : request->ReadToFile(FromUtf8(Files().Path("target")), &count);
}

void CheckTaken(benchmark::State& state, std::uint64_t before) {
  if (Server().BytesTaken() != before + kBytes) state.SkipWithError("not all has arrived");
}
void CheckTarget(benchmark::State& state) {
  if (fs::file_size(Files().Path("target")) != kBytes) state.SkipWithError("not all has arrived");
}

void ComponentUpload(benchmark::State& state) {
  const std::uint64_t before = Server().BytesTaken();
  for (auto _ : state) Exchange(u"POST", u"/up", &SendSource);
  CheckTaken(state, before);
  state.SetBytesProcessed(static_cast<std::int64_t>(kBytes));
}

void BareUpload(benchmark::State& state) {
  static BareTransfer client(Server().Url() + "/up");
  const std::uint64_t before = Server().BytesTaken();
  for (auto _ : state) client.Upload(Files().Path("source"));
  CheckTaken(state, before);
  state.SetBytesProcessed(static_cast<std::int64_t>(kBytes));
}

void ComponentDownload(benchmark::State& state) {
  const WideString path = FromUtf8("/" + std::to_string(kBytes));
  for (auto _ : state) Exchange(u"GET", path, &ReceiveTarget);
  CheckTarget(state);
  state.SetBytesProcessed(static_cast<std::int64_t>(kBytes));
}

void BareDownload(benchmark::State& state) {
  static BareTransfer client(Server().FileUrl(kBytes));
  for (auto _ : state) client.Download(Files().Path("target"));
  CheckTarget(state);
  state.SetBytesProcessed(static_cast<std::int64_t>(kBytes));
}

constexpr auto kUnit = benchmark::kMillisecond;
BENCHMARK(ComponentUpload)->Name("upload_256MB/component")->UseRealTime()->Unit(kUnit)->Iterations(1);
BENCHMARK(BareUpload)->Name("upload_256MB/bare_curl")->UseRealTime()->Unit(kUnit)->Iterations(1);
BENCHMARK(ComponentDownload)->Name("download_256MB/component")->UseRealTime()->Unit(kUnit)->Iterations(1);
BENCHMARK(BareDownload)->Name("download_256MB/bare_curl")->UseRealTime()->Unit(kUnit)->Iterations(1);

}  // namespace
}  // namespace qv::bench
