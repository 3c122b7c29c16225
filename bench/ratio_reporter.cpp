#include "ratio_reporter.h"

#include <algorithm>
#include <iomanip>

namespace qv::bench {
namespace {

struct Ratio {
  const char* ours;
  const char* limit;
  double bar;  // 0: no bar, for the record
};

constexpr Ratio kRatios[] = {
    {"script_1MB/execute", "script_1MB/bare_curl", 3.0},
    {"upload_256MB/component", "upload_256MB/bare_curl", 1.25},
    {"download_256MB/component", "download_256MB/bare_curl", 1.25},
    {"envelope_200/write", "envelope_200/copy", 0},
    {"envelope_1MB/write", "envelope_1MB/copy", 0},
    {"read_string/response", "read_string/bare_parse", 0},
    {"service_table_1k/execute", "service_table_1k/bare_curl", 0},
    {"document_5MB/serialize", "document_5MB/bare_parse", 0},
    {"document_5MB/file_to_request", "document_5MB/bare_parse", 0},
    {"encode/plain", "encode/copy", 0},
    {"encode/special_5_percent", "encode/copy", 0},
};

// Names end in "/iterations:1", "/real_time" and "/manual_time" where the benchmark goes by these.
std::string PlainName(const std::string& name) {
  return name.substr(0, std::min({name.find("/iterations:"), name.find("/repeats:"), name.find("/real_time"),
                                  name.find("/manual_time")}));
}

}  // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs)
    if (run.aggregate_name == "median")
      medians_[PlainName(run.run_name.str())] =
          run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
}

void RatioReporter::Finalize() {
  std::ostream& out = GetOutputStream();
  out << "\nRatios of medians in this run\n" << std::fixed;
  for (const Ratio& ratio : kRatios) {
    const auto ours = medians_.find(ratio.ours);
    const auto limit = medians_.find(ratio.limit);
    if (ours == medians_.end() || limit == medians_.end()) continue;
    out << "  " << std::left << std::setw(26) << ratio.ours << " / " << std::setw(32) << ratio.limit << " = "
        << std::setprecision(2) << ours->second / limit->second;
    if (ratio.bar > 0) out << "   (bar " << ratio.bar << ")";
    out << "\n";
  }
}

}  // namespace qv::bench
