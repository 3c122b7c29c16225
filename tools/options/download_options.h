// The options of `download`.
#pragma once

#include <optional>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"
#include "tools/options/session_options.h"

namespace qv::cli {

class DownloadArguments : public CommandArguments {
 public:
  explicit DownloadArguments(CLI::App& app);
  // To be called once, after parsing. Returns an error message, or null.
  const char* Check();
  const DownloadOptions& Options() const { return download_; }

 private:
  DownloadOptions download_;
  CLI::Option* directory_ = nullptr;
  std::optional<SessionArguments> session_;
};

}  // namespace qv::cli
