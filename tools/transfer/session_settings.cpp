#include "tools/transfer/session_settings.h"

#include <algorithm>
#include <cstring>

#include "scriptwells/session.h"
#include "tools/input/password.h"
#include "tools/report/failure.h"
#include "tools/transfer/failed_call.h"

namespace qv::cli {

namespace {

void Wipe(std::string& secret) noexcept {
  explicit_bzero(secret.data(), secret.size());
  secret.clear();
}

std::chrono::milliseconds Time(double seconds) {
  return std::chrono::milliseconds(Milliseconds(seconds));
}

}  // namespace

SessionSettings::~SessionSettings() {
  Wipe(credentials.password);
  Wipe(usid);
}

bool IsHeaderValue(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~'; });
}

SessionSettings SettingsOf(const SessionOptions& options) {
  if (!IsHeaderValue(options.usid))
    throw Failure(ExitStatus::kLocal, "the session's id holds a character that no header carries");
  SessionSettings settings;
  settings.server = options.server;
  settings.credentials.user = options.user;
  settings.credentials.replica = options.replica;
  settings.usid = options.usid;
  settings.options.proxy = options.proxy;
  settings.options.connectTimeout = Time(options.connectTimeoutSeconds);
  settings.options.silenceTimeout = Time(options.timeoutSeconds);
  settings.options.totalTimeout = Time(options.maxTimeSeconds);
  settings.options.authorities = options.caFile;
  settings.options.certificate = options.certificateFile;
  settings.options.key = options.keyFile;
  settings.options.showSecrets = options.traceSecrets;
  settings.options.record = options.recordFile;
  settings.options.replay = options.replayFile;
  settings.traceFile = options.traceFile;
  settings.showProgress = !options.json;
  return settings;
}

void CheckSettings(const SessionSettings& settings) {
  Translated([&] { scriptwells::Session::Check(settings.server, settings.credentials, settings.options); });
}

void TakePassword(const SessionOptions& options, SessionSettings& settings, bool inputIsTaken) {
  CheckSettings(settings);
  if (!settings.usid.empty()) return;
  settings.credentials.password = FindPassword(options, inputIsTaken);
  CheckSettings(settings);
}

}  // namespace qv::cli
