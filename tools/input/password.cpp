#include "tools/input/password.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "tools/input/input_text.h"
#include "tools/report/failure.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

// Turns off the echo of a terminal.
class EchoOff {
 public:
  explicit EchoOff(int terminal) : terminal_(terminal), known_(tcgetattr(terminal, &before_) == 0) {
    termios quiet = before_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    if (known_) tcsetattr(terminal_, TCSAFLUSH, &quiet);
  }
  ~EchoOff() {
    if (known_) tcsetattr(terminal_, TCSAFLUSH, &before_);
  }
  EchoOff(const EchoOff&) = delete;
  EchoOff& operator=(const EchoOff&) = delete;

 private:
  int terminal_;
  termios before_ = {};
  bool known_;
};

// Ends the line of the question also after Ctrl-C, since the terminal does not show the user's line end.
class Question {
 public:
  explicit Question(const std::string& text) { std::cerr << text << std::flush; }
  ~Question() { std::cerr << std::endl; }
  Question(const Question&) = delete;
  Question& operator=(const Question&) = delete;
};

std::string AskPassword(const std::string& user) {
  const EchoOff quiet(STDIN_FILENO);  // before the question: an answer may come fast
  const Question question("Password of " + OneLine(user) + ": ");
  return ReadLine(STDIN_FILENO, "password");
}

std::string ReadPasswordFile(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0)
    throw Failure(ExitStatus::kLocal, "cannot read the password file " + path + ": " + std::strerror(errno));
  struct Closer {
    int descriptor;
    ~Closer() { ::close(descriptor); }
  } closer{descriptor};
  return ReadLine(descriptor, "password");
}

bool CanAsk(const SessionOptions& options, bool inputIsTaken) {
  return !options.user.empty() && !inputIsTaken && isatty(STDIN_FILENO) == 1;
}

std::string TakePassword(const SessionOptions& options, bool inputIsTaken) {
  if (!options.passwordFile.empty()) return ReadPasswordFile(options.passwordFile);
  if (options.passwordFromInput) return ReadLine(STDIN_FILENO, "password");
  const char* variable = std::getenv("SCRIPTWELLS_PASSWORD");
  if (variable != nullptr) return variable;
  return CanAsk(options, inputIsTaken) ? AskPassword(options.user) : std::string();
}

}  // namespace

void CheckCredential(const std::string& value, const std::string& what) {
  if (!utf8::is_valid(value.begin(), value.end()))
    throw Failure(ExitStatus::kLocal, "the " + what + " is not valid UTF-8");
  if (value.find_first_of(";=") != std::string::npos)
    throw Failure(ExitStatus::kLocal,
                  "the " + what + " holds ';' or '=', which a connection string cannot carry");
  for (const char c : value)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
      throw Failure(ExitStatus::kLocal, "the " + what + " holds a control character");
}

std::string FindPassword(const SessionOptions& options, bool inputIsTaken) {
  std::string password = TakePassword(options, inputIsTaken);
  CheckCredential(password, "password");
  return password;
}

}  // namespace qv::cli
