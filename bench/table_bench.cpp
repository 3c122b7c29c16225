// Tables: from an answer's text to the finished table, beside the XML library's parse of the same bytes, and
// from the table to its text.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "bare_parse.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/record_list.h"
#include "recordlist/formater_record_list.h"
#include "table_samples.h"

namespace qv::bench {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

IRecordListPtr TableOf(const Variant& value) {
  return As<IRecordList>(value.Object());
}

// The table's last row must be there, whole.
bool IsComplete(const Variant& value, std::size_t rows) {
  const IRecordListPtr table = TableOf(value);
  IRecordListCursor* raw = nullptr;
  if (Failed(table->OpenCursor(VARIANT_TRUE, &raw))) return false;
  const IRecordListCursorPtr cursor(raw, false);
  VARIANT_BOOL more = VARIANT_FALSE;
  std::size_t count = 0;
  IUnknownPtr last;
  for (; Succeeded(cursor->HasMore(&more)) && more != VARIANT_FALSE; ++count) {
    IUnknown* row = nullptr;
    if (Failed(cursor->Next(&row))) return false;
    last = IUnknownPtr(row, false);
  }
  if (count != rows) return false;
  const IRecordListRecordPtr record = As<IRecordListRecord>(last);
  Variant number;
  return Succeeded(record->GetValue(2, &number)) && number.Tag() == VT_INT &&
         number.Data().intVal == static_cast<std::int32_t>(1'000'000 + rows - 1);
}

// Counts what a host waits for: until the value is there. The table ends when the host likes.
void Read(benchmark::State& state, std::size_t rows) {
  const WideString answer = FromUtf8(TableAnswer(rows));
  if (!IsComplete(ReadAnswer(answer), rows)) state.SkipWithError("wrong table");
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    const Variant table = ReadAnswer(answer);
    state.SetIterationTime(SecondsSince(start));
  }
}

void Bare(benchmark::State& state, std::size_t rows) {
  const std::string answer = TableAnswer(rows);
  benchmark::DoNotOptimize(BareParse(answer));
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    benchmark::DoNotOptimize(BareParse(answer));
    state.SetIterationTime(SecondsSince(start));
  }
}

void Write(benchmark::State& state, std::size_t rows) {
  const Variant table = ReadAnswer(FromUtf8(TableAnswer(rows)));
  FormaterRecordList formater;
  std::size_t units = 0;
  for (auto _ : state) {
    const WideString text = formater.WriteValue(table);
    units += text.size();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(units));  // a unit counts as one byte
}

BENCHMARK_CAPTURE(Read, 1k, 1'000)->Name("table_1k/read")->UseManualTime();
BENCHMARK_CAPTURE(Read, 10k, 10'000)->Name("table_10k/read")->UseManualTime();
BENCHMARK_CAPTURE(Read, 100k, 100'000)
    ->Name("table_100k/read")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
// Few runs of the largest, which takes 6 GB of memory.
BENCHMARK_CAPTURE(Read, 1M, 1'000'000)
    ->Name("table_1M/read")
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Bare, 1k, 1'000)->Name("table_1k/bare_parse")->UseManualTime();
BENCHMARK_CAPTURE(Bare, 10k, 10'000)->Name("table_10k/bare_parse")->UseManualTime();
BENCHMARK_CAPTURE(Bare, 100k, 100'000)
    ->Name("table_100k/bare_parse")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, 100k, 100'000)->Name("table_100k/write")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qv::bench
