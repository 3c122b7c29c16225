// While the object exists, the process has a locale that writes a number as "1.234,5": a C++ locale with a
// custom number format, and a German C locale. If the system has none, localedef generates it in a temporary
// directory; if that fails too, the object reports it on standard error and only the C++ locale changes.
#pragma once

#include <locale>
#include <string>

namespace qv {

class CommaLocale {
 public:
  CommaLocale();
  ~CommaLocale();
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

 private:
  std::string oldName_;
  std::locale oldLocale_;
};

}  // namespace qv
