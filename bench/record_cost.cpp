// What Options::record costs: CPU time of the client for a call, with a tape and without one, by turns.
//   qv_bench_record [CALLS] [REPETITIONS]
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "scriptwells/testing.h"

namespace {

struct Script {
  const char* name;
  const char* code;
};
constexpr Script kScripts[] = {
    {"a number", "6 * 7"},
    {"a text of 64 kB", "'abcdefghijklmnop'.repeat(4096)"},
    {"a table of 1,000 rows",
     "Array.from({length: 1000}, (_, i) => ({city: 'Rome', people: i, size: i / 3}))"}};

double CpuMicros() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  const auto micros = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_usec);
  };
  return micros(usage.ru_utime) + micros(usage.ru_stime);
}

// CPU time of one call. No path: without a tape.
double Measured(const std::string& server, const std::string& script, const std::filesystem::path& tape,
                int calls) {
  scriptwells::Options options;
  options.record = tape;
  scriptwells::Session session(server, {"joe", "secret"}, options);
  session.Run(script);
  const double begin = CpuMicros();
  for (int i = 0; i < calls; ++i) session.Run(script);
  return (CpuMicros() - begin) / calls;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void Compare(const scriptwells::DevelopmentService& service, const Script& script,
             const std::filesystem::path& folder, int calls, int repetitions) {
  std::vector<double> without;
  std::vector<double> with;
  const std::filesystem::path tape = folder / "calls.tape";
  for (int i = 0; i < repetitions; ++i) {
    without.push_back(Measured(service.Url(), script.code, {}, calls));
    with.push_back(Measured(service.Url(), script.code, tape, calls));
    std::filesystem::remove(tape);
  }
  std::printf("%s: %.0f us without a tape, %.0f us with one, %.2f times\n", script.name, Median(without),
              Median(with), Median(with) / Median(without));
}

int Number(int count, char** words, int index, int usual) {
  return count > index ? std::max(1, std::stoi(words[index])) : usual;
}

void Run(const std::filesystem::path& folder, int calls, int repetitions) {
  scriptwells::ServiceOptions options;
  options.program = SCRIPTWELLS_PROGRAM;
  const scriptwells::DevelopmentService service(options);
  for (const Script& script : kScripts) Compare(service, script, folder, calls, repetitions);
}

}  // namespace

int main(int count, char** words) {
  std::string folder = (std::filesystem::temp_directory_path() / "qv_bench_record_XXXXXX").string();
  int result = 0;
  try {
    if (::mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary directory");
    Run(folder, Number(count, words, 1, 300), Number(count, words, 2, 7));
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "qv_bench_record: %s\n", error.what()));
    result = 1;
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  return result;
}
