#include "tools/report/reporter.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/report/json_text.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestMessage = 4000;  // bytes

// The message explains itself, unless it is the server's or this class of failures needs its name.
bool NamesItsKind(ExitStatus status) {
  return status == ExitStatus::kFault || status == ExitStatus::kRefused || status == ExitStatus::kAnswer;
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

// In one line. A long message is cut at the end of a character.
std::string Shown(const std::string& message) {
  if (message.size() <= kLongestMessage) return OneLine(message);
  std::size_t end = kLongestMessage;
  while (end > 0 && (static_cast<unsigned char>(message[end]) & 0xC0) == 0x80) --end;
  return OneLine(message.substr(0, end)) + "... (cut; " + std::to_string(message.size()) +
         " bytes in all, which --json shows)";
}

}  // namespace

std::string DescriptionOf(const Failure& failure) {
  std::string text;
  if (failure.OwnKind() == nullptr && NamesItsKind(failure.Status())) {
    text += StatusName(failure.Status());
    if (failure.Code())
      text += " " + HexCode(*failure.Code()) + " (" + std::to_string(FaultNumber(*failure.Code())) + ")";
    text += ": ";
  }
  return text + Shown(failure.Message());
}

void Reporter::Report(const Failure& failure) const {
  if (failure.IsSilent()) return;
  err_ << (form_ == ReportForm::kJson ? JsonLine(failure) : "scriptwells: " + DescriptionOf(failure))
       << std::endl;
}

void Reporter::Remark(const char* kind, const std::string& message) const {
  if (form_ != ReportForm::kJson) {
    err_ << "scriptwells: " << kind << ": " << Shown(message) << std::endl;
    return;
  }
  nlohmann::ordered_json whole;
  whole[kind] = message;
  err_ << JsonText(whole) << std::endl;
}

void Reporter::Separate(const std::string& name, const std::string& time) const {
  if (form_ != ReportForm::kJson) {
    err_ << "--- " << Shown(name) << ", " << time << " ---" << std::endl;
    return;
  }
  nlohmann::ordered_json whole;
  whole["run"]["file"] = name;
  whole["run"]["time"] = time;
  err_ << JsonText(whole) << std::endl;
}

}  // namespace qv::cli
