#include "tools/options/session_options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdlib>

#include "tools/options/time_span.h"

namespace qv::cli {

namespace {

constexpr double kLongestWait = 86400;

bool IsWait(double seconds) {
  return std::isfinite(seconds) && seconds >= 0 && seconds <= kLongestWait;
}

void AddText(CLI::App& command, const char* name, std::string& target, const char* description,
             const char* value, const char* variable = "") {
  command.add_option(name, target, description)->type_name(value)->envname(variable);
}

}  // namespace

SessionArguments::SessionArguments(CLI::App& command, SessionOptions& options, SessionKind kind)
    : command_(command), options_(options) {
  DefineServer();
  if (kind != SessionKind::kAdopted) DefineCredentials();
  if (kind != SessionKind::kOpened) DefineUsid();
  DefineTls();
  DefineWaits();
  DefineTrace();
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

void SessionArguments::DefineUsid() {
  usid_ = command_
              .add_option("--usid", options_.usid,
                          "Id of an open session to use in place of a new one "
                          "(environment: SCRIPTWELLS_USID)")
              ->type_name("ID");
}

void SessionArguments::DefineTls() {
  AddText(command_, "--ca-file", options_.caFile,
          "Trust these authorities (PEM) for https, and no others; usually the system's, or those of "
          "SSL_CERT_FILE, SSL_CERT_DIR or CURL_CA_BUNDLE",
          "FILE", "SCRIPTWELLS_CA_FILE");
  AddText(command_, "--cert", options_.certificateFile, "Certificate of this client for https (PEM)", "FILE",
          "SCRIPTWELLS_CERT");
  AddText(command_, "--key", options_.keyFile,
          "Its key (PEM, without a password), where it is not in the same file", "FILE", "SCRIPTWELLS_KEY");
}

void SessionArguments::DefineWaits() {
  AddTime(command_, "--timeout", options_.timeoutSeconds,
          "Longest silence of the server, such as 90, 1.5s or 2m; 0: no limit (for connecting: "
          "--connect-timeout, for everything: --max-time)",
          "SCRIPTWELLS_TIMEOUT");
  AddTime(command_, "--connect-timeout", options_.connectTimeoutSeconds,
          "Longest wait for a connection; 0: no limit", "SCRIPTWELLS_CONNECT_TIMEOUT");
  AddTime(command_, "--max-time", options_.maxTimeSeconds,
          "Longest time for all requests together, files included; 0: no limit", "SCRIPTWELLS_MAX_TIME");
}

void SessionArguments::DefineTrace() {
  AddText(command_, "--trace", options_.traceFile,
          "Write what passes between this program and the server into this file, without passwords, session "
          "ids and upload tickets; - is standard error",
          "FILE");
  command_.add_flag("--trace-secrets", options_.traceSecrets, "With --trace: write these, too");
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

bool SessionArguments::HasUsid() const {
  return usid_ != nullptr && usid_->count() > 0;
}

const char* SessionArguments::WrongWithUsid() {
  if (HasUsid() && options_.usid.empty()) return "--usid must name a session";
  const char* usual = std::getenv("SCRIPTWELLS_USID");
  if (usid_ != nullptr && !HasUsid() && usual != nullptr) options_.usid = usual;
  if (!options_.usid.empty() && (!options_.passwordFile.empty() || options_.passwordFromInput))
    return "a session that is open already takes no password (--usid)";
  return nullptr;
}

const char* SessionArguments::Check() {
  if (const char* wrong = WrongWithUsid()) return wrong;
  if (options_.passwordFromInput && !options_.passwordFile.empty())
    return "give --password-file or --password-stdin, not both";
  if (options_.traceSecrets && options_.traceFile.empty()) return "--trace-secrets needs --trace";
  if (options_.certificateFile.empty() && !options_.keyFile.empty())
    return "--key needs --cert, whose key it is";
  if (!IsWait(options_.timeoutSeconds)) return "--timeout must be between 0 and 86400 seconds";
  if (!IsWait(options_.maxTimeSeconds)) return "--max-time must be between 0 and 86400 seconds";
  if (!IsWait(options_.connectTimeoutSeconds)) return "--connect-timeout must be between 0 and 86400 seconds";
  return nullptr;
}

}  // namespace qv::cli
