#include "tools/report/failure.h"

#include <cstdio>

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

}  // namespace

const char* StatusName(ExitStatus status) {
  for (const NameRow& row : kNames)
    if (row.status == status) return row.name;
  return "failure";
}

std::uint32_t FaultNumber(std::uint32_t code) {
  return code & ~0x80040000U;
}

std::string HexCode(std::uint32_t code) {
  char text[16];
  static_cast<void>(std::snprintf(text, sizeof text, "0x%08X", code));
  return text;
}

}  // namespace qv::cli
