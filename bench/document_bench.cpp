// A script document of 5 MB: its tree back to text, and the whole way from file to request, beside the XML
// library's parse of the same bytes.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "bare_parse.h"
#include "samples.h"
#include "script/execute_command.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_serializer.h"

namespace qv::bench {
namespace {

constexpr std::size_t kBytes = 5'000'000;

std::string Document() {
  std::string text = "<?xml version=\"1.0\"?>\n<Scriptwell Language=\"JavaScript\"><Code>";
  while (text.size() < kBytes)
    text += "for (let i = 0; i &lt; rows.length; i++) { total += rows[i].price; }\n";
  return text + "</Code></Scriptwell>";
}

// The document as a file for the length of a benchmark.
class DocumentFile {
 public:
  DocumentFile() {
    const int descriptor = mkstemp(path_);
    const std::string text = Document();
    if (descriptor < 0 || write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
      throw std::runtime_error("cannot write a file in /tmp");
    close(descriptor);
  }
  DocumentFile(const DocumentFile&) = delete;
  DocumentFile& operator=(const DocumentFile&) = delete;
  ~DocumentFile() { static_cast<void>(std::remove(path_)); }
  const char* Path() const { return path_; }

 private:
  char path_[32] = "/tmp/qv_bench_XXXXXX";
};

void Serialize(benchmark::State& state) {
  const DocumentFile file;
  QvDomParser parser;
  parser.parse(file.Path(), false);
  for (auto _ : state) benchmark::DoNotOptimize(CXMLSerializer().Serialize(parser.Document()).data());
}

void WriteRequest(benchmark::State& state) {
  const DocumentFile file;
  NamedArguments map = ExecuteArguments(u"", ThreeParameters());
  map.emplace(u"ScriptFile", Variant::FromString(FromUtf8(file.Path())));
  for (auto _ : state) {
    WideTextStream stream;
    CExecuteCommand().Serialize(stream, u"Execute", u"", u"", map);
    benchmark::DoNotOptimize(stream.TakeText().data());
  }
}

void Bare(benchmark::State& state) {
  const std::string text = Document();
  for (auto _ : state) benchmark::DoNotOptimize(BareParse(text));
}

BENCHMARK(Serialize)->Name("document_5MB/serialize")->Unit(benchmark::kMillisecond);
BENCHMARK(WriteRequest)->Name("document_5MB/file_to_request")->Unit(benchmark::kMillisecond);
BENCHMARK(Bare)->Name("document_5MB/bare_parse")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qv::bench
