// The options of `map`.
#pragma once

#include <optional>
#include <string>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"
#include "tools/options/session_options.h"

namespace qv::cli {

class MapArguments : public CommandArguments {
 public:
  explicit MapArguments(CLI::App& app);
  // To be called once, after parsing. Returns an error message, or null.
  const char* Check();
  const MapOptions& Options() const { return map_; }

 private:
  void DefineInput();
  void DefineOutput();
  const char* WrongWithInput();
  const char* WrongWithForm();
  const char* WrongWithFiles() const;

  MapOptions map_;
  std::string output_ = "csv";
  CLI::Option* code_ = nullptr;
  std::optional<SessionArguments> session_;
};

}  // namespace qv::cli
