// Makes the process speak a locale in which a number is written "1.234,5", for as long as the object lives:
// the C++ locale by a number format of our own, and the C locale by a German one. When the system has none,
// it is generated with localedef into a temporary directory; when that is not possible either, the object
// says so on standard error and only the C++ locale changes.
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
