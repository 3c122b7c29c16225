// Prints, after the usual lines, how far each of our benchmarks is from the limit measured in the same run.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace qv::bench {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  explicit RatioReporter(bool colour) : ConsoleReporter(colour ? OO_ColorTabular : OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  std::map<std::string, double> medians_;  // real time in seconds
};

}  // namespace qv::bench
