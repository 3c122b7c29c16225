#include "face/tape/tape.h"

#include <sys/stat.h>
#include <utf8.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "face/text/short_quote.h"

namespace scriptwells {

const std::string_view kTapeHeader = "scriptwells tape 1";

namespace {

constexpr std::string_view kAnyHeader = "scriptwells tape ";
constexpr std::string_view kSession = "session ";
constexpr std::int64_t kMostBytes = std::int64_t{256} << 20;
constexpr std::size_t kMostMaskedBytes = std::size_t{16} << 20;  // of a tape

constexpr Purpose kPurposes[] = {Purpose::kOpenSession,   Purpose::kCloseSession, Purpose::kExecute,
                                 Purpose::kUploadAddress, Purpose::kUpload,       Purpose::kDownload};
constexpr Phase kBreaks[] = {Phase::kConnect, Phase::kTls, Phase::kSend, Phase::kWait, Phase::kReceive};

struct TextRow {
  std::string_view mark;
  TapeText TapeEntry::*text;
  bool isBase64;
};
constexpr TextRow kTexts[] = {
    {"> ", &TapeEntry::requestHead, false}, {">> ", &TapeEntry::requestBody, false},
    {">b ", &TapeEntry::requestBody, true}, {"< ", &TapeEntry::answerHead, false},
    {"<< ", &TapeEntry::answerBody, false}, {"<b ", &TapeEntry::answerBody, true},
    {"+ ", &TapeEntry::file, false},
};

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

// The number at the front of the text, which it takes with the blank after it.
std::size_t TakeNumber(std::string_view* text) {
  std::size_t number = 0;
  const auto result = std::from_chars(text->data(), text->data() + text->size(), number);
  const auto digits = static_cast<std::size_t>(result.ptr - text->data());
  if (result.ec != std::errc() || digits > 9 || number == 0) throw TapeFault("no number of a session");
  text->remove_prefix(std::min(text->size(), digits + 1));
  return number;
}

std::string Indented(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += "  " + line + "\n";
  return text;
}

std::string BreakText(const TapedBreak& failure) {
  char code[16];
  static_cast<void>(std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(failure.code)));
  return MarkedLines(failure.message, std::string("! ") + ToString(failure.phase) + " " + code);
}

TapedBreak ReadBreak(std::string_view line) {
  TapedBreak failure;
  for (const Phase phase : kBreaks) {
    const std::string start = std::string(ToString(phase)) + " 0x";
    if (!StartsWith(line, start)) continue;
    failure.phase = phase;
    const char* const digits = line.data() + start.size();
    const char* const end = line.data() + line.size();
    const auto result = std::from_chars(digits, end, failure.code, 16);
    if (result.ec != std::errc() || result.ptr - digits != 8 || result.ptr == end || *result.ptr != ' ')
      break;
    ReadTapeLine(line.substr(start.size() + 9), &failure.message);
    if (failure.message.empty()) break;
    return failure;
  }
  throw TapeFault("a failure without phase, code or message");
}

class Reader {
 public:
  std::vector<TapeEntry> Read(std::string_view text);
  int Line() const noexcept { return line_; }

 private:
  void ReadLine(std::string_view line);
  void ReadPart(std::string_view line);
  void BeginEntry(std::string_view line);
  void EndEntry();

  int line_ = 0;
  bool inEntry_ = false;
  std::size_t masked_ = 0;
  std::vector<TapeEntry> entries_;
};

std::vector<TapeEntry> Reader::Read(std::string_view text) {
  while (!text.empty()) {
    ++line_;
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) throw TapeFault("the last line has no end: the tape was cut");
    const std::string_view line = text.substr(0, end);
    if (!utf8::is_valid(line.begin(), line.end())) throw TapeFault("bytes that are not UTF-8");
    ReadLine(line);
    text.remove_prefix(end + 1);
  }
  if (line_ == 0) throw TapeFault("not a tape: the file is empty");
  if (inEntry_) throw TapeFault("no empty line after the last entry: the tape was cut");
  return std::move(entries_);
}

void Reader::ReadLine(std::string_view line) {
  if (line_ == 1) {
    if (line == kTapeHeader) return;
    throw TapeFault(StartsWith(line, kAnyHeader) ? "a tape of another version of this program"
                                                 : "not a tape");
  }
  if (line.empty()) return EndEntry();
  if (inEntry_) return ReadPart(line);
  if (!StartsWith(line, kSession)) return BeginEntry(line);
  line.remove_prefix(kSession.size());
  TakeNumber(&line);
  if (!line.empty()) throw TapeFault("more than the number of a session");
}

void Reader::BeginEntry(std::string_view line) {
  TapeEntry entry;
  entry.line = line_;
  entry.session = TakeNumber(&line);
  for (const Purpose purpose : kPurposes) {
    const std::string start = std::string(ToString(purpose)) + " ";
    if (!StartsWith(line, start)) continue;
    entry.purpose = purpose;
    ReadTapeLine(line.substr(start.size()), &entry.server);
    if (entry.server.empty()) break;
    entries_.push_back(std::move(entry));
    inEntry_ = true;
    return;
  }
  throw TapeFault("no purpose or no server of an exchange");
}

void Reader::ReadPart(std::string_view line) {
  TapeEntry& entry = entries_.back();
  for (const TextRow& row : kTexts) {
    if (!StartsWith(line, row.mark)) continue;
    (row.isBase64 ? ReadBase64Line : ReadTapeLine)(line.substr(row.mark.size()), &(entry.*row.text));
    return;
  }
  const std::string_view rest = line.substr(std::min<std::size_t>(line.size(), 2));
  if (StartsWith(line, "@ "))
    entry.times = rest;
  else if (StartsWith(line, "  "))
    (entry.answerHead.empty() ? entry.arguments : entry.answer).emplace_back(rest);
  else if (StartsWith(line, "! ") && !entry.failure)
    entry.failure = ReadBreak(rest);
  else
    throw TapeFault("a line without a known mark");
}

// Played again, a mask becomes as many bytes as it says.
void Reader::EndEntry() {
  if (!inEntry_) return;
  inEntry_ = false;
  const TapeEntry& entry = entries_.back();
  for (const TapeText* text : {&entry.requestHead, &entry.requestBody, &entry.answerHead, &entry.answerBody})
    for (const TapePiece& piece : *text) masked_ += piece.mask.empty() ? 0 : piece.size;
  if (masked_ > kMostMaskedBytes) throw TapeFault("the masked secrets are longer than 16 MB");
  if (!entry.HasRequest() && (!entry.answerHead.empty() || !entry.failure))
    throw TapeFault("an entry without a request");
}

[[noreturn]] void Refuse(const std::string& message) {
  throw Error(Phase::kLocalFile, message);
}

}  // namespace

std::string SessionLine(std::size_t session) {
  return std::string(kSession) + std::to_string(session) + "\n";
}

std::string EntryText(const TapeEntry& entry) {
  std::string text = MarkedLines(entry.server, std::to_string(entry.session) + " " + ToString(entry.purpose));
  if (!entry.times.empty()) text += "@ " + entry.times + "\n";
  text += MarkedLines(entry.file, "+") + MarkedLines(entry.requestHead, ">") +
          MarkedLines(entry.requestBody, ">>") + Indented(entry.arguments) +
          MarkedLines(entry.answerHead, "<") + MarkedLines(entry.answerBody, "<<") + Indented(entry.answer);
  if (entry.failure) text += BreakText(*entry.failure);
  return text + "\n";
}

std::vector<TapeEntry> ReadTape(const std::string& name, std::string_view text) {
  Reader reader;
  try {
    return reader.Read(text);
  } catch (const TapeFault& fault) {
    Refuse("cannot read the tape " + name + ", line " + std::to_string(reader.Line()) + ": " + fault.what());
  }
}

std::string TapeFileText(const std::string& path) {
  struct stat facts = {};
  std::ifstream file;
  errno = 0;
  if (::stat(path.c_str(), &facts) != 0) Refuse("cannot read the tape " + path + ": " + std::strerror(errno));
  if (!S_ISREG(facts.st_mode)) Refuse("cannot read the tape " + path + ": not a regular file");
  if (facts.st_size > kMostBytes) Refuse("cannot read the tape " + path + ": longer than 256 MB");
  file.open(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (!file.is_open() || file.bad()) Refuse("cannot read the tape " + path + ": " + std::strerror(errno));
  return text;
}

}  // namespace scriptwells
