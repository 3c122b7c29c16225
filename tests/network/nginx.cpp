#include "nginx.h"

#include <algorithm>
#include <filesystem>

namespace qv::test {
namespace {

namespace fs = std::filesystem;

constexpr int kPatience = 10;

std::string Line(const std::string& words) {
  return words + ";\n";
}

}  // namespace

Nginx::Nginx(const CertificateFiles* certificate, std::uint16_t other)
    : secure_(certificate != nullptr),
      server_([&](std::uint16_t port) { return Command(port, certificate, other); }, files_.Path("said")) {}

// One process in the foreground, nothing outside the private directory.
Words Nginx::Command(std::uint16_t port, const CertificateFiles* certificate, std::uint16_t other) const {
  for (const char* name : {"files", "taken"}) fs::create_directories(files_.Path(name));
  std::string text = Line("daemon off") + Line("master_process off") + Line("pid " + files_.Path("pid")) +
                     "events {}\nhttp {\n" + Line("log_format lines '$request'") +
                     Line("access_log " + files_.Path("access") + " lines") +
                     Line("client_body_temp_path " + files_.Path("taken")) + Line("client_max_body_size 0");
  for (const char* kind : {"proxy", "fastcgi", "uwsgi", "scgi"})
    text += Line(std::string(kind) + "_temp_path " + files_.Path(kind));
  text += "server {\n" + Line("listen 127.0.0.1:" + std::to_string(port) + (secure_ ? " ssl" : ""));
  if (secure_)
    text +=
        Line("ssl_certificate " + certificate->certificate) + Line("ssl_certificate_key " + certificate->key);
  text += Places(port, secure_, other) + "}\n}\n";
  return {"nginx", "-e", "stderr", "-p", files_.Path(), "-c", files_.Write("nginx.conf", text)};
}

// A body is kept in a file only when it is handed on, so /take hands it to another location.
std::string Nginx::Places(std::uint16_t port, bool secure, std::uint16_t other) const {
  const std::string itself = std::string(secure ? "https" : "http") + "://127.0.0.1:" + std::to_string(port);
  std::string text = "location /files/ {\n" + Line("root " + files_.Path()) +
                     "if ($uri ~ ^/files/(.*)$) { set $name $1; }\n" +
                     Line("add_header Content-Disposition \"attachment; filename=$name\"") + "}\n" +
                     "location = /take {\n" + Line("client_body_in_file_only on") + Line("access_log off") +
                     Line("proxy_pass " + itself + "/taken") + "}\n" + "location = /taken {\n" +
                     Line("return 200 taken") + "}\n";
  if (other != 0)
    text += "location / {\n" + Line("proxy_pass http://127.0.0.1:" + std::to_string(other)) + "}\n";
  return text;
}

std::string Nginx::Url() const {
  return std::string(secure_ ? "https" : "http") + "://127.0.0.1:" + std::to_string(Port());
}

void Nginx::Offer(const std::string& name, const std::string& content) const {
  files_.Write("files/" + name, content);
}

std::string Nginx::Taken() const {
  Words names;
  for (const auto& entry : fs::directory_iterator(files_.Path("taken")))
    names.push_back(entry.path().filename().string());
  return names.size() == 1 ? files_.Read("taken/" + names[0])
                           : "(" + std::to_string(names.size()) + " files)";
}

std::string Nginx::Requests(std::size_t count) const {
  const auto arrived = [&] {
    const std::string lines = files_.Read("access");
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n')) >= count;
  };
  WaitUntil(arrived, kPatience);
  return files_.Read("access");
}

}  // namespace qv::test
