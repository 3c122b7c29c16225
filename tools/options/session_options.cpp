#include "tools/options/session_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>

#include "tools/options/setting_options.h"

namespace qv::cli {

namespace {

constexpr char kNoServer[] = "http://localhost";  // with a tape in its place

}  // namespace

SessionArguments::SessionArguments(CLI::App& command, SessionOptions& options, SessionKind kind)
    : command_(command), options_(options) {
  ReadVariablesIfParsed(command_);
  AddProfile(command_);
  AddServerSettings(command_, options_);
  if (kind != SessionKind::kAdopted) DefineCredentials();
  if (kind == SessionKind::kAdopted || kind == SessionKind::kEither) DefineUsid();
  AddTlsSettings(command_, options_);
  AddTimeSettings(command_, options_);
  if (kind != SessionKind::kChecked) DefineTrace();
  DefineTapes();
  command_.add_flag("--json", options_.json,
                    "The result, or what failed, and every note, as one line of JSON each");
}

void SessionArguments::DefineCredentials() {
  AddCredentialSettings(command_, options_);
  command_.add_flag("--password-stdin", options_.passwordFromInput,
                    "The first line of standard input is the password");
}

void SessionArguments::DefineUsid() {
  usid_ = command_
              .add_option("--usid", options_.usid,
                          "Id of an open session to use in place of a new one "
                          "(environment: SCRIPTWELLS_USID)")
              ->type_name("ID");
}

void SessionArguments::DefineTrace() {
  command_
      .add_option("--trace", options_.traceFile,
                  "Write what passes between this program and the server into this file, without passwords, "
                  "session ids and upload tickets; - is standard error")
      ->type_name("FILE");
  command_.add_flag("--trace-secrets", options_.traceSecrets, "With --trace: write these, too");
}

void SessionArguments::DefineTapes() {
  command_
      .add_option(
          "--record", options_.recordFile,
          "Record what passes between this program and the server at the end of this tape, which is created "
          "if it is not there; without passwords, session ids and upload tickets")
      ->type_name("FILE")
      ->envname("SCRIPTWELLS_RECORD");
  command_
      .add_option("--replay", options_.replayFile,
                  "Take all answers from this tape; nothing is sent, and no server or password is needed")
      ->type_name("FILE")
      ->envname("SCRIPTWELLS_REPLAY");
}

bool SessionArguments::HasServer() const {
  return IsTyped(command_, "--server");
}

// The variable overrides a profile, which has set the option already.
bool SessionArguments::TakeServer() {
  if (HasServer()) return true;
  const char* usual = std::getenv("SCRIPTWELLS_SERVER");
  if (usual != nullptr && *usual != '\0') options_.server = usual;
  if (options_.server.empty() && !options_.replayFile.empty()) options_.server = kNoServer;
  return !options_.server.empty();
}

bool SessionArguments::HasUsid() const {
  return usid_ != nullptr && usid_->count() > 0;
}

const char* SessionArguments::WrongWithUsid() {
  if (HasUsid() && options_.usid.empty()) return "--usid must name a session";
  const char* usual = std::getenv("SCRIPTWELLS_USID");
  if (usid_ != nullptr && !HasUsid() && usual != nullptr) options_.usid = usual;
  if (!options_.usid.empty() && TypedPasswords() > 0)
    return "a session that is open already takes no password (--usid)";
  return nullptr;
}

std::ptrdiff_t SessionArguments::TypedPasswords() const {
  const char* const flags[] = {"--password-command", "--password-file", "--password-stdin"};
  return std::count_if(std::begin(flags), std::end(flags),
                       [this](const char* flag) { return IsTyped(command_, flag); });
}

const char* SessionArguments::Check() {
  if (const char* wrong = WrongWithUsid()) return wrong;
  if (TypedPasswords() > 1) return "give one of --password-command, --password-file and --password-stdin";
  if (options_.traceSecrets && options_.traceFile.empty()) return "--trace-secrets needs --trace";
  if (options_.certificateFile.empty() && !options_.keyFile.empty())
    return "--key needs --cert, whose key it is";
  return WrongTimeLimit(options_);
}

}  // namespace qv::cli
