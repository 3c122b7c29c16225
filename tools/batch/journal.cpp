#include "tools/batch/journal.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string_view>

#include "tools/report/failure.h"
#include "tools/report/json_text.h"

namespace qv::cli {

namespace {

constexpr char kStart[] = "scriptwells-map 1 ";
constexpr std::string_view kStarted = "start";

struct WordRow {
  std::string_view word;
  Fate fate;
};
constexpr WordRow kWords[] = {
    {"done", Fate::kDone}, {"failed", Fate::kFailed}, {"unknown", Fate::kUnknown}, {"unsent", Fate::kUnsent}};

std::string_view WordOf(Fate fate) {
  return std::find_if(std::begin(kWords), std::end(kWords),
                      [fate](const WordRow& row) { return row.fate == fate; })
      ->word;
}

// The parts of a line: "done", "17" and the text.
struct LineParts {
  std::string_view word;
  std::int64_t row = 0;  // 0 if it is no number
  std::string_view text;
};

LineParts PartsOf(std::string_view line) {
  LineParts parts;
  const std::size_t blank = std::min(line.find(' '), line.size());
  parts.word = line.substr(0, blank);
  line.remove_prefix(std::min(blank + 1, line.size()));
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), parts.row);
  if (error != std::errc()) return parts;
  line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  parts.text = line.substr(std::min<std::size_t>(1, line.size()));
  return parts;
}

}  // namespace

Journal::Journal(const std::string& path, const std::string& key) : path_(path) {
  Open(O_CREAT | O_EXCL);
  Write(kStart + key + "\n");
}

Journal::Journal(const std::string& path, const std::string& key, std::int64_t rows) : path_(path) {
  Open(0);
  try {
    Read(key, rows);
  } catch (...) {
    ::close(descriptor_);
    throw;
  }
}

Journal::~Journal() {
  ::close(descriptor_);
}

void Journal::Refuse(const std::string& reason) const {
  throw Failure(ExitStatus::kLocal, "the journal " + path_ + " " + reason);
}

void Journal::RefuseOther() const {
  Refuse("belongs to another script, to other rows, or to another form of results");
}

// The lock ends with the process.
void Journal::Open(int flags) {
  descriptor_ = ::open(path_.c_str(), flags | O_RDWR | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0666);
  if (descriptor_ < 0) Refuse(std::string("cannot be opened: ") + std::strerror(errno));
  struct stat facts = {};
  const bool isFile = ::fstat(descriptor_, &facts) == 0 && S_ISREG(facts.st_mode);
  if (isFile && ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  ::close(descriptor_);
  Refuse(isFile ? "is in use by another program" : "is not a regular file");
}

void Journal::Read(const std::string& key, std::int64_t rows) {
  entries_.resize(static_cast<std::size_t>(rows));
  reader_.open(path_, std::ios::binary);
  const std::string head = kStart + key;
  std::string line;
  std::int64_t end = 0;  // of the last whole line
  while (std::getline(reader_, line) && !reader_.eof()) {
    if (end > 0)
      ReadLine(line, end);
    else if (line != head)
      RefuseOther();
    end += static_cast<std::int64_t>(line.size()) + 1;
  }
  if (reader_.bad()) Refuse("cannot be read");
  if (end == 0 && head.compare(0, line.size(), line) != 0) RefuseOther();
  reader_.clear();
  if (::ftruncate(descriptor_, end) != 0) Refuse(std::string("cannot be changed: ") + std::strerror(errno));
  if (end == 0) Write(head + "\n");
}

void Journal::ReadLine(const std::string& line, std::int64_t offset) {
  const LineParts parts = PartsOf(line);
  const WordRow* const known = std::find_if(std::begin(kWords), std::end(kWords),
                                            [&](const WordRow& row) { return row.word == parts.word; });
  const bool isStart = parts.word == kStarted;
  const bool isRow = parts.row >= 1 && static_cast<std::size_t>(parts.row) <= entries_.size();
  if (!isRow || (!isStart && known == std::end(kWords)))
    Refuse("is damaged at byte " + std::to_string(offset));
  entries_[static_cast<std::size_t>(parts.row - 1)] = {offset, isStart ? Fate::kUnknown : known->fate};
}

void Journal::Write(const std::string& line) {
  const std::lock_guard lock(mutex_);
  std::string_view rest = line;
  while (!rest.empty()) {
    const ssize_t count = ::write(descriptor_, rest.data(), rest.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Refuse(std::string("cannot be written: ") + std::strerror(errno));
    rest.remove_prefix(static_cast<std::size_t>(count));
  }
}

void Journal::Start(std::int64_t row) {
  Write(std::string(kStarted) + " " + std::to_string(row) + "\n");
}

void Journal::End(std::int64_t row, const RowOutcome& outcome) {
  std::string line = std::string(WordOf(outcome.fate)) + " " + std::to_string(row);
  if (outcome.fate != Fate::kUnsent) line += " " + JsonText(outcome.text);
  Write(line + "\n");
}

Fate Journal::EarlierFate(std::int64_t row) const {
  const auto index = static_cast<std::size_t>(row - 1);
  return index < entries_.size() ? entries_[index].fate : Fate::kUnsent;
}

RowOutcome Journal::Earlier(std::int64_t row) {
  const Fate fate = EarlierFate(row);
  if (fate == Fate::kUnsent) return {};
  std::string line;
  reader_.seekg(entries_[static_cast<std::size_t>(row - 1)].offset);
  if (!std::getline(reader_, line)) Refuse("cannot be read");
  const LineParts parts = PartsOf(line);
  if (parts.word == kStarted) return {fate, "the program ended before the answer came"};
  const auto text = nlohmann::json::parse(parts.text, nullptr, false);
  if (!text.is_string()) Refuse("is damaged at row " + std::to_string(row));
  return {fate, text.get<std::string>()};
}

}  // namespace qv::cli
