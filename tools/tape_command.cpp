#include <ostream>

#include "face/tape/tape_report.h"
#include "tools/commands.h"
#include "tools/report/standard_output.h"
#include "tools/report/unsafe_characters.h"
#include "tools/transfer/failed_call.h"

namespace qv::cli {

namespace {

struct Report {
  std::string text;
  bool isGood = true;
};

Report Verified(const std::vector<std::string>& files) {
  Report report;
  for (const std::string& file : files) {
    const std::vector<std::string> faults = scriptwells::VerifyTape(file);
    report.isGood = report.isGood && faults.empty();
    for (const std::string& fault : faults) report.text += OneLine(file) + ", " + fault + "\n";
  }
  return report;
}

Report ReportOn(const TapeOptions& options) {
  switch (options.verb) {
    case TapeVerb::kShow:
      return {scriptwells::ShowTape(options.files[0])};
    case TapeVerb::kDiff: {
      const std::string diff = scriptwells::DiffTapes(options.files[0], options.files[1]);
      return {diff, diff.empty()};
    }
    case TapeVerb::kVerify:
      break;
  }
  return Verified(options.files);
}

}  // namespace

ExitStatus TapeCommand(const TapeOptions& options, std::ostream& out) {
  const Report report = Translated([&options] { return ReportOn(options); });
  out << report.text << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
  return report.isGood ? ExitStatus::kOk : ExitStatus::kFault;
}

}  // namespace qv::cli
