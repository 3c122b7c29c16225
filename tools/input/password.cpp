#include "tools/input/password.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "tools/input/input_text.h"
#include "tools/input/password_command.h"
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

// As ssh treats the file of a key.
void CheckPrivate(int file, const std::string& path) {
  struct stat facts = {};
  if (::fstat(file, &facts) != 0 || facts.st_uid != ::geteuid() || (facts.st_mode & (S_IRWXG | S_IRWXO)) == 0)
    return;
  throw Failure(ExitStatus::kLocal,
                "the password file " + path + " can be used by others; change that with chmod 600");
}

std::string ReadPasswordFile(const std::string& path, bool isSaved) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0)
    throw Failure(ExitStatus::kLocal, "cannot read the password file " + path + ": " + std::strerror(errno));
  struct Closer {
    int descriptor;
    ~Closer() { ::close(descriptor); }
  } closer{descriptor};
  if (isSaved) CheckPrivate(descriptor, path);
  return ReadLine(descriptor, "password");
}

bool CanAsk(const SessionOptions& options, bool inputIsTaken) {
  return !options.user.empty() && options.replayFile.empty() && !inputIsTaken && isatty(STDIN_FILENO) == 1;
}

}  // namespace

std::string FindPassword(const SessionOptions& options, bool inputIsTaken) {
  if (!options.passwordFile.empty())
    return ReadPasswordFile(options.passwordFile, options.passwordFileIsSaved);
  if (!options.passwordCommand.empty() && options.replayFile.empty())
    return PasswordOfCommand(options.passwordCommand);
  if (options.passwordFromInput) return ReadLine(STDIN_FILENO, "password");
  const char* variable = std::getenv("SCRIPTWELLS_PASSWORD");
  if (variable != nullptr) return variable;
  return CanAsk(options, inputIsTaken) ? AskPassword(options.user) : std::string();
}

}  // namespace qv::cli
