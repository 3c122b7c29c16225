// Whether the other tests of locales prove anything.
#include "support/comma_locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <sstream>
#include <string>

namespace qv {
namespace {

std::string Streamed(double value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

TEST(CommaLocale, ChangesStreamsWhileItLives) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  {
    const CommaLocale comma;
    EXPECT_EQ(Streamed(1234.5), "1.234,5");
  }
  EXPECT_EQ(Streamed(1234.5), "1234.5");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

}  // namespace
}  // namespace qv
