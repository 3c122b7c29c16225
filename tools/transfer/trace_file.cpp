#include "tools/transfer/trace_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <string_view>

#include "scriptwells/types.h"
#include "tools/report/failure.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

using scriptwells::DateTime;

// A trace may hold what a script answered, so others may not read it.
std::string Created(const std::string& path) {
  if (path == "-") return path;
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (descriptor < 0)
    throw Failure(ExitStatus::kLocal, "cannot write the trace " + path + ": " + std::strerror(errno));
  ::close(descriptor);
  return path;
}

std::string Lines(const char* prefix, std::string_view text) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines += prefix + EscapeForTerminal(std::string(line)) + "\n";
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string MillisecondsText(std::chrono::microseconds time) {
  char text[48];
  static_cast<void>(std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(time.count()) / 1000));
  return text;
}

std::string FileNote(const scriptwells::Exchange& exchange) {
  return exchange.file.empty() ? "" : "= file " + OneLine(exchange.file) + "\n";
}

}  // namespace

std::string TraceText(const scriptwells::Exchange& exchange) {
  return OneLine(Summary(exchange)) + "\n" + Lines("> ", exchange.requestHead) +
         Lines("> ", exchange.requestBody) + Lines("< ", exchange.answerHead) +
         Lines("< ", exchange.answerBody) + FileNote(exchange) + "= " +
         DateTime::From(exchange.begin).ToString() + "Z" + ", connecting " +
         MillisecondsText(exchange.connecting) + ", waiting " + MillisecondsText(exchange.waiting) +
         ", total " + MillisecondsText(exchange.total) + "\n\n";
}

TraceFile::TraceFile(const std::string& path)
    : path_(Created(path)), out_(path == "-" ? std::cerr : static_cast<std::ostream&>(file_)) {
  if (path != "-") file_.open(path, std::ios::app);
}

void TraceFile::Write(const scriptwells::Exchange& exchange) {
  out_ << TraceText(exchange) << std::flush;
}

bool TraceFile::IsComplete() const {
  return !out_.fail();
}

}  // namespace qv::cli
