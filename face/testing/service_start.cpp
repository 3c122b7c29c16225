#include "face/testing/service_start.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <system_error>

#include "scriptwells/error.h"

namespace scriptwells::testing {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongestLine = 65536;
constexpr std::size_t kLongestQuote = 2000;
constexpr char kVariable[] = "SCRIPTWELLS_PROGRAM";

std::string ProgramOf(const ServiceOptions& options) {
  if (!options.program.empty()) return options.program.string();
  const char* variable = std::getenv(kVariable);
  return variable != nullptr && *variable != '\0' ? variable : "scriptwells";
}

// The form of `serve --users-file`.
std::string UsersFile(const std::vector<Credentials>& users) {
  std::string file;
  for (const Credentials& user : users) {
    const std::string line = user.user + ":" + user.password;
    if (user.user.empty() || user.user[0] == '#' || user.user.find(':') != std::string::npos ||
        line.find_first_of("\r\n") != std::string::npos)
      throw Error(Phase::kLocalFile,
                  "the name of a service's user is empty, begins with '#' or holds ':', "
                  "or a line end is in it or in the password");
    file += line + "\n";
  }
  return file;
}

std::string Quoted(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  if (text.size() > kLongestQuote) text = text.substr(0, kLongestQuote) + "...";
  return text;
}

[[noreturn]] void ThrowNotStarted(const std::string& program, const std::error_code& code) {
  ErrorDetails details;
  details.transport = code.message();
  if (code.value() != ENOENT)
    throw Error(Phase::kLocalFile, "cannot start the service program " + program + ": " + code.message(),
                details);
  throw Error(Phase::kLocalFile,
              "the service program " + program + " is not installed; the variable " + kVariable +
                  " may name another one",
              details);
}

// Appends what is there to read; false, and the descriptor is closed, at the end.
bool ReadSome(Descriptor& from, std::string& to) {
  char bytes[4096];
  const ssize_t count = read(from.Number(), bytes, sizeof bytes);
  if (count > 0 && to.size() < kLongestLine) to.append(bytes, static_cast<std::size_t>(count));
  if (count > 0 || (count < 0 && errno == EINTR)) return true;
  from.Close();
  return false;
}

// The process and what it has written so far.
class Beginning {
 public:
  Beginning(std::string program, ChildProcess& process) : program_(std::move(program)), process_(process) {}

  // The first line of standard output, without its end; all of it if there is too much without a line end.
  std::string FirstLine(std::chrono::milliseconds time) {
    const auto end = Clock::now() + time;
    while (output_.find('\n') == std::string::npos) {
      if (output_.size() >= kLongestLine) return output_;
      if (!process_.Output().IsOpen()) Fail("ended before it was ready", true);
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
      if (left.count() <= 0) Fail("was not ready in time");
      ReadFor(static_cast<int>(left.count()));
    }
    return output_.substr(0, output_.find('\n'));
  }

  // `what`: "ended". With the reason for its end, if wanted, and what it wrote on standard error.
  [[noreturn]] void Fail(const std::string& what, bool withEnd = false) {
    const std::string ending = process_.End();
    // A child of the program may keep the pipe open.
    if (process_.Errors().IsOpen()) fcntl(process_.Errors().Number(), F_SETFL, O_NONBLOCK);
    while (process_.Errors().IsOpen()) ReadSome(process_.Errors(), errors_);
    std::string message = "the service program " + program_ + " " + what;
    if (withEnd && !ending.empty()) message += " (" + ending + ")";
    if (!errors_.empty()) message += ": " + Quoted(errors_);
    throw Error(Phase::kLocalFile, message);
  }

 private:
  void ReadFor(int milliseconds) {
    // A negative descriptor is passed over.
    pollfd waits[] = {{process_.Output().Number(), POLLIN, 0}, {process_.Errors().Number(), POLLIN, 0}};
    if (poll(waits, 2, milliseconds) <= 0) return;
    if (waits[0].revents != 0) ReadSome(process_.Output(), output_);
    if (waits[1].revents != 0) ReadSome(process_.Errors(), errors_);
  }

  const std::string program_;
  ChildProcess& process_;
  std::string output_;
  std::string errors_;
};

}  // namespace

StartedService StartService(const ServiceOptions& options, std::chrono::milliseconds time) {
  const std::string program = ProgramOf(options);
  std::vector<std::string> command = {program, "serve", "--json", "--control", "--until-eof"};
  if (!options.users.empty()) command.insert(command.end(), {"--users-file", ChildProcess::kFile});
  StartedService service;
  try {
    service.process = std::make_unique<ChildProcess>(command, UsersFile(options.users));
  } catch (const std::system_error& error) {
    ThrowNotStarted(program, error.code());
  }
  Beginning beginning(program, *service.process);
  const std::string line = beginning.FirstLine(time);
  try {
    const auto address = nlohmann::json::parse(line);
    service.url = address.at("url").get<std::string>();
    service.home = address.at("home").get<std::string>();
    service.control = address.at("control").get<std::string>();
  } catch (const nlohmann::json::exception&) {
    beginning.Fail("wrote something else than its address, \"" + Quoted(line) + "\"");
  }
  // Nobody reads them from now on, and a full pipe would stop the program.
  service.process->Output().Close();
  service.process->Errors().Close();
  return service;
}

}  // namespace scriptwells::testing
