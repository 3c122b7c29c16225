// The rate of `scriptwells map` beside as many bare loops of the library: the same script, rows, service and
// number of sessions. Fails if the program has less than 85 % of the loops' rate. Then its memory with a
// hundred times the rows, which fails if it grows with them.
//   qv_bench_map [ROWS] [SESSIONS] [REPETITIONS]
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "scriptwells/testing.h"

namespace {

constexpr char kScript[] = "parameters.id * 2";
constexpr double kLeast = 0.85;
constexpr int kFewRows = 1'000;
constexpr int kManyRows = 100'000;
constexpr double kMostGrowth = 4;  // MB: 16 bytes for each row with --resume, and what differs between runs

struct Figures {
  double rate = 0;       // rows per second
  double cpuMicros = 0;  // per row, of the client
};

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double Cpu(int who) {
  rusage usage{};
  ::getrusage(who, &usage);
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

Figures Measured(int rows, int who, const std::function<void()>& run) {
  const double cpu = Cpu(who);
  const auto start = std::chrono::steady_clock::now();
  run();
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  return {rows / passed.count(), (Cpu(who) - cpu) * 1e6 / rows};
}

// Takes a row after the other, until none is left.
void Loop(const std::string& server, std::atomic<int>& next, int rows) {
  scriptwells::Session session(server, {"joe", "", ""});
  for (int row = ++next; row <= rows; row = ++next)
    if (session.Run(kScript, {{"id", row}}).As<int>() != 2 * row) std::abort();
}

void Loops(const std::string& server, int rows, int sessions) {
  std::atomic<int> next{0};
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(sessions));
  for (int i = 0; i < sessions; ++i) threads.emplace_back([&] { Loop(server, next, rows); });
  for (std::thread& thread : threads) thread.join();
}

// Returns the most memory that the program had, in MB.
double Map(const std::string& server, const std::filesystem::path& folder, int sessions,
           const char* start = "--force") {
  const std::string rows = folder / "rows.csv";
  const std::string results = folder / "results.csv";
  const std::string jobs = std::to_string(sessions);
  const pid_t child = ::fork();
  if (child == 0) {
    ::execl(SCRIPTWELLS_PROGRAM, "scriptwells", "map", "-e", kScript, rows.c_str(), "--jobs", jobs.c_str(),
            "--results", results.c_str(), start, "--server", server.c_str(), "--user", "joe", nullptr);
    ::_exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0)
    throw std::runtime_error("scriptwells map has failed");
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

void WriteRows(const std::filesystem::path& folder, int rows) {
  std::ofstream file(folder / "rows.csv");
  file << "id:int\n";
  for (int row = 1; row <= rows; ++row) file << row << "\n";
}

// One for each row, and in order.
void CheckResults(const std::filesystem::path& folder, int rows) {
  std::ifstream file(folder / "results.csv");
  std::string line;
  std::getline(file, line);
  for (int row = 1; row <= rows; ++row)
    if (!std::getline(file, line) || line != std::to_string(row) + "," + std::to_string(2 * row) + "\r")
      throw std::runtime_error("row " + std::to_string(row) + " has another result");
  if (std::getline(file, line)) throw std::runtime_error("there are more results than rows");
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

int Number(int count, char** words, int index, int usual) {
  return count > index ? std::max(1, static_cast<int>(std::strtol(words[index], nullptr, 10))) : usual;
}

bool KeepsRate(const scriptwells::DevelopmentService& service, const std::filesystem::path& folder, int rows,
               int sessions, int repetitions) {
  WriteRows(folder, rows);
  std::vector<double> ratios;
  for (int i = 0; i < repetitions; ++i) {
    const Figures loops = Measured(rows, RUSAGE_SELF, [&] { Loops(service.Url(), rows, sessions); });
    const Figures map = Measured(rows, RUSAGE_CHILDREN, [&] { Map(service.Url(), folder, sessions); });
    CheckResults(folder, rows);
    ratios.push_back(map.rate / loops.rate);
    std::printf("%d rows, %d sessions: loops %.0f rows/s, %.0f us CPU; map %.0f rows/s, %.0f us CPU; %.2f\n",
                rows, sessions, loops.rate, loops.cpuMicros, map.rate, map.cpuMicros, ratios.back());
  }
  const double ratio = Median(ratios);
  std::printf("map has %.2f of the loops' rate; at least %.2f: %s\n", ratio, kLeast,
              ratio >= kLeast ? "met" : "MISSED");
  return ratio >= kLeast;
}

bool KeepsMemory(const scriptwells::DevelopmentService& service, const std::filesystem::path& folder,
                 int sessions) {
  WriteRows(folder, kFewRows);
  const double few = Map(service.Url(), folder, sessions);
  WriteRows(folder, kManyRows);
  const double many = Map(service.Url(), folder, sessions);
  const double resumed = Map(service.Url(), folder, sessions, "--resume");
  CheckResults(folder, kManyRows);
  const bool isMet = std::max(many, resumed) - few <= kMostGrowth;
  std::printf("memory: %d rows %.1f MB, %d rows %.1f MB, resumed %.1f MB; at most %.0f MB more: %s\n",
              kFewRows, few, kManyRows, many, resumed, kMostGrowth, isMet ? "met" : "MISSED");
  return isMet;
}

int Run(const std::filesystem::path& folder, int rows, int sessions, int repetitions) {
  scriptwells::ServiceOptions options;
  options.program = SCRIPTWELLS_PROGRAM;
  const scriptwells::DevelopmentService service(options);
  const bool keepsRate = KeepsRate(service, folder, rows, sessions, repetitions);
  return KeepsMemory(service, folder, sessions) && keepsRate ? 0 : 1;
}

}  // namespace

int main(int count, char** words) {
  std::string folder = (std::filesystem::temp_directory_path() / "qv_bench_map_XXXXXX").string();
  int result = 1;
  try {
    if (::mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary directory");
    result =
        Run(folder, Number(count, words, 1, 10'000), Number(count, words, 2, 8), Number(count, words, 3, 5));
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "qv_bench_map: %s\n", error.what()));
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  return result;
}
