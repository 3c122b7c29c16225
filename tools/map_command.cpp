#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>

#include "tools/batch/batch.h"
#include "tools/batch/batch_files.h"
#include "tools/batch/results_writer.h"
#include "tools/commands.h"
#include "tools/input/input_text.h"
#include "tools/report/reporter.h"
#include "tools/service/home_directory.h"
#include "tools/transfer/session_frame.h"

namespace qv::cli {

namespace {

constexpr std::int64_t kMostNamed = 20;

SessionSettings CheckMapSettings(const MapOptions& options) {
  SessionSettings settings = SettingsOf(options);
  settings.options.language = options.language;
  TakePassword(options, settings, options.file == "-");
  return settings;
}

std::string TakeScript(const MapOptions& options, const Reporter& reporter) {
  std::string script = options.file.empty() ? CheckScript(options.code) : ReadScript(options.file);
  for (const std::string& odd : scriptwells::LossesOnTheWire(script)) reporter.Note("the script " + odd);
  return script;
}

// The same for every start that may go on with the same journal.
std::string JournalKey(const MapOptions& options, const std::string& script, const RowsFacts& facts) {
  Digest digest;
  digest.AddText(script);
  digest.AddText(options.language);
  digest.AddText(options.output == OutputFormat::kJson ? "json" : "csv");
  digest.AddText(std::to_string(facts.digest));
  char text[17];
  static_cast<void>(
      std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(digest.Value())));
  return text;
}

// "row 5", "rows 5, 9", "rows 5, 9 and 12 more".
std::string Named(const std::vector<std::int64_t>& first, std::int64_t count) {
  std::string text = count == 1 ? "row" : "rows";
  for (std::size_t i = 0; i < first.size(); ++i) text += (i == 0 ? " " : ", ") + std::to_string(first[i]);
  const std::int64_t more = count - static_cast<std::int64_t>(first.size());
  return more == 0 ? text : text + " and " + std::to_string(more) + " more";
}

// Said aloud: their scripts may run twice.
void NameRetried(const Journal& journal, std::int64_t rows, const Reporter& reporter) {
  std::vector<std::int64_t> first;
  std::int64_t count = 0;
  for (std::int64_t row = 1; row <= rows; ++row) {
    if (journal.EarlierFate(row) != Fate::kUnknown) continue;
    if (++count <= kMostNamed) first.push_back(row);
  }
  if (count > 0) reporter.Warn("run again, although the script may have run before: " + Named(first, count));
}

std::unique_ptr<Journal> OpenJournal(const BatchFiles& files, const std::string& key, std::int64_t rows) {
  if (files.journal.empty()) return nullptr;
  if (files.goesOn) return std::make_unique<Journal>(files.journal, key, rows);
  return std::make_unique<Journal>(files.journal, key);
}

// Where the results go: a file, or what the program has as standard output.
class ResultsTarget {
 public:
  ResultsTarget(const std::string& file, std::ostream& out) : stream_(file.empty() ? out : file_) {
    if (file.empty()) return;
    file_.open(file, std::ios::binary | std::ios::trunc);
    if (!file_) throw Failure(ExitStatus::kLocal, "cannot write " + file + ": " + std::strerror(errno));
  }
  std::ostream& Stream() noexcept { return stream_; }

 private:
  std::ofstream file_;
  std::ostream& stream_;
};

void ReportUnknown(const BatchCounts& counts, const BatchFiles& files, const Reporter& reporter) {
  if (counts.unknown == 0) return;
  std::vector<std::int64_t> first = counts.firstUnknown;
  std::sort(first.begin(), first.end());
  const std::string hint =
      files.journal.empty() ? "" : "; --resume --retry-unknown runs the script again for them";
  reporter.Warn("it is not known whether the script ran: " + Named(first, counts.unknown) + hint);
}

void ReportEnd(const Batch& batch, std::int64_t rows, const BatchFiles& files, const Reporter& reporter) {
  const BatchCounts& counts = batch.Counts();
  ReportUnknown(counts, files, reporter);
  const std::int64_t lost = counts.failed + counts.unknown;
  const std::string of = " of " + std::to_string(rows) + " rows ";
  const std::string where = std::to_string(lost) + of + "have no result; they are in " + files.failed;
  if (!batch.StopReason()) {
    if (lost > 0) throw Failure(ExitStatus::kFault, where).Called("rows without a result");
    return;
  }
  if (lost > 0) reporter.Note(where);
  const std::int64_t open = rows - counts.Ended();
  if (open > 0)
    reporter.Note(std::to_string(open) + of + "were not run" +
                  (files.journal.empty() ? "" : "; --resume goes on with them"));
  throw Failure(*batch.StopReason());
}

}  // namespace

void MapCommand(const MapOptions& options, std::ostream& out, std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  const SessionSettings settings = CheckMapSettings(options);
  const std::string script = TakeScript(options, reporter);
  const RowsFacts facts = ExamineRows(options.rows);
  for (const std::string& note : facts.notes) reporter.Note(note);
  RowsFile rows(options.rows);
  if (HoldsFiles(rows.Columns())) CheckUploadScripts();
  NoteRefusedCharacters(settings, reporter);

  const BatchFiles files = PrepareFiles(options);
  const std::unique_ptr<Journal> journal =
      OpenJournal(files, JournalKey(options, script, facts), facts.count);
  if (journal && options.retryUnknown) NameRetried(*journal, facts.count, reporter);
  ResultsTarget target(files.results, out);
  ResultsWriter writer(target.Stream(), options.output, rows, files.failed);
  OrderedRows ordered([&](const DataRow& row, const RowOutcome& outcome) { writer.Write(row, outcome); });

  SharedByCallers shared{settings, options.output};
  if (!settings.traceFile.empty()) shared.trace.emplace(settings.traceFile);
  BatchJob job{script, static_cast<unsigned>(std::min<std::int64_t>(options.jobs, facts.count))};
  job.retryUnknown = options.retryUnknown;
  if (options.maxTimeSeconds > 0) job.end = std::chrono::steady_clock::now() + settings.options.totalTimeout;
  BatchProgress progress(!options.json, options.rows.substr(options.rows.rfind('/') + 1), facts.count);
  Batch batch(job, rows, journal.get(), ordered, shared, progress, reporter);
  batch.Run();
  if (shared.trace && !shared.trace->IsComplete())
    reporter.Warn("the trace " + shared.trace->Path() + " could not be written in full");
  ReportEnd(batch, facts.count, files, reporter);
}

}  // namespace qv::cli
