#include "face/session/checked_options.h"

#include <utf8.h>

#include <algorithm>

#include "face/session/address.h"
#include "face/session/local_path.h"
#include "qvscriptwells/wide_string.h"
#include "scriptwells/error.h"

namespace scriptwells {

namespace {

[[noreturn]] void Refuse(const std::string& reason) {
  throw Error(Phase::kAddress, reason);
}

std::int64_t Milliseconds(std::chrono::milliseconds time, const char* what) {
  if (time.count() < 0) Refuse(std::string("the ") + what + " is negative");
  return time.count();
}

qv::WideString PemFile(const std::filesystem::path& file, const char* what) {
  return file.empty() ? qv::WideString() : qv::FromUtf8(ReadablePath(file, what));
}

void CheckCredential(const std::string& value, const std::string& what) {
  if (!utf8::is_valid(value.begin(), value.end())) Refuse("the " + what + " is not valid UTF-8");
  if (value.find_first_of(";=") != std::string::npos)
    Refuse("the " + what + " holds ';' or '=', which a connection string cannot carry");
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
  if (std::any_of(value.begin(), value.end(), isControl))
    Refuse("the " + what + " holds a control character");
}

}  // namespace

CallSettings CheckedSettings(const Options& options) {
  CallSettings settings;
  settings.proxy = CheckedProxy(options.proxy);
  settings.http = qv::DefaultHttpOptions();
  settings.http.connectTimeout = Milliseconds(options.connectTimeout, "connect timeout");
  settings.http.idleTimeout = Milliseconds(options.silenceTimeout, "silence timeout");
  settings.http.totalTimeout = Milliseconds(options.totalTimeout, "total timeout");
  settings.http.minBytesPerSecond = options.leastBytesPerSecond;
  if (options.mostAnswerBytes < 0 || options.leastBytesPerSecond < 0) Refuse("a limit of bytes is negative");
  settings.http.maxBodyBytes = options.mostAnswerBytes;
  settings.http.replaceFiles = options.replaceFiles;
  if (!options.authorities.empty()) settings.http.caFile = PemFile(options.authorities, "authorities' file");
  if (!options.certificate.empty()) {
    settings.http.certificateFile = PemFile(options.certificate, "certificate");
    settings.http.keyFile = PemFile(options.key, "key");
  }
  settings.home = options.homeDirectory.empty() ? std::string()
                                                : std::filesystem::absolute(options.homeDirectory).native();
  settings.hiddenFiles = options.hiddenFiles;
  settings.listener = options.listener;
  settings.showSecrets = options.showSecrets;
  settings.listenerBodies = options.listenerBodies;
  settings.progress = options.progress;
  settings.cancel = options.cancel;
  return settings;
}

void CheckCredentials(const Credentials& credentials) {
  CheckCredential(credentials.user, "user name");
  CheckCredential(credentials.password, "password");
  CheckCredential(credentials.replica, "replica id");
}

void CheckSessionId(const std::string& id) {
  const bool isPlain = std::all_of(id.begin(), id.end(), [](char c) { return c > ' ' && c <= '~'; });
  if (id.empty() || !isPlain)
    Refuse("the session's id is empty, or holds a character that no header carries");
}

}  // namespace scriptwells
