// Manual pages of the commands.
#pragma once

#include <string>

#include "tools/manual/command_texts.h"

namespace qv::cli {

struct PageMark {
  std::string version;  // "scriptwells 0.1.0"
  std::string date;     // "2026-01-31"; may be empty
};

// "scriptwells-registry-set"
std::string PageName(const std::string& path);

// The line that every page begins with.
std::string PageHeader(const std::string& name, const std::string& section, const std::string& title,
                       const PageMark& mark);

// The page of a command of `program`.
std::string ManualPage(const CommandText& program, const CommandText& command, const PageMark& mark);

}  // namespace qv::cli
