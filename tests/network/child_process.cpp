#include "child_process.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "system/unique_descriptor.h"

namespace qv::test {
namespace {

constexpr int kSecondsToStart = 10;
constexpr int kMostPorts = 5;

// Users other than root do not have the directories of servers in their PATH.
std::string WholePath(const std::string& program) {
  const char* const path = std::getenv("PATH");
  std::istringstream directories(std::string(path == nullptr ? "" : path) + ":/usr/sbin:/sbin");
  for (std::string file; std::getline(directories, file, ':');) {
    file.append("/").append(program);
    if (access(file.c_str(), X_OK) == 0) return file;
  }
  if (program.find('/') != std::string::npos && access(program.c_str(), X_OK) == 0) return program;
  throw std::runtime_error(program + " is not installed; scripts/install-packages does it");
}

[[noreturn]] void Become(const char* program, char* const* words, int output, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int input = open("/dev/null", O_RDONLY);
  if (getppid() != parent || input < 0 || dup2(input, 0) < 0 || dup2(output, 1) < 0 || dup2(output, 2) < 0)
    _exit(126);
  execv(program, words);
  _exit(127);
}

sockaddr_in AddressOf(const std::string& address, std::uint16_t port) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(port);
  inet_pton(AF_INET, address.c_str(), &place.sin_addr);
  return place;
}

std::string ContentOf(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

ChildProcess::ChildProcess(const Words& words, const std::string& output) {
  const std::string program = WholePath(words.at(0));
  Words kept = words;
  std::vector<char*> pointers;
  pointers.reserve(kept.size() + 1);
  for (std::string& word : kept) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const UniqueDescriptor said(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ == 0) Become(program.c_str(), pointers.data(), said.Get(), parent);
  if (pid_ < 0) throw std::runtime_error("no process for " + program);
}

ChildProcess::~ChildProcess() {
  if (!IsRunning()) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, &status_, 0);
}

bool ChildProcess::IsRunning() {
  if (pid_ > 0 && waitpid(pid_, &status_, WNOHANG) == pid_) pid_ = -1;
  return pid_ > 0;
}

int ChildProcess::Finish(int seconds) {
  if (!WaitUntil([this] { return !IsRunning(); }, seconds)) {
    kill(pid_, SIGKILL);
    waitpid(pid_, &status_, 0);
    pid_ = -1;
    return -2;
  }
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

bool WaitUntil(const std::function<bool()>& condition, int seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

bool PortAnswers(const std::string& address, std::uint16_t port) {
  const UniqueDescriptor client(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const sockaddr_in place = AddressOf(address, port);
  return connect(client.Get(), reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
}

std::uint16_t FreePort() {
  const UniqueDescriptor holder(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in place = AddressOf("127.0.0.1", 0);
  socklen_t size = sizeof place;
  auto* const plain = reinterpret_cast<sockaddr*>(&place);
  if (bind(holder.Get(), plain, size) != 0 || getsockname(holder.Get(), plain, &size) != 0)
    throw std::runtime_error("no free port");
  return ntohs(place.sin_port);
}

ServerProcess::ServerProcess(const Command& command, const std::string& output, const std::string& address,
                             std::uint16_t fixedPort) {
  for (int i = 0; i < kMostPorts; ++i) {
    port_ = fixedPort != 0 ? fixedPort : FreePort();
    if (TryStart(command, output, address)) return;
  }
  throw std::runtime_error("the server gets no port, or does not start: " + ContentOf(output));
}

bool ServerProcess::TryStart(const Command& command, const std::string& output, const std::string& address) {
  if (PortAnswers(address, port_)) return false;  // somebody else
  process_ = std::make_unique<ChildProcess>(command(port_), output);
  WaitUntil([&] { return !process_->IsRunning() || PortAnswers(address, port_); }, kSecondsToStart);
  return process_->IsRunning();
}

}  // namespace qv::test
