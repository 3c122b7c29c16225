#include "table_memory.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "bare_parse.h"
#include "qvscriptwells/xml_library_hold.h"
#include "recordlist/register_formaters.h"
#include "table_samples.h"

namespace qv::bench {
namespace {

constexpr std::size_t kRows = 100'000;

void ReadTable(const std::string& answer) {
  ReadAnswer(FromUtf8(answer));
}

void ParseBare(const std::string& answer) {
  BareParse(answer);
}

// A line such as "VmHWM:   123 kB" of this process's status.
long StatusKilobytes(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind(key, 0) == 0) return std::stol(line.substr(key.size() + 1));
  return 0;
}

// Ends the child process.
[[noreturn]] void Measure(const char* name, void (*work)(const std::string&)) {
  const XmlLibraryHold hold;
  RegisterFormaters();
  const std::string answer = TableAnswer(kRows);
  const long before = StatusKilobytes("VmRSS");
  work(answer);
  std::printf("table_memory/%s: %ld MB for an answer of %zu MB\n", name,
              (StatusKilobytes("VmHWM") - before) / 1000, answer.size() / 1'000'000);
  _exit(std::fflush(stdout) == 0 ? 0 : 1);
}

void MeasureInChild(const char* name, void (*work)(const std::string&)) {
  static_cast<void>(std::fflush(stdout));
  const pid_t child = fork();
  if (child == 0) Measure(name, work);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
    std::printf("table_memory/%s: failed\n", name);
}

}  // namespace

void PrintTableMemory() {
  MeasureInChild("read", &ReadTable);
  MeasureInChild("bare_parse", &ParseBare);
}

}  // namespace qv::bench
