#include "tools/options/command_arguments.h"

#include <CLI/CLI.hpp>

namespace qv::cli {

bool CommandArguments::Parsed() const {
  return command_->parsed();
}

}  // namespace qv::cli
