#include "tests/documents/typing.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <system_error>
#include <utility>

#include "devservice/files/upload_scripts.h"

namespace qv::documents {

namespace {

namespace fs = std::filesystem;

constexpr char kHome[] = "/home/joe";
constexpr const char* kPorts[] = {"8080", "8081"};
// What --local has for an address when a tape is in place of its service.
constexpr char kNoService[] = "http://localhost:80";
constexpr char kSeconds[] = "100";  // for a whole document

// Keeps a free port of the system bound.
class FreePort {
 public:
  FreePort() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address_;
    auto* address = reinterpret_cast<sockaddr*>(&address_);
    if (::bind(socket_, address, size) != 0 || ::getsockname(socket_, address, &size) != 0) std::abort();
  }
  ~FreePort() { ::close(socket_); }
  FreePort(const FreePort&) = delete;
  FreePort& operator=(const FreePort&) = delete;

  std::string Number() const { return std::to_string(ntohs(address_.sin_port)); }

 private:
  int socket_;
  sockaddr_in address_ = {};
};

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();  // of CSV
    lines.push_back(line);
  }
  return lines;
}

// "..." in `pattern` is any text.
bool Matches(const std::string& line, const std::string& pattern) {
  const std::size_t dots = pattern.find("...");
  if (dots == std::string::npos) return line == pattern;
  if (line.compare(0, dots, pattern, 0, dots) != 0) return false;
  const std::string rest = pattern.substr(dots + 3);
  for (std::size_t at = dots; at <= line.size(); ++at)
    if (Matches(line.substr(at), rest)) return true;
  return false;
}

bool HoldsAll(const std::vector<std::string>& lines, const std::vector<std::string>& wanted) {
  for (const std::string& pattern : wanted) {
    bool found = false;
    for (const std::string& line : lines) found = found || Matches(line, pattern);
    if (!found) return false;
  }
  return true;
}

bool AreTheSame(const std::vector<std::string>& lines, const std::vector<std::string>& wanted) {
  return lines.size() == wanted.size() && HoldsAll(lines, wanted) &&
         std::equal(lines.begin(), lines.end(), wanted.begin(), Matches);
}

}  // namespace

bool IsInBackground(const std::string& command) {
  return command.size() > 2 && command.substr(command.size() - 2) == " &";
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

std::string Quoted(const std::string& text) {
  return "'" + Replaced(text, "'", "'\\''") + "'";
}

bool Agrees(const Command& command, const Typed& typed) {
  if (IsInBackground(command.text))
    return !command.output.empty() && HoldsAll(LinesOf(typed.output), command.output);
  return command.output.empty() ? typed.exit == 0 : AreTheSame(LinesOf(typed.output), command.output);
}

std::string TapeOf(const std::string& name) {
  std::string file = name.substr(0, name.rfind('.'));
  std::replace(file.begin(), file.end(), '/', '_');
  return std::string(QV_SOURCE_DIR) + "/tests/documents/tapes/" + file + ".tape";
}

UsedTapes RecordedTape(const std::string& name) {
  if (std::getenv("QV_RECORD_TAPES") == nullptr) return {};
  fs::remove(TapeOf(name));
  return {TapeOf(name), {}};
}

Typist::Typist(UsedTapes tapes) : tapes_(std::move(tapes)) {
  const FreePort ports[std::size(kPorts)];
  for (const FreePort& port : ports) ports_.push_back(port.Number());
  for (const char* folder : {"joe/scriptwells/build/demo", "tmp", "out"})
    fs::create_directories(root_.Path(folder));
  MakeCheckout();
}

void Typist::MakeCheckout() const {
  const fs::path checkout = home_ + "/scriptwells";
  for (const auto& entry : fs::directory_iterator(QV_SOURCE_DIR)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind("build", 0) != 0 && name.front() != '.') fs::create_symlink(entry.path(), checkout / name);
  }
  for (const char* built : {"tools", "devservice", "examples"})
    fs::create_directory_symlink(fs::path(QV_BINARY_DIR) / built, checkout / "build/demo" / built);
}

std::string Typist::ForShell(const std::string& text) const {
  std::string shown = Replaced(text, kHome, home_);
  auto port = ports_.begin();
  for (const char* written : kPorts) shown = Replaced(shown, written, *port++);
  return shown;
}

std::string Typist::ForDocument(const std::string& text) const {
  std::string shown = Replaced(text, home_, kHome);
  auto port = ports_.begin();
  for (const char* written : kPorts) shown = Replaced(shown, *port++, written);
  return tapes_.replay.empty() ? shown : Replaced(shown, kNoService, "http://127.0.0.1:8080");
}

// What a service that does not run would leave for its clients: `scriptwells serve --home DIR`.
void Typist::MakeLentHome(const std::string& command) const {
  std::smatch option;
  if (!std::regex_search(command, option, std::regex(" --home ([a-z]+)"))) return;
  const std::string home = home_ + "/scriptwells/" + option[1].str();
  devservice::InstallUploadScripts(home);
  std::ofstream(home + "/serve.reg") << "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\""
                                     << home << "\"\n";
}

// Each command writes its output to its own file. A command in the background counts as started when it has
// printed its last line; at the end it is stopped with SIGTERM.
std::string Typist::Script(const std::vector<Command>& commands) const {
  std::ostringstream script;
  script << "trap 'kill $(jobs -p) 2>/dev/null; wait' EXIT\n";
  for (std::size_t i = 0; i < commands.size(); ++i) {
    const std::string out = root_.Path("out/" + std::to_string(i));
    const std::string text = ForShell(commands[i].text);
    if (IsInBackground(text) && !tapes_.replay.empty()) {
      MakeLentHome(text);
      continue;
    }
    if (!IsInBackground(text)) {
      script << "{ " << text << "\n} >" << out << " 2>&1\necho $? >" << out << ".exit\n";
      continue;
    }
    const std::string last = commands[i].output.empty() ? "" : ForShell(commands[i].output.back());
    script << ">" << out << " 2>&1 " << text << "\n"
           << "for n in $(seq 200); do grep -qF " << Quoted(last) << " " << out
           << " && break; sleep 0.05; done\n";
  }
  return script.str();
}

std::vector<Typed> Typist::Type(const std::vector<Command>& commands) {
  RunShell(Script(commands));
  std::vector<Typed> results;
  results.reserve(commands.size());
  for (std::size_t i = 0; i < commands.size(); ++i) results.push_back(Result(i));
  return results;
}

void Typist::RunShell(const std::string& script) {
  const std::string path = root_.Path("script");
  std::ofstream(path) << script;
  const std::string home = "HOME=" + home_;
  const std::string config = "XDG_CONFIG_HOME=" + home_ + "/.config";
  const std::string temp = "TMPDIR=" + root_.Path("tmp");
  std::vector<std::string> words{"env", "-i", home, config, temp, "LANG=C.UTF-8", "PATH=/usr/bin:/bin"};
  if (!tapes_.record.empty()) words.push_back("SCRIPTWELLS_RECORD=" + tapes_.record);
  if (!tapes_.replay.empty()) words.push_back("SCRIPTWELLS_REPLAY=" + tapes_.replay);
  words.insert(words.end(), {"timeout", "--foreground", kSeconds});
  if (!tapes_.replay.empty()) words.insert(words.end(), {"unshare", "--map-root-user", "--net"});
  words.insert(words.end(), {"bash", path});
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  shell_ = ::fork();
  if (shell_ == 0) {
    ::setpgid(0, 0);
    ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    if (::chdir((home_ + "/scriptwells").c_str()) != 0) ::_exit(126);
    ::execv("/usr/bin/env", arguments.data());
    ::_exit(126);
  }
  ::waitpid(shell_, nullptr, 0);
}

Typed Typist::Result(std::size_t index) const {
  const std::string out = root_.Path("out/" + std::to_string(index));
  Typed typed;
  typed.output = ForDocument(ReadFile(out));
  std::ifstream(out + ".exit") >> typed.exit;
  return typed;
}

int Typist::ProcessesLeft() const {
  if (::kill(-shell_, 0) != 0 && errno == ESRCH) return 0;
  ::kill(-shell_, SIGKILL);
  return 1;
}

std::string Typist::TemporaryFilesLeft() const {
  std::string names;
  for (const auto& entry : fs::directory_iterator(root_.Path("tmp")))
    names += entry.path().filename().string() + "\n";
  return names;
}

}  // namespace qv::documents
