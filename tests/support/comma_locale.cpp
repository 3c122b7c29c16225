#include "support/comma_locale.h"

#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "fixtures/temporary_directory.h"

namespace qv {
namespace {

template <typename Unit>
class CommaNumbers : public std::numpunct<Unit> {
 protected:
  Unit do_decimal_point() const override { return ','; }
  Unit do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

// True when the C library now writes commas.
bool Speaks(const char* name) {
  return std::setlocale(LC_ALL, name) != nullptr && std::localeconv()->decimal_point[0] == ',';
}

bool RunLocaledef(const std::string& target) {
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    execlp("localedef", "localedef", "-i", "de_DE", "-f", "UTF-8", target.c_str(),
           static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// A locale generated once per process; its directory is removed with the process.
class GeneratedLocale {
 public:
  GeneratedLocale() {
    if (!RunLocaledef(directory_.Path("de_DE.UTF-8"))) return;
    setenv("LOCPATH", directory_.Path().c_str(), 1);
    works_ = Speaks("de_DE.UTF-8");
  }
  bool Works() const { return works_; }

 private:
  const TemporaryDirectory directory_;
  bool works_ = false;
};

bool SpeakGerman() {
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"})
    if (Speaks(name)) return true;
  static const GeneratedLocale generated;
  return generated.Works() && Speaks("de_DE.UTF-8");
}

}  // namespace

CommaLocale::CommaLocale() : oldName_(std::setlocale(LC_ALL, nullptr)) {
  const std::locale numbers(std::locale(std::locale::classic(), new CommaNumbers<char>),
                            new CommaNumbers<wchar_t>);
  oldLocale_ = std::locale::global(numbers);
  if (!SpeakGerman())
    (void)std::fprintf(
        stderr, "NOT TESTED: no C locale with a decimal comma here, and localedef could not make one\n");
}

CommaLocale::~CommaLocale() {
  std::locale::global(oldLocale_);
  static_cast<void>(std::setlocale(LC_ALL, oldName_.c_str()));
}

}  // namespace qv
