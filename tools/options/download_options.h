// The options of `download`.
#pragma once

#include <optional>

#include "tools/input/parsed_options.h"
#include "tools/options/session_options.h"

namespace qv::cli {

class DownloadArguments {
 public:
  // Adds the command to `app`, which owns it. Parsing sets the options of this object.
  explicit DownloadArguments(CLI::App& app);
  DownloadArguments(const DownloadArguments&) = delete;
  DownloadArguments& operator=(const DownloadArguments&) = delete;

  bool Parsed() const;
  // To be called once, after parsing. Returns an error message, or null.
  const char* Check();
  const DownloadOptions& Options() const { return download_; }

 private:
  DownloadOptions download_;
  CLI::App* command_;
  CLI::Option* directory_ = nullptr;
  std::optional<SessionArguments> session_;
};

}  // namespace qv::cli
