// The options of `serve`.
#pragma once

#include "tools/input/parsed_options.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

class ServeArguments {
 public:
  // Adds the command to `app`, which owns it. Parsing sets the options of this object.
  explicit ServeArguments(CLI::App& app);
  ServeArguments(const ServeArguments&) = delete;
  ServeArguments& operator=(const ServeArguments&) = delete;

  bool Parsed() const;
  // To be called after parsing. Returns an error message, or null.
  const char* Check() const;
  const ServeOptions& Options() const { return serve_; }

 private:
  ServeOptions serve_;
  CLI::App* command_;
  CLI::Option* home_ = nullptr;
};

}  // namespace qv::cli
