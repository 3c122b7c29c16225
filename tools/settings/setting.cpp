#include "tools/settings/setting.h"

#include <cstring>

#include "tools/report/typed_name.h"

namespace qv::cli {

namespace {

constexpr auto kText = SettingKind::kText;
constexpr auto kTime = SettingKind::kTime;
constexpr auto kPath = SettingKind::kPath;
constexpr auto kEverywhere = SettingScope::kEverywhere;
constexpr auto kServer = SettingScope::kServer;
constexpr auto kPassword = SettingScope::kPassword;

constexpr char kServerText[] =
    "The server, such as https://scripts.example:8443 (environment: SCRIPTWELLS_SERVER)";
constexpr char kCommandText[] = "The first line that this command prints is the password; /bin/sh runs it";
constexpr char kAuthoritiesText[] =
    "Trust these authorities (PEM) for https, and no others; usually the system's, or those of "
    "SSL_CERT_FILE, SSL_CERT_DIR or CURL_CA_BUNDLE";
constexpr char kTimeoutText[] =
    "Longest silence of the server, such as 90, 1.5s or 2m; 0: no limit (for connecting: --connect-timeout, "
    "for everything: --max-time)";
constexpr char kOutputText[] = "How the answer is printed (environment: SCRIPTWELLS_OUTPUT)";

const std::vector<Setting> kSettings = {
    {"server", "SCRIPTWELLS_SERVER", "URL", kServerText, kText, kServer},
    {"proxy", "SCRIPTWELLS_PROXY", "HOST[:PORT]", "HTTP proxy", kText, kServer},
    {"user", "SCRIPTWELLS_USER", "NAME", "User name", kText, kServer},
    {"password-command", "", "COMMAND-LINE", kCommandText, kText, kPassword},
    {"password-file", "", "FILE", "The first line of this file is the password", kPath, kPassword},
    {"replica", "SCRIPTWELLS_REPLICA", "ID", "Replica id of the database", kText, kServer},
    {"ca-file", "SCRIPTWELLS_CA_FILE", "FILE", kAuthoritiesText, kPath, kServer},
    {"cert", "SCRIPTWELLS_CERT", "FILE", "Certificate of this client for https (PEM)", kPath, kServer},
    {"key", "SCRIPTWELLS_KEY", "FILE", "Its key (PEM, without a password), where it is not in the same file",
     kPath, kServer},
    {"timeout", "SCRIPTWELLS_TIMEOUT", "TIME", kTimeoutText, kTime, kEverywhere},
    {"connect-timeout", "SCRIPTWELLS_CONNECT_TIMEOUT", "TIME", "Longest wait for a connection; 0: no limit",
     kTime, kEverywhere},
    {"max-time", "SCRIPTWELLS_MAX_TIME", "TIME",
     "Longest time for all requests together, files included; 0: no limit", kTime, kEverywhere},
    {"language", "SCRIPTWELLS_LANGUAGE", "NAME", "Language of the script", kText, kEverywhere},
    {"output", "SCRIPTWELLS_OUTPUT", "FORMAT", kOutputText, kText, kEverywhere},
};

constexpr char kRemedy[] =
    "a password is never in this file; password-command names a command that prints it, password-file a file "
    "that contains it";

bool IsAddress(const Setting& setting) {
  return std::strcmp(setting.key, "server") == 0 || std::strcmp(setting.key, "proxy") == 0;
}

}  // namespace

const std::vector<Setting>& AllSettings() {
  return kSettings;
}

const Setting* FindSetting(const std::string& key) {
  for (const Setting& setting : kSettings)
    if (key == setting.key) return &setting;
  return nullptr;
}

std::string MeantSetting(const std::string& key) {
  std::vector<std::string> keys;
  keys.reserve(kSettings.size());
  for (const Setting& setting : kSettings) keys.emplace_back(setting.key);
  const std::string meant = ClosestName(key, keys);
  return meant.empty() ? "" : " (did you mean " + meant + "?)";
}

std::string WrongWithKey(const std::string& key) {
  if (FindSetting(key) != nullptr) return "";
  if (IsSameName(key, "password")) return kRemedy;
  return "there is no setting '" + key + "'" + MeantSetting(key);
}

std::string ShownValue(const Setting& setting, const std::string& value) {
  const std::size_t at = IsAddress(setting) ? value.rfind('@') : std::string::npos;
  if (at == std::string::npos) return value;
  const std::size_t scheme = value.find("://");
  return (scheme < at ? value.substr(0, scheme + 3) : std::string()) + "***" + value.substr(at);
}

}  // namespace qv::cli
