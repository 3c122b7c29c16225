#include "tools/session_options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdlib>

#include "tools/time_span.h"

namespace qv::cli {

namespace {

constexpr double kLongestWait = 86400;

bool IsWait(double seconds) {
  return std::isfinite(seconds) && seconds >= 0 && seconds <= kLongestWait;
}

void AddText(CLI::App& command, const char* name, std::string& target, const char* words, const char* value,
             const char* variable = "") {
  command.add_option(name, target, words)->type_name(value)->envname(variable);
}

}  // namespace

SessionArguments::SessionArguments(CLI::App& command, SessionOptions& options)
    : command_(command), options_(options) {
  DefineServer();
  DefineCredentials();
  DefineWaits();
  command_.add_flag("--json", options_.json,
                    "The result, or what failed, and every note, as one line of JSON each");
}

void SessionArguments::DefineServer() {
  server_ = command_
                .add_option("--server", options_.server,
                            "The server, such as https://scripts.example:8443 "
                            "(environment: SCRIPTWELLS_SERVER)")
                ->type_name("URL");
  AddText(command_, "--proxy", options_.proxy, "HTTP proxy", "HOST[:PORT]", "SCRIPTWELLS_PROXY");
}

void SessionArguments::DefineCredentials() {
  AddText(command_, "--user", options_.user, "User name", "NAME", "SCRIPTWELLS_USER");
  AddText(command_, "--password-file", options_.passwordFile, "The first line of this file is the password",
          "FILE");
  command_.add_flag("--password-stdin", options_.passwordFromInput,
                    "The first line of standard input is the password");
  AddText(command_, "--replica", options_.replica, "Replica id of the database", "ID", "SCRIPTWELLS_REPLICA");
}

void SessionArguments::DefineWaits() {
  AddTime(command_, "--timeout", options_.timeoutSeconds,
          "Longest silence of the server, such as 90, 1.5s or 2m; 0: no limit (for connecting: "
          "--connect-timeout, for everything: --max-time)",
          "SCRIPTWELLS_TIMEOUT");
  AddTime(command_, "--connect-timeout", options_.connectTimeoutSeconds,
          "Longest wait for a connection; 0: no limit", "SCRIPTWELLS_CONNECT_TIMEOUT");
  AddTime(command_, "--max-time", options_.maxTimeSeconds,
          "Longest time for all that is asked of the server together, files included; 0: no limit",
          "SCRIPTWELLS_MAX_TIME");
}

bool SessionArguments::HasServer() const {
  return server_->count() > 0;
}

bool SessionArguments::TakeServer() {
  if (HasServer()) return true;
  const char* usual = std::getenv("SCRIPTWELLS_SERVER");
  if (usual == nullptr || *usual == '\0') return false;
  options_.server = usual;
  return true;
}

bool SessionArguments::HasPassword() const {
  return !options_.passwordFile.empty() || options_.passwordFromInput;
}

const char* SessionArguments::Check() const {
  if (options_.passwordFromInput && !options_.passwordFile.empty())
    return "give --password-file or --password-stdin, not both";
  if (!IsWait(options_.timeoutSeconds)) return "--timeout has to lie between 0 and 86400 seconds";
  if (!IsWait(options_.maxTimeSeconds)) return "--max-time has to lie between 0 and 86400 seconds";
  if (!IsWait(options_.connectTimeoutSeconds))
    return "--connect-timeout has to lie between 0 and 86400 seconds";
  return nullptr;
}

}  // namespace qv::cli
