#include "tools/failure.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/json_text.h"
#include "tools/unsafe_characters.h"

namespace qv::cli {

namespace {

struct NameRow {
  ExitStatus status;
  const char* name;
};

constexpr NameRow kNames[] = {
    {ExitStatus::kOk, "ok"},
    {ExitStatus::kFault, "script fault"},
    {ExitStatus::kUsage, "usage"},
    {ExitStatus::kUnreachable, "not connected"},
    {ExitStatus::kTimeout, "timeout"},
    {ExitStatus::kRefused, "session refused"},
    {ExitStatus::kLocal, "not run"},
    {ExitStatus::kAnswer, "answer not understood"},
    {ExitStatus::kInterrupted, "interrupted"},
};

// The words for a person say it themselves unless a server spoke or a class of failure needs its name.
bool NamesItsKind(ExitStatus status) {
  return status == ExitStatus::kFault || status == ExitStatus::kRefused || status == ExitStatus::kAnswer;
}

// What a person reads of a message; programs get all of it, as JSON.
constexpr std::size_t kLongestMessage = 4000;  // bytes

// One line; of a longer message its start, up to a whole character, and that there is more.
std::string Shown(const std::string& message) {
  if (message.size() <= kLongestMessage) return OneLine(message);
  std::size_t end = kLongestMessage;
  while (end > 0 && (static_cast<unsigned char>(message[end]) & 0xC0) == 0x80) --end;
  return OneLine(message.substr(0, end)) + "... (cut; " + std::to_string(message.size()) +
         " bytes in all, which --json shows)";
}

std::string Line(const Failure& failure) {
  std::string line = "scriptwells: ";
  if (failure.OwnKind() == nullptr && NamesItsKind(failure.Status())) {
    line += StatusName(failure.Status());
    if (failure.Code())
      line += " " + HexCode(*failure.Code()) + " (" + std::to_string(FaultNumber(*failure.Code())) + ")";
    line += ": ";
  }
  return line + Shown(failure.Message());
}

std::string JsonLine(const Failure& failure) {
  nlohmann::ordered_json error;
  error["kind"] = failure.OwnKind() != nullptr ? failure.OwnKind() : StatusName(failure.Status());
  error["message"] = failure.Message();
  if (failure.Code()) {
    error["code"] = HexCode(*failure.Code());
    error["number"] = FaultNumber(*failure.Code());
  }
  error["exit"] = static_cast<int>(failure.Status());
  nlohmann::ordered_json whole;
  whole["error"] = error;
  return JsonText(whole);
}

}  // namespace

const char* StatusName(ExitStatus status) {
  for (const NameRow& row : kNames)
    if (row.status == status) return row.name;
  return "failure";
}

std::uint32_t FaultNumber(HRESULT code) {
  return static_cast<std::uint32_t>(code) & ~0x80040000u;
}

std::string HexCode(HRESULT code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
  return text;
}

std::string OneLine(const std::string& text) {
  std::string line = text;
  for (char& c : line)
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  const std::size_t end = line.find_last_not_of(' ');
  line.resize(end == std::string::npos ? 0 : end + 1);
  return EscapeForTerminal(line);
}

void ReportFailure(const Failure& failure, bool asJson, std::ostream& err) {
  if (!failure.IsSilent()) err << (asJson ? JsonLine(failure) : Line(failure)) << std::endl;
}

void ReportNote(const char* kind, const std::string& message, bool asJson, std::ostream& err) {
  if (!asJson) {
    err << "scriptwells: " << kind << ": " << Shown(message) << std::endl;
    return;
  }
  nlohmann::ordered_json whole;
  whole[kind] = message;
  err << JsonText(whole) << std::endl;
}

}  // namespace qv::cli
