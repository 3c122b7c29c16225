#include "tools/batch/batch_files.h"

#include <filesystem>
#include <system_error>

#include "tools/report/failure.h"

namespace qv::cli {

namespace {

namespace fs = std::filesystem;

bool IsThere(const std::string& file) {
  std::error_code error;
  return !file.empty() && fs::symlink_status(file, error).type() != fs::file_type::not_found;
}

std::string FailedName(const MapOptions& options) {
  if (!options.failed.empty()) return options.failed;
  const fs::path name = options.results.empty() ? options.rows : options.results;
  const fs::path stem = name.extension().empty() ? name : fs::path(name).replace_extension();
  return stem.native() + ".failed.csv";
}

void CheckDiffers(const std::string& written, const std::string& other) {
  std::error_code error;
  const bool isSame = !written.empty() && (written == other || fs::equivalent(written, other, error));
  if (isSame)
    throw Failure(ExitStatus::kLocal, written + " would be both read and written, or written twice");
}

void Remove(const std::string& file) {
  std::error_code error;
  fs::remove(file, error);
  if (error) throw Failure(ExitStatus::kLocal, "cannot remove " + file + ": " + error.message());
}

void CheckNew(const std::string& file, const MapOptions& options) {
  if (!IsThere(file) || options.force) return;
  const std::string hint = options.results.empty()
                               ? " (--force replaces it)"
                               : " (--resume goes on with what was begun, --force begins again)";
  throw Failure(ExitStatus::kLocal, file + " is there already" + hint);
}

}  // namespace

BatchFiles PrepareFiles(const MapOptions& options) {
  BatchFiles files{options.results, options.results.empty() ? "" : options.results + ".journal",
                   FailedName(options)};
  for (const std::string& written : {files.results, files.journal, files.failed})
    for (const std::string& read : {options.rows, options.file})
      if (!read.empty()) CheckDiffers(written, read);
  CheckDiffers(files.failed, files.results);
  CheckDiffers(files.failed, files.journal);
  files.goesOn = options.resume && IsThere(files.journal);
  if (!files.goesOn)
    for (const std::string& file : {files.results, files.journal, files.failed}) CheckNew(file, options);
  if (!files.goesOn && IsThere(files.journal)) Remove(files.journal);
  if (IsThere(files.failed)) Remove(files.failed);
  return files;
}

}  // namespace qv::cli
